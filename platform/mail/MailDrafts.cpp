#include "platform/mail/MailDrafts.h"

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/UserFolder.h"
#include "platform/services/DesktopLibrary.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace fs = std::filesystem;
using Kept = Result<fs::path>;

namespace {

Kept failed(const std::string& what, const fs::path& where, const std::string& why) {
    return Kept::failure("cannot " + what + " " + where.string() + ": " + why);
}

/// "2026-11-21-133522", as the user's clock has it.
std::string timeOfDay() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d-%H%M%S", &local)};
}

Result<void> write(const MailMessage& message, int file) {
    DesktopLibrary* desktop = desktopLibrary();
    if (!desktop) return Result<void>::failure("the library that writes messages is missing");
    Result<void> written = desktop->write(message, file);
    if (written && ::fsync(file) != 0) written = Result<void>::failure(std::strerror(errno));
    return written;
}

/// Gives the file that name, if it is free.
bool publish(const fs::path& file, const fs::path& name) {
    if (::renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    // Not every file system can do that.
    return ::link(file.c_str(), name.c_str()) == 0 && ::unlink(file.c_str()) == 0;
}

/// Under the first of its names that is free.
Kept published(const fs::path& file, const fs::path& folder) {
    const std::string time = timeOfDay();
    for (int number = 1; number <= 1000; ++number) {
        const fs::path name = folder / (time + (number > 1 ? "-" + std::to_string(number) : "") + ".eml");
        if (publish(file, name)) return name;
        if (errno != EEXIST) break;
    }
    return Kept::failure(std::strerror(errno));
}

} // namespace

Kept keepDraft(const MailMessage& message) {
    const fs::path data = userFolder("XDG_DATA_HOME", ".local/share");
    if (data.empty()) return Kept::failure("cannot keep a draft: its user has no home folder");
    const fs::path folder = data / "lumora/drafts";
    if (const auto made = makeFolders(folder); !made) return failed("make the folder", folder, made.error());
    if (::chmod(folder.c_str(), 0700) != 0) return failed("make private the folder", folder, std::strerror(errno));

    // Hidden until it is whole.
    std::string hidden = folder / ".XXXXXX.new";
    FileDescriptor file(::mkostemps(hidden.data(), 4, O_CLOEXEC));
    if (!file) return failed("make a file in", folder, std::strerror(errno));
    Result<void> written = write(message, file.number());
    if (!file.close() && written) written = Result<void>::failure(std::strerror(errno));
    Kept draft = written ? published(hidden, folder) : Kept::failure(written.error());
    if (draft) return draft;
    ::unlink(hidden.c_str());
    return failed("write a draft in", folder, draft.error());
}

} // namespace platform

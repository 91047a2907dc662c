#include "platform/services/MailDrafts.h"

#include "platform/services/DesktopServices.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace fs = std::filesystem;
using Kept = Result<fs::path>;

namespace {

fs::path homeFolder() {
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    const passwd* user = getpwuid(getuid());
    return user ? user->pw_dir : "/";
}

Kept failed(const std::string& what, const fs::path& where) {
    return Kept::failure("cannot " + what + " " + where.string() + ": " + std::strerror(errno));
}

/// "2026-11-21-133522", as the user's clock has it.
std::string timeOfDay() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d-%H%M%S", &local)};
}

Result<bool> write(const MailMessage& message, const fs::path& file) {
    DesktopServices* desktop = desktopServices();
    if (!desktop) return Result<bool>::failure("the library that writes messages is missing");
    const int number = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (number < 0) return Result<bool>::failure(std::strerror(errno));
    Result<bool> written = desktop->writeMessage(message, number);
    if (written && ::fsync(number) != 0) written = Result<bool>::failure(std::strerror(errno));
    if (::close(number) != 0 && written) written = Result<bool>::failure(std::strerror(errno));
    return written;
}

} // namespace

fs::path draftsFolder() {
    const char* data = std::getenv("XDG_DATA_HOME");
    // A relative path there is to be ignored.
    const fs::path base = data && *data == '/' ? fs::path(data) : homeFolder() / ".local/share";
    return base / "lumora/drafts";
}

Kept keepDraft(const MailMessage& message) {
    const fs::path folder = draftsFolder();
    std::error_code error;
    fs::create_directories(folder.parent_path(), error);
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) return failed("make the folder", folder);
    if (::chmod(folder.c_str(), 0700) != 0) return failed("make private the folder", folder);

    // Reserves a name that nobody else has; what is renamed over it later overwrites this empty file only.
    std::string name = folder / (timeOfDay() + "-XXXXXX.eml");
    const int reserved = ::mkostemps(name.data(), 4, O_CLOEXEC);
    if (reserved < 0) return failed("make a file in", folder);
    ::close(reserved);
    const fs::path draft = name;
    const fs::path fresh = folder / ("." + draft.filename().string() + ".new");
    const Result<bool> written = write(message, fresh);
    if (written && ::rename(fresh.c_str(), draft.c_str()) == 0) return draft;
    const std::string why = written ? std::strerror(errno) : written.error();
    ::unlink(fresh.c_str());
    ::unlink(draft.c_str());
    return Kept::failure("cannot write " + draft.string() + ": " + why);
}

} // namespace platform

#include "tools/lumoractl/Streams.h"

#include "json/Json.h"

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

using platform::Data;
using platform::FileDescriptor;
using platform::Result;
namespace fs = std::filesystem;

namespace lumora {
namespace {

/// A file that is closed on leaving, unless it is one of the process's own streams.
class Stream {
  public:
    Stream(const std::string& name, const char* mode, std::FILE* standard)
        : own_(name != "-"), file_(own_ ? std::fopen(name.c_str(), mode) : standard) {}
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() {
        if (own_ && file_) std::fclose(file_);
    }
    [[nodiscard]] std::FILE* file() const { return file_; }

  private:
    bool own_;
    std::FILE* file_;
};

std::string failure(const char* verb, const std::string& name, const char* standard) {
    return "cannot " + std::string(verb) + " " + (name == "-" ? standard : name) + ": " +
           std::generic_category().message(errno);
}

/// A file that another one can take the place of: none yet, or a regular one of this user's, behind links.
struct Replaceable {
    fs::path path;
    std::optional<struct stat> facts; ///< nothing where there is none yet
};

/// Nothing for what can only be written into.
std::optional<Replaceable> replaceable(const std::string& name) {
    for (const char* streams : {"/dev/std", "/dev/fd/", "/proc/"})
        if (name.starts_with(streams)) return {};
    struct stat facts {};
    if (::lstat(name.c_str(), &facts) != 0) return Replaceable{name, {}};
    if (::stat(name.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode) || facts.st_uid != ::geteuid() ||
        facts.st_nlink > 1 || ::access(name.c_str(), W_OK) != 0)
        return {};
    std::error_code failed;
    fs::path path = fs::canonical(name, failed);
    return failed ? std::nullopt : std::optional(Replaceable{std::move(path), facts});
}

/// Gives a new file the group and the mode of the former one.
bool dress(int file, const struct stat& former) {
    struct stat made {};
    return ::fstat(file, &made) == 0 &&
           (made.st_gid == former.st_gid || ::fchown(file, static_cast<uid_t>(-1), former.st_gid) == 0) &&
           (made.st_mode == former.st_mode || ::fchmod(file, former.st_mode & ALLPERMS) == 0);
}

/// The new file stands beside the former one until it is whole. False when that fails, with the reason in errno.
bool replace(const Replaceable& former, const void* bytes, std::size_t size) {
    const fs::path made = former.path.parent_path() / (".lumoractl-" + std::to_string(std::random_device()()));
    FileDescriptor file(
        ::open(made.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, former.facts ? S_IRUSR | S_IWUSR : DEFFILEMODE));
    if (!file) return false;
    if (file.write(bytes, size) && (!former.facts || dress(file.number(), *former.facts)) && file.close() &&
        ::rename(made.c_str(), former.path.c_str()) == 0)
        return true;
    const int why = errno;
    ::unlink(made.c_str());
    errno = why;
    return false;
}

} // namespace

Result<Data> readAll(const std::string& name, std::size_t most) {
    const Stream stream(name, "rb", stdin);
    Data bytes;
    if (stream.file()) {
        std::array<std::uint8_t, 65536> block{};
        for (std::size_t got = 1; got > 0 && bytes.size() < most;) {
            got = std::fread(block.data(), 1, block.size(), stream.file());
            bytes.insert(bytes.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(got));
        }
    }
    if (!stream.file() || std::ferror(stream.file()))
        return Result<Data>::failure(failure("read", name, "standard input"));
    return bytes;
}

Result<void> writeAll(const std::string& name, const void* bytes, std::size_t size) {
    if (const auto former = name == "-" ? std::nullopt : replaceable(name)) {
        if (replace(*former, bytes, size)) return {};
        // Where no such file can be put into the folder, that one may be writable.
        const std::array notSuch{EACCES, EBUSY, EPERM, EOPNOTSUPP, ENOSYS};
        if (std::ranges::find(notSuch, errno) == notSuch.end())
            return Result<void>::failure(failure("write", name, ""));
    }
    const Stream stream(name, "wb", stdout);
    // Flushing at once shows a full disk while there is still someone to tell.
    if (!stream.file() || std::fwrite(bytes, 1, size, stream.file()) != size || std::fflush(stream.file()) != 0)
        return Result<void>::failure(failure("write", name, "standard output"));
    return {};
}

Result<void> printJson(const platform::Value& value) {
    const Result<std::string> json = writeJson(value);
    return json ? printText(json.value() + "\n") : Result<void>::failure(json.error());
}

Result<void> printText(const std::string& text) {
    return writeAll("-", text.data(), text.size());
}

void complain(const std::string& what) {
    std::fputs((std::string(program_invocation_short_name) + ": " + platform::printable(what) + "\n").c_str(), stderr);
}

} // namespace lumora

#include "platform/foundation/RegularFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace platform {
namespace {

/// For its user alone, and without a name. Empty when no file can be made.
FileDescriptor unnamedFile() {
    const char* named = std::getenv("TMPDIR");
    const std::filesystem::path folder = named && *named == '/' ? named : "/var/tmp";
    FileDescriptor file(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
    if (file) return file;
    std::string name = folder / "lumora-XXXXXX"; // where the file system cannot do that
    file = FileDescriptor(::mkostemp(name.data(), O_CLOEXEC));
    if (file) ::unlink(name.c_str());
    return file;
}

/// Asked before anything is written: a file with holes can be larger than any disk. True when the system does not say.
bool hasRoom(int file, std::uint64_t bytes) {
    struct statvfs facts {};
    return ::fstatvfs(file, &facts) != 0 || facts.f_blocks == 0 || bytes <= facts.f_bavail * facts.f_frsize;
}

} // namespace

RegularFile::RegularFile(const std::filesystem::path& path) {
    // Asked before opening too, since opening alone has effects on some devices.
    std::error_code failed;
    if (!std::filesystem::is_regular_file(path, failed)) return;
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat facts {};
    if (!file || ::fstat(file.number(), &facts) != 0 || !S_ISREG(facts.st_mode)) return;
    file_ = std::move(file);
    size_ = static_cast<std::uint64_t>(facts.st_size);
}

std::shared_ptr<const RegularFile> RegularFile::copyOf(const std::filesystem::path& path) {
    const RegularFile file(path);
    if (!file) return nullptr;
    const std::shared_ptr<RegularFile> copy(new RegularFile(unnamedFile()));
    if (!*copy || !hasRoom(copy->descriptor(), file.size())) return nullptr;
    const auto written = file.writeTo(copy->file_);
    if (!written) return nullptr;
    copy->size_ = *written;
    return copy;
}

bool RegularFile::read(std::uint64_t offset, void* into, std::size_t count) const {
    if (offset > size_ || count > size_ - offset) return false;
    auto* bytes = static_cast<std::uint8_t*>(into);
    while (count > 0) {
        const ssize_t got = ::pread(descriptor(), bytes, count, static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        bytes += got;
        offset += static_cast<std::uint64_t>(got);
        count -= static_cast<std::size_t>(got);
    }
    return true;
}

std::optional<std::uint64_t> RegularFile::writeTo(const FileDescriptor& file) const {
    char some[1 << 15];
    std::uint64_t done = 0;
    while (done < size_) {
        const auto most = static_cast<std::size_t>(std::min<std::uint64_t>(sizeof some, size_ - done));
        const ssize_t count = ::pread(descriptor(), some, most, static_cast<off_t>(done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 || !file.write(some, static_cast<std::size_t>(count))) return std::nullopt;
        if (count == 0) break;
        done += static_cast<std::uint64_t>(count);
    }
    return done;
}

} // namespace platform

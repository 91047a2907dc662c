#include "platform/foundation/RegularFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

RegularFile::RegularFile(const std::filesystem::path& path) {
    // Asked before opening too, because opening alone has effects on some devices.
    std::error_code failed;
    if (!std::filesystem::is_regular_file(path, failed)) return;
    number_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    struct stat facts {};
    if (number_ >= 0 && ::fstat(number_, &facts) == 0 && S_ISREG(facts.st_mode)) {
        size_ = static_cast<std::uint64_t>(facts.st_size);
    } else if (number_ >= 0) {
        ::close(number_);
        number_ = -1;
    }
}

RegularFile::~RegularFile() {
    if (number_ >= 0) ::close(number_);
}

bool RegularFile::read(std::uint64_t offset, void* into, std::size_t count) const {
    if (offset > size_ || count > size_ - offset) return false;
    auto* bytes = static_cast<std::uint8_t*>(into);
    while (count > 0) {
        const ssize_t got = ::pread(number_, bytes, count, static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        bytes += got;
        offset += static_cast<std::uint64_t>(got);
        count -= static_cast<std::size_t>(got);
    }
    return true;
}

} // namespace platform

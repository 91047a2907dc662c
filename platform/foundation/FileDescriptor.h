#pragma once

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace platform {

/// Owns one open descriptor, or none. One thread at a time.
///
///     const FileDescriptor folder(::open("/tmp", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
///     if (!folder) complain(errno);
class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(other.release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        const int number = other.release();
        close();
        number_ = number;
        return *this;
    }
    ~FileDescriptor() { close(); }

    explicit operator bool() const { return number_ >= 0; }
    [[nodiscard]] int number() const { return number_; }
    /// Writes all of the bytes. False when that fails, with the reason in errno.
    [[nodiscard]] bool write(const void* bytes, std::size_t count) const {
        for (const auto* at = static_cast<const char*>(bytes); count > 0;) {
            const ssize_t some = ::write(number_, at, count);
            if (some < 0 && errno == EINTR) continue;
            if (some <= 0) return false;
            at += some;
            count -= static_cast<std::size_t>(some);
        }
        return true;
    }
    /// Hands over the descriptor, which the caller has to close.
    [[nodiscard]] int release() { return std::exchange(number_, -1); }
    /// False when that fails, with the reason in errno: some of what was written is lost then.
    bool close() { return number_ < 0 || ::close(release()) == 0; }

  private:
    int number_ = -1;
};

/// A pipe; both ends are empty, with the reason in errno, when the system gives none.
struct Pipe {
    explicit Pipe(int flags = O_CLOEXEC) {
        int ends[2];
        if (::pipe2(ends, flags) != 0) return;
        reading = FileDescriptor(ends[0]);
        writing = FileDescriptor(ends[1]);
    }
    explicit operator bool() const { return static_cast<bool>(writing); }

    FileDescriptor reading;
    FileDescriptor writing;
};

} // namespace platform

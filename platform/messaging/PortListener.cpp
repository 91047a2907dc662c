#include "platform/messaging/PortListener.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

FileDescriptor makeSocket() {
    return FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

} // namespace

Result<std::unique_ptr<PortListener>> PortListener::open(const PortAddress& address) {
    using Opened = Result<std::unique_ptr<PortListener>>;
    if (!address.makeFolders()) return Opened::failure("its folder cannot be made, or is not a folder of yours alone");
    std::unique_ptr<PortListener> listener(new PortListener(address));
    int error = listener->lock();
    if (error == 0) error = listener->removeDeadSocket();
    if (error == 0) error = listener->listen();
    switch (error) {
    case 0:
        return listener;
    case EADDRINUSE:
        return Opened::failure("another process holds it");
    case EMFILE:
    case ENFILE:
        return Opened::failure("not enough descriptors are left");
    default:
        return Opened::failure("its socket or lock file cannot be used");
    }
}

int PortListener::lock() {
    const auto path = std::string(address_.path()) + ".lock";
    lock_ = FileDescriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, kOwnerOnly));
    // The file stays when the port goes: if it were removed, two starting processes could lock two different files.
    if (lock_ && ::flock(lock_.number(), LOCK_EX | LOCK_NB) == 0) return 0;
    return errno == EWOULDBLOCK ? EADDRINUSE : errno;
}

int PortListener::removeDeadSocket() const {
    struct stat status {};
    if (::lstat(address_.path(), &status) != 0) return errno == ENOENT ? 0 : errno;
    if (!S_ISSOCK(status.st_mode)) return ENOTSOCK;

    // A program that ignores the lock may be serving here. Only a refusal proves the socket dead: a full backlog is a
    // sign of life.
    const auto probe = makeSocket();
    if (!probe) return errno;
    const int error = address_.connect(probe.number());
    if (error == 0 || error == EAGAIN) return EADDRINUSE;
    if (error != ECONNREFUSED) return error;
    return ::unlink(address_.path()) == 0 ? 0 : errno;
}

int PortListener::listen() {
    socket_ = makeSocket();
    if (!socket_) return errno;
    if (const int error = address_.bind(socket_.number()); error != 0) return error;

    struct stat status {};
    if (::lstat(address_.path(), &status) != 0) return errno;
    device_ = status.st_dev;
    file_ = status.st_ino;
    // The mode that bind() gave depends on the umask. Meanwhile the private folder kept others out.
    return ::chmod(address_.path(), kOwnerOnly) == 0 && ::listen(socket_.number(), SOMAXCONN) == 0 ? 0 : errno;
}

PortListener::~PortListener() {
    if (file_ == 0) return;
    struct stat status {};
    const bool ours = ::lstat(address_.path(), &status) == 0 && status.st_dev == device_ && status.st_ino == file_;
    if (ours) ::unlink(address_.path());
}

} // namespace platform

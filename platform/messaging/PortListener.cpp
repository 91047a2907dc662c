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

std::unique_ptr<PortListener> PortListener::open(const PortAddress& address) {
    std::unique_ptr<PortListener> listener(new PortListener(address));
    const bool opened = address.makeFolders() && listener->lock() && listener->removeDeadSocket() && listener->listen();
    return opened ? std::move(listener) : nullptr;
}

bool PortListener::lock() {
    const auto path = std::string(address_.path()) + ".lock";
    lock_ = FileDescriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, kOwnerOnly));
    // The file itself stays when the port goes: removing it would let two starters lock two different files.
    return lock_ && ::flock(lock_.number(), LOCK_EX | LOCK_NB) == 0;
}

bool PortListener::removeDeadSocket() const {
    struct stat status {};
    if (::lstat(address_.path(), &status) != 0) return errno == ENOENT;
    if (!S_ISSOCK(status.st_mode)) return false;

    // A program that knows nothing of the lock may be serving here. Only a refusal proves the socket dead: a full
    // backlog is a sign of life.
    const auto probe = makeSocket();
    return probe && address_.connect(probe.number()) == ECONNREFUSED && ::unlink(address_.path()) == 0;
}

bool PortListener::listen() {
    socket_ = makeSocket();
    if (!socket_ || address_.bind(socket_.number()) != 0) return false;

    struct stat status {};
    if (::lstat(address_.path(), &status) != 0) return false;
    device_ = status.st_dev;
    file_ = status.st_ino;
    // The mode that bind() gave depends on the umask. Nobody could use it in between: the folder is private.
    return ::chmod(address_.path(), kOwnerOnly) == 0 && ::listen(socket_.number(), SOMAXCONN) == 0;
}

PortListener::~PortListener() {
    if (file_ == 0) return;
    struct stat status {};
    const bool ours = ::lstat(address_.path(), &status) == 0 && status.st_dev == device_ && status.st_ino == file_;
    if (ours) ::unlink(address_.path());
}

} // namespace platform

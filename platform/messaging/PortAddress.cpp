#include "platform/messaging/PortAddress.h"

#include "platform/foundation/FileDescriptor.h"
#include "platform/messaging/CFMessagePort.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace platform {

namespace {

/// Every message asks for the folder, so it is put together from plain texts: a path costs more than a system call.
std::string folderOfPorts() {
    for (const char* variable : {"LUMORA_PORTS", "XDG_RUNTIME_DIR"}) {
        const char* folder = std::getenv(variable);
        if (folder != nullptr && *folder != '\0') return folder;
    }
    const auto user = std::to_string(::geteuid());
    auto folder = "/run/user/" + user;
    struct stat status {};
    return ::stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) ? folder : "/tmp/lumora-" + user;
}

std::optional<ucred> credentials(int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return {};
    return peer;
}

bool isPlainPath(std::string_view name) {
    if (name.find('\0') != std::string_view::npos) return false;
    while (true) {
        const auto slash = name.find('/');
        const auto component = name.substr(0, slash);
        if (component.empty() || component == "." || component == "..") return false;
        if (slash == std::string_view::npos) return true;
        name.remove_prefix(slash + 1);
    }
}

bool isOurs(uid_t owner) {
    return owner == 0 || owner == ::geteuid();
}

/// Whether only this user and root can put or replace sockets in the folder.
bool isPrivate(const std::filesystem::path& folder) {
    struct stat status {};
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && isOurs(status.st_uid) &&
           (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

bool makeFolder(const std::filesystem::path& folder) {
    return ::mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST;
}

} // namespace

std::filesystem::path portsFolder() {
    return folderOfPorts();
}

Result<void> checkPortsFolder(const std::string& name) {
    const std::filesystem::path folder = portsFolder();
    const auto fail = [&](const std::string& why) {
        return Result<void>::failure("the ports folder " + folder.string() + " " + why);
    };
    if (folder.is_relative()) return fail("is relative: each program looks for it where that program was started");
    if (!PortAddress::ofName(name)) return fail("is too long for the path of a socket");
    struct stat status {};
    if (::lstat(folder.c_str(), &status) != 0)
        return errno == ENOENT ? Result<void>() : fail("cannot be used: " + std::generic_category().message(errno));
    return isPrivate(folder) ? Result<void>() : fail("is not a folder of this user alone");
}

bool CFMessagePortIsServed(const std::string& name) {
    const auto address = PortAddress::ofName(name);
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!address || !socket) return false;
    const int error = address->connect(socket.number());
    return error == EAGAIN || (error == 0 && peerIsTrusted(socket.number())); // EAGAIN: a queue that is full is served
}

std::optional<PortAddress> PortAddress::ofName(const std::string& name) {
    if (!isPlainPath(name)) return std::nullopt;
    const auto folder = folderOfPorts();
    if (folder.size() + 1 + name.size() >= sizeof(sockaddr_un::sun_path)) return std::nullopt;
    return PortAddress(folder, name);
}

PortAddress::PortAddress(const std::string& folder, const std::string& name) : folder_(folder), name_(name) {
    address_.sun_family = AF_UNIX;
    const auto end = std::copy(folder.begin(), folder.end(), address_.sun_path);
    *end = '/';
    std::copy(name.begin(), name.end(), end + 1);
}

bool PortAddress::makeFolders() const {
    // With a slash at the end, the kernel would follow a symbolic link, which must be refused.
    const auto ports = (std::filesystem::path(folder_) / "").lexically_normal().parent_path();
    std::filesystem::path folder;
    for (const auto& component : ports) {
        folder /= component;
        if (!makeFolder(folder)) return false;
    }
    if (!isPrivate(folder)) return false;
    for (const auto& component : std::filesystem::path(name_).parent_path()) {
        folder /= component;
        if (!makeFolder(folder) || !isPrivate(folder)) return false;
    }
    return true;
}

int PortAddress::connect(int socket) const {
    return ::connect(socket, reinterpret_cast<const sockaddr*>(&address_), sizeof address_) == 0 ? 0 : errno;
}

int PortAddress::bind(int socket) const {
    return ::bind(socket, reinterpret_cast<const sockaddr*>(&address_), sizeof address_) == 0 ? 0 : errno;
}

bool peerIsTrusted(int socket) {
    const auto peer = credentials(socket);
    return peer && isOurs(peer->uid);
}

pid_t peerOf(int socket) {
    const auto peer = credentials(socket);
    return peer ? peer->pid : 0;
}

} // namespace platform

#include "platform/messaging/PortAddress.h"

#include "platform/messaging/CFMessagePort.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

std::optional<std::filesystem::path> folderFromEnvironment(const char* variable) {
    const char* folder = std::getenv(variable);
    if (folder == nullptr || *folder == '\0') return std::nullopt;
    return folder;
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
    return owner == ::geteuid() || owner == 0;
}

/// A folder in which nobody but this user and root can put or replace a socket.
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
    if (auto folder = folderFromEnvironment("LUMORA_PORTS")) return *folder;
    if (auto folder = folderFromEnvironment("XDG_RUNTIME_DIR")) return *folder;
    const auto user = std::to_string(::geteuid());
    std::error_code ignored;
    if (auto folder = "/run/user/" + user; std::filesystem::is_directory(folder, ignored)) return folder;
    return "/tmp/lumora-" + user;
}

std::optional<PortAddress> PortAddress::ofName(const std::string& name) {
    if (!isPlainPath(name)) return std::nullopt;
    // A trailing slash would make the kernel follow a symbolic link that must be refused.
    auto folder = (portsFolder() / "").lexically_normal().parent_path();
    auto path = folder / name;
    if (path.native().size() >= sizeof(sockaddr_un::sun_path)) return std::nullopt;
    return PortAddress(std::move(folder), std::move(path));
}

PortAddress::PortAddress(std::filesystem::path folder, std::filesystem::path path)
    : folder_(std::move(folder)), path_(std::move(path)) {
    address_.sun_family = AF_UNIX;
    std::copy(path_.native().begin(), path_.native().end(), address_.sun_path);
}

bool PortAddress::makeFolders() const {
    std::filesystem::path folder;
    for (const auto& component : folder_) {
        folder /= component;
        if (!makeFolder(folder)) return false;
    }
    if (!isPrivate(folder)) return false;
    for (const auto& component : path_.parent_path().lexically_relative(folder_)) {
        if (component == ".") continue; // a name of one component has its socket in the ports folder itself
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
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && isOurs(peer.uid);
}

} // namespace platform

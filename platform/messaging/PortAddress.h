#pragma once

#include "platform/Export.h"

#include <optional>
#include <string>
#include <sys/socket.h>
#include <sys/types.h>
#include <sys/un.h>

namespace platform {

/// Where the port of a name lives: the path of its socket, which fits a socket address. Any thread.
class PLATFORM_EXPORT PortAddress {
  public:
    /// Nothing for a name that makes no path below the ports folder: an empty, "." or ".." component, a NUL, or more
    /// bytes than a socket address holds.
    [[nodiscard]] static std::optional<PortAddress> ofName(const std::string& name);

    [[nodiscard]] const char* path() const { return address_.sun_path; }
    /// Makes the folders down to the socket with mode 0700. False when one of them, the ports folder included, belongs
    /// to another user, is open to others for writing, or is a symbolic link.
    [[nodiscard]] bool makeFolders() const;
    /// Connects to the socket: 0 or the error number.
    [[nodiscard]] int connect(int socket) const;
    /// Binds to the socket: 0 or the error number.
    [[nodiscard]] int bind(int socket) const;

  private:
    PortAddress(const std::string& folder, const std::string& name);

    std::string folder_; ///< the ports folder
    std::string name_;
    sockaddr_un address_{};
};

/// Whether the process at the other end belongs to this user or to root.
[[nodiscard]] bool peerIsTrusted(int socket);
/// The process at the other end, as it was when it connected; 0 if the system does not tell.
[[nodiscard]] pid_t peerOf(int socket);

} // namespace platform

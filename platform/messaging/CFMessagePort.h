#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"
#include "platform/messaging/CFRunLoop.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

/// One end of a named request/reply channel between processes of one user.
///
/// A port named `com.nevo.lumora/updateSettings` is the Unix stream socket of that path under portsFolder(). Frames are
/// described in docs/ports.md.
///
///     auto tweak = CFMessagePortCreateRemote("com.nevo.lumora/requestTweakSettings");
///     std::optional<Data> reply;
///     if (CFMessagePortSendRequest(*tweak, 0, std::nullopt, 1.0, 1.0, &reply) == kCFMessagePortSuccess) …
class CFMessagePort;
using CFMessagePortRef = std::shared_ptr<CFMessagePort>;

/// Answers one request, on the thread that runs the port's run loop. Nothing: a reply without a body.
using CFMessagePortCallBack =
    std::function<std::optional<Data>(CFMessagePort& port, std::int32_t messageId, const std::optional<Data>& body)>;

/// Result codes of CFMessagePortSendRequest(), the platform's numbers.
enum CFMessagePortResult : std::int32_t {
    kCFMessagePortSuccess = 0,
    kCFMessagePortSendTimeout = -1,
    kCFMessagePortReceiveTimeout = -2,
    kCFMessagePortIsInvalid = -3,          ///< no live port has that name, or no port can have it
    kCFMessagePortTransportError = -4,     ///< no descriptor left, another user's peer, bytes that are no frame
    kCFMessagePortBecameInvalidError = -5, ///< the other end closed before its reply was whole
};

/// The largest body that a frame may carry, in bytes.
inline constexpr std::int64_t kMaximumMessageBody = 64LL << 20;

/// Where ports live: `$LUMORA_PORTS`, else `$XDG_RUNTIME_DIR`, else `/run/user/UID` where that exists, else
/// `/tmp/lumora-UID`. Read anew at each call. Any thread, while no thread changes the environment.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path portsFolder();

/// Fails with the reason why programs do not meet at the port of that name, to be told at a program's start: portsFolder()
/// is relative, and each program takes another folder for it; or too long for the path of a socket; or not a folder of this
/// user alone. Succeeds where the folder is not there yet. Any thread.
[[nodiscard]] PLATFORM_EXPORT Result<void> checkPortsFolder(const std::string& name);

/// A reference to the port of that name in any process. Contacts nothing: sending shows whether the port exists. Never
/// null. Any thread.
[[nodiscard]] PLATFORM_EXPORT CFMessagePortRef CFMessagePortCreateRemote(const std::string& name);

/// Whether a live process of this user or root takes connections on the port of that name. Connects and hangs up again
/// without a byte, and does not wait. Any thread.
[[nodiscard]] PLATFORM_EXPORT bool CFMessagePortIsServed(const std::string& name);

/// Sends one message and waits for its reply, which goes into *reply if the result is success; reply may be null. Both
/// time-outs are in seconds: the first covers connecting and writing, a full backlog included, the second runs from the
/// last byte written to the last byte of the reply. Each call has a connection of its own. Any thread.
[[nodiscard]] PLATFORM_EXPORT CFMessagePortResult CFMessagePortSendRequest(const CFMessagePort& remote,
                                                                           std::int32_t messageId,
                                                                           const std::optional<Data>& body,
                                                                           double sendTimeout, double receiveTimeout,
                                                                           std::optional<Data>* reply);

/// Opens a port under a name. Fails when a live port has the name, here or in another process, when the ports folder
/// belongs to another user, when the name makes no path, or when no descriptor is left. Takes over a dead process's
/// socket. The socket file goes with the last reference. Any thread.
[[nodiscard]] PLATFORM_EXPORT Result<CFMessagePortRef> openLocalPort(const std::string& name,
                                                                     CFMessagePortCallBack callout);

/// The same without a reason: null when it fails.
[[nodiscard]] PLATFORM_EXPORT CFMessagePortRef CFMessagePortCreateLocal(const std::string& name,
                                                                        CFMessagePortCallBack callout);

/// The process whose request is being answered; 0 when it is of no use to this one. Within a callout of the port.
[[nodiscard]] PLATFORM_EXPORT long CFMessagePortGetSender(const CFMessagePort& port);

/// What makes a run loop serve the port, and holds the port. Null for a null or remote port, or when no descriptor is
/// left. The thread of the run loop.
[[nodiscard]] PLATFORM_EXPORT CFRunLoopSourceRef CFMessagePortCreateRunLoopSource(const CFMessagePortRef& local);

} // namespace platform

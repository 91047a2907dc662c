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

/// Answers one request on the thread that runs the port's run loop; "nothing" answers without a body.
using CFMessagePortCallBack =
    std::function<std::optional<Data>(CFMessagePort& port, std::int32_t messageId, const std::optional<Data>& body)>;

/// Result codes of CFMessagePortSendRequest(), the platform's numbers.
enum CFMessagePortResult : std::int32_t {
    kCFMessagePortSuccess = 0,
    kCFMessagePortSendTimeout = -1,
    kCFMessagePortReceiveTimeout = -2,
    kCFMessagePortIsInvalid = -3,          ///< no live port of that name, or a name that can be none
    kCFMessagePortTransportError = -4,     ///< no descriptor left, a foreign peer, bytes that are no frame
    kCFMessagePortBecameInvalidError = -5, ///< the other end closed before its reply was whole
};

/// The largest body that a frame may carry, in bytes.
inline constexpr std::int64_t kMaximumMessageBody = 64LL << 20;

/// Where ports live: `$LUMORA_PORTS`, else `$XDG_RUNTIME_DIR`, else `/run/user/UID` where that exists, else
/// `/tmp/lumora-UID`. Read anew at each call.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path portsFolder();

/// A reference to the port of that name in some process. Nothing is contacted yet, so whether the port exists shows
/// only when something is sent. Never null.
[[nodiscard]] PLATFORM_EXPORT CFMessagePortRef CFMessagePortCreateRemote(const std::string& name);

/// Sends one message and waits for its reply, which is stored in *reply when the result is success; reply may be null.
/// The send time-out (seconds) covers connecting and writing, a full backlog included; the receive time-out runs from
/// the last byte written to the last byte of the reply. Any thread; each call is an exchange on a fresh connection.
[[nodiscard]] PLATFORM_EXPORT CFMessagePortResult CFMessagePortSendRequest(const CFMessagePort& remote,
                                                                           std::int32_t messageId,
                                                                           const std::optional<Data>& body,
                                                                           double sendTimeout, double receiveTimeout,
                                                                           std::optional<Data>* reply);

/// Opens a port under a name. Fails when a live port has the name, here or in another process, when the ports folder
/// belongs to someone else, when the name makes no path, or when no descriptor is left. A dead process's socket is taken
/// over. The socket file goes when the last reference does.
[[nodiscard]] PLATFORM_EXPORT Result<CFMessagePortRef> openLocalPort(const std::string& name,
                                                                     CFMessagePortCallBack callout);

/// The same in silence: null when that fails.
[[nodiscard]] PLATFORM_EXPORT CFMessagePortRef CFMessagePortCreateLocal(const std::string& name,
                                                                        CFMessagePortCallBack callout);

/// What makes a run loop serve the port; null for a null or remote port. It holds the port.
[[nodiscard]] PLATFORM_EXPORT CFRunLoopSourceRef CFMessagePortCreateRunLoopSource(const CFMessagePortRef& local);

} // namespace platform

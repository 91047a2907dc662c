#include "platform/messaging/CFMessagePort.h"

#include "platform/messaging/MessagePort.h"
#include "platform/messaging/PortExchange.h"
#include "platform/messaging/PortServer.h"

namespace platform {

CFMessagePortRef CFMessagePortCreateRemote(const std::string& name) {
    auto port = std::make_shared<CFMessagePort>();
    port->address = PortAddress::ofName(name);
    return port;
}

CFMessagePortResult CFMessagePortSendRequest(const CFMessagePort& remote, std::int32_t messageId,
                                             const std::optional<Data>& body, double sendTimeout, double receiveTimeout,
                                             std::optional<Data>* reply) {
    if (!remote.address) return kCFMessagePortIsInvalid;
    PortExchange exchange(*remote.address);
    auto result = exchange.send(messageId, body, sendTimeout);
    if (result == kCFMessagePortSuccess) result = exchange.receive(receiveTimeout);
    if (result == kCFMessagePortSuccess && reply != nullptr) *reply = exchange.takeReply();
    return result;
}

Result<CFMessagePortRef> openLocalPort(const std::string& name, CFMessagePortCallBack callout) {
    const auto refuse = [&name](const std::string& why) {
        const auto path = (portsFolder() / name).string();
        return Result<CFMessagePortRef>::failure("cannot open the port " + path + ": " + why);
    };
    auto port = CFMessagePortCreateRemote(name);
    if (!port->address) return refuse("its path is too long for a socket, or none at all");
    auto listener = PortListener::open(*port->address);
    if (!listener) return refuse(listener.error());
    port->listener = std::move(listener).value();
    port->callout = std::move(callout);
    return port;
}

long CFMessagePortGetSender(const CFMessagePort& port) {
    return port.sender;
}

CFMessagePortRef CFMessagePortCreateLocal(const std::string& name, CFMessagePortCallBack callout) {
    auto port = openLocalPort(name, std::move(callout));
    return port ? std::move(port).value() : nullptr;
}

CFRunLoopSourceRef CFMessagePortCreateRunLoopSource(const CFMessagePortRef& local) {
    if (!local || !local->listener) return nullptr;
    auto source = std::make_shared<CFRunLoopSource>(local);
    return source->isReady() ? source : nullptr;
}

} // namespace platform

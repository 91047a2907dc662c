#include "link/Notify.h"

#include "link/Messages.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/messaging/CFRunLoop.h"
#include "platform/messaging/Dispatch.h"

#include <utility>

namespace lumora {

using namespace platform;

namespace {

DispatchQueue& workers() {
    return dispatch_get_global_queue(0, 0);
}

/// The worker's side of notify().
void exchange(const std::string& name, const Value& object, const ReplyBlock& reply) {
    const auto remote = CFMessagePortCreateRemote(name);

    std::optional<Data> request;
    if (!object.isNil()) {
        request = NSKeyedArchiver::archivedDataWithRootObject(messageWith(object));
        if (!request) return; // nested too deeply for any archive
    }

    std::optional<Data> answer;
    const auto result = CFMessagePortSendRequest(*remote, kMessageId, request, kSendTimeout, kReceiveTimeout, &answer);

    // Kept on purpose: a message that fails is dropped without a word, a log line or a second try. The tweak owns every
    // setting, so this side has nothing to repair; a caller that waits for the reply block expects that it may never
    // run.
    if (result != kCFMessagePortSuccess) return;

    if (reply) reply(answer);
}

/// The worker's side of port(): returns once the run loop is stopped.
void serve(const std::string& name, CFMessagePortCallBack callout) {
    const auto local = CFMessagePortCreateLocal(name, std::move(callout));
    CFRunLoopAddSource(CFRunLoopGetCurrent(), CFMessagePortCreateRunLoopSource(local));
    CFRunLoopRun();
}

} // namespace

void notify(const std::string& name, const Value& object, ReplyBlock reply) {
    dispatch_async(workers(),
                   [port = portName(name), object, reply = std::move(reply)] { exchange(port, object, reply); });
}

void port(const std::string& name, CFMessagePortCallBack callout) {
    dispatch_async(workers(), [port = portName(name), callout = std::move(callout)] { serve(port, callout); });
}

} // namespace lumora

#pragma once

#include "platform/messaging/CFMessagePort.h"

#include <functional>
#include <optional>
#include <string>

namespace lumora {

/// Receives the body of the tweak's answer, or nothing if the answer has none. Runs on a worker thread.
using ReplyBlock = std::function<void(const std::optional<platform::Data>& reply)>;

/// Sends one message to the tweak, with the port name, id, time-outs and shape of link/Messages.h.
///
///     notify(kUpdateSettings, changeOf("kSleepTime", 30), nullptr);
///
/// Returns at once. The exchange is one work item of the global queue, so one message may overtake another. A nil object
/// sends no body; any other travels as the keyed archive of messageWith(object). The reply block is called at most once,
/// and only after an answer: failure is silent. Any thread.
void notify(const std::string& name, const platform::Value& object, ReplyBlock reply);

/// Opens the port of that message on a worker thread, which serves it for as long as its run loop runs. Returns at once.
/// If the name is taken, no port opens, and nothing says so. Any thread.
void port(const std::string& name, platform::CFMessagePortCallBack callout);

} // namespace lumora

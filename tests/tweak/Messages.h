#pragma once

#include "link/Messages.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/messaging/CFMessagePort.h"
#include "tests/support/Waiting.h"

#include <chrono>
#include <optional>
#include <string>

namespace tests {

/// The body of an "updateSettings" message, as the bundle sends it.
inline platform::Data changeBody(const std::string& key, const platform::Value& value) {
    return *platform::NSKeyedArchiver::archivedDataWithRootObject(lumora::messageWith(lumora::changeOf(key, value)));
}

/// In seconds.
inline constexpr double kPatience = std::chrono::duration<double>(kLongEnough).count();

/// Sends a body to the port and gives the result code; the reply is stored when the code is success.
inline platform::CFMessagePortResult send(const std::string& message, const std::optional<platform::Data>& body,
                                          std::optional<platform::Data>& reply, std::int32_t id = lumora::kMessageId) {
    const auto remote = platform::CFMessagePortCreateRemote(lumora::portName(message));
    return platform::CFMessagePortSendRequest(*remote, id, body, kPatience, kPatience, &reply);
}

/// The settings that a running tweak answers with; nil when none does.
inline platform::Value askForSettings() {
    std::optional<platform::Data> reply;
    if (send(lumora::kRequestTweakSettings, std::nullopt, reply) != platform::kCFMessagePortSuccess || !reply)
        return nullptr;
    return platform::NSKeyedUnarchiver::unarchiveObjectWithData(*reply);
}

/// What a running tweak says of a change: empty when it is made.
inline std::string change(const std::string& key, const platform::Value& value) {
    std::optional<platform::Data> reply;
    if (send(lumora::kUpdateSettings, changeBody(key, value), reply) != platform::kCFMessagePortSuccess)
        return "no answer";
    if (!reply) return {};
    const platform::Value error = platform::NSKeyedUnarchiver::unarchiveObjectWithData(*reply)[lumora::kErrorEntry];
    return std::string(error.text() ? *error.text() : "an answer without an error");
}

} // namespace tests

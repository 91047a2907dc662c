#include "tools/lumoractl/TweakClient.h"

#include "link/Messages.h"
#include "tweak/Defaults.h"

#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/messaging/CFMessagePort.h"

using platform::CFMessagePortCreateRemote;
using platform::CFMessagePortResult;
using platform::CFMessagePortSendRequest;
using platform::Data;
using platform::Dictionary;
using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

using Reply = std::optional<Data>;

std::string explain(CFMessagePortResult result, const std::string& port) {
    switch (result) {
    case platform::kCFMessagePortSendTimeout:
        return "the tweak at " + port + " takes no messages: it was not free within 1 second";
    case platform::kCFMessagePortReceiveTimeout:
        return "the tweak at " + port + " took the message and did not answer within 1 second";
    case platform::kCFMessagePortIsInvalid:
        return "no tweak answers on " + port + ": is lumora-tweak running?";
    case platform::kCFMessagePortBecameInvalidError:
        return "the tweak at " + port + " went away before it had answered";
    default:
        return "whoever holds " + port + " is not yours or does not speak the tweak's language";
    }
}

/// Why no answer has come on the port of that name.
std::string reasonOf(CFMessagePortResult result, const std::string& name) {
    const Result<void> usable = platform::checkPortsFolder(name);
    return usable ? explain(result, (platform::portsFolder() / name).string()) : usable.error();
}

CFMessagePortResult send(const std::string& name, const std::optional<Data>& body, Reply& reply) {
    return CFMessagePortSendRequest(*CFMessagePortCreateRemote(name), kMessageId, body, kSendTimeout, kReceiveTimeout,
                                    &reply);
}

Result<Reply> ask(const std::string& message, const std::optional<Data>& body) {
    const std::string name = portName(message);
    Reply reply;
    const CFMessagePortResult result = send(name, body, reply);
    if (result == platform::kCFMessagePortSuccess) return reply;
    return Result<Reply>::failure(reasonOf(result, name));
}

} // namespace

Result<std::optional<Value>> askOptional(const std::string& message, const Value& object) {
    using Asked = Result<std::optional<Value>>;
    const std::string name = portName(message);
    const auto body = object.isNil() ? std::nullopt : NSKeyedArchiver::archivedDataWithRootObject(messageWith(object));
    Reply reply;
    const CFMessagePortResult result = send(name, body, reply);
    if (result == platform::kCFMessagePortIsInvalid && platform::CFMessagePortIsServed(portName(kRequestTweakSettings)))
        return std::optional<Value>();
    if (result != platform::kCFMessagePortSuccess) return Asked::failure(reasonOf(result, name));
    if (!reply) return std::optional(Value());
    const Result<Value> read = NSKeyedUnarchiver::unarchive(*reply);
    if (!read) return Asked::failure("the tweak's answer is no keyed archive: " + read.error());
    return std::optional(read.value());
}

std::string whyNoTweakAnswers() {
    return reasonOf(platform::kCFMessagePortIsInvalid, portName(kRequestTweakSettings));
}

Value shownValue(const std::string& key, const Value& value) {
    return isSecure(key) && !value.isNil() && value != Value("") ? Value(kSecureDots) : value;
}

Result<Dictionary> fetchSettings() {
    const auto fail = [](std::string why) { return Result<Dictionary>::failure(std::move(why)); };
    const Result<Reply> reply = ask(kRequestTweakSettings, std::nullopt);
    if (!reply) return fail(reply.error());
    if (!reply.value()) return fail("the tweak answered without any settings");
    const Result<Value> read = NSKeyedUnarchiver::unarchive(*reply.value());
    if (!read) return fail("the tweak's answer is no keyed archive: " + read.error());
    const Dictionary* settings = read.value().dictionary();
    return settings ? Result<Dictionary>(*settings) : fail("the tweak's answer is no dictionary of settings");
}

Result<void> changeSetting(const std::string& key, const Value& value) {
    const auto fail = [](std::string why) { return Result<void>::failure(std::move(why)); };
    const auto body = NSKeyedArchiver::archivedDataWithRootObject(messageWith(changeOf(key, value)));
    if (!body) return fail("the value is nested too deeply, or too large, for an archive");
    const Result<Reply> reply = ask(kUpdateSettings, body);
    if (!reply) return fail(reply.error());
    if (!reply.value()) return {};
    const Value error = NSKeyedUnarchiver::unarchiveObjectWithData(*reply.value())[kErrorEntry];
    return error.text() ? fail(std::string(*error.text())) : Result<void>();
}

Result<std::optional<std::string>> tryChange(const std::string& key, const Value& value) {
    using Tried = Result<std::optional<std::string>>;
    const Result<void> changed = changeSetting(key, value);
    if (changed) return {std::nullopt};
    const Result<Dictionary> settings = fetchSettings();
    if (!settings) return Tried::failure(settings.error());
    const Value* const now = settings.value().find(key);
    return now && meansTheSame(*now, value) ? Tried(std::nullopt) : Tried(changed.error());
}

} // namespace lumora

#include "tweak/Tweak.h"

#include "link/Messages.h"
#include "tweak/Defaults.h"
#include "json/Json.h"

#include "platform/foundation/NSKeyedArchiver.h"

#include <algorithm>
#include <utility>

using platform::Data;
using platform::Dictionary;
using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

struct Change {
    std::string key;
    Value value;
};

Result<Change> readChange(const std::optional<Data>& body) {
    const auto refuse = [](std::string why) { return Result<Change>::failure(std::move(why)); };
    if (!body) return refuse("the message has no body");
    const Result<Value> root = NSKeyedUnarchiver::unarchive(*body);
    if (!root) return refuse("the message is no keyed archive: " + root.error());
    const Dictionary* message = root.value().dictionary();
    if (!message || message->size() != 1 || !message->contains(kObjectEntry))
        return refuse(R"(the message is not of the shape {"object": change})");
    const Value content = (*message)[kObjectEntry];
    const Dictionary* change = content.dictionary();
    if (!change || change->size() != 2 || !change->contains(kKeyEntry) || !change->contains(kObjectEntry))
        return refuse(R"(the change is not of the shape {"key": text, "object": value})");
    const Value key = (*change)[kKeyEntry];
    if (!key.text()) return refuse("the change's key is " + std::string(kindName(key.kind())) + ", not a text");
    return Change{std::string(*key.text()), (*change)[kObjectEntry]};
}

std::string shown(const Change& change) {
    constexpr std::size_t longest = 1000;
    if (isSecure(change.key)) return kSecureDots;
    const Result<std::string> json = writeJson(change.value, JsonLayout::line);
    return json && json.value().size() <= longest ? json.value() : std::string(kindName(change.value.kind()));
}

} // namespace

Tweak::Tweak(SettingsStore& store, Options options, Log log)
    : store_(store), options_(std::move(options)), log_(std::move(log)) {
    store.setObserver([this](std::int64_t revision, const std::string& key, const Value& value) {
        if (std::ranges::find(options_.omitted, key) == options_.omitted.end())
            followers_.changed(revision, key, value);
    });
}

Tweak::~Tweak() {
    store_.setObserver(nullptr);
}

Dictionary Tweak::answered() const {
    Dictionary settings = store_.settings();
    for (const std::string& key : options_.omitted)
        settings.remove(key);
    return settings;
}

std::optional<Data> Tweak::requestTweakSettings() const {
    const Dictionary settings = answered();
    if (options_.verbose)
        log_(std::string(kRequestTweakSettings) + ": " + std::to_string(settings.size()) + " settings");
    return NSKeyedArchiver::archivedDataWithRootObject(settings);
}

std::optional<Data> Tweak::updateSettings(const std::optional<Data>& body) {
    const Result<void> applied = applyChange(body);
    if (applied) return std::nullopt;
    log_(std::string(kUpdateSettings) + " refused: " + applied.error());
    return NSKeyedArchiver::archivedDataWithRootObject(Dictionary{{kErrorEntry, applied.error()}});
}

std::optional<Data> Tweak::followSettings(const std::optional<Data>& body, long sender) {
    const Value root = body ? NSKeyedUnarchiver::unarchiveObjectWithData(*body) : Value();
    const Value port = root[kObjectEntry][kPortEntry];
    const auto refuse = [&](const std::string& why) {
        log_(std::string(kFollowSettings) + " refused: " + why);
        return std::nullopt;
    };
    if (!port.text()) return refuse(R"(the message is not of the shape {"object": {"port": text}})");
    const std::string name(*port.text());
    if (!isFollowersPort(name, sender)) return refuse(inQuotes(name) + " is no port for a follower of that process");
    if (const auto added = followers_.add(name); !added) return refuse(added.error());
    if (options_.verbose) log_(std::string(kFollowSettings) + ": " + name);
    // In this order: what changes in between is told twice, not never.
    const std::int64_t revision = store_.revision();
    return NSKeyedArchiver::archivedDataWithRootObject(revisionOf(revision, answered()));
}

Result<void> Tweak::applyChange(const std::optional<Data>& body) {
    const Result<Change> read = readChange(body);
    if (!read) return Result<void>::failure(read.error());
    const Change& change = read.value();
    Result<void> changed = store_.change(change.key, change.value);
    if (changed && options_.verbose)
        log_(std::string(kUpdateSettings) + ": " + inQuotes(change.key) + " = " + shown(change));
    return changed;
}

} // namespace lumora

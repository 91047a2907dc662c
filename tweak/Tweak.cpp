#include "tweak/Tweak.h"

#include "history/ChangeRecord.h"
#include "link/Messages.h"
#include "tweak/Defaults.h"
#include "json/Json.h"

#include "platform/foundation/NSKeyedArchiver.h"

#include <algorithm>
#include <utility>

using platform::Data;
using platform::Dictionary;
using platform::List;
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
    if (isSecure(change.key) || mayBeSecret(change.key, change.value)) return kSecureDots;
    const Result<std::string> json = writeJson(change.value, JsonLayout::line);
    return json && json.value().size() <= longest ? json.value() : std::string(kindName(change.value.kind()));
}

} // namespace

Tweak::Tweak(SettingsStore& store, Options options, Log log, History* history)
    : store_(store), options_(std::move(options)), log_(std::move(log)), history_(history) {
    if (history_) {
        history_->catchUp(store_.changed());
        store_.countFrom(history_->revision());
    }
    store.setObserver([this](const KeptChange& change) {
        if (history_ && (!change.before || !meansTheSame(*change.before, change.value)))
            history_->record(change.revision, change.key, change.before ? std::optional(*change.before) : std::nullopt,
                             change.value);
        if (!isOmitted(change.key)) followers_.changed(change.revision, change.key, change.value);
    });
}

Tweak::~Tweak() {
    store_.setObserver(nullptr);
}

bool Tweak::isOmitted(const std::string& key) const {
    return std::ranges::find(options_.omitted, key) != options_.omitted.end();
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

std::optional<Data> Tweak::history(const std::optional<Data>& body) {
    const auto refuse = [&](const std::string& why) {
        log_(std::string(kHistory) + " refused: " + why);
        return std::nullopt;
    };
    if (!history_) return refuse("none is kept");
    const Value root = body ? NSKeyedUnarchiver::unarchiveObjectWithData(*body) : Value();
    const Value asked = root[kObjectEntry];
    const auto since = asked[kSinceEntry].integer();
    if (!since) return refuse(R"(the message is not of the shape {"object": {"since": integer}})");
    if (asked[kClearEntry] == Value(true))
        if (const auto cleared = history_->clear(); !cleared) return refuse(cleared.error());
    const Result<History::Part> part = history_->part(*since);
    if (!part) return refuse(part.error());
    List records;
    for (const ChangeRecord& record : part.value().records)
        if (!isOmitted(record.key)) records.emplace_back(documentOf(record));
    if (options_.verbose)
        log_(std::string(kHistory) + ": " + std::to_string(records.size()) + " records since " +
             std::to_string(*since));
    return NSKeyedArchiver::archivedDataWithRootObject(Dictionary{
        {kRevisionEntry, part.value().upTo}, {kRecordsEntry, std::move(records)}, {kMoreEntry, part.value().more}});
}

std::optional<Data> Tweak::defaults() const {
    Dictionary defaults;
    for (const Setting& setting : knownSettings())
        if (!setting.secure && !isOmitted(setting.key)) defaults.set(setting.key, setting.byDefault);
    if (options_.verbose) log_(std::string(kDefaults) + ": " + std::to_string(defaults.size()) + " settings");
    return NSKeyedArchiver::archivedDataWithRootObject(defaults);
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

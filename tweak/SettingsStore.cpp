#include "tweak/SettingsStore.h"

#include "link/Messages.h"
#include "tweak/Defaults.h"
#include "tweak/Log.h"

#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/foundation/PropertyList.h"
#include "platform/messaging/CFMessagePort.h"

#include <algorithm>
#include <utility>

using platform::Data;
using platform::Dictionary;
using platform::NSKeyedArchiver;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

/// Switches, numbers and colours, which take a few bytes each. There are only so many of them as long as no keys are
/// added but the tweak's own.
bool isSmall(const std::string& key, const Value& value, const Dictionary& changed) {
    const Setting* setting = findSetting(key);
    if (setting && value.dictionary()) return true;
    return (setting || changed.contains(key)) && (value.boolean() || value.isNumber());
}

/// The entries whose values their settings can have, with a line in the log for each of the others.
Dictionary fitting(const Dictionary& stored, const std::filesystem::path& path, const Log& log) {
    Dictionary fits;
    for (const auto& [key, value] : stored) {
        const Setting* setting = findSetting(key);
        const Result<void> allowed = setting ? canHave(*setting, value) : Result<void>();
        if (allowed) {
            fits.set(key, value);
        } else {
            log(path.string() + ": " + key + " " + allowed.error() + ": its default stands in");
        }
    }
    return fits;
}

Result<Dictionary> settingsIn(const std::optional<Data>& bytes) {
    if (!bytes) return Dictionary();
    const Result<Value> read = platform::readPropertyList(*bytes);
    if (!read) return Result<Dictionary>::failure(read.error());
    const Dictionary* settings = read.value().dictionary();
    if (!settings) {
        return Result<Dictionary>::failure("it holds " + std::string(kindName(read.value().kind())) +
                                           " in place of a dictionary");
    }
    return *settings;
}

/// Whether a value can be told as deep in a message as any has it: one to a follower, or a record of the history.
bool canBeTold(const std::string& key, const Value& value) {
    const Dictionary told = messageWith(revisionOf(0, Dictionary{{key, value}}));
    return NSKeyedArchiver::archivedDataWithRootObject(told).has_value();
}

/// Whether the settings fit into the answer to a page. A page can read everything that can be written.
bool fitsAnAnswer(const Dictionary& changed) {
    const std::optional<Data> answer = NSKeyedArchiver::archivedDataWithRootObject(withDefaults(changed));
    return answer && static_cast<std::int64_t>(answer->size()) <= platform::kMaximumMessageBody;
}

} // namespace

Result<std::unique_ptr<SettingsStore>> SettingsStore::open(const std::filesystem::path& path, const Log& log) {
    using Opened = Result<std::unique_ptr<SettingsStore>>;
    Result<std::unique_ptr<SettingsFile>> opened = SettingsFile::open(path, log);
    if (!opened) return Opened::failure(opened.error());
    std::unique_ptr<SettingsFile> file = std::move(opened).value();

    const auto cannotRead = [&](const std::string& why) {
        return Opened::failure("cannot read " + file->path().string() + ": " + why);
    };
    Result<std::optional<Data>> bytes = file->read();
    // The file may be sound, and only this process short of descriptors.
    if (!bytes) return cannotRead(bytes.error());
    Result<Dictionary> stored = settingsIn(bytes.value());
    while (!stored) {
        const std::string unusable = file->path().string() + " holds no settings (" + stored.error() + ")";
        const Result<std::filesystem::path> aside = file->setAside();
        if (!aside) return Opened::failure(unusable + " and cannot be set aside: " + aside.error());
        const std::string isAside = unusable + ": it is set aside as " + aside.value().string();
        bytes = file->read();
        log(isAside + (!bytes ? "" : bytes.value() ? ", those before stand in" : ", defaults stand in"));
        if (!bytes) return cannotRead(bytes.error());
        stored = settingsIn(bytes.value());
    }
    file->settle();
    Dictionary changed = fitting(stored.value(), file->path(), log);
    const std::size_t size = bytes.value() ? bytes.value()->size() : 0;
    return std::unique_ptr<SettingsStore>(new SettingsStore(std::move(file), std::move(changed), size));
}

SettingsStore::SettingsStore(std::unique_ptr<SettingsFile> file, Dictionary changed, std::size_t size)
    : file_(std::move(file)), size_(size), changed_(std::move(changed)) {
}

Dictionary SettingsStore::settings() const {
    const std::lock_guard held(state_);
    return withDefaults(changed_);
}

Dictionary SettingsStore::changed() const {
    const std::lock_guard held(state_);
    return changed_;
}

void SettingsStore::countFrom(std::int64_t revision) {
    const std::lock_guard held(state_);
    revision_ = revision;
}

std::int64_t SettingsStore::revision() const {
    const std::lock_guard held(state_);
    return revision_;
}

Result<void> SettingsStore::change(const std::string& key, const Value& value) {
    const auto refuse = [](std::string why) { return Result<void>::failure(std::move(why)); };
    if (value.isNil()) return refuse(inQuotes(key) + " cannot be nil");
    if (const Setting* setting = findSetting(key))
        if (const auto allowed = canHave(*setting, value); !allowed) return refuse(key + " " + allowed.error());

    const std::lock_guard held(changing_);
    Dictionary changed = changed_;
    changed.set(key, value);
    const Result<Data> bytes = platform::writePropertyList(changed);
    if (!bytes) return refuse(inQuotes(key) + " cannot be kept: " + bytes.error());
    const std::size_t largest = std::max(kLargestSettings, size_);
    if (bytes.value().size() > largest && !isSmall(key, value, changed_))
        return refuse(inQuotes(key) + " cannot be kept: the settings would take more than " +
                      std::to_string(largest >> 20U) + " MiB");
    if (!canBeTold(key, value)) return refuse(inQuotes(key) + " cannot be kept: no message could tell it");
    if (!fitsAnAnswer(changed))
        return refuse(inQuotes(key) + " cannot be kept: the settings would not fit into one answer any more");
    Result<void> kept = file_->replace(bytes.value());
    if (!kept) return kept;
    size_ = bytes.value().size();
    {
        const std::lock_guard told(state_);
        std::swap(changed_, changed); // what was set before is for the observer
        ++revision_;
    }
    if (observer_) observer_({revision_, key, changed.find(key), value});
    return {};
}

} // namespace lumora

#include "tools/lumoractl/Past.h"

#include "tools/lumoractl/Ending.h"
#include "tools/lumoractl/TweakClient.h"

#include "link/Messages.h"
#include "tweak/Defaults.h"
#include "json/Json.h"

#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <charconv>
#include <utility>

using platform::Dictionary;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

/// In bytes; longer values are cut.
constexpr std::size_t kShortText = 60;

std::string cut(std::string text) {
    if (text.size() <= kShortText) return text;
    std::size_t end = kShortText;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) // not within a character
        --end;
    return text.substr(0, end) + "…";
}

Result<std::optional<Value>> askForHistory(const Dictionary& object) {
    auto asked = askOptional(kHistory, object);
    const bool isRefused = asked && asked.value() && !(*asked.value())[kRecordsEntry].list();
    return isRefused ? Result<std::optional<Value>>::failure("the tweak refuses to tell its history") : asked;
}

} // namespace

Result<std::optional<std::vector<ChangeRecord>>> fetchHistory() {
    using Fetched = Result<std::optional<std::vector<ChangeRecord>>>;
    std::vector<ChangeRecord> records;
    std::int64_t since = 0;
    while (true) {
        const auto asked = askForHistory(Dictionary{{kSinceEntry, since}});
        if (!asked) return Fetched::failure(asked.error());
        if (!asked.value()) return {std::nullopt};
        const Value& answer = *asked.value();
        for (const Value& document : *answer[kRecordsEntry].list()) {
            Result<ChangeRecord> record = recordOf(document);
            if (!record) return Fetched::failure("the tweak's history is not understood: " + record.error());
            // One that has come before may have grown meanwhile.
            while (!records.empty() && records.back().revision >= record.value().first)
                records.pop_back();
            records.push_back(std::move(record).value());
        }
        const std::int64_t upTo = answer[kRevisionEntry].integer().value_or(0);
        if (!answer[kMoreEntry].boolValue() || upTo <= since) return {std::move(records)};
        since = upTo;
    }
}

Result<bool> clearHistory() {
    const auto asked = askForHistory(Dictionary{{kSinceEntry, 0}, {kClearEntry, true}});
    if (!asked) return Result<bool>::failure(asked.error());
    return asked.value().has_value();
}

Result<std::optional<Dictionary>> fetchDefaults() {
    using Fetched = Result<std::optional<Dictionary>>;
    const auto asked = askOptional(kDefaults);
    if (!asked) return Fetched::failure(asked.error());
    if (!asked.value()) return {std::nullopt};
    const Dictionary* defaults = asked.value()->dictionary();
    return defaults ? Fetched(*defaults) : Fetched::failure("the tweak's answer is no dictionary of defaults");
}

Result<std::optional<Past>> fetchPast() {
    using Fetched = Result<std::optional<Past>>;
    auto records = fetchHistory();
    if (!records) return Fetched::failure(records.error());
    if (!records.value()) return {std::nullopt};
    const auto defaults = fetchDefaults();
    if (!defaults) return Fetched::failure(defaults.error());
    const auto settings = fetchSettings();
    if (!settings) return Fetched::failure(settings.error());
    const Dictionary known = defaults.value().value_or(Dictionary());
    return Fetched(Past{Timeline(std::move(records).value().value(), settings.value(), known), known,
                        defaults.value().has_value()});
}

Moment momentNow() {
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

Result<Landmark> readLandmark(const std::string& text) {
    std::int64_t revision = 0;
    const char* const end = text.data() + text.size();
    if (const auto read = std::from_chars(text.data(), end, revision); read.ec == std::errc() && read.ptr == end)
        return Landmark{{}, revision};
    const Result<Moment> moment = readMoment(text, momentNow());
    return moment ? Landmark{moment.value(), std::nullopt} : Result<Landmark>::failure(moment.error());
}

Result<std::size_t> placeOf(const Timeline& timeline, const Landmark& landmark) {
    using Found = Result<std::size_t>;
    const auto& records = timeline.records();
    if (records.empty()) return Found::failure("no change is recorded");
    if (landmark.revision) {
        const auto record = timeline.recordOfRevision(*landmark.revision);
        if (record) return *record + 1;
        return Found::failure("no change of revision " + std::to_string(*landmark.revision) + " is recorded");
    }
    if (landmark.moment > momentNow()) return Found::failure(localTimeOf(landmark.moment) + " is still to come");
    const std::size_t place = timeline.placeOf(landmark.moment);
    if (place == 0)
        complain("what has changed before " + localTimeOf(records.front().time) +
                 " is not known: these are the settings as they were then");
    return place;
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : " ") + word;
    return text;
}

std::string shortText(const std::string& key, const std::optional<Value>& value) {
    if (!value) return "not set";
    const auto json = writeJson(shownValue(key, *value), JsonLayout::line);
    return cut(json ? json.value() : std::string(kindName(value->kind())));
}

std::string changeText(const ChangeRecord& record) {
    const std::string key = platform::printable(record.key) + ": ";
    if (record.withheld == Withheld::secure) return key + "changed";
    if (record.withheld == Withheld::large) return key + "changed, too long to be kept";
    return key + shortText(record.key, record.before) + " → " + shortText(record.key, record.after);
}

int carryOut(const std::vector<Intent>& intents, bool onlyTold) {
    int status = kDone;
    for (const auto& [key, before, after] : intents) {
        const Result<void> changed = onlyTold ? Result<void>() : changeSetting(key, after);
        if (!changed) {
            status = report(changed.error());
        } else if (print(platform::printable(key) + ": " + shortText(key, before) + " → " + shortText(key, after) +
                         "\n") != kDone) {
            return kFailed;
        }
    }
    return status;
}

} // namespace lumora

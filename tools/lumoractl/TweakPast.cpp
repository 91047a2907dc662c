#include "tools/lumoractl/TweakPast.h"

#include "tools/lumoractl/TweakClient.h"

#include "link/Messages.h"

#include <utility>

using platform::Dictionary;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

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

} // namespace lumora

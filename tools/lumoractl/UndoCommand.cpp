#include "tools/lumoractl/Ending.h"
#include "tools/lumoractl/Past.h"
#include "tools/lumoractl/PastCommands.h"

#include "json/Json.h"

#include <charconv>
#include <cstdint>

using platform::Result;
using platform::Value;

namespace lumora {
namespace {

/// A revision, or -N. Fails for what is neither.
Result<std::int64_t> numberOf(const std::string& change) {
    if (change.empty()) return std::int64_t{-1};
    std::int64_t number = 0;
    const char* const end = change.data() + change.size();
    const auto read = std::from_chars(change.data(), end, number);
    if (read.ec == std::errc() && read.ptr == end && number != 0) return number;
    return Result<std::int64_t>::failure("\"" + change + "\" is neither the revision of a change nor -1, -2 and so on");
}

Result<std::size_t> meantRecord(const Timeline& timeline, std::int64_t number) {
    using Found = Result<std::size_t>;
    const std::size_t count = timeline.records().size();
    if (count == 0) return Found::failure("no change is recorded");
    if (number < 0) {
        const auto back = static_cast<std::size_t>(-(number + 1));
        return back < count ? Found(count - 1 - back)
                            : Found::failure("fewer changes are recorded: " + std::to_string(count));
    }
    const auto record = timeline.recordOfRevision(number);
    return record ? Found(*record) : Found::failure("no change of revision " + std::to_string(number) + " is recorded");
}

/// One word for a shell, whatever is in it.
std::string quoted(const std::string& word) {
    std::string text = "'";
    for (const char letter : word)
        text += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
    return text + "'";
}

/// How a person could set it by hand.
std::string commandFor(const std::string& key, const Value& value) {
    const auto json = writeJson(value, JsonLayout::line);
    const bool isPlain =
        key.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-_") == std::string::npos;
    return json ? "lumoractl set " + (isPlain ? key : quoted(key)) + " " + quoted(json.value()) : "";
}

} // namespace

int undoChange(const std::string& change) {
    const Result<std::int64_t> number = numberOf(change);
    if (!number) return report(number.error(), kWrongUse);
    const auto fetched = fetchPast();
    if (!fetched) return report(fetched.error());
    if (!fetched.value()) return report(kNoHistory, kNotOffered);
    const Past& past = *fetched.value();
    const Timeline& timeline = past.timeline;
    const Result<std::size_t> meant = meantRecord(timeline, number.value());
    if (!meant) return report(meant.error());
    const ChangeRecord& record = timeline.records()[meant.value()];
    if (record.withheld != Withheld::nothing)
        return report(record.key + " has changed, but its values are not kept: it cannot be taken back");

    const Value* before = record.before ? &*record.before : past.defaults.find(record.key);
    if (!before && !past.tellsDefaults)
        return report(record.key + " was not set, and no message takes a setting away; " + kNoDefaults, kNotOffered);
    if (!before) return report(record.key + " was not set, and no message takes a setting away");
    if (const auto later = timeline.nextOfKey(meant.value())) {
        const ChangeRecord& next = timeline.records()[*later];
        return report(record.key + " has been changed again since, by " + std::to_string(next.revision) + " (" +
                      changeText(next) + "): to set it back nevertheless, " + commandFor(record.key, *before));
    }
    const Value* now = timeline.present().find(record.key);
    if (now && *now == *before) return report(record.key + " has that value already", kDone);
    const Value* after = record.after ? &*record.after : past.defaults.find(record.key);
    if (after ? !now || !(*now == *after) : now != nullptr)
        return report(record.key + " has another value since, which is not recorded: to set it back nevertheless, " +
                      commandFor(record.key, *before));
    return carryOut({{record.key, record.after, *before}}, false);
}

} // namespace lumora

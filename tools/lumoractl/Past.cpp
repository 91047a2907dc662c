#include "tools/lumoractl/Past.h"

#include "tools/lumoractl/Ending.h"
#include "tools/lumoractl/TweakClient.h"

#include "tweak/Defaults.h"
#include "json/Json.h"

#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <charconv>
#include <utility>

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

} // namespace

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
        const auto tried = onlyTold ? Result<std::optional<std::string>>(std::nullopt) : tryChange(key, after);
        if (!tried) return report(tried.error());
        if (tried.value()) {
            status = report(*tried.value());
        } else if (print(platform::printable(key) + ": " + shortText(key, before) + " → " + shortText(key, after) +
                         "\n") != kDone) {
            return kFailed;
        }
    }
    return status;
}

} // namespace lumora

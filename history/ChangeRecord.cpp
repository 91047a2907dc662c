#include "history/ChangeRecord.h"

#include "history/PlainLine.h"
#include "json/Json.h"

#include <utility>

using platform::Dictionary;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

constexpr const char* kRevision = "revision";
constexpr const char* kFirst = "first";
constexpr const char* kTime = "time";
constexpr const char* kKey = "key";
constexpr const char* kOld = "old";
constexpr const char* kNew = "new";
constexpr const char* kWithheld = "withheld";
constexpr std::string_view kLineBegin = R"({"revision":)";

/// So that many more can be counted on from any record.
constexpr std::int64_t kLargestRevision = std::int64_t{1} << 53U;

const char* nameOf(Withheld withheld) {
    return withheld == Withheld::secure ? "secure" : "large";
}

/// What a line without its end holds.
std::optional<ChangeRecord> recordIn(std::string_view line) {
    if (auto plain = readPlainLine(line)) return plain;
    const Result<Value> value = readJson(line);
    if (!value) return std::nullopt;
    Result<ChangeRecord> record = recordOf(value.value());
    return record ? std::optional(std::move(record).value()) : std::nullopt;
}

} // namespace

bool isPossible(const ChangeRecord& record) {
    return record.first >= 1 && record.first <= record.revision && record.revision <= kLargestRevision;
}

Dictionary documentOf(const ChangeRecord& record) {
    std::vector<Dictionary::Entry> entries;
    entries.reserve(7);
    entries.emplace_back(kRevision, record.revision);
    if (record.first != record.revision) entries.emplace_back(kFirst, record.first);
    entries.emplace_back(kTime, timestampOf(record.time));
    entries.emplace_back(kKey, record.key);
    if (record.before) entries.emplace_back(kOld, *record.before);
    if (record.after) entries.emplace_back(kNew, *record.after);
    if (record.withheld != Withheld::nothing) entries.emplace_back(kWithheld, nameOf(record.withheld));
    return Dictionary(std::move(entries));
}

Result<ChangeRecord> recordOf(const Value& document) {
    const auto fail = [](const char* why) { return Result<ChangeRecord>::failure(why); };
    const Dictionary* entries = document.dictionary();
    if (!entries) return fail("a record is a dictionary");
    ChangeRecord record;
    record.revision = (*entries)[kRevision].integer().value_or(0);
    const Value* first = entries->find(kFirst);
    record.first = first ? first->integer().value_or(0) : record.revision;
    if (!isPossible(record)) return fail("a record has a revision");

    const Value time = (*entries)[kTime];
    const auto moment = time.text() ? momentOf(*time.text()) : std::nullopt;
    if (!moment) return fail("a record has a time");
    record.time = *moment;
    const Value key = (*entries)[kKey];
    if (!key.text()) return fail("a record has a key");
    record.key = *key.text();

    if (const Value* old = entries->find(kOld)) record.before = *old;
    if (const Value* now = entries->find(kNew)) record.after = *now;
    if (const Value* withheld = entries->find(kWithheld)) {
        if (record.before || record.after) return fail("a record withholds its values or has them");
        record.withheld = *withheld == Value("secure") ? Withheld::secure : Withheld::large;
    }
    if ((record.before && record.before->isNil()) || (record.after && record.after->isNil()))
        return fail("no setting is nil");
    return record;
}

Result<std::string> lineOf(const ChangeRecord& record) {
    const Result<std::string> json = writeJson(documentOf(record), JsonLayout::line);
    return json ? Result<std::string>(json.value() + "\n") : json;
}

RecordsRead readRecords(std::string_view text) {
    RecordsRead read;
    while (true) {
        const std::size_t end = text.find('\n', read.whole);
        if (end == std::string_view::npos) return read;
        const RecordsRead::Place place{read.whole, end + 1 - read.whole};
        read.whole = end + 1;
        if (place.size == 1) continue;
        std::optional<ChangeRecord> record = recordIn(text.substr(place.begin, place.size - 1));
        if (!record) {
            ++read.foreign;
            continue;
        }
        while (!read.records.empty() && read.records.back().revision >= record->first &&
               read.records.back().key == record->key) {
            read.records.pop_back();
            read.places.pop_back();
        }
        if (!read.records.empty() && read.records.back().revision >= record->first) {
            ++read.foreign;
            continue;
        }
        read.records.push_back(*std::move(record));
        read.places.push_back(place);
    }
}

bool isTornLine(std::string_view bytes) {
    return bytes.starts_with(kLineBegin) || kLineBegin.starts_with(bytes);
}

} // namespace lumora

// Any bytes are a history, of which some lines are records: each can be written, and what is written reads as the same
// again. The settings of such a history are reckoned back and forth to the same.

#include "Fuzzer.h"

#include "history/PlainLine.h"
#include "history/Timeline.h"
#include "json/Json.h"

using fuzz::require;
using lumora::ChangeRecord;
using platform::Dictionary;

namespace {

/// Equal unless a value in it is not even equal to itself.
bool isSame(const Dictionary& one, const Dictionary& other) {
    return one == other || !(one == one); // NOLINT(misc-redundant-expression): not a number
}

/// What is read as a plain line is the same as JSON.
void requireSameWithoutShortCut(std::string_view line) {
    const auto plain = lumora::readPlainLine(line);
    if (!plain) return;
    const auto value = lumora::readJson(line);
    require(bool(value));
    const auto record = lumora::recordOf(value.value());
    require(record && record.value() == *plain);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzz::textOf(bytes, size);
    const lumora::RecordsRead read = lumora::readRecords(text);
    require(read.whole <= size && read.places.size() == read.records.size());
    require(text.substr(read.whole).find('\n') == std::string_view::npos);
    if (read.records.empty()) return 0;
    ++fuzz::taken;

    std::string written;
    std::int64_t revision = 0;
    Dictionary present;
    for (std::size_t i = 0; i < read.records.size(); ++i) {
        const ChangeRecord& record = read.records[i];
        require(record.first > revision && record.revision >= record.first);
        revision = record.revision;
        const auto [begin, length] = read.places[i];
        require(lumora::readRecords(text.substr(begin, length)).records.size() == 1);
        requireSameWithoutShortCut(text.substr(begin, length - 1));
        const auto line = lumora::lineOf(record);
        require(bool(line));
        written += line.value();
        if (record.after)
            present.set(record.key, *record.after);
        else
            present.remove(record.key);
    }
    const lumora::RecordsRead again = lumora::readRecords(written);
    require(again.foreign == 0 && again.records.size() == read.records.size());

    const lumora::Timeline timeline(read.records, present, {});
    lumora::TimelineCursor cursor(timeline);
    for (const std::size_t place : {std::size_t{0}, read.records.size() / 2, read.records.size()}) {
        cursor.moveTo(place);
        require(isSame(cursor.settings(), timeline.at(place)));
    }
    require(isSame(cursor.settings(), present));
    return 0;
}

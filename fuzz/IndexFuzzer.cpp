// Any text is a line of an index or is not; a line can be written, and what is written reads as the same again. A search
// of what such a line tells finds parts of titles that are there, and finds each title by itself.

#include "Fuzzer.h"

#include "search/Folding.h"
#include "search/PageLine.h"
#include "search/Search.h"

using fuzz::require;

namespace {

/// In UTF-16 units.
std::size_t lengthOf(const std::string& title) {
    const auto places = search::foldWithPlaces(title);
    return places.ends.empty() ? 0 : places.ends.back();
}

void requireParts(const std::vector<search::Range>& parts, std::size_t length) {
    std::size_t end = 0;
    for (const search::Range& part : parts) {
        require(part.begin >= end && part.begin + part.length <= length);
        end = part.begin + part.length;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto line = search::readPageLine(fuzz::textOf(bytes, size));
    require(line || !line.error().empty());
    if (!line) return 0;
    ++fuzz::taken;

    const auto written = search::writePageLine(line.value());
    require(bool(written));
    const auto again = search::readPageLine(written.value());
    require(again && again.value().way == line.value().way && again.value().page == line.value().page &&
            again.value().entries == line.value().entries);

    search::PageLine page = line.value();
    page.way = {};
    const search::Index index = search::indexOf({page});
    for (const search::Entry& entry : page.entries) {
        // The text of another field, as a person might type it.
        for (const std::string& query : {entry.title, entry.name, entry.identifier, entry.placeholder + "x"}) {
            const auto hits = search::find(index, query, page.entries.size());
            for (const search::Hit& hit : hits)
                requireParts(hit.title, lengthOf(index.entries()[hit.entry].title));
            const bool sought = query == entry.title && query.size() <= 4096;
            bool found = !sought || search::wordsOf(search::fold(query)).empty();
            for (const search::Hit& hit : hits)
                found = found || (!hit.similar && index.entries()[hit.entry].title == entry.title);
            require(found);
        }
    }
    return 0;
}

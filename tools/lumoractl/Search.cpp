#include "tools/lumoractl/Search.h"

#include "tools/lumoractl/PageIndex.h"

#include "platform/foundation/Unicode.h"
#include "search/Search.h"

using platform::Dictionary;
using platform::List;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

constexpr const char* kBetweenTitles = " \u203A ";

Dictionary documentOf(const search::Index& index, const search::Hit& hit) {
    const search::Entry& entry = index.entries()[hit.entry];
    List path;
    for (const std::size_t page : index.wayTo(entry.page))
        path.emplace_back(index.pages()[page].title);
    Dictionary document{{"title", entry.title},
                        {"path", std::move(path)},
                        {"page", index.pages()[entry.page].pageClass},
                        {"kind", nameOf(entry.kind)},
                        {"row", static_cast<std::int64_t>(entry.row)}};
    if (entry.section >= 0) document.set("section", std::int64_t{entry.section});
    if (!entry.identifier.empty()) document.set("identifier", entry.identifier);
    if (!entry.key.empty()) document.set("key", entry.key);
    if (!hit.also.empty()) document.set("also", hit.also);
    if (!entry.chosenBy.empty()) document.set("chosenBy", List(entry.chosenBy.begin(), entry.chosenBy.end()));
    if (hit.similar) document.set("similar", true);
    return document;
}

std::string printableTextOf(const Value& value) {
    return value.text() ? platform::printable(*value.text()) : std::string();
}

} // namespace

Result<List> searchSettings(const std::string& words, const std::filesystem::path& root, std::size_t most) {
    const Result<search::Index> index = currentIndex(root);
    if (!index) return Result<List>::failure(index.error());
    List results;
    for (const search::Hit& hit : search::find(index.value(), words, most))
        results.emplace_back(documentOf(index.value(), hit));
    return results;
}

std::string resultLines(const List& results) {
    std::string lines;
    for (const Value& result : results) {
        const Value path = result["path"];
        for (const Value& title : path.list() ? *path.list() : List())
            lines += printableTextOf(title) + kBetweenTitles;
        lines += printableTextOf(result["title"]);
        if (const std::string also = printableTextOf(result["also"]); !also.empty()) lines += "  (also: " + also + ")";
        if (!result["chosenBy"].isNil()) lines += "  (while it is chosen)";
        lines += "\n";
    }
    return lines;
}

} // namespace lumora

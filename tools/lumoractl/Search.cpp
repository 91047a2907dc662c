#include "tools/lumoractl/Search.h"

#include "tools/lumoractl/Streams.h"

#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/Unicode.h"
#include "search/IndexChild.h"
#include "search/IndexFile.h"
#include "search/Search.h"

#include <optional>

using platform::Dictionary;
using platform::List;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

constexpr const char* kBetweenTitles = " \u203A ";

Result<search::Index> currentIndex(const std::filesystem::path& root) {
    using Found = Result<search::Index>;
    search::IndexOrder order;
    order.root = root;
    order.bundle = platform::standardBundle();
    auto kept = search::readIndex(search::indexFile(), stampOf(sourcesOf(order)));
    if (kept && kept->current) return std::move(kept->index);
    Result<search::MadeIndex> made = search::makeAndKeepIndex(order);
    if (!made && !kept) return Found::failure("there is no index of the pages: " + made.error());
    if (!made) {
        complain("the index of the pages is out of date: " + made.error());
        return std::move(kept->index);
    }
    for (const std::string& missing : made.value().missing)
        complain("left out: " + missing);
    return std::move(made).value().index;
}

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
        lines += "\n";
    }
    return lines;
}

} // namespace lumora

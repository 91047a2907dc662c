#include "search/Index.h"

#include "search/FoldedTexts.h"

#include <algorithm>
#include <utility>

namespace search {

Index::Index() : Index({}, {}) {
}

Index::Index(std::vector<Page> pages, std::vector<Entry> entries) {
    auto folded = std::make_shared<const FoldedTexts>(foldAll(pages, entries));
    contents_ = std::make_shared<const Contents>(Contents{std::move(pages), std::move(entries), std::move(folded)});
}

bool Index::holds(const std::vector<Page>& pages, const std::vector<Entry>& entries) {
    for (std::size_t i = 0; i < pages.size(); ++i)
        if (pages[i].from && *pages[i].from >= i) return false;
    return std::ranges::all_of(entries, [&](const Entry& entry) { return entry.page < pages.size(); });
}

std::vector<std::size_t> Index::wayTo(std::size_t page) const {
    std::vector<std::size_t> way;
    for (std::optional<std::size_t> at = page; at; at = pages()[*at].from)
        way.push_back(*at);
    std::ranges::reverse(way);
    return way;
}

} // namespace search

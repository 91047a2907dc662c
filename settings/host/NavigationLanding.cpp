// How a navigation goes to a row that is known from elsewhere.
#include "platform/preferences/PSSpecifier.h"
#include "settings/host/Navigation.h"
#include "settings/host/SnapshotOf.h"

#include <algorithm>
#include <limits>

namespace settings {

using namespace platform;

namespace {

/// What a person knows a row of a page by: for a row without a name its placeholder, or the static text above it.
std::string titleOfRow(const std::vector<RowSnapshot>& rows, std::size_t position) {
    const RowSnapshot& row = rows[position];
    if (!row.name.empty()) return row.name;
    if (!row.placeholder.empty()) return row.placeholder;
    for (std::size_t above = position; above-- > 0 && rows[above].cell != PSGroupCell;)
        if (rows[above].cell == PSStaticTextCell) return rows[above].name;
    return {};
}

/// The place of a known row among others; nothing when it has gone.
template<class Rows, class Identifier, class Title>
std::optional<std::size_t> placeAmong(const Rows& rows, const KnownRow& known, const Identifier& identifierOf,
                                      const Title& titleOf) {
    const auto hasIdentifier = [&](std::size_t at) {
        return !known.identifier.empty() && identifierOf(at) == known.identifier;
    };
    const auto hasTitle = [&](std::size_t at) { return !known.title.empty() && titleOf(at) == known.title; };
    const auto isSame = [&](std::size_t at) {
        return identifierOf(at) == known.identifier && titleOf(at) == known.title;
    };
    const auto first = [&](const auto& matches) -> std::optional<std::size_t> {
        for (std::size_t at = 0; at < rows.size(); ++at)
            if (matches(at)) return at;
        return std::nullopt;
    };
    if (known.position < rows.size() && isSame(known.position)) return known.position;
    if (known.identifier.empty() && known.title.empty()) return std::nullopt;
    if (const auto both = first(isSame)) return both;
    if (const auto identified = first(hasIdentifier)) return identified;
    return first(hasTitle);
}

std::optional<std::size_t> placeOf(const KnownRow& known, const std::vector<RowSnapshot>& rows) {
    return placeAmong(
        rows, known, [&](std::size_t at) { return rows[at].cell == PSGroupCell ? std::string() : rows[at].identifier; },
        [&](std::size_t at) { return rows[at].cell == PSGroupCell ? std::string() : titleOfRow(rows, at); });
}

/// Whether the page was opened by that link.
bool isBehind(PSListController& page, Class pageClass, const KnownLink& link) {
    const PSSpecifierRef& opener = page.specifier();
    return opener && pageClass->name == link.pageClass && opener->name() == link.row.title;
}

/// What is known of the row at that place of a table by its cell.
KnownRow rowAtPlace(UITableView& table, std::size_t place) {
    const auto cell = table.cellForRowAtIndexPath(table.layout().pathOf(static_cast<int>(place)));
    if (!cell) return {place};
    const std::string& identifier = cell->detailTextLabel().text();
    const std::string& title = cell->textLabel().text();
    return {place, identifier, title.empty() ? identifier : title};
}

/// Brings a known row of a table into the middle of the view. Makes all cells only where that row has left its place.
std::optional<std::size_t> scrollTo(UITableView& table, int section, const KnownRow& known) {
    table.layoutIfNeeded();
    const TableLayout& layout = table.layout();
    const NSIndexPath before{section, static_cast<int>(known.position)};
    const auto total = static_cast<std::size_t>(layout.rowTotal());
    KnownRow sought{layout.hasRow(before) ? static_cast<std::size_t>(layout.placeOf(before)) : total, known.identifier,
                    known.title};
    table.scrollToRowAtIndexPath(before, UITableViewScrollPositionMiddle, false);
    if (sought.position < total && rowAtPlace(table, sought.position) == sought) return sought.position;
    table.setViewport(0, std::numeric_limits<double>::infinity());
    std::vector<KnownRow> rows;
    for (std::size_t place = 0; place < total; ++place)
        rows.push_back(rowAtPlace(table, place));
    const auto found = placeAmong(
        rows, sought, [&](std::size_t at) { return rows[at].identifier; },
        [&](std::size_t at) { return rows[at].title; });
    table.setViewport(0, table.frame().size.height); // the window tells which part it shows
    if (found)
        table.scrollToRowAtIndexPath(layout.pathOf(static_cast<int>(*found)), UITableViewScrollPositionMiddle, false);
    return found;
}

} // namespace

KnownRow knownRow(const std::vector<RowSnapshot>& rows, std::size_t position) {
    return {position, rows[position].identifier, titleOfRow(rows, position)};
}

Landed Navigation::land(const Landing& landing) {
    if (pages_.empty()) return {0, {}, true};
    if (pages_.back().controller->presentedViewController()) return {pages_.back().id, {}, true};
    std::size_t open = 0; // of the way, how many pages are open already
    while (open < landing.way.size() && open + 1 < pages_.size() &&
           isBehind(*pages_[open + 1].controller, pages_[open + 1].pageClass, landing.way[open]))
        ++open;
    while (pages_.size() > open + 1)
        if (!goBack()) return {pages_.back().id, {}, true};
    for (; open < landing.way.size(); ++open)
        if (!follow(landing.way[open])) return {pages_.back().id, {}, true};
    return landOn(landing);
}

/// Opens what a link of the page on top leads to.
bool Navigation::follow(const KnownLink& link) {
    const OpenPage& page = pages_.back();
    const auto row = placeOf(link.row, page.snapshot->rows);
    if (!row || page.snapshot->rows[*row].detail != link.pageClass) return false;
    const std::size_t depth = pages_.size();
    handle(page.id, RowTapped{*row});
    return pages_.size() > depth;
}

Landed Navigation::landOn(const Landing& landing) {
    OpenPage& page = pages_.back();
    if (!landing.row) return {page.id, {}, false};
    std::optional<std::size_t> row;
    if (UITableView* table = tableOf(*page.controller)) {
        row = scrollTo(*table, landing.section, *landing.row);
        refresh(page);
    } else {
        row = placeOf(*landing.row, page.snapshot->rows);
    }
    return {page.id, row, !row};
}

} // namespace settings

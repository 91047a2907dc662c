#include "platform/ui/TableLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace platform {

namespace {

double emptyHeight(const TableSection& section) {
    return section.rowCount == 0 ? section.emptyHeight : 0;
}

} // namespace

bool TableLayout::hasRow(NSIndexPath path) const {
    return hasSection(path.section) && path.row >= 0 && path.row < section(path.section).rowCount;
}

void TableLayout::setHeights(int number, double header, double footer) {
    at(number).headerHeight = header;
    at(number).footerHeight = footer;
}

double TableLayout::sectionTop(int number) const {
    double top = 0;
    for (int i = 0; i < number; ++i)
        top += section(i).headerHeight + section(i).rowCount * section(i).rowHeight +
               platform::emptyHeight(section(i)) + section(i).footerHeight;
    return top;
}

double TableLayout::emptyHeight() const {
    double height = 0;
    for (const TableSection& section : sections_)
        height += platform::emptyHeight(section);
    return height;
}

double TableLayout::rowTop(NSIndexPath path) const {
    const TableSection& rows = section(path.section);
    return sectionTop(path.section) + rows.headerHeight + path.row * rows.rowHeight;
}

std::vector<TableLayout::Rows> TableLayout::rowsBetween(double top, double bottom) const {
    std::vector<Rows> rows(sections_.size());
    for (int i = 0; i < sectionCount(); ++i) {
        const double height = section(i).rowHeight;
        if (height <= 0) continue;
        const auto rowAt = [&](double edge) {
            return static_cast<int>(std::clamp(edge, 0.0, static_cast<double>(section(i).rowCount)));
        };
        const double first = rowTop({i, 0});
        rows[static_cast<std::size_t>(i)] = {rowAt(std::floor((top - first) / height)),
                                             rowAt(std::ceil((bottom - first) / height))};
    }
    return rows;
}

double TableLayout::scrolledTo(NSIndexPath path, UITableViewScrollPosition position, double top, double height) const {
    const double rowHeight = section(path.section).rowHeight;
    const double rowAtTop = rowTop(path);
    const double rowAtBottom = rowAtTop + rowHeight - height;
    switch (position) {
    case UITableViewScrollPositionTop:
        return rowAtTop;
    case UITableViewScrollPositionMiddle:
        return (rowAtTop + rowAtBottom) / 2;
    case UITableViewScrollPositionBottom:
        return rowAtBottom;
    case UITableViewScrollPositionNone:
        break;
    }
    return std::min(std::max(top, rowAtBottom), rowAtTop);
}

int TableLayout::placeOf(NSIndexPath path) const {
    int place = path.row;
    for (int i = 0; i < path.section; ++i)
        place += section(i).rowCount;
    return place;
}

NSIndexPath TableLayout::pathOf(int place) const {
    NSIndexPath path{0, place};
    while (path.section < sectionCount() && path.row >= section(path.section).rowCount)
        path.row -= section(path.section++).rowCount;
    return path;
}

bool TableLayout::canMove(NSIndexPath from, NSIndexPath to) const {
    if (!hasRow(from) || !hasSection(to.section) || to.row < 0) return false;
    return to.row <= section(to.section).rowCount - (from.section == to.section ? 1 : 0);
}

TableLayout TableLayout::moved(NSIndexPath from, NSIndexPath to) const {
    TableLayout layout = *this;
    --layout.at(from.section).rowCount;
    ++layout.at(to.section).rowCount;
    return layout;
}

NSIndexPath TableLayout::nearest(NSIndexPath from, double top) const {
    TableLayout rest = *this;
    --rest.at(from.section).rowCount;
    NSIndexPath nearest = from;
    double least = std::numeric_limits<double>::infinity();
    for (int i = 0; i < sectionCount(); ++i) {
        const double height = std::max(1.0, section(i).rowHeight);
        const double row =
            std::clamp(std::round((top - rest.rowTop({i, 0})) / height), 0.0, double(rest.section(i).rowCount));
        const NSIndexPath candidate{i, static_cast<int>(row)};
        const double distance = std::abs(top - rest.rowTop(candidate));
        if (distance >= least) continue;
        least = distance;
        nearest = candidate;
    }
    return nearest;
}

std::optional<NSIndexPath> TableLayout::step(NSIndexPath from, int by) const {
    const int row = from.row + by;
    if (row >= 0 && row < section(from.section).rowCount) return NSIndexPath{from.section, row};
    return across(from, by);
}

std::optional<NSIndexPath> TableLayout::across(NSIndexPath from, int by) const {
    const int there = from.section + by;
    if (!hasSection(there)) return std::nullopt;
    return NSIndexPath{there, by > 0 ? 0 : section(there).rowCount};
}

} // namespace platform

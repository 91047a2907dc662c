#include "settings/model/TableLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace settings {

using platform::NSIndexPath;

double TableLayout::sectionTop(int section) const {
    double top = 0;
    for (int i = 0; i < section; ++i)
        top += at(i).headerHeight + at(i).rowCount * at(i).rowHeight + at(i).footerHeight;
    return top;
}

double TableLayout::footerTop(int section) const {
    return rowTop({section, at(section).rowCount});
}

double TableLayout::rowTop(NSIndexPath path) const {
    const Section& section = at(path.section);
    return sectionTop(path.section) + section.headerHeight + path.row * section.rowHeight;
}

std::vector<TableLayout::Rows> TableLayout::rowsBetween(double top, double bottom) const {
    std::vector<Rows> rows;
    for (int i = 0; i < static_cast<int>(sections_.size()); ++i) {
        const Section& section = at(i);
        const double firstTop = rowTop({i, 0});
        const auto rowAt = [&](double edge) {
            return static_cast<int>(std::clamp(edge, 0.0, static_cast<double>(section.rowCount)));
        };
        if (section.rowHeight <= 0) {
            rows.emplace_back();
        } else {
            rows.push_back({rowAt(std::floor((top - firstTop) / section.rowHeight)),
                            rowAt(std::ceil((bottom - firstTop) / section.rowHeight))});
        }
    }
    return rows;
}

int TableLayout::rowTotal() const {
    return placeOf({static_cast<int>(sections_.size()), 0});
}

bool TableLayout::hasRow(NSIndexPath path) const {
    return path.section >= 0 && path.section < static_cast<int>(sections_.size()) && path.row >= 0 &&
           path.row < at(path.section).rowCount;
}

int TableLayout::placeOf(NSIndexPath path) const {
    int place = path.row;
    for (int i = 0; i < path.section; ++i)
        place += at(i).rowCount;
    return place;
}

NSIndexPath TableLayout::pathOf(int place) const {
    NSIndexPath path{0, place};
    while (path.section < static_cast<int>(sections_.size()) && path.row >= at(path.section).rowCount)
        path.row -= at(path.section++).rowCount;
    return path;
}

TableLayout TableLayout::moved(NSIndexPath from, NSIndexPath to) const {
    TableLayout layout = *this;
    --layout.sections_[static_cast<std::size_t>(from.section)].rowCount;
    ++layout.sections_[static_cast<std::size_t>(to.section)].rowCount;
    return layout;
}

NSIndexPath TableLayout::nearest(NSIndexPath from, double top) const {
    TableLayout rest = *this;
    --rest.sections_[static_cast<std::size_t>(from.section)].rowCount;
    NSIndexPath nearest = from;
    double least = std::numeric_limits<double>::infinity();
    for (int i = 0; i < static_cast<int>(sections_.size()); ++i) {
        const double height = std::max(1.0, at(i).rowHeight);
        const double row =
            std::clamp(std::round((top - rest.rowTop({i, 0})) / height), 0.0, double(rest.at(i).rowCount));
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
    if (row >= 0 && row < at(from.section).rowCount) return NSIndexPath{from.section, row};
    const int section = from.section + by;
    if (section < 0 || section >= static_cast<int>(sections_.size())) return std::nullopt;
    return NSIndexPath{section, by > 0 ? 0 : at(section).rowCount};
}

} // namespace settings

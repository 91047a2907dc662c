#pragma once

#include "platform/ui/NSIndexPath.h"

#include <map>
#include <utility>
#include <vector>

/// What comes of moving a row of a table. The row is taken out first; its new place counts without it.

namespace platform {

/// Where a row stands after a move, which may be its own or another's.
constexpr NSIndexPath moved(NSIndexPath row, NSIndexPath from, NSIndexPath to) {
    if (row == from) return to;
    if (row.section == from.section && row.row > from.row) --row.row;
    if (row.section == to.section && row.row >= to.row) ++row.row;
    return row;
}

/// What belongs to rows goes along with them.
template<class Part>
std::map<NSIndexPath, Part> moved(std::map<NSIndexPath, Part> parts, NSIndexPath from, NSIndexPath to) {
    std::map<NSIndexPath, Part> after;
    for (auto& [row, part] : parts)
        after.emplace(moved(row, from, to), std::move(part));
    return after;
}

/// The rows themselves change their order; each section has a list of its rows, and both may be the same section's.
/// A place that does not exist changes nothing.
template<class Row>
void moveRow(std::vector<Row>& source, int from, std::vector<Row>& destination, int to) {
    const std::size_t placesThere = destination.size() + (&source == &destination ? 0 : 1);
    if (from < 0 || std::cmp_greater_equal(from, source.size())) return;
    if (to < 0 || std::cmp_greater_equal(to, placesThere)) return;
    Row row = std::move(source[static_cast<std::size_t>(from)]);
    source.erase(source.begin() + from);
    destination.insert(destination.begin() + to, std::move(row));
}

} // namespace platform

#pragma once

#include "platform/ui/NSIndexPath.h"

#include <map>
#include <utility>
#include <vector>

/// What moving a row of a table does. The row is taken out first, and its new place counts without it. Any thread.

namespace platform {

/// Where a row stands after its own or another row's move.
constexpr NSIndexPath moved(NSIndexPath row, NSIndexPath from, NSIndexPath to) {
    if (row == from) return to;
    if (row.section == from.section && row.row > from.row) --row.row;
    if (row.section == to.section && row.row >= to.row) ++row.row;
    return row;
}

/// The parts that belong to rows, each where its row stands after a move.
template<class Part>
std::map<NSIndexPath, Part> moved(std::map<NSIndexPath, Part> parts, NSIndexPath from, NSIndexPath to) {
    std::map<NSIndexPath, Part> after;
    for (auto& [row, part] : parts)
        after.emplace(moved(row, from, to), std::move(part));
    return after;
}

/// Moves a row from one section's list to another's, or within one list. Does nothing if either place does not exist.
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

#pragma once

#include <compare>

namespace platform {

/// Where a row of a table stands: its section and its position there, both from 0.
struct NSIndexPath {
    int section = 0;
    int row = 0;
    // NOLINTNEXTLINE(modernize-use-nullptr): the check sees a null in what the compiler writes here
    friend auto operator<=>(const NSIndexPath&, const NSIndexPath&) = default;
};

/// Where a row stands after a move, which may be its own or another's. The moved row is taken out first; its new place
/// counts without it.
constexpr NSIndexPath afterMove(NSIndexPath path, NSIndexPath from, NSIndexPath to) {
    if (path == from) return to;
    if (path.section == from.section && path.row > from.row) --path.row;
    if (path.section == to.section && path.row >= to.row) ++path.row;
    return path;
}

} // namespace platform

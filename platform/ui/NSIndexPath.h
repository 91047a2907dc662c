#pragma once

#include <compare>

namespace platform {

/// Where a row of a table stands: its section, and its position there, both counted from 0. Any thread.
struct NSIndexPath {
    int section = 0;
    int row = 0;
    // NOLINTNEXTLINE(modernize-use-nullptr): the check sees a null in what the compiler writes here
    friend auto operator<=>(const NSIndexPath&, const NSIndexPath&) = default;
};

} // namespace platform

#pragma once

#include <compare>

namespace platform {

/// Where a row of a table stands: its section and its position there, both from 0.
struct NSIndexPath {
    int section = 0;
    int row = 0;
    friend auto operator<=>(const NSIndexPath&,
                            const NSIndexPath&) = default; // NOLINT(modernize-use-nullptr): not ours
};

} // namespace platform

#pragma once

#include "platform/ui/NSIndexPath.h"

#include <string>
#include <vector>

namespace lumora {

/// The two lists of a reorderable selection: what is in section 0 and what is in section 1.
struct Selection {
    std::vector<std::string> enabled;
    std::vector<std::string> disabled;
    friend bool operator==(const Selection&, const Selection&) = default;
};

/// The selection after a row has been dropped. The new place counts with the row taken out of its old one, as a table
/// gives it. Every section but the first counts as the second. A place that does not exist changes nothing.
[[nodiscard]] Selection moved(Selection selection, platform::NSIndexPath from, platform::NSIndexPath to);

} // namespace lumora

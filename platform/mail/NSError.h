#pragma once

#include <string>

namespace platform {

/// Why something failed, fit to show to a person. Any thread.
///
///     const NSError error{"there is no room on the disk"};
struct NSError {
    std::string localizedDescription;
};

} // namespace platform

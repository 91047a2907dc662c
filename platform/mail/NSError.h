#pragma once

#include <string>

namespace platform {

/// Why something has failed, in words fit for a person. Any thread.
///
///     const NSError error{"there is no room on the disk"};
struct NSError {
    std::string localizedDescription;
};

} // namespace platform

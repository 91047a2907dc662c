#pragma once

#include "platform/foundation/FileDescriptor.h"

#include <string>

namespace lumora {

/// Fills the low descriptors, where programs have their display, ports and files, with one end of a private pipe. A
/// plug-in that writes to files that are not its own, or closes them, gives itself away.
class Traps {
  public:
    /// Requires that the process's own descriptors are above the low ones.
    Traps();

    /// What has been done to the traps so far; empty while they are untouched.
    [[nodiscard]] std::string sprung() const;

  private:
    platform::FileDescriptor bottom_; ///< the end of the pipe that can be read
};

} // namespace lumora

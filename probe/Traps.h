#pragma once

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/Result.h"

namespace lumora {

/// Fills the low descriptors, where programs have their display, ports and files, with one end of a private pipe. A
/// plug-in that writes to files that are not its own, or closes them, gives itself away. One thread.
class Traps {
  public:
    /// The process's own descriptors must be above the low ones already.
    Traps();

    /// Fails once code has written to the low descriptors or closed one.
    [[nodiscard]] platform::Result<void> check() const;

    /// Forgets what has been written so far.
    void clear() const;

  private:
    platform::FileDescriptor bottom_; ///< the end of the pipe that can be read
};

} // namespace lumora

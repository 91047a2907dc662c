#pragma once

#include "platform/foundation/FileDescriptor.h"

#include <filesystem>

namespace settings {

/// Tells whether a tweak is there: a live process takes connections on both ports. Nothing is sent, and no port's lock
/// is tried, so a tweak that starts meanwhile is not disturbed.
///
///     TweakWatch watch;
///     poll watch.descriptor(), and then: if (watch.look()) …
///
/// The descriptor is readable when something has changed in the folder of the ports, or in the nearest folder above
/// that exists: a port's socket comes, and the lock file of a process that ends is closed. That may be a moment before
/// the process lets go of its sockets, so look again a little later. Any one thread; no operation waits.
class TweakWatch {
  public:
    TweakWatch();

    /// Of the system's file watch; -1 when it gives none.
    [[nodiscard]] int descriptor() const { return changes_.number(); }
    /// The descriptor is readable at the next change only.
    void forgetChanges();
    /// Whether both ports are served now.
    [[nodiscard]] bool look();

  private:
    void watchNearestFolder();

    std::filesystem::path folder_; ///< of the sockets
    platform::FileDescriptor changes_;
    std::filesystem::path watched_;
    int watch_ = -1;
};

} // namespace settings

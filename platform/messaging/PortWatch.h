#pragma once

#include "platform/Export.h"
#include "platform/foundation/FileDescriptor.h"

#include <filesystem>
#include <string>
#include <vector>

namespace platform {

/// Tells whether ports of one folder are served: a live process takes connections on each. Nothing is sent, and no port's
/// lock is tried, so a program that is just opening them is not disturbed.
///
///     PortWatch watch({"com.nevo.lumora/updateSettings"});
///     poll watch.descriptor(), and then: if (watch.look()) …
///
/// The descriptor is readable when something has changed in the folder of the ports, or in the nearest folder above
/// that exists: a port's socket comes, and the lock file of a process that ends is closed. That may be a moment before
/// the process lets go of its sockets, so look again a little later. Any one thread; no operation waits.
class PLATFORM_EXPORT PortWatch {
  public:
    /// One port at least. The descriptor tells of changes from the first look on.
    explicit PortWatch(std::vector<std::string> ports);

    /// Of the system's file watch; -1 when it gives none.
    [[nodiscard]] int descriptor() const { return changes_.number(); }
    /// The descriptor is readable at the next change only.
    void forgetChanges();
    /// Whether all of the ports are served now.
    [[nodiscard]] bool look();

  private:
    void watchNearestFolder();

    std::vector<std::string> ports_;
    std::filesystem::path folder_; ///< of the sockets
    FileDescriptor changes_;
    std::filesystem::path watched_;
    int watch_ = -1;
};

} // namespace platform

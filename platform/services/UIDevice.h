#pragma once

#include "platform/Export.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace platform {

/// Facts of the device.
///
///     UIDevice::currentDevice().systemVersion()   // "12"
///
/// Any thread.
class PLATFORM_EXPORT UIDevice {
  public:
    [[nodiscard]] static const UIDevice& currentDevice();

    /// The files that may say which release of the system this is; the first that is there counts.
    explicit UIDevice(std::vector<std::filesystem::path> releaseFiles) : releaseFiles_(std::move(releaseFiles)) {}

    /// VERSION_ID of the release file; the kernel's release where that names none. Read anew each time.
    [[nodiscard]] std::string systemVersion() const;

  private:
    std::vector<std::filesystem::path> releaseFiles_;
};

} // namespace platform

#pragma once

#include "platform/Export.h"

#include <string>
#include <utility>

namespace platform {

/// Facts of the device.
///
///     UIDevice::currentDevice().systemVersion()   // "12"
///
/// Any thread.
class PLATFORM_EXPORT UIDevice {
  public:
    [[nodiscard]] static const UIDevice& currentDevice();

    /// Takes the name under which /etc/os-release tells the version of the system.
    explicit UIDevice(std::string versionKey) : versionKey_(std::move(versionKey)) {}

    /// The kernel's release where os-release names no version.
    [[nodiscard]] std::string systemVersion() const;

  private:
    std::string versionKey_;
};

} // namespace platform

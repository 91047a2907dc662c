#pragma once

#include "platform/Export.h"

#include <filesystem>
#include <string_view>

namespace platform {

/// The folder that stands for the device's "/": what setDeviceRoot() was given, else $LUMORA_ROOT, else "/".
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path deviceRoot();

/// Called once, by a program's `--root DIR`, before anything else of the platform is used.
PLATFORM_EXPORT void setDeviceRoot(const std::filesystem::path& root);

/// A fixed path of the device, such as "/Library/Nevo/Lumora/Plugins", under the device root.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path devicePath(std::string_view fixedPath);

} // namespace platform

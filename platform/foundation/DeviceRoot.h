#pragma once

#include "platform/Export.h"

#include <filesystem>
#include <string_view>

namespace platform {

/// The folder that stands for the device's "/": the one that was asked for; else the one that is installed beside the
/// program; else "/".
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path deviceRoot();

/// The device root that somebody asked for: what setDeviceRoot() was given, else $LUMORA_ROOT. Empty when nobody did.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path chosenDeviceRoot();

/// The device root that an installation has for the programs in `folder`, whatever its prefix.
/// Empty where there is none: a folder without a "Library" is no device, and any part of ours brings that.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path installedDeviceRoot(const std::filesystem::path& folder);

/// Called once, by a program's `--root DIR`, before anything else of the platform is used.
PLATFORM_EXPORT void setDeviceRoot(const std::filesystem::path& root);

/// A fixed path of the device, such as "/Library/Nevo/Lumora/Plugins", under the device root.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path devicePath(std::string_view fixedPath);

/// Where a device keeps the settings bundle.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path standardBundle();

} // namespace platform

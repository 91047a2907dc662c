#pragma once

#include "platform/Export.h"

#include <filesystem>
#include <string_view>

namespace platform {

/// The folder that stands for the device's "/": the chosen one; else the one that is installed beside the program; else
/// "/". Any thread, as all of these, but for setDeviceRoot().
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path deviceRoot();

/// The device root that the user has chosen: what setDeviceRoot() was given, else $LUMORA_ROOT. Empty without a choice.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path chosenDeviceRoot();

/// The device root that an installation under any prefix has for the programs in `folder`. Empty when the folder in
/// question has no "Library", which every part of an installation brings along.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path installedDeviceRoot(const std::filesystem::path& folder);

/// Called once for a program's `--root DIR`, before the program uses anything else of the platform.
PLATFORM_EXPORT void setDeviceRoot(const std::filesystem::path& root);

/// A fixed path of the device, such as "/Library/Nevo/Lumora/Plugins", under the device root.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path devicePath(std::string_view fixedPath);

/// The settings bundle's place on the device.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path standardBundle();

} // namespace platform

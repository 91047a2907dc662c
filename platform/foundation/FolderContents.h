#pragma once

#include "platform/Export.h"

#include <filesystem>
#include <system_error>
#include <vector>

namespace platform {

/// The paths of what is in a folder, each beginning with the folder's own, in the byte order of the names, since file
/// systems list in no order that can be relied on. When the folder is missing or cannot be read, `failed` says why, and
/// the paths are those read until then. Any thread.
///
///     for (const auto& path : contentsOfDirectoryAtPath(folder, failed)) examine(path);
[[nodiscard]] PLATFORM_EXPORT std::vector<std::filesystem::path>
contentsOfDirectoryAtPath(const std::filesystem::path& folder, std::error_code& failed);

} // namespace platform

#pragma once

#include "platform/Export.h"

#include <filesystem>
#include <system_error>
#include <vector>

namespace platform {

/// What is in a folder, each with the folder's path in front, in the byte order of the names: the same on every file
/// system, none of which lists in an order that one could count on. When the folder is missing or cannot be read,
/// `failed` says so, and what was read before that is all there is. Any thread.
///
///     for (const auto& path : contentsOfDirectoryAtPath(folder, failed)) examine(path);
[[nodiscard]] PLATFORM_EXPORT std::vector<std::filesystem::path>
contentsOfDirectoryAtPath(const std::filesystem::path& folder, std::error_code& failed);

} // namespace platform

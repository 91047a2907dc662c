#pragma once

#include "platform/Export.h"
#include "platform/foundation/Result.h"

#include <filesystem>

namespace platform {

/// A folder for the user's own files, by the desktop's rules: the variable's value if that is an absolute path, else
/// the folder of that name in the home folder. It may be missing. Empty for a user without a home.
///
///     userFolder("XDG_DATA_HOME", ".local/share")
///
/// Any thread, while no thread changes the environment.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path userFolder(const char* variable, const char* nameInHome);

/// Makes the missing folders of a path, with access for the user alone, as the desktop's rules have it. Any thread.
[[nodiscard]] PLATFORM_EXPORT Result<void> makeFolders(const std::filesystem::path& path);

} // namespace platform

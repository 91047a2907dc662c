#pragma once

#include "platform/Export.h"
#include "platform/foundation/Result.h"

#include <filesystem>

namespace platform {

/// A folder for the user's own files, by the desktop's rules: what the variable says if that is a whole path, else the
/// folder of that name in the home folder. It need not exist. Empty for a user without a home.
///
///     userFolder("XDG_DATA_HOME", ".local/share")
///
/// Any thread, as long as none changes the environment.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path userFolder(const char* variable, const char* nameInHome);

/// Makes the missing folders on the way, for the user alone whatever the umask, as the desktop's rules have it. Any
/// thread.
[[nodiscard]] Result<void> makeFolders(const std::filesystem::path& path);

} // namespace platform

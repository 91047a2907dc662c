#pragma once

#include "platform/Export.h"

#include <filesystem>
#include <string>

namespace platform {

/// The folder of the platform library's own file, from which what belongs to the library is found, in the build tree
/// and in an installation under any prefix. Empty where the loader does not tell. Any thread.
[[nodiscard]] std::filesystem::path platformLibraryFolder();

/// The path of a program such as "lumora-probe", which works for this process and is never called by hand. The program
/// may be missing. Any thread.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path helperProgram(const std::string& name);

} // namespace platform

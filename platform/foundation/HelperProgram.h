#pragma once

#include "platform/Export.h"

#include <filesystem>
#include <string>

namespace platform {

/// The folder of the platform library's own file; what belongs to it is found from there, in the build tree and in an
/// installation under any prefix. Any thread.
[[nodiscard]] std::filesystem::path platformLibraryFolder();

/// A program that nobody calls by hand, such as "lumora-probe", which does what a process of its own does better. It
/// need not be there. Any thread.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path helperProgram(const std::string& name);

} // namespace platform

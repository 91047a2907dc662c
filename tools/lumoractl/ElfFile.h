#pragma once

#include "platform/foundation/Result.h"

#include <filesystem>
#include <string>
#include <vector>

namespace lumora {

/// What a shared object says to the loader.
struct ElfFile {
    std::vector<std::string> exported; ///< without what the compiler makes anew in each object that needs it
    std::vector<std::string> searched; ///< the folders of its RUNPATH or RPATH
};

/// Reads it from the file, which is not loaded. Fails for what is no shared object of this machine's kind, or has no
/// table of sections. Any thread.
[[nodiscard]] platform::Result<ElfFile> readElfFile(const std::filesystem::path& path);

} // namespace lumora

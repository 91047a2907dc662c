#pragma once

#include "platform/Export.h"
#include "platform/foundation/Result.h"

#include <filesystem>
#include <string>

namespace platform {

/// When a library finds the functions that it calls: all at once, or each at its first call.
enum class Binding : unsigned char { Now, Lazy };

/// Fails for what would end or hold up the process instead of being an error of the loader's: a file that is shorter
/// than its segments say, since touching what is missing there raises a signal, and a pipe.
[[nodiscard]] PLATFORM_EXPORT Result<void> checkSharedObject(const std::filesystem::path& path);

/// Whether a file is refused for such a fault, or has been looked at for it by mayBeLoaded().
enum class FileCheck : unsigned char { WholeFile, None };

/// Maps a shared object into the process for good. What else is wrong with its file is the loader's to say; a
/// stranger's is tried first by mayBeLoaded(). Main thread.
[[nodiscard]] Result<void*> loadSharedObject(const std::filesystem::path& file, Binding binding = Binding::Now,
                                             FileCheck check = FileCheck::WholeFile);

/// What a loaded object itself exports under a name; null when it exports nothing so named, whatever the libraries
/// export that it stands on.
[[nodiscard]] const void* symbolIn(void* object, const std::string& name);

} // namespace platform

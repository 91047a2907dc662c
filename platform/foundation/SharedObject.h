#pragma once

#include "platform/Export.h"
#include "platform/foundation/Result.h"

#include <filesystem>
#include <string>

namespace platform {

/// When a library finds the functions that it calls: all when it is loaded, or each at its first call.
enum class Binding : unsigned char { Now, Lazy };

/// Fails for files that would end or hold up the process instead of giving an error of the loader's: one that is
/// shorter than its segments say, since touching the missing part raises a signal, and anything but a plain file. Any
/// thread.
[[nodiscard]] PLATFORM_EXPORT Result<void> checkSharedObject(const std::filesystem::path& path);

/// Whether checkSharedObject() has to pass first; mayBeLoaded() has called it for what it lets through.
enum class FileCheck : unsigned char { WholeFile, None };

/// Maps a shared object into the process for good. Fails with the loader's words, or those of checkSharedObject(). Main
/// thread.
[[nodiscard]] Result<void*> loadSharedObject(const std::filesystem::path& file, Binding binding = Binding::Now,
                                             FileCheck check = FileCheck::WholeFile);

/// What a loaded object itself exports under a name, and not a library on which it stands; null when it exports nothing
/// so named.
[[nodiscard]] const void* symbolIn(void* object, const std::string& name);

} // namespace platform

#pragma once

#include "platform/foundation/Result.h"

#include <filesystem>
#include <string>

namespace platform {

/// When a library finds the functions that it calls: all at once, or each at its first call.
enum class Binding : unsigned char { Now, Lazy };

/// Maps a shared object into the process for good, once the file has been checked. Main thread.
[[nodiscard]] Result<void*> loadSharedObject(const std::filesystem::path& file, Binding binding = Binding::Now);

/// What a loaded object itself exports under a name; null when it exports nothing so named, whatever the libraries
/// export that it stands on.
[[nodiscard]] const void* symbolIn(void* object, const std::string& name);

} // namespace platform

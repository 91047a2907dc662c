#pragma once

#include "platform/foundation/Result.h"

#include <filesystem>

namespace platform {

/// When a library finds the functions that it calls: all at once, or each at its first call.
enum class Binding { Now, Lazy };

/// Maps a shared object into the process for good.
///
/// The file is checked before the loader sees it, because the loader trusts what the headers say: a file that was cut
/// short maps well and then kills the process when its missing pages are touched. Main thread.
[[nodiscard]] Result<void*> loadSharedObject(const std::filesystem::path& file, Binding binding = Binding::Now);

} // namespace platform

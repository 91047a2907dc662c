#pragma once

#include "platform/Export.h"
#include "platform/foundation/LoadProbe.h"

#include <filesystem>
#include <vector>

namespace platform {

/// A stranger's code as it stands on disk.
struct LoadCandidate {
    std::filesystem::path path;               ///< what is loaded: a bundle or a library
    std::vector<std::filesystem::path> files; ///< whose state counts; the last is the shared object
};

/// Whether each may be loaded into this process without ending it: what has a shared object and has passed the probe.
///
/// A verdict is kept for as long as the files are what they were, and so are the probe, the system's libraries and the
/// settings bundle: in "lumora/probed" of the user's cache, or in this process where there is no place for that. What
/// stays undecided is refused until this process ends; what changes while it is tried is refused this once. What could
/// not be tried is refused, and the first time in a process a line on standard error says why. Waits for the probe. Any
/// thread.
[[nodiscard]] PLATFORM_EXPORT std::vector<bool>
mayBeLoaded(ForeignCode kind, const std::vector<LoadCandidate>& candidates, const ProbeLimits& limits = {});

} // namespace platform

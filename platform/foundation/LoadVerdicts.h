#pragma once

#include "platform/Export.h"
#include "platform/foundation/LoadProbe.h"

#include <filesystem>
#include <vector>

namespace platform {

/// A stranger's code on disk.
struct LoadCandidate {
    std::filesystem::path path;               ///< what is loaded: a bundle or a library
    std::vector<std::filesystem::path> files; ///< a verdict holds while these stay as they are; last the shared object
};

/// Whether this process may load each candidate: those may be loaded that have a shared object and have passed the
/// probe.
///
/// A verdict is kept until the candidate's files, the probe, the system's libraries or the settings bundle change: in
/// "lumora/probed" of the user's cache, else in this process. An undecided candidate is refused until this process
/// ends, and one that changes during its trial is refused this once. One that cannot be tried is refused, and the first
/// time in a process a line on standard error says why. Waits for the probe. Any thread.
[[nodiscard]] PLATFORM_EXPORT std::vector<bool>
mayBeLoaded(ForeignCode kind, const std::vector<LoadCandidate>& candidates, const ProbeLimits& limits = {});

} // namespace platform

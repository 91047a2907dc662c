#pragma once

#include "platform/foundation/Result.h"

#include <filesystem>

namespace lumora {

/// Shows a plug-in's settings page beside the lock screen, in a device root where it is the one plug-in, with a tweak of
/// its own. Judges it and shows it again whenever its bundle has changed. Returns when the window is closed, and at
/// SIGINT, SIGTERM and SIGHUP; nothing is left then. Changes the environment, and takes these signals for good: once in a
/// process, which has no other thread.
[[nodiscard]] platform::Result<void> runPlugin(const std::filesystem::path& bundle);

} // namespace lumora

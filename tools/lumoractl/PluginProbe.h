#pragma once

#include "platform/foundation/Value.h"

#include <chrono>
#include <filesystem>

namespace lumora {

/// Examines one entry of a plug-in folder as the Settings application would, in a child process, because a plug-in is a
/// stranger's code: it may crash, hang, end the process or print what it likes, and is then reported as doing so.
///
///     probePlugin("Clock.bundle", 5s);
///     // {"entry": "Clock.bundle", "name": "Clock", "identifier": …, "appID": …, "settings": false, "why": "it has
///     none"}
///     // {"entry": "Torn.bundle", "skipped": "… cannot be loaded: it is cut short"}
///
/// "prints" holds the beginning of what the plug-in wrote to the standard streams, if anything.
[[nodiscard]] platform::Dictionary probePlugin(const std::filesystem::path& entry, std::chrono::milliseconds limit);

} // namespace lumora

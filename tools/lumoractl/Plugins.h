#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <chrono>
#include <filesystem>
#include <string>

namespace lumora {

/// What discovery makes of every entry of a folder of plug-ins, or of one bundle, as lumora-probe finds out: a
/// dictionary for each. With an empty path, of the plug-in folder, which may be missing; any other must be there.
///
///     {"entry": "Clock.bundle", "name": "Clock", "identifier": …, "appID": …, "settings": false, "why": "it has none"}
///     {"entry": "Torn.bundle", "skipped": "… cannot be loaded: it is cut short"}
///
/// "prints" holds the beginning of what the plug-in wrote to the standard streams, if anything. `stop` is that of
/// platform::ProbeLimits.
[[nodiscard]] platform::Result<platform::List> probePlugins(const std::filesystem::path& path,
                                                            std::chrono::milliseconds limit, int stop = -1);

/// The same for people to read: a line for each entry, and one beneath it for what it prints.
[[nodiscard]] std::string pluginTable(const platform::List& plugins);

/// True when every entry is a plug-in that can be used.
[[nodiscard]] bool allUsable(const platform::List& plugins);

} // namespace lumora

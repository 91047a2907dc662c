#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <chrono>
#include <filesystem>
#include <string>

namespace lumora {

/// What discovery makes of every entry of a folder of plug-ins, or of one bundle: a dictionary for each, as
/// probePlugin() gives it. With an empty path, of the plug-in folder, which may be missing; any other must be there.
[[nodiscard]] platform::Result<platform::List> probePlugins(const std::filesystem::path& path,
                                                            std::chrono::milliseconds limit);

/// The same for people to read: a line for each entry, and one beneath it for what it prints.
[[nodiscard]] std::string pluginTable(const platform::List& plugins);

/// True when every entry is a plug-in that can be used.
[[nodiscard]] bool allUsable(const platform::List& plugins);

} // namespace lumora

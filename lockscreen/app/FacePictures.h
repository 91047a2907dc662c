#pragma once

#include "lockscreen/app/Inputs.h"
#include "lockscreen/app/Options.h"

#include "platform/foundation/Result.h"

#include <filesystem>

namespace lumora {

/// Saves a picture of the screen as the options have it.
[[nodiscard]] platform::Result<void> grabFace(const Options& options, const Inputs& inputs,
                                              const std::filesystem::path& file);
/// Saves pictures of every surface that there is with these settings, upright and in landscape, on each of our own
/// wallpapers: "notices-dusk.png", "passcode-landscape-day.png". Or, if there are scenes, of those of them that have as
/// many pixels to a point as the program has.
[[nodiscard]] platform::Result<void> tourFace(const Options& options, const Inputs& inputs,
                                              const std::filesystem::path& folder);

} // namespace lumora

#pragma once

#include "lockscreen/Gesture.h"
#include "lockscreen/app/Options.h"
#include "lockscreen/app/TourScenes.h"

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumora {

/// What is in the files that the command line names.
struct Inputs {
    std::optional<platform::Dictionary> settings; ///< nothing without a file: the tweak's are meant
    std::vector<Gesture> gestures;
    std::vector<TourScene> scenes = {};
    std::vector<std::string> remarks = {}; ///< a line for each setting of a profile that is not taken as it stands
};

/// Reads them. Fails for a file that cannot be read or is not what it should be.
[[nodiscard]] platform::Result<Inputs> readInputs(const Options& options);

/// Reads gestures, one a line; fails with the number of the first bad line. What the line says is not repeated, since
/// it may have digits of a passcode.
[[nodiscard]] platform::Result<std::vector<Gesture>> gesturesIn(std::string_view text);

} // namespace lumora

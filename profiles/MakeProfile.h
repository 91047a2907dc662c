#pragma once

#include "profiles/Profile.h"
#include "profiles/Secrets.h"

#include "platform/foundation/Value.h"

#include <string>
#include <vector>

namespace profiles {

/// Which settings a profile is made of.
struct Choice {
    bool changedOnly = true;       ///< those that differ from the defaults; a plug-in's are all taken for changed
    std::vector<std::string> keys; ///< of these alone, unless there are none
};

struct MadeProfile {
    Profile profile;                  ///< without name, time and program
    std::vector<std::string> remarks; ///< a line for each setting that is left out although it was chosen
    std::vector<std::string> missing; ///< keys that were asked for and are not set
};

/// Makes a profile of the tweak's settings, in their order, or in that of the keys that are named. What is left out is
/// named under `omitted`: passcodes, texts of plug-ins that may be some unless their keys are named, and
/// what is nested too deep for a file. Any thread.
[[nodiscard]] MadeProfile makeProfile(const platform::Dictionary& settings, const Choice& choice,
                                      const Secrets& secrets);

} // namespace profiles

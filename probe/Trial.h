#pragma once

#include "platform/foundation/Value.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

namespace lumora {

/// How much one trial may take.
struct TrialLimits {
    std::chrono::seconds clock{10};
    std::chrono::seconds processor{2};
    std::size_t mostTold = std::size_t{512} << 10; ///< bytes
};

/// What came of a trial.
struct Tried {
    platform::Dictionary told;
    std::string fault; ///< how it went wrong, such as "it crashes: Aborted"; empty if it did not
};

/// Runs code in a copy of this process, which ends behind it, and takes what that tells. The code may do anything: it
/// costs its own trial. What it tells holds no nil. This process has one thread. Throws where there is no process to be had.
[[nodiscard]] Tried tryInCopy(const std::function<platform::Dictionary()>& code, const TrialLimits& limits = {});

/// A property list of what is told; empty when there is none.
[[nodiscard]] std::string encoded(const platform::Dictionary& told);

} // namespace lumora

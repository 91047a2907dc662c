#pragma once

#include "lockscreen/Behaviour.h"

#include <string>

namespace lumora {

/// A line of the event log as it may be seen: with a dot for each digit that was typed, and for the key it was typed
/// with. Any thread.
[[nodiscard]] std::string discreet(const std::string& line);

/// Writes each line to standard output at once, discreetly; or nothing, unless it is wanted.
[[nodiscard]] Behaviour::Log eventLog(bool wanted);

} // namespace lumora

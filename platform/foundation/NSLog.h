#pragma once

#include "platform/Export.h"

#include <string_view>

namespace platform {

/// Writes one message to the system log and to standard error, with time, program and process id before it.
/// A message may span lines. Any thread.
PLATFORM_EXPORT void NSLog(std::string_view message);

} // namespace platform

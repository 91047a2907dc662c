#pragma once

#include "platform/Export.h"

#include <string_view>

namespace platform {

/// Writes one message, which may span lines, to the system log and, unless a program has said otherwise, to standard error,
/// after the time, the program and the process id. Any thread.
PLATFORM_EXPORT void NSLog(std::string_view message);

/// Whether messages go to standard error too, as they do at first. Any thread.
PLATFORM_EXPORT void setNSLogOnStandardError(bool on);

} // namespace platform

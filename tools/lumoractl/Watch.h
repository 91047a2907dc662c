#pragma once

#include "platform/foundation/Result.h"

namespace lumora {

/// Prints each change of the settings on a line of its own: KEY = VALUE, or a JSON object of key, value and revision. Goes
/// on until SIGINT or SIGTERM comes or nobody reads standard output any more, which are no failures. Without a tweak it
/// says so on standard error and waits. For the main thread of a program that has no other threads yet.
[[nodiscard]] platform::Result<void> watchSettings(bool json);

} // namespace lumora

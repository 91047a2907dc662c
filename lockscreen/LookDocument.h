#pragma once

#include "lockscreen/Device.h"
#include "lockscreen/Look.h"

#include "platform/foundation/Value.h"

namespace lumora {

/// A look as a document for writeJson(): an entry for each part, visible or not. Frames are [x, y, width, height],
/// colours [red, green, blue]. Any thread.
[[nodiscard]] platform::Value documentOf(const Look& look);
/// A state in the same way; of what is typed it has the number of digits alone.
[[nodiscard]] platform::Value documentOf(const State& state);

} // namespace lumora

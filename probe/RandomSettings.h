#pragma once

#include "platform/foundation/Value.h"

#include <string>
#include <vector>

namespace lumora {

/// Settings of any kind under these keys, as a tweak might send that somebody else has written to. The same number gives
/// the same settings; an even one those of a single key. Holds no nil. Any thread.
[[nodiscard]] platform::Dictionary randomSettings(const std::vector<std::string>& keys, unsigned number);

} // namespace lumora

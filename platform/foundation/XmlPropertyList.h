#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <string_view>

namespace platform {

/// Reads the XML form of a property list, which has no nil. Any bytes give a value or an error; any thread.
[[nodiscard]] Result<Value> readXmlPropertyList(std::string_view document);

} // namespace platform

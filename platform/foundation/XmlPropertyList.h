#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <string_view>

namespace platform {

/// The XML form of a property list. nil cannot occur inside.
[[nodiscard]] Result<Value> readXmlPropertyList(std::string_view document);

} // namespace platform

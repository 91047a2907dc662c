#pragma once

#include "platform/ui/CGGeometry.h"

#include <optional>
#include <string>

namespace programs {

/// Reads the size of a window, such as "390x844"; nothing for any other text.
[[nodiscard]] std::optional<platform::CGSize> sizeFrom(const std::string& text);
/// Why the text is no size; empty when it is one.
[[nodiscard]] std::string isSize(const std::string& text);

} // namespace programs

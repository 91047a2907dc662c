#pragma once

#include "platform/foundation/Value.h"

#include <optional>
#include <string>
#include <string_view>

namespace lumora {

/// "2025-01-31T08:00:00Z"; nothing for a fraction of a second or a year outside 0001 to 9999.
[[nodiscard]] std::optional<std::string> formatTimestamp(platform::Date date);
/// Takes exactly the form that formatTimestamp() writes.
[[nodiscard]] std::optional<platform::Date> parseTimestamp(std::string_view text);

} // namespace lumora

#pragma once

#include "platform/foundation/Value.h"

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// A date as "2001-01-01T00:00:00Z", rounded down to a whole second. Nothing beyond the years that the calendar knows.
/// Any thread.
[[nodiscard]] PLATFORM_EXPORT std::optional<std::string> timestamp(Date date);

/// The date that such a text stands for; its year has four digits, and its second may be 60. Nothing for any other
/// text. Any thread.
[[nodiscard]] PLATFORM_EXPORT std::optional<Date> dateFromTimestamp(std::string_view text);

} // namespace platform

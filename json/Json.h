#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <string>
#include <string_view>

namespace lumora {

/// How much room the text takes.
enum class JsonLayout : unsigned char {
    indented, ///< for people: a line for each entry
    line,     ///< for logs: everything on one line
};

/// The value as JSON, and back, with nothing lost on the way:
///
///     writeJson(Dictionary{{"kLSPTintOpacity", 1.0}});   // {"kLSPTintOpacity": 1.0}
///     readJson(R"({"$date": "2025-01-31T08:00:00Z"})");  // a date
///
/// 1, 1.0 and true stay three different values, dictionaries keep their order, nil is null. What JSON has no form for
/// is a dictionary of one entry: {"$data": "base64"}, {"$date": "2025-01-31T08:00:00Z"} (or a number of seconds since
/// 2001-01-01 00:00:00 UTC, for fractions), {"$real": "nan"}, "inf" or "-inf". A key of one's own that begins with "$"
/// is written with that sign doubled. A character that tells a terminal what to do, such as a control character or one
/// that turns the writing direction, is written \uXXXX. Any thread.
///
/// Fails for texts that are no UTF-8 and for a value nested deeper than an archive may be.
[[nodiscard]] platform::Result<std::string> writeJson(const platform::Value& value,
                                                      JsonLayout layout = JsonLayout::indented);

/// Fails, with the reason and its place, for anything but one whole JSON value: also for integers beyond 64 signed
/// bits, keys that occur twice, invalid UTF-8 and nesting deeper than an archive may be.
[[nodiscard]] platform::Result<platform::Value> readJson(std::string_view text);

} // namespace lumora

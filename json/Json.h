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
/// 1, 1.0 and true stay three different values, dictionaries keep their order, nil is null. A value for which JSON has
/// no form becomes a dictionary of one entry: {"$data": "base64"}, {"$date": "2025-01-31T08:00:00Z"} (or a number of
/// seconds since 2001-01-01 00:00:00 UTC, for fractions), {"$real": "nan"}, "inf" or "-inf". In any other key that
/// begins with "$", that sign is doubled. A character that commands a terminal, such as a control character or one that
/// turns the writing direction, is written \uXXXX. Any thread.
///
/// Fails for texts in another encoding than UTF-8 and for a value nested deeper than an archive may be.
[[nodiscard]] platform::Result<std::string> writeJson(const platform::Value& value,
                                                      JsonLayout layout = JsonLayout::indented);

/// Reads one whole JSON value. Fails, with the reason and its place, for anything else, and for integers beyond 64
/// signed bits, repeated keys, invalid UTF-8 and nesting deeper than an archive may be.
[[nodiscard]] platform::Result<platform::Value> readJson(std::string_view text);

} // namespace lumora

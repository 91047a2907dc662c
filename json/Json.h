#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lumora {

/// How the text is laid out.
enum class JsonLayout : unsigned char {
    indented, ///< for people: a line for each entry
    line,     ///< for logs: everything on one line
};

/// Writes a value as JSON, from which readJson() makes the same value again:
///
///     writeJson(Dictionary{{"kLSPTintOpacity", 1.0}});   // {"kLSPTintOpacity": 1.0}
///     readJson(R"({"$date": "2025-01-31T08:00:00Z"})");  // a date
///
/// 1, 1.0 and true stay three different values, dictionaries keep their order, nil is null. A value for which JSON has
/// no form becomes a dictionary of one entry: {"$data": "base64"}, {"$date": "2025-01-31T08:00:00Z"} (with a fraction,
/// the number of seconds since 2001-01-01 00:00:00 UTC), {"$real": "nan"}, "inf" or "-inf". In any other key that
/// begins with "$", that sign is doubled. A character that commands a terminal, such as a control character or one that
/// turns the writing direction, is written \uXXXX. Any thread.
///
/// Fails for a text that is not UTF-8, and for a value nested deeper than an archive may be.
[[nodiscard]] platform::Result<std::string> writeJson(const platform::Value& value,
                                                      JsonLayout layout = JsonLayout::indented);

/// Reads one whole JSON value. Fails for anything else, with the reason and its place, and for integers beyond 64
/// signed bits, repeated keys, invalid UTF-8 and nesting deeper than an archive may be. Any thread.
[[nodiscard]] platform::Result<platform::Value> readJson(std::string_view text);

/// How much a document may hold.
struct JsonLimits {
    unsigned depth;   ///< of nested lists and dictionaries
    std::size_t keys; ///< of all dictionaries together
};

/// Where a key stands.
struct JsonKey {
    unsigned depth; ///< 1 for one of the outermost dictionary, 2 for one of a dictionary directly in it
    std::string key;
    std::size_t line; ///< from 1
};

/// A value, with the places of its keys, in the order of the text; of deeper ones none.
struct JsonDocument {
    platform::Value value;
    std::vector<JsonKey> keys;
};

/// readJson() for a file that people write. What it says of a failure begins with the line, and repeats no value, which
/// may be a secret. Any thread.
[[nodiscard]] platform::Result<JsonDocument> readJsonDocument(std::string_view text, const JsonLimits& limits);

} // namespace lumora

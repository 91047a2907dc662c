#pragma once

#include "platform/foundation/Value.h"

#include <optional>
#include <string>

namespace tests {

/// A value as one line of text, in which every kind and every bit of it shows; each program that takes part in the
/// exchange has a reader and a writer of its own. Tokens are separated by single spaces:
///
///     n   nil             i-5               integer, decimal               s6b6579   text, UTF-8 in hexadecimal
///     t   true            r3ff0000000000000 real, its 64 bits              d00ff     data
///     f   false           w3ff0000000000000 date, the bits of its seconds
///     [ entry … ]         list              { key value … }                dictionary, in its order
///
///     form(Dictionary{{"key", true}});   // "{ s6b6579 t }"
[[nodiscard]] std::string form(const platform::Value& value);

/// Nothing when the line is no form of a value that exists here, as with an integer beyond 63 bits.
[[nodiscard]] std::optional<platform::Value> readForm(const std::string& line);

[[nodiscard]] std::string hexOf(const platform::Data& bytes);
[[nodiscard]] std::optional<platform::Data> bytesOf(std::string_view hex);

} // namespace tests

#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <cstddef>
#include <limits>
#include <string>

namespace lumora {

/// Everything in a file, or in standard input where the name is "-"; but no more than about so many bytes.
[[nodiscard]] platform::Result<platform::Data> readAll(const std::string& name,
                                                       std::size_t most = std::numeric_limits<std::size_t>::max());

/// A value as JSON, with a line's end, on standard output.
[[nodiscard]] platform::Result<void> printJson(const platform::Value& value);

/// A text on standard output.
[[nodiscard]] platform::Result<void> printText(const std::string& text);

/// Makes a file of the bytes, or writes them to standard output where the name is "-". Where that fails, for want of
/// room too, a former file stays as it was.
[[nodiscard]] platform::Result<void> writeAll(const std::string& name, const void* bytes, std::size_t size);

/// A line on standard error, in the program's name.
void complain(const std::string& what);

} // namespace lumora

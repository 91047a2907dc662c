#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <string>

namespace lumora {

/// Everything in a file, or in standard input where the name is "-".
[[nodiscard]] platform::Result<platform::Data> readAll(const std::string& name);

/// Makes a file of the bytes, or writes them to standard output where the name is "-".
[[nodiscard]] platform::Result<void> writeAll(const std::string& name, const void* bytes, std::size_t size);

/// A line on standard error, in the program's name.
void complain(const std::string& what);

} // namespace lumora

#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace lumora {

/// Takes one line of the log, without a line break. Any thread may call it.
using Log = std::function<void(const std::string& line)>;

/// A text from another process as the log shows it: in quotes, on one line, and cut after 80 bytes. Any thread.
[[nodiscard]] std::string inQuotes(std::string_view text);

} // namespace lumora

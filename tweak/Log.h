#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace lumora {

/// Takes one line, without its end. Called from any thread.
using Log = std::function<void(const std::string& line)>;

/// A text from another process made fit for a line of the log: in quotes, on one line, of bounded length.
[[nodiscard]] std::string inQuotes(std::string_view text);

} // namespace lumora

#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace lumora {

/// Takes one line, without its end. Called from any thread.
using Log = std::function<void(const std::string& line)>;

/// Makes a text from another process fit for the log: in quotes, on one line, of bounded length.
[[nodiscard]] std::string inQuotes(std::string_view text);

} // namespace lumora

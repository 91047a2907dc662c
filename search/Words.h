#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace search {

/// Other words that people use for a setting, by its key; for a page, by its class. None for most. Any thread.
///
///     furtherWords("kAppIconOpacity");   // "brightness", "transparency" …
[[nodiscard]] std::vector<std::string> furtherWords(std::string_view keyOrPage);

} // namespace search

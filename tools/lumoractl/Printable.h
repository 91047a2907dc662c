#pragma once

#include <string>
#include <string_view>

namespace lumora {

/// A stranger's text for a terminal, which must neither move the cursor nor turn the writing direction of what stands
/// around it: U+FFFD replaces every character that platform::isVisible() refuses.
///
///     printable("Clock\x1B[2J");   // "Clock\uFFFD[2J"
[[nodiscard]] std::string printable(std::string_view text);

/// The same for JSON, with nothing lost: these characters are written \uXXXX. Line breaks stay, since JSON has them
/// only between values.
[[nodiscard]] std::string printableJson(std::string_view json);

} // namespace lumora

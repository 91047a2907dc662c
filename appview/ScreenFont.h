#pragma once

namespace lumora {

/// The screen's own fonts, in which App Views are drawn: a family, and one for large texts.
inline constexpr double kSmallestDisplay = 32; ///< of the second, in points
inline constexpr double kTextAscent = 0.97;    ///< of the size, above the baseline
inline constexpr double kTextLine = 1.22;      ///< of the size, from line to line

} // namespace lumora

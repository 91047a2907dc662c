#pragma once

#include "lockscreen/Look.h"

namespace lumora {

/// The colours by role of App Views, but for that of texts, which the card has: white where it is dark, else ink. Texts
/// in any of them, but for the separator's, can be read on the card.
inline constexpr double kSecondaryShare = 0.8; ///< of the texts' opacity
inline constexpr double kSeparatorShare = 0.2;
inline constexpr Color kAccentOnDark{0.76, 0.87, 1};
inline constexpr Color kAccentOnLight{0.03, 0.23, 0.55};

} // namespace lumora

#pragma once

namespace lumora {

/// The colours by role of App Views, but for that of texts, which the card has: white where it is dark, else ink.
inline constexpr double kSecondaryShare = 0.8; ///< of the texts' opacity
inline constexpr double kSeparatorShare = 0.2;

/// Each part from 0 to 255.
struct RoleColor {
    int red;
    int green;
    int blue;
};
inline constexpr RoleColor kAccentOnDark{0x9c, 0xc9, 0xff};
inline constexpr RoleColor kAccentOnLight{0x0a, 0x4f, 0xb8};

} // namespace lumora

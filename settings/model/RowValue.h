#pragma once

#include "settings/host/Snapshot.h"

#include <QString>

namespace settings {

// What a row makes of its value, for whoever shows it. A value may be of any kind. Any thread.

/// The bounds of a slider: finite, and in order.
[[nodiscard]] double minimumOf(const RowSnapshot& row);
[[nodiscard]] double maximumOf(const RowSnapshot& row);
/// Of a slider, maybe beyond its bounds.
[[nodiscard]] double numberOf(const RowSnapshot& row);
/// How many digits a slider shows behind the point.
[[nodiscard]] int decimalsOf(const RowSnapshot& row);
/// From that size on a row has no room for all digits of a number.
inline constexpr double kLongNumber = 1e7;
inline constexpr int kDigitsOfLongNumber = 4;
/// A number as it stands beside the slider.
[[nodiscard]] QString shownNumber(const RowSnapshot& row, double number);

/// What a field shows: text and numbers. Anything else it shows as empty, like nil.
[[nodiscard]] QString fieldTextOf(const RowSnapshot& row);

/// Whether a row of the page holds another value than it had when the page was opened.
[[nodiscard]] bool isChanged(const PageSnapshot& page, std::size_t position);

} // namespace settings

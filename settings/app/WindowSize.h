#pragma once

#include "platform/ui/CGGeometry.h"

#include <optional>

namespace settings {

/// The smallest window, in points.
inline constexpr platform::CGSize kSmallestWindow{320, 320};

/// The size that was kept last; nothing if none was, or what is there is no size of a window.
[[nodiscard]] std::optional<platform::CGSize> keptWindowSize();

/// Keeps the window's size for the next start. Silent when that fails: the next window then has another size.
void keepWindowSize(platform::CGSize size);

/// The size of a window that has none yet, for a screen of which that much is free: with room for all panes
/// where 1280 points are free from left to right, for list and page from 1024 points on, else for one column; a phone is
/// filled.
[[nodiscard]] platform::CGSize firstWindowSize(platform::CGSize screen);

/// How the columns were left.
struct KeptColumns {
    int columns = 2;    ///< 1 or 2
    double divider = 0; ///< the width of the list, 0 for the usual one
    friend bool operator==(const KeptColumns&, const KeptColumns&) = default;
};

/// Those that were kept last; the usual ones if none were, or what is there is none.
[[nodiscard]] KeptColumns keptColumns();

/// Keeps the columns for the next start. Silent when that fails.
void keepColumns(const KeptColumns& columns);

/// Whether changed rows were marked last; and keeps that for the next start. Silent when it fails.
[[nodiscard]] bool keptMarks();
void keepMarks(bool marks);

} // namespace settings

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

} // namespace settings

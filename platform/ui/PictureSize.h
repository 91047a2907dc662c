#pragma once

#include "platform/ui/CGGeometry.h"

#include <cstdint>
#include <optional>
#include <span>

namespace platform {

/// The width and height in pixels that a PNG file states; nothing for any other file. Decodes no picture. Any thread.
[[nodiscard]] std::optional<CGSize> pngSize(std::span<const std::uint8_t> bytes);

/// The same for a PNG or JPEG file.
[[nodiscard]] std::optional<CGSize> pictureSize(std::span<const std::uint8_t> bytes);

} // namespace platform

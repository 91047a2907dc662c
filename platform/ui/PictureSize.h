#pragma once

#include "platform/foundation/Value.h"
#include "platform/ui/CGGeometry.h"

#include <optional>

namespace platform {

/// The width and height in pixels that a PNG or JPEG file states; nothing for any other file. Decodes no picture. Any
/// thread.
[[nodiscard]] std::optional<CGSize> pictureSize(const Data& bytes);

} // namespace platform

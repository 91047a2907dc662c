#pragma once

#include "platform/foundation/Value.h"
#include "platform/ui/CGGeometry.h"

#include <optional>

namespace platform {

/// How many pixels wide and high the picture in a PNG or JPEG file says that it is; nothing for any other file. Nothing
/// is decoded. Any thread.
[[nodiscard]] std::optional<CGSize> pictureSize(const Data& bytes);

} // namespace platform

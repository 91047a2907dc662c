#pragma once

#include "lockscreen/Luminance.h"

#include <QImage>
#include <QSize>

namespace lumora {

/// How bright each cell of the picture is: the mean of its pixels in linear light. Any thread.
[[nodiscard]] Luminance measureLuminance(const QImage& picture, const QSize& cells);

} // namespace lumora

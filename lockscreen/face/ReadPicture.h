#pragma once

#include "platform/foundation/Result.h"

#include <QImage>
#include <QSize>
#include <QString>

namespace lumora {

/// A picture from a file, cut to that shape and scaled to that size: all of its height or all of its width, from the
/// middle. Transparent parts become black. What is too large to be a picture is told, and costs little memory. Any
/// thread.
[[nodiscard]] platform::Result<QImage> readPicture(const QString& file, const QSize& pixels);

} // namespace lumora

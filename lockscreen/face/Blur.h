#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

namespace lumora {

/// Blurred pictures have a quarter of the edges of what they are the blur of, and are made larger where they are shown.
/// All pictures are opaque (Format_RGB32). Any thread.
inline constexpr int kSoftScale = 4;

/// The picture at a quarter of its edges, rounded up.
[[nodiscard]] QImage quartered(const QImage& picture);

/// Blurs the picture in place by three boxes, which is a bell curve to the eye. `radius` is the pixels on each side of a
/// box's middle. Beyond the edges the picture goes on with the pixels there.
void blur(QImage& picture, int radius);

/// Mixes a colour into each pixel; with a share of 1 nothing else is left.
void mixIn(QImage& picture, const QColor& color, double share);

/// A part of the picture, made four times as large. `part` is in pixels of the outcome and may leave the picture, which
/// goes on with the pixels at its edges.
[[nodiscard]] QImage enlarged(const QImage& quarter, const QRect& part);
/// The same, laid over another picture, which is four times as large as the quarter and within which the part lies; with
/// an opacity of 1 nothing of that is seen.
[[nodiscard]] QImage enlargedOver(const QImage& quarter, const QRect& part, const QImage& under, double opacity);

} // namespace lumora

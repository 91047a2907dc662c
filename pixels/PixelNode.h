#pragma once

#include <QImage>
#include <QRect>
#include <QSize>
#include <QSizeF>

#include <functional>

class QQuickWindow;
class QSGNode;

namespace lumora {

/// What an item shows: a picture; or, if that is null, what `part` makes of it, which is opaque. One that fills the screen
/// takes less time to make again for what is drawn, part by part, than to read from memory.
struct Pixels {
    QImage picture;
    std::function<QImage(const QRect& part)> part;
    QSize size; ///< of what `part` makes
};

/// Shows them over an item of that size in points: as they are, if they are as many as the item has on the screen;
/// stretched, if not. `former` is the node that this has returned for the item before, or null; so is what is returned
/// for none. Where Qt Quick makes its nodes.
[[nodiscard]] QSGNode* showPixels(QSGNode* former, QQuickWindow& window, const Pixels& pixels, const QSizeF& size);

} // namespace lumora

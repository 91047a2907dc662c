#pragma once

#include <QSizeF>

class QImage;
class QQuickWindow;
class QSGNode;

namespace lumora {

/// Shows a picture over an item of that size in points: as it is, pixel by pixel, if it has as many pixels as the item has
/// on the screen; stretched, if not. `former` is the node that this has returned for the item before, or null; so is what
/// is returned for a null picture. Where Qt Quick makes its nodes.
[[nodiscard]] QSGNode* showPixels(QSGNode* former, QQuickWindow& window, const QImage& picture, const QSizeF& size);

} // namespace lumora

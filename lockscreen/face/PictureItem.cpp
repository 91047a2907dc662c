#include "lockscreen/face/PictureItem.h"

#include "lockscreen/face/Blur.h"

#include <QQuickWindow>

#include <algorithm>

namespace lumora {

PictureItem::PictureItem(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    connect(this, &PictureItem::changed, this, [this] { update(); });
}

void PictureItem::setBackdrop(Backdrop* backdrop) {
    if (backdrop_ == backdrop) return;
    if (backdrop_) disconnect(backdrop_, nullptr, this, nullptr);
    backdrop_ = backdrop;
    if (backdrop_) connect(backdrop_, &Backdrop::changed, this, &PictureItem::changed);
    emit changed();
}

void PictureItem::geometryChange(const QRectF& geometry, const QRectF& former) {
    QQuickItem::geometryChange(geometry, former);
    update();
}

Pixels PictureItem::pixels() const {
    if (!backdrop_) return {};
    const QImage& sharp = backdrop_->sharp();
    const double share = std::clamp(share_, 0.0, 1.0);
    const double tinted = std::clamp(tintOpacity_, 0.0, 1.0);
    const double opacity = soft_ ? 1 - (1 - share) * (1 - tinted) : 0;
    if (opacity <= 0) return {sharp, {}, {}};
    // Blur and tint become one layer while they are small.
    QImage layer = backdrop_->soft();
    if (tinted > 0) mixIn(layer, tint_, tinted / opacity);
    const auto make = [layer, sharp, opacity](const QRect& part) { return enlargedOver(layer, part, sharp, opacity); };
    return {{}, make, sharp.size()};
}

QSGNode* PictureItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    return showPixels(node, *window(), pixels(), size());
}

} // namespace lumora

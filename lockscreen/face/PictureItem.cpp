#include "lockscreen/face/PictureItem.h"

#include "lockscreen/face/Blur.h"
#include "lockscreen/face/PixelNode.h"

#include <QQuickWindow>

#include <algorithm>
#include <utility>

namespace lumora {

PictureItem::PictureItem(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    connect(this, &PictureItem::changed, this, [this] {
        stale_ = true;
        update();
    });
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

void PictureItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged) emit changed();
}

void PictureItem::draw() {
    if (!backdrop_ || backdrop_->sharp().isNull() || !isVisible()) {
        shown_ = {};
        return;
    }
    const QImage& sharp = backdrop_->sharp();
    const double share = std::clamp(share_, 0.0, 1.0);
    const double tinted = std::clamp(tintOpacity_, 0.0, 1.0);
    const double opacity = soft_ ? 1 - (1 - share) * (1 - tinted) : 0;
    if (opacity <= 0) {
        shown_ = sharp;
        return;
    }
    // Blur and tint become one layer while they are small.
    QImage layer = backdrop_->soft();
    if (tinted > 0) mixIn(layer, tint_, tinted / opacity);
    // In the memory of the former picture, which takes the system a while to hand out.
    if (shown_.size() != sharp.size() || shown_.constBits() == sharp.constBits())
        shown_ = QImage(sharp.size(), QImage::Format_RGB32);
    enlargeOver(layer, sharp, opacity, shown_);
}

/// An item that nobody sees gives its memory back.
QSGNode* PictureItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    if (std::exchange(stale_, false)) {
        delete std::exchange(node, nullptr); // lets go of the picture, which would be copied when it is drawn upon
        draw();
    }
    return showPixels(node, *window(), shown_, size());
}

} // namespace lumora

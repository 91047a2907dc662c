#include "lockscreen/face/PictureItem.h"

#include "lockscreen/face/Blur.h"

#include <QQuickWindow>
#include <QSGImageNode>

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

QImage PictureItem::picture() const {
    if (!backdrop_ || backdrop_->sharp().isNull() || !isVisible()) return {};
    if (!soft_) return backdrop_->sharp();
    // Blur and tint become one layer while they are small.
    const double share = std::clamp(share_, 0.0, 1.0);
    const double tinted = std::clamp(tintOpacity_, 0.0, 1.0);
    const double opacity = 1 - (1 - share) * (1 - tinted);
    if (opacity <= 0) return backdrop_->sharp();
    QImage layer = backdrop_->soft();
    if (tinted > 0) mixIn(layer, tint_, tinted / opacity);
    QImage picture = enlarged(layer, backdrop_->sharp().rect());
    if (opacity < 1) layOver(picture, backdrop_->sharp(), opacity);
    return picture;
}

/// An item that nobody sees gives its memory back, and so does a former picture before there is a new one.
QSGNode* PictureItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    auto* image = static_cast<QSGImageNode*>(node);
    if (std::exchange(stale_, false)) {
        delete std::exchange(image, nullptr);
        const QImage shown = picture();
        if (shown.isNull()) return nullptr;
        image = window()->createImageNode();
        image->setOwnsTexture(true);
        image->setTexture(window()->createTextureFromImage(shown, QQuickWindow::TextureIsOpaque));
        image->setSourceRect(shown.rect());
    }
    if (image) image->setRect(boundingRect());
    return image;
}

} // namespace lumora

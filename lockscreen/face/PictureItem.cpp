#include "lockscreen/face/PictureItem.h"

#include "lockscreen/face/Blur.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGNode>

#include <algorithm>
#include <cmath>
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

/// Both layers as one: the soft picture by its share, then the tint over it.
double PictureItem::opacityOfAll() const {
    return soft_ ? 1 - (1 - std::clamp(share_, 0.0, 1.0)) * (1 - std::clamp(tintOpacity_, 0.0, 1.0)) : 1;
}

QImage PictureItem::picture() const {
    if (!backdrop_ || backdrop_->sharp().isNull() || !isVisible()) return {};
    if (!soft_) return backdrop_->sharp();
    const double opacity = opacityOfAll();
    if (opacity <= 0) return {};
    QImage quarter = backdrop_->soft();
    if (tintOpacity_ > 0) mixIn(quarter, tint_, tintOpacity_ / opacity);
    return enlarged(quarter, backdrop_->sharp().rect());
}

/// An item that nobody sees gives its memory back.
QSGNode* PictureItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    auto* layer = static_cast<QSGOpacityNode*>(node);
    auto* image = layer ? static_cast<QSGImageNode*>(layer->firstChild()) : nullptr;
    if (std::exchange(stale_, false)) {
        const QImage shown = picture();
        if (shown.isNull()) {
            delete layer;
            return nullptr;
        }
        if (!layer) {
            layer = new QSGOpacityNode;
            image = window()->createImageNode();
            image->setOwnsTexture(true);
            image->setFlag(QSGNode::OwnedByParent);
            layer->appendChildNode(image);
        }
        image->setTexture(window()->createTextureFromImage(shown, QQuickWindow::TextureIsOpaque));
        image->setSourceRect(shown.rect());
        layer->setOpacity(opacityOfAll());
    }
    if (image) image->setRect(boundingRect());
    return layer;
}

} // namespace lumora

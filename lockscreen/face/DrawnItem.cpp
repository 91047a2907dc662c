#include "lockscreen/face/DrawnItem.h"

#include "lockscreen/face/PixelNode.h"

#include <QPainter>

#include <utility>

namespace lumora {

DrawnItem::DrawnItem(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void DrawnItem::redraw() {
    stale_ = true;
    update();
}

QImage DrawnItem::painted(const QSize& pixels, double ratio, const std::function<void(QPainter& painter)>& paint) {
    QImage picture(pixels, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    paint(painter);
    return picture;
}

QSGNode* DrawnItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    if (!std::exchange(stale_, false)) return node;
    const double ratio = window()->effectiveDevicePixelRatio();
    const QSizeF pixels = size() * ratio;
    const QImage picture = pixels.toSize().isEmpty() ? QImage() : draw(pixels.toSize(), ratio);
    if (picture.isNull()) {
        delete node;
        return nullptr;
    }
    auto* shown = node ? static_cast<PixelNode*>(node) : new PixelNode(*window());
    shown->show(picture, *window());
    shown->fill(pixels, QSGTexture::Linear);
    return shown;
}

void DrawnItem::geometryChange(const QRectF& geometry, const QRectF& former) {
    QQuickItem::geometryChange(geometry, former);
    if (geometry.size() != former.size()) redraw();
}

void DrawnItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged) redraw();
}

} // namespace lumora

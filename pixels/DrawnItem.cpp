#include "pixels/DrawnItem.h"

#include "pixels/PixelNode.h"

#include <QPainter>
#include <QQuickWindow>

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
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(ratio, ratio);
    paint(painter);
    return picture;
}

QSGNode* DrawnItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    if (!std::exchange(stale_, false) && node) return node; // there is none in another window
    const double ratio = window()->effectiveDevicePixelRatio();
    const QSize pixels = (size() * ratio).toSize();
    return showPixels(node, *window(), {pixels.isEmpty() ? QImage() : draw(pixels, ratio), {}, {}}, size());
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

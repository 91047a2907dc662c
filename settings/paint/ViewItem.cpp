#include "settings/paint/ViewItem.h"

#include "pixels/PixelNode.h"
#include "settings/paint/ViewChange.h"

#include <QPainter>
#include <QQuickWindow>

#include <utility>

namespace settings {

ViewItem::ViewItem(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void ViewItem::setPage(PageModel* page) {
    if (page_ == page) return;
    if (page_) page_->disconnect(this);
    page_ = page;
    if (page_) connect(page_, &PageModel::viewChanged, this, &ViewItem::takeView);
    takeView();
}

void ViewItem::takeView() {
    const PageModel* page = page_.data();
    const auto before = std::exchange(view_, page ? page->snapshot().view : nullptr);
    redraw(before && view_ ? changedArea(*before, *view_) : boundingRect());
}

void ViewItem::redraw(const QRectF& area) {
    if (area.isEmpty()) return;
    stale_ |= area.adjusted(-1, -1, 1, 1); // where edges are smoothed
    update();
}

QSGNode* ViewItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    if (node && stale_.isEmpty()) return node;
    delete node; // which shares the picture, so that painting would copy it
    draw(window()->effectiveDevicePixelRatio());
    return lumora::showPixels(nullptr, *window(), {picture_, {}, {}}, size());
}

void ViewItem::draw(double ratio) {
    if (!view_ || !ViewPainter::paints(*view_)) { // as where a table is all that there is
        picture_ = {};
        stale_ = {};
        return;
    }
    const QSize pixels = (size() * ratio).toSize();
    if (picture_.size() != pixels) {
        picture_ = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
        stale_ = boundingRect();
    }
    const QRect area = QRectF(stale_.topLeft() * ratio, stale_.size() * ratio).toAlignedRect() & picture_.rect();
    stale_ = {};
    if (area.isEmpty()) return;
    QPainter painter(&picture_);
    painter.setClipRect(area);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(area, Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.scale(ratio, ratio);
    painter_.paint(painter, *view_);
}

void ViewItem::geometryChange(const QRectF& geometry, const QRectF& former) {
    QQuickItem::geometryChange(geometry, former);
    if (geometry.size() != former.size()) redraw(boundingRect());
}

void ViewItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged) redraw(boundingRect());
}

} // namespace settings

#include "settings/paint/ViewItem.h"

#include "settings/paint/ViewChange.h"

#include <utility>

namespace settings {

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
    const QRectF whole = boundingRect();
    const QRectF area = (before && view_ ? changedArea(*before, *view_) : whole) & whole;
    // An empty rectangle would mean the whole item, and be forgotten once one follows that is not empty.
    if (!area.isEmpty()) update(area.toAlignedRect().adjusted(-1, -1, 1, 1));
}

void ViewItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    const QRectF whole = boundingRect();
    if (newGeometry.size() != oldGeometry.size() && !whole.isEmpty()) update(whole.toAlignedRect());
}

void ViewItem::paint(QPainter* painter) {
    if (view_) painter_.paint(*painter, *view_);
}

} // namespace settings

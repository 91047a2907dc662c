#include "settings/app/ViewItem.h"

#include <QPainter>

namespace settings {
namespace {

QColor toQColor(const platform::UIColor& color) {
    return QColor::fromRgbF(float(color.red()), float(color.green()), float(color.blue()), float(color.alpha()));
}

/// Back to front, each view in its parent's coordinates; a view does not clip what is in it.
void draw(QPainter& painter, const ViewSnapshot& view) {
    const platform::CGRect& frame = view.frame;
    painter.save();
    painter.translate(frame.origin.x, frame.origin.y);
    if (const auto& background = view.layer.backgroundColor)
        painter.fillRect(QRectF(0, 0, frame.size.width, frame.size.height), toQColor(*background));
    for (const ViewSnapshot& subview : view.subviews)
        draw(painter, subview);
    painter.restore();
}

} // namespace

void ViewItem::setPage(PageModel* page) {
    if (page_ == page) return;
    if (page_) page_->disconnect(this);
    page_ = page;
    if (page_) connect(page_, &PageModel::viewChanged, this, &ViewItem::takeView);
    takeView();
    emit pageChanged();
}

void ViewItem::takeView() {
    const PageModel* page = page_.data();
    view_ = page ? page->snapshot().view : nullptr;
    update();
}

void ViewItem::paint(QPainter* painter) {
    if (view_) draw(*painter, *view_);
}

} // namespace settings

#include "settings/paint/DashedBox.h"

#include <QPainter>

namespace settings {

DashedBox::DashedBox(QQuickItem* parent) : DrawnItem(parent) {
    connect(this, &DashedBox::changed, this, &DashedBox::redraw);
}

QImage DashedBox::draw(const QSize& pixels, double ratio) {
    return painted(pixels, ratio, [this](QPainter& painter) {
        QPen pen(color_, 1);
        pen.setDashPattern({4, 4});
        painter.setPen(pen);
        painter.drawRoundedRect(QRectF(0.5, 0.5, width() - 1, height() - 1), radius_, radius_);
    });
}

} // namespace settings

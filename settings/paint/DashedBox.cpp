#include "settings/paint/DashedBox.h"

#include <QPainter>

namespace settings {

DashedBox::DashedBox(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &DashedBox::changed, this, [this] { update(); });
}

void DashedBox::paint(QPainter* painter) {
    QPen pen(color_, 1);
    pen.setDashPattern({4, 4});
    painter->setPen(pen);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->drawRoundedRect(QRectF(0.5, 0.5, width() - 1, height() - 1), radius_, radius_);
}

} // namespace settings

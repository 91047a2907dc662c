#include "lockscreen/face/Frost.h"

#include "lockscreen/face/Blur.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>

namespace lumora {
namespace {

/// The light on the rim, at the top and at the bottom.
constexpr double kRimAbove = 0.24;
constexpr double kRimBelow = 0.06;

QColor withOpacity(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(std::clamp(opacity, 0.0, 1.0)));
    return color;
}

} // namespace

Frost::Frost(QQuickItem* parent) : DrawnItem(parent) {
    connect(this, &Frost::changed, this, &Frost::redraw);
}

void Frost::setBackdrop(Backdrop* backdrop) {
    if (backdrop_ == backdrop) return;
    if (backdrop_) disconnect(backdrop_, nullptr, this, nullptr);
    backdrop_ = backdrop;
    if (backdrop_) connect(backdrop_, &Backdrop::changed, this, &Frost::changed);
    emit changed();
}

QImage Frost::draw(const QSize& pixels, double ratio) {
    if (!backdrop_ || backdrop_->soft().isNull()) return {};
    const QRect part((place_ * backdrop_->ratio()).toPoint(), pixels);
    QImage blurred = enlarged(backdrop_->soft(), part);
    mixIn(blurred, tint_, tintOpacity_);
    const double radius = radius_ * ratio;
    return painted(pixels, 1, [&](QPainter& painter) { // in pixels, so that the blur is drawn as it is
        const QRectF pane(QPointF(), pixels);
        QPainterPath shape;
        shape.addRoundedRect(pane, radius, radius);
        painter.fillPath(shape, QBrush(blurred));

        QLinearGradient light(pane.topLeft(), pane.bottomLeft());
        light.setColorAt(0, withOpacity(Qt::white, kRimAbove));
        light.setColorAt(1, withOpacity(Qt::white, kRimBelow));
        painter.setPen(QPen(QBrush(light), 1));
        painter.drawRoundedRect(pane.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
    });
}

} // namespace lumora

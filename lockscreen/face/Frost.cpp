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

Frost::Frost(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &Frost::changed, this, [this] { update(); });
}

void Frost::setBackdrop(Backdrop* backdrop) {
    if (backdrop_ == backdrop) return;
    if (backdrop_) disconnect(backdrop_, nullptr, this, nullptr);
    backdrop_ = backdrop;
    if (backdrop_) connect(backdrop_, &Backdrop::changed, this, &Frost::changed);
    emit changed();
}

void Frost::paint(QPainter* painter) {
    if (!backdrop_ || backdrop_->soft().isNull()) return;
    const double ratio = painter->deviceTransform().m11();
    // In pixels, so that the blur is drawn as it is.
    painter->scale(1 / ratio, 1 / ratio);
    painter->setRenderHint(QPainter::Antialiasing);
    const QRectF pane(QPointF(), size() * ratio);
    const double radius = radius_ * ratio;

    const QRect part((place_ * backdrop_->ratio()).toPoint(), pane.toAlignedRect().size());
    QImage blurred = enlarged(backdrop_->soft(), part);
    mixIn(blurred, tint_, tintOpacity_);
    QPainterPath shape;
    shape.addRoundedRect(pane, radius, radius);
    painter->fillPath(shape, QBrush(blurred));

    QLinearGradient light(pane.topLeft(), pane.bottomLeft());
    light.setColorAt(0, withOpacity(Qt::white, kRimAbove));
    light.setColorAt(1, withOpacity(Qt::white, kRimBelow));
    painter->setPen(QPen(QBrush(light), 1));
    painter->drawRoundedRect(pane.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
}

} // namespace lumora

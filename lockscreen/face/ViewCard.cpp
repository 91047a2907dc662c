#include "lockscreen/face/ViewCard.h"

#include <QLinearGradient>
#include <QPainter>
#include <QQuickWindow>

#include <cmath>
#include <utility>

namespace lumora {
namespace {

constexpr double kDimmed = 0.25;

/// Without its middle, where words stand.
QImage dimmed(QImage image) {
    QLinearGradient shade(0, 0, 0, image.height());
    for (const auto& [at, opacity] :
         {std::pair(0.0, kDimmed), std::pair(0.33, 0.0), std::pair(0.67, 0.0), std::pair(1.0, kDimmed)})
        shade.setColorAt(at, QColor::fromRgbF(0, 0, 0, float(opacity)));
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(image.rect(), shade);
    return image;
}

} // namespace

ViewCard::ViewCard(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &ViewCard::changed, this, [this] {
        place();
        look();
    });
}

ViewCard::~ViewCard() {
    if (store()) store()->hide(this);
}

void ViewCard::setFace(FaceModel* face) {
    face_ = face;
    if (!store()) return;
    connect(store(), &ViewStore::changed, this, [this](const QString& identifier) {
        if (identifier.isEmpty() || identifier == identifier_) look();
    });
    look();
}

bool ViewCard::draws() const {
    return store() && store()->draws(identifier_);
}

void ViewCard::restart() {
    if (store()) store()->restart(identifier_);
}

void ViewCard::place() {
    if (!store() || !isComponentComplete()) return;
    if (!isVisible() || identifier_.isEmpty() || unit_ <= 0) {
        store()->hide(this);
        return;
    }
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1;
    // In whole points, so that another size of the screen is no other drawing.
    store()->show(this, identifier_, {QSizeF((size() / unit_).toSize()), unit_ * ratio, ink_});
}

void ViewCard::look() {
    ViewStore::Drawn drawn = store() ? store()->drawn(identifier_) : ViewStore::Drawn();
    const bool repaints = drawn.image.cacheKey() != drawn_.image.cacheKey() || drawn.fault != drawn_.fault;
    drawn_ = std::move(drawn);
    emit drawnChanged();
    if (repaints) update();
}

void ViewCard::componentComplete() {
    QQuickPaintedItem::componentComplete();
    place();
}

void ViewCard::geometryChange(const QRectF& geometry, const QRectF& former) {
    QQuickPaintedItem::geometryChange(geometry, former);
    if (geometry.size() != former.size()) place();
}

void ViewCard::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickPaintedItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged || change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        place();
}

void ViewCard::paint(QPainter* painter) {
    if (drawn_.image.isNull()) return;
    const QImage image = hasFault() ? dimmed(drawn_.image) : drawn_.image;
    const double ratio = painter->deviceTransform().m11();
    const QSizeF off = size() - image.size() / ratio;
    if (std::abs(off.width()) < 1 && std::abs(off.height()) < 1) {
        painter->scale(1 / ratio, 1 / ratio); // pixel by pixel
        painter->drawImage(QPointF(), image);
        return;
    }
    painter->setRenderHint(QPainter::SmoothPixmapTransform); // until it has been painted in the new size
    painter->drawImage(boundingRect(), image);
}

} // namespace lumora

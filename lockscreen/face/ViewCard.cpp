#include "lockscreen/face/ViewCard.h"

#include <QLinearGradient>
#include <QPainter>
#include <QQuickWindow>

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

ViewCard::ViewCard(QQuickItem* parent) : DrawnItem(parent) {
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
    if (repaints) redraw();
}

void ViewCard::componentComplete() {
    DrawnItem::componentComplete();
    place();
}

void ViewCard::geometryChange(const QRectF& geometry, const QRectF& former) {
    DrawnItem::geometryChange(geometry, former);
    if (geometry.size() != former.size()) place();
}

void ViewCard::itemChange(ItemChange change, const ItemChangeData& data) {
    DrawnItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged || change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        place();
}

QImage ViewCard::draw(const QSize&, double) {
    return hasFault() && !drawn_.image.isNull() ? dimmed(drawn_.image) : drawn_.image;
}

} // namespace lumora

#include "pixels/PixelNode.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRenderNode>
#include <QSGRendererInterface>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace lumora {
namespace {

QSize sizeOf(const Pixels& pixels) {
    return pixels.picture.isNull() ? pixels.size : pixels.picture.size();
}

QImage whole(const Pixels& pixels) {
    return pixels.picture.isNull() ? pixels.part(QRect({}, pixels.size)) : pixels.picture;
}

/// Whether an item of that size in points is shown by them as they are.
bool fit(const Pixels& pixels, const QSizeF& size, double ratio) {
    const QSizeF off = size * ratio - sizeOf(pixels);
    return std::abs(off.width()) < 1 && std::abs(off.height()) < 1;
}

/// What they cover of an item of that size, in points.
QRectF placeOf(const Pixels& pixels, const QSizeF& size, const QQuickWindow& window) {
    const double ratio = window.effectiveDevicePixelRatio();
    return {QPointF(), fit(pixels, size, ratio) ? QSizeF(sizeOf(pixels)) / ratio : size};
}

/// Where a painter draws the scene. Qt Quick's own nodes scale their pictures from points to pixels even where that
/// changes nothing, which takes several times as long with three pixels to a point.
class PaintedPixels : public QSGRenderNode {
  public:
    explicit PaintedPixels(QQuickWindow& window) : window_(window) {}

    void show(const Pixels& pixels, const QSizeF& size) {
        pixels_ = pixels;
        rect_ = placeOf(pixels, size, window_);
        markDirty(DirtyMaterial | DirtyGeometry);
    }

    [[nodiscard]] QRectF rect() const override { return rect_; }
    [[nodiscard]] RenderingFlags flags() const override {
        return pixels_.picture.hasAlphaChannel() ? BoundedRectRendering : BoundedRectRendering | OpaqueRendering;
    }
    void render(const RenderState* state) override {
        auto* painter = static_cast<QPainter*>(
            window_.rendererInterface()->getResource(&window_, QSGRendererInterface::PainterResource));
        const double ratio = window_.effectiveDevicePixelRatio();
        const QTransform place = matrix()->toTransform();
        painter->setClipRegion(*state->clipRegion());
        painter->setOpacity(inheritedOpacity());
        if (place.type() > QTransform::TxTranslate || !fit(pixels_, rect_.size(), ratio)) {
            painter->setTransform(place);
            painter->drawImage(rect_, whole(pixels_));
            return;
        }
        painter->setTransform(QTransform::fromScale(1 / ratio, 1 / ratio));
        const QPoint corner(qRound(place.dx() * ratio), qRound(place.dy() * ratio));
        if (!pixels_.picture.isNull()) return painter->drawImage(corner, pixels_.picture);
        const QRect seen = painter->clipBoundingRect().toAlignedRect().translated(-corner) & QRect({}, pixels_.size);
        for (int y = seen.top(); y <= seen.bottom(); y += kRowsAtATime) {
            const QRect part(seen.left(), y, seen.width(), std::min(kRowsAtATime, seen.bottom() + 1 - y));
            painter->drawImage(corner + part.topLeft(), pixels_.part(part));
        }
    }

  private:
    static constexpr int kRowsAtATime = 32; ///< which stay in the processor's cache

    QQuickWindow& window_;
    Pixels pixels_;
    QRectF rect_;
};

} // namespace

QSGNode* showPixels(QSGNode* former, QQuickWindow& window, const Pixels& pixels, const QSizeF& size) {
    if (sizeOf(pixels).isEmpty()) {
        delete former;
        return nullptr;
    }
    if (window.rendererInterface()->graphicsApi() == QSGRendererInterface::Software) {
        auto* node = former ? static_cast<PaintedPixels*>(former) : new PaintedPixels(window);
        node->show(pixels, size);
        return node;
    }
    const QImage picture = whole(pixels);
    auto* node = former ? static_cast<QSGImageNode*>(former) : window.createImageNode();
    node->setOwnsTexture(true);
    node->setTexture(window.createTextureFromImage(
        picture, picture.hasAlphaChannel() ? QQuickWindow::TextureHasAlphaChannel : QQuickWindow::TextureIsOpaque));
    node->setSourceRect(picture.rect());
    node->setFiltering(QSGTexture::Linear); // which costs a GPU nothing, where the item stands between pixels
    node->setRect(placeOf(pixels, size, window));
    return node;
}

} // namespace lumora

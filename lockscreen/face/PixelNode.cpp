#include "lockscreen/face/PixelNode.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRenderNode>
#include <QSGRendererInterface>
#include <QTransform>

#include <cmath>

namespace lumora {
namespace {

/// Where a painter draws the scene. Qt Quick's own nodes scale their pictures from points to pixels even where that
/// changes nothing, which takes several times as long with three pixels to a point.
class PaintedPixels : public QSGRenderNode {
  public:
    explicit PaintedPixels(QQuickWindow& window) : window_(window) {}

    void show(const QImage& picture, const QSizeF& size) {
        picture_ = picture;
        size_ = size;
        markDirty(DirtyMaterial | DirtyGeometry);
    }

    [[nodiscard]] QRectF rect() const override { return {QPointF(), size_}; }
    [[nodiscard]] RenderingFlags flags() const override {
        return picture_.hasAlphaChannel() ? BoundedRectRendering : BoundedRectRendering | OpaqueRendering;
    }
    void render(const RenderState* state) override {
        auto* painter = static_cast<QPainter*>(
            window_.rendererInterface()->getResource(&window_, QSGRendererInterface::PainterResource));
        const double ratio = window_.effectiveDevicePixelRatio();
        const QTransform place = matrix()->toTransform();
        const QSizeF off = size_ * ratio - picture_.size();
        painter->setClipRegion(*state->clipRegion());
        painter->setOpacity(inheritedOpacity());
        if (place.type() > QTransform::TxTranslate || std::abs(off.width()) >= 1 || std::abs(off.height()) >= 1) {
            painter->setTransform(place);
            painter->drawImage(rect(), picture_);
            return;
        }
        painter->setTransform(QTransform::fromScale(1 / ratio, 1 / ratio));
        painter->drawImage(QPointF(std::round(place.dx() * ratio), std::round(place.dy() * ratio)), picture_);
    }

  private:
    QQuickWindow& window_;
    QImage picture_;
    QSizeF size_;
};

} // namespace

QSGNode* showPixels(QSGNode* former, QQuickWindow& window, const QImage& picture, const QSizeF& size) {
    if (picture.isNull()) {
        delete former;
        return nullptr;
    }
    if (window.rendererInterface()->graphicsApi() == QSGRendererInterface::Software) {
        auto* node = former ? static_cast<PaintedPixels*>(former) : new PaintedPixels(window);
        node->show(picture, size);
        return node;
    }
    auto* node = former ? static_cast<QSGImageNode*>(former) : window.createImageNode();
    node->setOwnsTexture(true);
    node->setTexture(window.createTextureFromImage(
        picture, picture.hasAlphaChannel() ? QQuickWindow::TextureHasAlphaChannel : QQuickWindow::TextureIsOpaque));
    node->setSourceRect(picture.rect());
    node->setRect({QPointF(), size});
    return node;
}

} // namespace lumora

#pragma once

#include <QImage>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGTransformNode>

#include <memory>

namespace lumora {

/// Shows a picture at the corner of its item, one pixel of it in each pixel of the window. Its length unit is the pixel:
/// a picture that is scaled from points takes several times as long to draw, even where it comes out as it was.
/// Where Qt Quick makes its nodes.
///
///     auto* pixels = node ? static_cast<PixelNode*>(node) : new PixelNode(*window());
///     pixels->show(picture, *window());
class PixelNode : public QSGTransformNode {
  public:
    explicit PixelNode(QQuickWindow& window) : image_(window.createImageNode()) {
        image_->setOwnsTexture(true);
        appendChildNode(image_.get());
    }
    void show(const QImage& picture, QQuickWindow& window) {
        const auto edge = static_cast<float>(1 / window.effectiveDevicePixelRatio());
        QMatrix4x4 pixelsToPoints;
        pixelsToPoints.scale(edge, edge);
        setMatrix(pixelsToPoints);
        image_->setTexture(window.createTextureFromImage(
            picture, picture.hasAlphaChannel() ? QQuickWindow::TextureHasAlphaChannel : QQuickWindow::TextureIsOpaque));
        image_->setSourceRect(picture.rect());
        image_->setRect(picture.rect());
    }
    /// Stretches the picture over so many pixels if it is of another size, until there is one that fits.
    void fill(const QSizeF& pixels, QSGTexture::Filtering stretching) {
        const QSizeF own = image_->sourceRect().size();
        const bool fits = qAbs(own.width() - pixels.width()) < 1 && qAbs(own.height() - pixels.height()) < 1;
        image_->setRect({QPointF(), fits ? own : pixels});
        image_->setFiltering(fits ? QSGTexture::Nearest : stretching);
    }

  private:
    std::unique_ptr<QSGImageNode> image_;
};

} // namespace lumora

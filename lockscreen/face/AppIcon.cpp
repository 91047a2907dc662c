#include "lockscreen/face/AppIcon.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace lumora {
namespace {

constexpr double kRoundScale = 1.14; // so that no corner of the picture shows
const QColor kPressed(0, 0, 0, 90);
const QColor kNoShade(60, 64, 80);

/// The mean of what is opaque.
QColor meanOf(const QImage& image) {
    if (image.isNull()) return {};
    const QImage small = image.scaled(4, 4, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                             .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    int red = 0;
    int green = 0;
    int blue = 0;
    int alpha = 0;
    for (int y = 0; y < small.height(); ++y)
        for (int x = 0; x < small.width(); ++x) {
            const QRgb pixel = small.pixel(x, y);
            red += qRed(pixel) * qAlpha(pixel);
            green += qGreen(pixel) * qAlpha(pixel);
            blue += qBlue(pixel) * qAlpha(pixel);
            alpha += qAlpha(pixel);
        }
    return alpha == 0 ? QColor() : QColor(red / alpha, green / alpha, blue / alpha);
}

} // namespace

AppIcon::AppIcon(QQuickItem* parent) : DrawnItem(parent) {
    connect(this, &AppIcon::changed, this, &AppIcon::look);
}

void AppIcon::setFace(FaceModel* face) {
    face_ = face;
    if (face) {
        connect(face->iconStore(), &IconStore::changed, this, [this](const QString& identifier) {
            if (identifier.isEmpty() || identifier == identifier_) look();
        });
        look();
    }
}

// Asked for by few, so it is not kept for the others.
QColor AppIcon::shade() const {
    const QColor mean = meanOf(icon_);
    return mean.isValid() ? mean : kNoShade;
}

void AppIcon::look() {
    const QImage icon = face_ ? face_->iconStore()->icon(identifier_) : QImage();
    if (icon.cacheKey() != icon_.cacheKey()) {
        icon_ = icon;
        scaled_ = {};
        emit shadeChanged();
    }
    redraw();
}

QImage AppIcon::draw(const QSize& pixels, double ratio) {
    if (icon_.isNull()) return {};
    const int edge = static_cast<int>(std::lround(pixels.width() * (round_ ? kRoundScale : 1)));
    if (scaled_.width() != edge)
        scaled_ = icon_.scaled(edge, edge, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                      .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QImage picture = scaled_;
    if (pressed_) {
        QPainter dark(&picture);
        dark.setCompositionMode(QPainter::CompositionMode_SourceAtop);
        dark.fillRect(picture.rect(), kPressed);
    }
    if (!round_) return picture;
    return painted(pixels, 1, [&](QPainter& painter) {
        QPainterPath circle;
        circle.addEllipse({QPointF(), size() * ratio});
        QBrush brush(picture);
        brush.setTransform(QTransform::fromTranslate((pixels.width() - edge) / 2.0, (pixels.height() - edge) / 2.0));
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.fillPath(circle, brush);
    });
}

} // namespace lumora

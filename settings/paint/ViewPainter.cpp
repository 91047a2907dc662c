#include "settings/paint/ViewPainter.h"

#include <QLinearGradient>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <vector>

namespace settings {

using namespace platform;

namespace {

QColor toQColor(const UIColor& color) {
    return QColor::fromRgbF(float(color.red()), float(color.green()), float(color.blue()), float(color.alpha()));
}

/// The screen's pixels per point.
double pixels(const QPainter& painter) {
    return painter.combinedTransform().m11();
}

QRectF onPixels(const QPainter& painter, const QRectF& box) {
    const QTransform toScreen = painter.combinedTransform();
    const QRectF there = toScreen.mapRect(box);
    const QPointF topLeft(std::round(there.left()), std::round(there.top()));
    const QPointF bottomRight(std::round(there.right()), std::round(there.bottom()));
    return toScreen.inverted().mapRect(QRectF(topLeft, bottomRight));
}

QPainterPath rounded(const QRectF& box, double radius) {
    QPainterPath path;
    if (radius > 0)
        path.addRoundedRect(box, radius, radius);
    else
        path.addRect(box);
    return path;
}

void paintBorder(QPainter& painter, const CALayer& layer, const QRectF& box, double radius) {
    const double width = std::min({layer.borderWidth, box.width() / 2, box.height() / 2});
    if (width <= 0 || !layer.borderColor) return;
    QPainterPath ring = rounded(box, radius); // its inner edge makes a hole in it
    ring.addPath(rounded(box.adjusted(width, width, -width, -width), std::max(0.0, radius - width)));
    painter.fillPath(ring, toQColor(*layer.borderColor));
}

/// Where a gradient paints: between its ends, across the whole drawing, and beyond those ends where it goes on.
QPainterPath bandOf(const CGDrawing::LinearGradient& step, double farAway) {
    const QPointF start(step.start.x, step.start.y);
    const QPointF end(step.end.x, step.end.y);
    const QPointF along = (end - start) / std::hypot(end.x() - start.x(), end.y() - start.y()) * farAway;
    const QPointF across(-along.y(), along.x());
    const QPointF from = step.options & 1U ? start - along : start;
    const QPointF to = step.options & 2U ? end + along : end;
    QPainterPath band;
    band.addPolygon(QPolygonF{from + across, to + across, to - across, from - across});
    return band;
}

void paintGradient(QPainter& painter, const CGDrawing::LinearGradient& step, CGSize size) {
    if (step.start == step.end) return;
    QLinearGradient gradient(step.start.x, step.start.y, step.end.x, step.end.y);
    for (const CGGradient::Stop& stop : step.gradient->stops())
        gradient.setColorAt(stop.location,
                            QColor::fromRgbF(float(stop.red), float(stop.green), float(stop.blue), float(stop.alpha)));
    const double farAway = size.width + size.height + std::abs(step.start.x) + std::abs(step.start.y) +
                           std::abs(step.end.x) + std::abs(step.end.y);
    painter.fillPath(bandOf(step, farAway), gradient);
}

void repeat(QPainter& painter, const CGDrawing& drawing, const QRectF& box) {
    painter.save();
    painter.translate(box.topLeft());
    painter.scale(box.width() / drawing.size.width, box.height() / drawing.size.height);
    painter.setClipRect(QRectF(0, 0, drawing.size.width, drawing.size.height), Qt::IntersectClip);
    int saved = 1;
    for (const CGDrawing::Step& step : drawing.steps) {
        if (std::holds_alternative<CGDrawing::SaveState>(step)) {
            painter.save();
            ++saved;
        } else if (std::holds_alternative<CGDrawing::RestoreState>(step)) {
            if (saved == 1) continue; // a view restores only what it has saved
            painter.restore();
            --saved;
        } else if (const auto* clip = std::get_if<CGDrawing::Clip>(&step)) {
            const CGRect& rect = clip->rect;
            painter.setClipRect(QRectF(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height),
                                Qt::IntersectClip);
        } else if (const auto* gradient = std::get_if<CGDrawing::LinearGradient>(&step)) {
            paintGradient(painter, *gradient, drawing.size);
        }
    }
    for (; saved > 0; --saved)
        painter.restore();
}

/// Finer than one sees, and coarse enough for a shadow to be found again.
QPointF inEighths(QPointF point) {
    return {std::round(point.x() * 8) / 8, std::round(point.y() * 8) / 8};
}

/// The weights of a pixel and of its neighbours on one side. Together with the other side's they add up to 1.
std::vector<float> weightsOf(double blur) {
    std::vector<float> weights(std::size_t(std::ceil(3 * blur)) + 1);
    float sum = 0;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        weights[i] = float(std::exp(-double(i * i) / (2 * blur * blur)));
        sum += i == 0 ? weights[i] : 2 * weights[i];
    }
    for (float& weight : weights)
        weight /= sum;
    return weights;
}

/// Blurs lines of `length` values, each `step` behind the one before, the lines themselves `stride` apart.
void blurLines(std::vector<float>& values, const std::vector<float>& weights, std::size_t lines, std::size_t stride,
               std::size_t length, std::size_t step) {
    const std::size_t reach = weights.size() - 1;
    std::vector<float> line(length + 2 * reach);
    for (std::size_t i = 0; i < lines; ++i) {
        for (std::size_t j = 0; j < length; ++j)
            line[reach + j] = values[i * stride + j * step];
        for (std::size_t j = 0; j < length; ++j) {
            const float* at = line.data() + reach + j;
            float value = weights[0] * *at;
            for (std::size_t k = 1; k <= reach; ++k)
                value += weights[k] * (*(at - k) + at[k]);
            values[i * stride + j * step] = value;
        }
    }
}

} // namespace

double marginOf(double blur) {
    return std::ceil(3 * blur) + 1;
}

bool ViewPainter::paints(const ViewSnapshot& view) {
    const CALayer& layer = view.layer;
    return layer.backgroundColor || view.image || view.drawing || layer.shadowOpacity > 0 || layer.borderWidth > 0 ||
           std::ranges::any_of(view.subviews, paints);
}

void ViewPainter::paint(QPainter& painter, const ViewSnapshot& view) {
    const CALayer& layer = view.layer;
    const QRectF bounds(0, 0, view.frame.size.width, view.frame.size.height);
    const double radius = std::min({layer.cornerRadius, bounds.width() / 2, bounds.height() / 2});
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.translate(view.frame.origin.x, view.frame.origin.y);
    const QRectF box = radius > 0 ? bounds : onPixels(painter, bounds);
    paintShadow(painter, layer, box, radius);
    if (layer.backgroundColor && !box.isEmpty())
        painter.fillPath(rounded(box, radius), toQColor(*layer.backgroundColor));
    painter.save();
    if (layer.masksToBounds) {
        if (radius > 0)
            painter.setClipPath(rounded(box, radius), Qt::IntersectClip);
        else
            painter.setClipRect(box, Qt::IntersectClip);
    }
    if (!box.isEmpty()) {
        if (view.image) paintImage(painter, view.image, box);
        if (view.drawing) repeat(painter, *view.drawing, box);
    }
    for (const ViewSnapshot& subview : view.subviews)
        paint(painter, subview);
    painter.restore();
    paintBorder(painter, layer, box, radius);
    painter.restore();
}

void ViewPainter::paintShadow(QPainter& painter, const CALayer& layer, const QRectF& box, double radius) {
    if (layer.shadowOpacity <= 0 || !layer.shadowColor || box.isEmpty()) return;
    const double scale = pixels(painter);
    QColor color = toQColor(*layer.shadowColor);
    color.setAlphaF(float(std::min(1.0, color.alphaF() * layer.shadowOpacity)));
    // An image is sharp on whole pixels only, so the image itself holds where the corner lies between them.
    const QTransform toScreen = painter.combinedTransform();
    const QPointF corner = toScreen.map(box.topLeft() + QPointF(layer.shadowOffset.width, layer.shadowOffset.height));
    const QPointF pixel(std::floor(corner.x()), std::floor(corner.y()));
    const Shadow shadow{box.size() * scale, inEighths(corner - pixel), radius * scale, layer.shadowRadius * scale,
                        color};
    const QImage image = shadows_.find(shadow, [&] { return blurred(shadow); });
    const double margin = marginOf(shadow.blur);
    const QRectF place(pixel - QPointF(margin, margin), QSizeF(image.size()));
    painter.drawImage(toScreen.inverted().mapRect(place), image);
}

QImage ViewPainter::blurred(const Shadow& shadow) {
    const double margin = marginOf(shadow.blur);
    const QRectF shape(QPointF(margin, margin) + shadow.phase, shadow.size);
    QImage image(int(std::ceil(shape.right() + margin)), int(std::ceil(shape.bottom() + margin)),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(rounded(shape, shadow.cornerRadius), shadow.color);
    painter.end();
    if (shadow.blur <= 0) return image;

    const auto width = std::size_t(image.width());
    const auto height = std::size_t(image.height());
    std::vector<float> opacity(width * height);
    for (std::size_t y = 0; y < height; ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(int(y)));
        std::transform(line, line + width, opacity.begin() + std::ptrdiff_t(y * width),
                       [](QRgb pixel) { return float(qAlpha(pixel)); });
    }
    const std::vector<float> weights = weightsOf(shadow.blur);
    blurLines(opacity, weights, height, width, width, 1);
    blurLines(opacity, weights, width, 1, height, width);
    const QColor& color = shadow.color;
    for (std::size_t y = 0; y < height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(int(y)));
        std::transform(opacity.begin() + std::ptrdiff_t(y * width), opacity.begin() + std::ptrdiff_t((y + 1) * width),
                       line, [&](float alpha) {
                           return qPremultiply(
                               qRgba(color.red(), color.green(), color.blue(), int(std::lround(alpha))));
                       });
    }
    return image;
}

void ViewPainter::paintImage(QPainter& painter, const UIImageRef& image, const QRectF& box) {
    const double scale = pixels(painter);
    const Data& file = image->encoded(scale);
    const QSize size(std::max(1, qRound(box.width() * scale)), std::max(1, qRound(box.height() * scale)));
    const QImage drawn = scaled_.find({image, &file, size}, [&] {
        const QImage whole = decoded_.find({image, &file, QSize()}, [&] {
            return QImage::fromData(file.data(), int(file.size())).convertToFormat(QImage::Format_ARGB32_Premultiplied);
        });
        return whole.isNull() ? whole : whole.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    });
    if (!drawn.isNull()) painter.drawImage(box, drawn);
}

} // namespace settings

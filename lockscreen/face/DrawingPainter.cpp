#include "lockscreen/face/DrawingPainter.h"

#include "lockscreen/face/FontWidths.h"

#include "appview/ScreenFont.h"
#include "lockscreen/RoleColors.h"

#include <QBrush>
#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QStringList>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace lumora {
namespace {

using StepKind = DrawingStep::Kind;
using Numbers = std::vector<double>;

constexpr std::chrono::seconds kToPaint(2);
constexpr int kLongestEdge = 4096; // along an edge
constexpr int kLargestPicture = 1024;

QColor colorOf(const Color& color) {
    return QColor::fromRgbF(float(color.red), float(color.green), float(color.blue));
}

/// Paints step after step, in points of the view.
class Brushwork {
  public:
    Brushwork(QPainter& painter, const DrawingPlace& place, const BundlePicture& picture)
        : painter_(painter), place_(place), picture_(picture), fill_(place.ink) {
        painter_.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter_.scale(place.scale, place.scale);
    }

    void draw(const DrawingStep& step) {
        const Numbers& n = step.numbers;
        switch (step.kind) {
        case StepKind::color:
            fill_ = colorAt(n, 0);
            break;
        case StepKind::gradient: {
            QLinearGradient gradient(n[0], n[1], n[7], n[8]);
            gradient.setColorAt(0, colorAt(n, 2));
            gradient.setColorAt(1, colorAt(n, 9));
            fill_ = gradient;
            break;
        }
        case StepKind::rectangle:
            fillPath(rectangle(n));
            break;
        case StepKind::line: {
            QPainterPath line(QPointF(n[0], n[1]));
            line.lineTo(n[2], n[3]);
            stroke(line, n[4]);
            break;
        }
        case StepKind::arc:
            drawArc(n);
            break;
        case StepKind::path:
            drawPath(n);
            break;
        case StepKind::text:
            drawText(step);
            break;
        case StepKind::picture:
            drawPicture(step);
            break;
        case StepKind::clip:
            if (n[2] > 0)
                painter_.setClipPath(rectangle(n));
            else
                painter_.setClipping(false);
            break;
        case StepKind::caption:
            break;
        }
    }

  private:
    [[nodiscard]] QColor colorAt(const Numbers& n, std::size_t at) const {
        QColor color = QColor::fromRgbF(float(n[at + 1]), float(n[at + 2]), float(n[at + 3]));
        double opacity = n[at + 4];
        switch (static_cast<int>(n[at])) { // LUMORA_ROLE_…
        case 1:
            color = place_.ink;
            break;
        case 2:
            color = place_.ink;
            opacity *= kSecondaryShare;
            break;
        case 3:
            color = colorOf(place_.isDark() ? kAccentOnDark : kAccentOnLight);
            break;
        case 4:
            color = place_.ink;
            opacity *= kSeparatorShare;
            break;
        default:
            break;
        }
        color.setAlphaF(static_cast<float>(opacity));
        return color;
    }
    [[nodiscard]] static QPainterPath rectangle(const Numbers& n) {
        QPainterPath path;
        const double radius = std::min({n[4], n[2] / 2, n[3] / 2});
        path.addRoundedRect(QRectF(n[0], n[1], n[2], n[3]), radius, radius);
        return path;
    }
    void fillPath(const QPainterPath& path) { painter_.fillPath(path, fill_); }
    void stroke(const QPainterPath& path, double thickness) {
        painter_.strokePath(path, QPen(fill_, thickness, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    }
    void drawArc(const Numbers& n) {
        const QPointF centre(n[0], n[1]);
        const QPointF reach(n[2], n[2]);
        const QRectF box(centre - reach, centre + reach);
        const double from = 90 - n[3]; // the toolkit counts from the right, against the clock
        QPainterPath path;
        if (n[5] == 0 && std::abs(n[4]) < 360) path.moveTo(centre);
        if (n[5] > 0) path.arcMoveTo(box, from);
        if (std::abs(n[4]) < 360)
            path.arcTo(box, from, -n[4]);
        else
            path.addEllipse(box);
        if (n[5] > 0)
            stroke(path, n[5]);
        else
            fillPath(path);
    }
    void drawPath(const Numbers& n) {
        QPainterPath path;
        for (std::size_t at = 1; at < n.size();) {
            const auto part = static_cast<PathPart>(n[at++]);
            switch (part) {
            case PathPart::move:
                path.moveTo(n[at], n[at + 1]);
                break;
            case PathPart::line:
                path.lineTo(n[at], n[at + 1]);
                break;
            case PathPart::curve:
                path.cubicTo(n[at], n[at + 1], n[at + 2], n[at + 3], n[at + 4], n[at + 5]);
                break;
            case PathPart::close:
                path.closeSubpath();
                break;
            }
            at += coordinatesOf(part);
        }
        path.setFillRule(Qt::WindingFill);
        if (n[0] > 0)
            stroke(path, n[0]);
        else
            fillPath(path);
    }
    /// In pixels, so that the letters are those of a font of that size. A text that comes out wider than the plug-in was
    /// told is made narrower.
    void drawText(const DrawingStep& step) {
        const Numbers& n = step.numbers;
        const double scale = place_.scale;
        const auto weight = static_cast<QFont::Weight>(std::lround(n[4]));
        const QFont font = n[3] < kSmallestDisplay ? textFont(n[3] * scale, weight) : displayFont(n[3] * scale, weight);
        const QString text = QString::fromStdString(step.text);
        const double wide = QFontMetricsF(font).horizontalAdvance(text);
        const double room = n[2] * scale;
        if (wide <= 0) return;
        const double squeeze = std::min(1.0, room / wide);
        painter_.save();
        painter_.resetTransform();
        painter_.translate(n[0] * scale + (room - wide * squeeze) * n[5] / 2, n[1] * scale);
        painter_.scale(squeeze, 1);
        QBrush brush = fill_;
        if (brush.gradient())
            brush.setTransform(QTransform::fromTranslate(-n[0] * scale, -n[1] * scale).scale(scale, scale));
        painter_.setFont(font);
        painter_.setPen(QPen(brush, 1));
        painter_.drawText(QPointF(), text);
        painter_.restore();
    }
    void drawPicture(const DrawingStep& step) {
        const Numbers& n = step.numbers;
        const int pixels = std::clamp(static_cast<int>(std::ceil(n[2] * place_.scale)), 1, kLargestPicture);
        const QImage image = picture_(step.text, pixels);
        if (!image.isNull()) painter_.drawImage(QRectF(n[0], n[1], n[2], n[2]), image);
    }

    QPainter& painter_;
    const DrawingPlace& place_;
    const BundlePicture& picture_;
    QBrush fill_;
};

} // namespace

QImage paintDrawing(const Drawing& drawing, const DrawingPlace& place, const BundlePicture& picture,
                    const std::atomic<bool>& cancelled) {
    const QSize pixels = (place.points * place.scale).toSize().boundedTo(QSize(kLongestEdge, kLongestEdge));
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) return image;
    image.fill(Qt::transparent);
    QPainter painter(&image);
    Brushwork brushwork(painter, place, picture);
    const auto end = std::chrono::steady_clock::now() + kToPaint;
    for (const DrawingStep& step : drawing.steps) {
        if (cancelled || std::chrono::steady_clock::now() > end) return {};
        brushwork.draw(step);
    }
    return image;
}

QString wordsOf(const Drawing& drawing) {
    QStringList words;
    for (const DrawingStep& step : drawing.steps)
        if (!step.text.empty() && step.kind != StepKind::picture) words += QString::fromStdString(step.text);
    return words.join(QStringLiteral(", "));
}

QString captionOf(const Drawing& drawing) {
    const auto last = std::find_if(drawing.steps.rbegin(), drawing.steps.rend(),
                                   [](const DrawingStep& step) { return step.kind == StepKind::caption; });
    return last == drawing.steps.rend() ? QString() : QString::fromStdString(last->text);
}

} // namespace lumora

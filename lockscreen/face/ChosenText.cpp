#include "lockscreen/face/ChosenText.h"

#include "lockscreen/face/FontWidths.h"

#include "fonts/FontFaces.h"

#include "platform/ui/UIFont.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <optional>

namespace lumora {
namespace {

constexpr double kBaseline = 0.36; // of the size, below the middle of a line: half the height of capitals

} // namespace

ChosenText::ChosenText(QQuickItem* parent) : DrawnItem(parent) {
    connect(this, &ChosenText::changed, this, &ChosenText::redraw);
}

QImage ChosenText::draw(const QSize& pixels, double ratio) {
    const QStringList lines = broken();
    if (lines.isEmpty()) return {};
    return painted(pixels, ratio, [&](QPainter& painter) {
        const double step = height() / static_cast<double>(lines.size());
        double middle = step / 2;
        for (const QString& line : lines) {
            drawLine(painter, line, middle + kBaseline * size_);
            middle += step;
        }
    });
}

void ChosenText::drawLine(QPainter& painter, const QString& line, double baseline) const {
    const auto font = font_ == u"Default" ? nullptr : platform::UIFont::fontWithName(font_.toStdString(), size_);
    const auto outline = font ? fonts::FontFaces::shared().outline(*font, line) : std::nullopt;
    if (outline) {
        painter.fillPath(outline->path.translated((width() - outline->width) / 2, baseline), color_);
        return;
    }
    const QFont own = isClock_ ? clockFont(size_) : textFont(size_);
    painter.setFont(own);
    painter.setPen(color_);
    painter.drawText(QPointF((width() - QFontMetricsF(own).horizontalAdvance(line)) / 2, baseline), line);
}

double ChosenText::widthOf(const QString& line) const {
    const auto font = font_ == u"Default" ? nullptr : platform::UIFont::fontWithName(font_.toStdString(), size_);
    const auto outline = font ? fonts::FontFaces::shared().outline(*font, line) : std::nullopt;
    return outline ? outline->width
                   : QFontMetricsF(isClock_ ? clockFont(size_) : textFont(size_)).horizontalAdvance(line);
}

QStringList ChosenText::broken() const {
    QStringList lines;
    QString rest = text_;
    while (!rest.isEmpty() && lines.size() + 1 < lines_ && widthOf(rest) > width()) {
        QTextBoundaryFinder finder(QTextBoundaryFinder::Line, rest);
        qsizetype end = 0;
        for (qsizetype next = finder.toNextBoundary(); next > 0 && next < rest.size(); next = finder.toNextBoundary()) {
            if (widthOf(rest.left(next).trimmed()) > width()) break;
            end = next;
        }
        if (end == 0) break; // a word that is wider than the line
        lines += rest.left(end).trimmed();
        rest = rest.mid(end);
    }
    if (!rest.isEmpty()) lines += cut(rest.simplified());
    return lines;
}

QString ChosenText::cut(QString line) const {
    if (isClock_ || widthOf(line) <= width()) return line; // the clock's size fits already
    qsizetype fits = 0;
    qsizetype tooMany = line.size();
    while (tooMany - fits > 1) {
        const qsizetype middle = (fits + tooMany) / 2;
        (widthOf(line.left(middle) + QChar(0x2026)) <= width() ? fits : tooMany) = middle;
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, line);
    finder.setPosition(fits);
    if (!finder.isAtBoundary()) fits = std::max<qsizetype>(0, finder.toPreviousBoundary());
    return line.left(fits) + QChar(0x2026);
}

} // namespace lumora

#include "settings/paint/FontTitle.h"

#include "fonts/FontFaces.h"

#include <QPainter>
#include <QTextBoundaryFinder>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace settings {

using fonts::FontFaces;
using fonts::TextOutline;

namespace {

constexpr double kBaseline = 0.32; // below the middle of the row, in parts of the size: as in the usual font

/// The longest beginning of a text that fits with an ellipsis after it; nothing when the font lacks the ellipsis.
std::optional<TextOutline> elided(const platform::UIFont& font, const QString& text, double width) {
    FontFaces& faces = FontFaces::shared();
    std::vector<qsizetype> ends{0};
    QTextBoundaryFinder signs(QTextBoundaryFinder::Grapheme, text);
    while (signs.toNextBoundary() > 0)
        ends.push_back(signs.position());
    const QString ellipsis = faces.outline(font, QStringLiteral("…")) ? QStringLiteral("…") : QStringLiteral("...");
    const auto cut = [&](qsizetype end) { return faces.outline(font, text.left(end) + ellipsis); };
    const auto tooLong = std::partition_point(ends.begin(), ends.end(), [&](qsizetype end) {
        const auto outline = cut(end);
        return outline && outline->width <= width;
    });
    return cut(tooLong == ends.begin() ? 0 : *std::prev(tooLong));
}

} // namespace

FontTitle::FontTitle(QQuickItem* parent) : DrawnItem(parent) {
    connect(this, &FontTitle::changed, this, &FontTitle::layOutSoon);
    connect(this, &FontTitle::inViewChanged, this, [this] { due_ ? polish() : redraw(); });
}

void FontTitle::setTitleFont(const QVariant& font) {
    const auto former = std::exchange(font_, font.value<platform::UIFontRef>());
    if (former != font_ && !(former && font_ && *former == *font_)) emit changed();
}

void FontTitle::geometryChange(const QRectF& geometry, const QRectF& former) {
    DrawnItem::geometryChange(geometry, former);
    if (geometry.size() != former.size()) layOutSoon();
}

void FontTitle::layOutSoon() {
    due_ = true;
    polish();
}

/// Called before the next frame, so a row that only passes by while everything finds its place opens no font.
void FontTitle::updatePolish() {
    if (!inView_ || !std::exchange(due_, false)) return;
    const bool wasDrawn = drawn();
    path_ = layOut();
    redraw();
    if (drawn() != wasDrawn) emit drawnChanged();
}

/// Empty when the text cannot be drawn in that font.
QPainterPath FontTitle::layOut() const {
    if (!font_ || width() <= 0) return {};
    auto outline = FontFaces::shared().outline(*font_, text_);
    if (!outline) return {};
    if (outline->width * letterScale_ > width()) outline = elided(*font_, text_, width() / letterScale_);
    if (!outline) return {};
    const double left = mirrored_ || outline->rightToLeft ? width() - outline->width * letterScale_ : 0;
    const double baseline = std::round(height() / 2 + kBaseline * font_->pointSize() * letterScale_);
    return (QTransform::fromScale(letterScale_, letterScale_) * QTransform::fromTranslate(left, baseline))
        .map(outline->path);
}

/// Nothing for a row that is out of view: those of 300 fonts would take some 30 MB with three pixels to a point.
QImage FontTitle::draw(const QSize& pixels, double ratio) {
    if (path_.isEmpty() || !inView_) return {};
    return painted(pixels, ratio, [this](QPainter& painter) { painter.fillPath(path_, color_); });
}

} // namespace settings

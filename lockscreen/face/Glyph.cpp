#include "lockscreen/face/Glyph.h"

#include <QCache>
#include <QHashFunctions>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QRadialGradient>

#include <algorithm>
#include <array>
#include <string_view>

namespace lumora {
namespace {

/// What a glyph is drawn with. Lengths are shares of the item's height unless they are said to be of its width.
struct Sheet {
    QPainter& painter;
    double width;
    double height;
    QColor color;
    double level;

    [[nodiscard]] QColor faint(double opacity) const {
        QColor fainter = color;
        fainter.setAlphaF(static_cast<float>(color.alphaF() * opacity));
        return fainter;
    }
    [[nodiscard]] QRectF whole() const { return {0, 0, width, height}; }
    /// In shares of both edges.
    [[nodiscard]] QRectF box(double x, double y, double wide, double tall) const {
        return {x * width, y * height, wide * width, tall * height};
    }
    [[nodiscard]] QPointF point(double x, double y) const { return {x * width, y * height}; }

    void fill(const QRectF& box, double radius, const QBrush& brush) const {
        painter.setPen(Qt::NoPen);
        painter.setBrush(brush);
        painter.drawRoundedRect(box, radius, radius);
    }
    void drawLinesWith(double thickness, const QColor& ink, Qt::PenCapStyle ends = Qt::RoundCap) const {
        painter.setPen(QPen(ink, thickness * height, Qt::SolidLine, ends, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
    }
};

constexpr double kLowCharge = 0.2;

void drawBattery(const Sheet& on) {
    constexpr double line = 0.09;
    const double unit = on.height;
    const QColor shell = on.faint(0.55);
    const QRectF body(unit * 0.06, unit * 0.06, on.width - unit * 0.35, unit * 0.88);
    on.drawLinesWith(line, shell);
    on.painter.drawRoundedRect(body, unit * 0.26, unit * 0.26);
    on.fill({on.width - unit * 0.2, unit * 0.34, unit * 0.145, unit * 0.32}, unit * 0.07, shell);
    QRectF charge = body.adjusted(unit * 0.145, unit * 0.145, -unit * 0.145, -unit * 0.145);
    charge.setWidth(charge.width() * std::clamp(on.level, 0.0, 1.0));
    on.fill(charge, std::min(unit * 0.145, charge.width() / 2), on.level < kLowCharge ? QColor(0xff8a6b) : on.color);
}

void drawSignal(const Sheet& on) {
    constexpr int bars = 4;
    for (int i = 0; i < bars; ++i) {
        const bool standsOut = i < on.level * bars;
        const double tall = 0.4 + 0.2 * i;
        QRectF bar = on.box(double(i) / bars, 1 - tall, 1.0 / bars, tall);
        bar.adjust(on.height * 0.03, 0, -on.height * 0.09, 0);
        on.fill(bar, on.height * 0.09, standsOut ? on.color : on.faint(0.4));
    }
}

void drawWifi(const Sheet& on) {
    constexpr int opening = 84; // of the arcs, in degrees
    const QPointF foot(on.width / 2, on.height * 0.975);
    on.drawLinesWith(0.16, on.color, Qt::FlatCap);
    for (const double radius : {0.88, 0.57}) {
        const QPointF reach(radius * on.height, radius * on.height);
        on.painter.drawArc(QRectF(foot - reach, foot + reach), (90 - opening / 2) * 16, opening * 16);
    }
    on.painter.setPen(Qt::NoPen);
    on.painter.setBrush(on.color);
    on.painter.drawEllipse(foot - QPointF(0, on.height * 0.14), on.height * 0.14, on.height * 0.14);
}

void drawCamera(const Sheet& on) {
    const QRectF body = on.box(0.06, 0.26, 0.88, 0.60);
    const QSizeF corner(on.height * 0.28, on.height * 0.28);
    const QPointF across(body.width() - corner.width(), 0);
    const QPointF down(0, body.height() - corner.height());
    QPainterPath outline(on.point(0.30, 0.26));
    for (const QPointF& ofHump : {on.point(0.38, 0.13), on.point(0.62, 0.13), on.point(0.70, 0.26)})
        outline.lineTo(ofHump);
    outline.arcTo({body.topLeft() + across, corner}, 90, -90);
    outline.arcTo({body.topLeft() + across + down, corner}, 0, -90);
    outline.arcTo({body.topLeft() + down, corner}, 270, -90);
    outline.arcTo({body.topLeft(), corner}, 180, -90);
    outline.closeSubpath();
    on.drawLinesWith(0.073, on.color);
    on.painter.drawPath(outline);
    on.painter.drawEllipse(on.point(0.5, 0.555), on.height * 0.165, on.height * 0.165);
}

/// A padlock whose shackle goes round by that many degrees.
void drawPadlock(const Sheet& on, int shackle) {
    on.fill(on.box(0.16, 0.44, 0.68, 0.50), on.height * 0.11, on.color);
    QPainterPath path(on.point(0.30, 0.46));
    path.lineTo(on.point(0.30, 0.30));
    path.arcTo(on.box(0.30, 0.10, 0.40, 0.40), 180, -shackle);
    if (shackle == 180) path.lineTo(on.point(0.70, 0.46));
    on.drawLinesWith(0.115, on.color);
    on.painter.drawPath(path);
}

void drawLock(const Sheet& on) {
    drawPadlock(on, 180);
}

void drawUnlock(const Sheet& on) {
    drawPadlock(on, 145);
}

void drawCircle(const Sheet& on, double line, double lineOpacity, double fillOpacity) {
    const double inset = on.height * line / 2;
    on.drawLinesWith(line, on.faint(lineOpacity));
    on.painter.setBrush(on.faint(fillOpacity));
    on.painter.drawEllipse(on.whole().adjusted(inset, inset, -inset, -inset));
}

void drawRing(const Sheet& on) {
    drawCircle(on, 0.0187, 0.58, 0.10 + 0.34 * std::clamp(on.level, 0.0, 1.0));
}

void drawHome(const Sheet& on) {
    drawCircle(on, 0.044, 0.63, 0.15);
}

/// A bead of light with its glow.
void drawBead(const Sheet& on) {
    constexpr double core = 0.26;
    QRadialGradient light(on.whole().center(), on.height / 2);
    light.setColorAt(0, on.color);
    light.setColorAt(core, on.color);
    light.setColorAt(core + 0.08, on.faint(0.35));
    light.setColorAt(1, on.faint(0));
    on.painter.fillRect(on.whole(), light);
}

/// A line on which the bead slides, brightest where it begins.
void drawRail(const Sheet& on) {
    QLinearGradient fade(0, 0, on.width, 0);
    fade.setColorAt(0, on.faint(0.6));
    fade.setColorAt(1, on.faint(0));
    on.painter.fillRect(on.box(0, 0.446, 1, 0.108), fade);
}

/// A tab that sticks out of the right edge of the screen.
void drawTab(const Sheet& on) {
    on.painter.setClipRect(on.whole());
    on.fill(on.whole().adjusted(0, 0, on.height, 0), on.height / 2, on.color);
}

/// What lies outside of a round corner at the top left.
void drawCorner(const Sheet& on) {
    QPainterPath outside(on.point(1, 0));
    outside.arcTo(on.box(0, 0, 2, 2), 90, 90);
    outside.lineTo(on.point(0, 0));
    outside.closeSubpath();
    on.painter.fillPath(outside, on.color);
}

struct Named {
    std::string_view name;
    void (*draw)(const Sheet&);
};

constexpr std::array<Named, 12> kGlyphs{{{"battery", drawBattery},
                                         {"bead", drawBead},
                                         {"camera", drawCamera},
                                         {"corner", drawCorner},
                                         {"home", drawHome},
                                         {"lock", drawLock},
                                         {"rail", drawRail},
                                         {"ring", drawRing},
                                         {"signal", drawSignal},
                                         {"tab", drawTab},
                                         {"unlock", drawUnlock},
                                         {"wifi", drawWifi}}};

/// By what pictures of glyphs are told apart. They are kept: a passcode view has ten rings, which take longer to draw than
/// all else of it, and a colour that is dragged turns all glyphs from white to ink and back.
struct Key {
    const Named* glyph;
    QSize pixels;
    double ratio;
    QSizeF size;
    QRgb color;
    double level;
    friend bool operator==(const Key&, const Key&) = default;
    friend std::size_t qHash(const Key& key, std::size_t seed) {
        return qHashMulti(seed, key.glyph, key.pixels.width(), key.color, key.level);
    }
};

constexpr qsizetype kBytesOfKept = 1 << 20;

} // namespace

Glyph::Glyph(QQuickItem* parent) : DrawnItem(parent) {
    connect(this, &Glyph::changed, this, &Glyph::redraw);
}

QStringList Glyph::names() {
    QStringList names;
    for (const Named& glyph : kGlyphs)
        names << QString::fromUtf8(glyph.name.data(), static_cast<qsizetype>(glyph.name.size()));
    return names;
}

QImage Glyph::draw(const QSize& pixels, double ratio) {
    const auto* glyph = std::ranges::find(kGlyphs, name_.toStdString(), &Named::name);
    if (glyph == kGlyphs.end()) {
#ifndef NDEBUG
        if (!name_.isEmpty()) qWarning("there is no glyph \"%s\"", qUtf8Printable(name_));
#endif
        return {};
    }
    static QCache<Key, QImage> kept(kBytesOfKept);
    const Key key{glyph, pixels, ratio, size(), color_.rgba(), level_};
    if (const QImage* picture = kept.object(key)) return *picture;
    QImage picture = painted(pixels, ratio, [&](QPainter& painter) {
        glyph->draw({painter, width(), height(), color_, level_});
    });
    kept.insert(key, new QImage(picture), picture.sizeInBytes());
    return picture;
}

} // namespace lumora

#include "lockscreen/face/Blur.h"
#include "lockscreen/face/Frost.h"
#include "lockscreen/face/PictureItem.h"
#include "lockscreen/face/Plate.h"
#include "tests/pixels/Pictures.h"
#include "tests/pixels/Shown.h"

#include <gtest/gtest.h>

#include <QQmlComponent>
#include <QQmlEngine>
#include <QtQml/qqmlextensionplugin.h>

#include <memory>

Q_IMPORT_QML_PLUGIN(LumoraFacePlugin)

namespace {

using lumora::Backdrop;
using lumora::enlarged;
using lumora::Frost;
using lumora::mixIn;
using lumora::PictureItem;
using tests::difference;
using tests::flat;
using tests::Shown;
using tests::varied;

constexpr QSize kSize(120, 160);
constexpr QRectF kWhole({}, kSize);

/// Makes the backdrop of a window whose pixels are those of the picture.
void makeFor(const Shown& shown, Backdrop& backdrop, const QImage& picture) {
    const tests::PictureFolder folder;
    const QSize points = shown.size() / shown.ratio();
    if (const auto made = backdrop.make({folder.save(picture), points, shown.ratio()}); !made)
        throw std::runtime_error(made.error());
}

/// A window with a picture that fills it.
struct Pictured {
    explicit Pictured(bool soft = false) : sharp(varied(shown.size())) {
        makeFor(shown, backdrop, sharp);
        item.setBackdrop(&backdrop);
        item.setProperty("soft", soft);
        shown.add(item, kWhole);
    }
    [[nodiscard]] QImage soft() const { return enlarged(backdrop.soft(), sharp.rect()); }

    Shown shown{kSize};
    QImage sharp;
    Backdrop backdrop;
    PictureItem item;
};

TEST(PictureItem, ShowsThePictureAsItIs) {
    Pictured pictured;
    EXPECT_EQ(pictured.shown.picture(), pictured.sharp);
}

TEST(PictureItem, ShowsTheBlur) {
    Pictured pictured(true);
    EXPECT_EQ(pictured.shown.picture(), pictured.soft());
}

TEST(PictureItem, ShowsNothingWithoutABackdrop) {
    Shown shown(kSize, Qt::red);
    PictureItem item;
    shown.add(item, kWhole);
    EXPECT_EQ(shown.picture(), flat(shown.size(), qRgb(255, 0, 0)));
    Backdrop none;
    item.setBackdrop(&none);
    EXPECT_EQ(shown.picture(), flat(shown.size(), qRgb(255, 0, 0)));
    makeFor(shown, none, flat(shown.size(), qRgb(0, 9, 0)));
    EXPECT_EQ(shown.picture(), flat(shown.size(), qRgb(0, 9, 0)));
}

TEST(PictureItem, FollowsTheBackdrop) {
    Pictured pictured;
    EXPECT_EQ(pictured.shown.picture(), pictured.sharp);
    const QImage next = varied(pictured.shown.size(), 3);
    makeFor(pictured.shown, pictured.backdrop, next);
    EXPECT_EQ(pictured.shown.picture(), next);
}

TEST(PictureItem, OutlivesTheBackdrop) {
    Shown shown(kSize);
    PictureItem item;
    auto backdrop = std::make_unique<Backdrop>();
    makeFor(shown, *backdrop, varied(shown.size()));
    item.setBackdrop(backdrop.get());
    shown.add(item, kWhole);
    EXPECT_EQ(shown.picture(), varied(shown.size()));
    backdrop.reset();
    item.setProperty("soft", true);
    EXPECT_EQ(shown.picture(), flat(shown.size(), qRgb(0, 0, 0)));
}

TEST(PictureItem, LiesOverWhatIsBehindByItsShare) {
    Pictured pictured;
    PictureItem over;
    over.setBackdrop(&pictured.backdrop);
    over.setProperty("soft", true);
    pictured.shown.add(over, kWhole);
    const QImage soft = pictured.soft();
    for (const double share : {0.0, 0.25, 0.5, 1.0}) {
        over.setProperty("share", share);
        QImage expected = pictured.sharp;
        for (int y = 0; y < expected.height(); ++y)
            for (int x = 0; x < expected.width(); ++x) {
                const QRgb behind = expected.pixel(x, y);
                const QRgb above = soft.pixel(x, y);
                const auto mix = [&](int one, int other) { return qRound(one * (1 - share) + other * share); };
                expected.setPixel(x, y,
                                  qRgb(mix(qRed(behind), qRed(above)), mix(qGreen(behind), qGreen(above)),
                                       mix(qBlue(behind), qBlue(above))));
            }
        EXPECT_LE(difference(pictured.shown.picture(), expected), 2) << share;
    }
}

TEST(PictureItem, LaysTheTintOverBoth) {
    Pictured pictured;
    PictureItem over;
    over.setBackdrop(&pictured.backdrop);
    over.setProperty("soft", true);
    over.setProperty("tint", QColor(10, 200, 90));
    pictured.shown.add(over, kWhole);
    const QImage soft = pictured.soft();
    for (const double share : {0.0, 0.3, 1.0})
        for (const double tinted : {0.0, 0.62, 1.0}) {
            over.setProperty("share", share);
            over.setProperty("tintOpacity", tinted);
            // What two layers on top of each other would give.
            const auto pixelAt = [&](int x, int y) {
                const QRgb behind = pictured.sharp.pixel(x, y);
                const QRgb above = soft.pixel(x, y);
                const auto mix = [&](int one, int other, int color) {
                    return qRound((one * (1 - share) + other * share) * (1 - tinted) + color * tinted);
                };
                return qRgb(mix(qRed(behind), qRed(above), 10), mix(qGreen(behind), qGreen(above), 200),
                            mix(qBlue(behind), qBlue(above), 90));
            };
            QImage expected(pictured.sharp.size(), QImage::Format_RGB32);
            for (int y = 0; y < expected.height(); ++y)
                for (int x = 0; x < expected.width(); ++x)
                    expected.setPixel(x, y, pixelAt(x, y));
            EXPECT_LE(difference(pictured.shown.picture(), expected), 3) << share << " " << tinted;
        }
}

TEST(PictureItem, IsCutOffByItsParent) {
    Pictured pictured;
    QQuickItem lower;
    lower.setClip(true);
    pictured.shown.add(lower, {0, 100, 120, 60});
    PictureItem over;
    over.setBackdrop(&pictured.backdrop);
    over.setProperty("soft", true);
    over.setParentItem(&lower);
    over.setPosition({0, -100});
    over.setSize(kSize);
    const QRectF above(0, 0, 120, 100);
    const QRectF below(0, 100, 120, 60);
    EXPECT_EQ(pictured.shown.picture(above), pictured.sharp.copy(pictured.shown.pixels(above)));
    EXPECT_EQ(pictured.shown.picture(below), pictured.soft().copy(pictured.shown.pixels(below)));
}

TEST(PictureItem, ComesBackAfterItWasHidden) {
    Pictured pictured(true);
    EXPECT_EQ(pictured.shown.picture(), pictured.soft());
    pictured.item.setVisible(false);
    EXPECT_EQ(pictured.shown.picture(), flat(pictured.shown.size(), qRgb(0, 0, 0)));
    pictured.item.setVisible(true);
    EXPECT_EQ(pictured.shown.picture(), pictured.soft());
}

/// A window with a frosted pane, at a place that is a whole number of pixels.
struct Frosted {
    explicit Frosted(const QPointF& place = kPane.topLeft()) {
        makeFor(shown, backdrop, varied(shown.size()));
        frost.setBackdrop(&backdrop);
        frost.setProperty("radius", 12.0);
        frost.setProperty("place", place);
        shown.add(frost, kPane);
    }
    /// Where the blur is seen: within the rim, and between the corners.
    [[nodiscard]] QRect inside() const { return shown.pixels(kPane.adjusted(2, 13, -2, -13)); }

    static constexpr QRectF kPane{20, 30, 60, 80};
    Shown shown{kSize, Qt::red};
    Backdrop backdrop;
    Frost frost;
};

TEST(Frost, ShowsTheBlurAtItsPlace) {
    for (const QPointF& place : {QPointF(20, 30), QPointF(0, 0), QPointF(-40, 100)}) {
        Frosted frosted(place);
        const QRect inside = frosted.inside();
        const QPoint moved = ((place - Frosted::kPane.topLeft()) * frosted.shown.ratio()).toPoint();
        const QImage expected = enlarged(frosted.backdrop.soft(), inside.translated(moved));
        EXPECT_LE(difference(frosted.shown.picture().copy(inside), expected), 1) << place.x();
    }
}

TEST(Frost, LaysATintOverTheBlur) {
    Frosted frosted;
    frosted.frost.setProperty("tint", QColor(0, 0, 0));
    frosted.frost.setProperty("tintOpacity", 0.4);
    const QRect inside = frosted.inside();
    QImage expected = enlarged(frosted.backdrop.soft(), inside);
    mixIn(expected, Qt::black, 0.4);
    EXPECT_LE(difference(frosted.shown.picture().copy(inside), expected), 2);
}

TEST(Frost, HasRoundCorners) {
    Frosted frosted;
    const QImage picture = frosted.shown.picture();
    const QRect pane = frosted.shown.pixels(Frosted::kPane);
    for (const QPoint& corner : {pane.topLeft(), pane.topRight(), pane.bottomLeft(), pane.bottomRight()})
        EXPECT_EQ(picture.pixel(corner), qRgb(255, 0, 0));
    EXPECT_NE(picture.pixel(pane.center().x(), pane.top()), qRgb(255, 0, 0));
    EXPECT_NE(picture.pixel(pane.left(), pane.center().y()), qRgb(255, 0, 0));
}

TEST(Frost, HasARimThatIsBrighterAtTheTop) {
    Frosted frosted;
    makeFor(frosted.shown, frosted.backdrop, flat(frosted.shown.size(), qRgb(60, 60, 60)));
    const QImage picture = frosted.shown.picture();
    const QRect pane = frosted.shown.pixels(Frosted::kPane);
    const int middle = pane.center().x();
    const int top = qRed(picture.pixel(middle, pane.top()));
    const int bottom = qRed(picture.pixel(middle, pane.bottom()));
    EXPECT_GT(top, bottom + 20);
    EXPECT_GT(bottom, 62);
    EXPECT_EQ(qRed(picture.pixel(middle, pane.top() + 2)), 60);
}

TEST(Frost, FollowsTheBackdrop) {
    Frosted frosted;
    const QImage before = frosted.shown.picture();
    makeFor(frosted.shown, frosted.backdrop, flat(frosted.shown.size(), qRgb(0, 0, 200)));
    EXPECT_EQ(frosted.shown.picture().pixel(frosted.inside().center()), qRgb(0, 0, 200));
    EXPECT_NE(before.pixel(frosted.inside().center()), qRgb(0, 0, 200));
}

TEST(Face, IsAModuleOfItsOwn) {
    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    QQmlComponent component(&engine);
    component.setData("import QtQuick; import LumoraFace\n"
                      "Item { PictureItem { soft: true; tint: 'navy'; tintOpacity: 0.3 }\n"
                      "       Frost { radius: 30; tint: 'white'; tintOpacity: 0.15; place: Qt.point(3, 4) }\n"
                      "       Glyph { name: 'battery'; color: 'white'; level: 0.82 } }",
                      {});
    const std::unique_ptr<QObject> made(component.create());
    EXPECT_TRUE(made) << component.errorString().toStdString();
}

TEST(Plate, IsWholeInItsMiddleAndFadesOutEvenlyTowardsAllSides) {
    Shown shown(kSize, Qt::white);
    lumora::Plate plate;
    plate.setProperty("color", QColor(Qt::black));
    plate.setProperty("fade", 20);
    shown.add(plate, QRectF(10, 10, 100, 140));
    const QImage picture = shown.picture();
    const auto grey = [&](double x, double y) { return qGray(picture.pixel(shown.pixels({x, y, 1, 1}).center())); };
    EXPECT_EQ(grey(31, 31), 0);
    EXPECT_EQ(grey(9, 60), 255);
    EXPECT_GT(grey(10, 60), 240);
    EXPECT_NEAR(grey(20, 60), 128, 10);
    for (int x = 10; x < 30; ++x) {
        EXPECT_GE(grey(x, 60), grey(x + 1, 60)) << x;
        EXPECT_NEAR(grey(x, 60), grey(119 - x, 60), 10) << x;
        EXPECT_EQ(grey(x, 60), grey(60, x)) << x;
    }
}

} // namespace

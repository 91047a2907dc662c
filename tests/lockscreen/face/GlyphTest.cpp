#include "lockscreen/face/Glyph.h"

#include "tests/pixels/Pictures.h"
#include "tests/pixels/Shown.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <string>

namespace {

using lumora::Glyph;
using tests::flat;
using tests::Shown;

constexpr QRectF kPlace(20, 20, 60, 40);
constexpr QSize kWindow(100, 80);

/// White on black.
QImage drawn(const QString& name, double level = 1, const QRectF& place = kPlace) {
    Shown shown(kWindow);
    Glyph glyph;
    glyph.setProperty("name", name);
    glyph.setProperty("level", level);
    shown.add(glyph, place);
    return shown.picture();
}

QImage ofGlyph(const QImage& picture) {
    const int ratio = picture.width() / kWindow.width();
    return picture.copy(QRect(20 * ratio, 20 * ratio, 60 * ratio, 40 * ratio));
}

QImage black(const QImage& like) {
    return flat(like.size(), qRgb(0, 0, 0));
}

int brightPixels(const QImage& picture) {
    int count = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            count += qRed(picture.pixel(x, y)) > 240;
    return count;
}

TEST(Glyph, HasTheNamesThatTheScreenNeeds) {
    EXPECT_THAT(Glyph::names(), testing::ElementsAre("battery", "bead", "camera", "corner", "home", "lock", "rail",
                                                     "ring", "signal", "tab", "unlock", "wifi"));
}

TEST(Glyph, DrawsEachNameInsideItsBounds) {
    for (const QString& name : Glyph::names()) {
        QImage picture = drawn(name);
        const QImage glyph = ofGlyph(picture);
        EXPECT_NE(glyph, black(glyph)) << name.toStdString();
        const int ratio = picture.width() / kWindow.width();
        for (int y = 20 * ratio; y < 60 * ratio; ++y)
            for (int x = 20 * ratio; x < 80 * ratio; ++x)
                picture.setPixel(x, y, qRgb(0, 0, 0));
        EXPECT_EQ(picture, black(picture)) << name.toStdString();
    }
}

TEST(Glyph, LeavesRoomForItsLines) {
    // What is cut off at an edge has a long straight line there; a line's own end or top fades out.
    for (const char* const name : {"battery", "camera", "home", "lock", "ring", "unlock", "wifi"}) {
        const QImage glyph = ofGlyph(drawn(name));
        int atEdges = 0;
        for (int x = 0; x < glyph.width(); ++x)
            atEdges += (qRed(glyph.pixel(x, 0)) > 200) + (qRed(glyph.pixel(x, glyph.height() - 1)) > 200);
        EXPECT_LE(atEdges, glyph.width() / 4) << name;
    }
}

TEST(Glyph, TellsItsNamesApart) {
    std::map<std::string, QImage> pictures;
    for (const QString& name : Glyph::names()) {
        const QImage picture = drawn(name);
        for (const auto& [other, drawing] : pictures)
            EXPECT_NE(picture, drawing) << name.toStdString() << " and " << other;
        pictures.emplace(name.toStdString(), picture);
    }
}

/// Whether the drawings are the same, but for single pixels where lines meet, which the toolkit rounds either way.
bool looksLike(const QImage& one, const QImage& other) {
    int apart = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            apart += std::abs(qRed(one.pixel(x, y)) - qRed(other.pixel(x, y))) > 24;
    return apart <= 4;
}

TEST(Glyph, IsSymmetricalWhereItShouldBe) {
    for (const char* const name : {"bead", "camera", "home", "lock", "ring", "wifi"}) {
        const QImage glyph = ofGlyph(drawn(name));
        EXPECT_TRUE(looksLike(glyph, glyph.mirrored(true, false))) << name;
    }
    for (const char* const name : {"battery", "bead", "home", "rail", "ring", "tab"}) {
        const QImage glyph = ofGlyph(drawn(name));
        EXPECT_TRUE(looksLike(glyph, glyph.mirrored(false, true))) << name;
    }
    const QImage open = ofGlyph(drawn("unlock"));
    EXPECT_FALSE(looksLike(open, open.mirrored(true, false)));
}

TEST(Glyph, CoversWhatIsOutsideOfACorner) {
    const QImage corner = drawn("corner", 1, {0, 0, 40, 40});
    const int ratio = corner.width() / kWindow.width();
    EXPECT_EQ(corner.pixel(0, 0), qRgb(255, 255, 255));
    EXPECT_EQ(corner.pixel(10 * ratio, 10 * ratio), qRgb(255, 255, 255));
    EXPECT_EQ(corner.pixel(13 * ratio, 13 * ratio), qRgb(0, 0, 0));
    EXPECT_EQ(corner.pixel(39 * ratio, 2 * ratio), qRgb(0, 0, 0));
}

TEST(Glyph, GrowsWithItsItem) {
    for (const QString& name : Glyph::names()) {
        const QImage small = drawn(name, 1, {0, 0, 30, 20});
        const QImage large = drawn(name, 1, {0, 0, 60, 40});
        const auto mean = [](const QImage& picture, const QSize& part) {
            const QImage one = picture.copy({{}, part}).scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            return qRed(one.pixel(0, 0));
        };
        const int ratio = small.width() / kWindow.width();
        EXPECT_NEAR(mean(small, QSize(30, 20) * ratio), mean(large, QSize(60, 40) * ratio), 12) << name.toStdString();
    }
}

TEST(Glyph, ShowsALevel) {
    for (const char* const name : {"battery", "ring", "signal"}) {
        int before = -1;
        for (const double level : {0.0, 0.5, 1.0}) {
            const QImage glyph = ofGlyph(drawn(name, level));
            const int mean = qGreen(glyph.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixel(0, 0));
            EXPECT_GT(mean, before) << name << " " << level;
            before = mean;
        }
    }
    EXPECT_EQ(drawn("battery", 7), drawn("battery", 1));
    EXPECT_EQ(drawn("battery", -1), drawn("battery", 0));
}

TEST(Glyph, DrawsEqualRingsAlikeAndOthersAsTheyAre) {
    const QImage ring = drawn("ring", 0.2);
    EXPECT_EQ(drawn("ring", 0.2), ring);
    const QImage pressed = drawn("ring", 0.9);
    EXPECT_NE(pressed, ring);
    EXPECT_NE(drawn("ring", 0.2, {20, 20, 40, 40}), ring);
    EXPECT_EQ(drawn("ring", 0.2), ring);
    EXPECT_EQ(drawn("ring", 0.9), pressed);
}

TEST(Glyph, WarnsOfALowBattery) {
    EXPECT_GT(brightPixels(ofGlyph(drawn("battery", 0.5))), 10);
    const QImage low = ofGlyph(drawn("battery", 0.19));
    int reddish = 0;
    for (int y = 0; y < low.height(); ++y)
        for (int x = 0; x < low.width(); ++x)
            reddish += low.pixel(x, y) == qRgb(255, 138, 107);
    EXPECT_GT(reddish, 10);
}

TEST(Glyph, TakesItsColor) {
    Shown shown(kWindow, Qt::white);
    Glyph glyph;
    glyph.setProperty("name", "lock");
    glyph.setProperty("color", QColor(22, 36, 43));
    shown.add(glyph, kPlace);
    EXPECT_EQ(ofGlyph(shown.picture()).pixel(shown.pixels({{}, kPlace.size()}).center() + QPoint(0, 8)),
              qRgb(22, 36, 43));
}

TEST(Glyph, DrawsNothingForAnotherName) {
    for (const char* const name : {"", "no such glyph", "Lock", "lock "}) {
        const QImage picture = drawn(name);
        EXPECT_EQ(picture, black(picture)) << name;
    }
}

} // namespace

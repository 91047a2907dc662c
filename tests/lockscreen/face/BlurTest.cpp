#include "lockscreen/face/Blur.h"

#include "tests/pixels/Pictures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

namespace {

using lumora::blur;
using lumora::enlarged;
using lumora::enlargedOver;
using lumora::kSoftScale;
using lumora::mixIn;
using lumora::quartered;
using tests::difference;
using tests::flat;
using tests::varied;

constexpr QRgb kSand = qRgb(201, 177, 3);
constexpr QRgb kWhite = qRgb(255, 255, 255);
constexpr QRgb kBlack = qRgb(0, 0, 0);

std::int64_t sumOfReds(const QImage& picture) {
    std::int64_t sum = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            sum += qRed(picture.pixel(x, y));
    return sum;
}

TEST(Quartered, TakesTheMeanOfSixteenPixels) {
    QImage picture = flat({8, 4}, kBlack);
    for (int y = 0; y < 4; ++y)
        for (int x = 4; x < 8; ++x)
            picture.setPixel(x, y, qRgb(160, y < 2 ? 200 : 100, x == 4 && y == 0 ? 255 : 0));
    const QImage quarter = quartered(picture);
    ASSERT_EQ(quarter.size(), QSize(2, 1));
    EXPECT_EQ(quarter.pixel(0, 0), kBlack);
    EXPECT_EQ(quarter.pixel(1, 0), qRgb(160, 150, 16));
}

TEST(Quartered, TakesWhatIsLeftAtTheEdges) {
    QImage picture = flat({5, 9}, kSand);
    picture.setPixel(4, 8, qRgb(10, 20, 30));
    const QImage quarter = quartered(picture);
    ASSERT_EQ(quarter.size(), QSize(2, 3));
    EXPECT_EQ(quarter.pixel(1, 1), kSand);
    EXPECT_EQ(quarter.pixel(1, 2), qRgb(10, 20, 30));
}

TEST(Blur, LeavesAFlatPictureFlat) {
    for (const QSize& size : {QSize(1, 1), QSize(3, 90), QSize(97, 61)})
        for (const int radius : {0, 1, 7, 20, 127, 1000})
            for (const QRgb color : {kBlack, kWhite, kSand, qRgb(1, 254, 128)}) {
                QImage picture = flat(size, color);
                blur(picture, radius);
                EXPECT_EQ(picture, flat(size, color)) << size.width() << " wide, radius " << radius;
            }
}

TEST(Blur, DoesNothingWithoutARadius) {
    QImage picture = varied({31, 17});
    blur(picture, 0);
    EXPECT_EQ(picture, varied({31, 17}));
}

TEST(Blur, KeepsTheEnergy) {
    QImage picture = flat({160, 160}, kBlack);
    for (int y = 60; y < 100; ++y)
        for (int x = 60; x < 100; ++x)
            picture.setPixel(x, y, kWhite);
    const auto before = static_cast<double>(sumOfReds(picture));
    blur(picture, 7);
    EXPECT_NEAR(static_cast<double>(sumOfReds(picture)), before, before * 0.005);
}

TEST(Blur, SpreadsLikeThreeBoxes) {
    constexpr int radius = 6;
    QImage picture = flat({121, 9}, kBlack);
    for (int y = 0; y < 9; ++y)
        for (int x = 50; x <= 70; ++x)
            picture.setPixel(x, y, kWhite);
    blur(picture, radius);
    double weight = 0;
    double spread = 0;
    for (int x = 0; x < 121; ++x) {
        weight += qRed(picture.pixel(x, 4));
        spread += qRed(picture.pixel(x, 4)) * (x - 60) * (x - 60);
    }
    const auto ofBox = [](int width) { return (width * width - 1) / 12.0; };
    EXPECT_NEAR(spread / weight, ofBox(21) + 3 * ofBox(2 * radius + 1), 3);
    EXPECT_EQ(qRed(picture.pixel(30, 4)), qRed(picture.pixel(90, 4)));
}

TEST(Blur, GoesOnBeyondTheEdgesWithThePixelsThere) {
    for (const bool upright : {false, true}) {
        QImage picture = flat({100, 100}, kBlack);
        for (int y = 0; y < 100; ++y)
            for (int x = 0; x < 100; ++x)
                if ((upright ? y : x) >= 50) picture.setPixel(x, y, kSand);
        blur(picture, 5);
        const auto at = [&](int place) { return picture.pixel(upright ? 33 : place, upright ? place : 33); };
        EXPECT_EQ(at(0), kBlack);
        EXPECT_EQ(at(99), kSand);
        EXPECT_NEAR(qRed(at(49)) + qRed(at(50)), 201, 3);
        for (int place = 1; place < 100; ++place)
            EXPECT_GE(qRed(at(place)), qRed(at(place - 1)));
    }
}

TEST(MixIn, MixesByTheShare) {
    const QImage before = varied({40, 30});
    QImage none = before;
    mixIn(none, Qt::red, 0);
    EXPECT_EQ(none, before);
    QImage all = before;
    mixIn(all, QColor(kSand), 1);
    EXPECT_EQ(all, flat({40, 30}, kSand));
    QImage half = flat({4, 4}, qRgb(0, 100, 255));
    mixIn(half, QColor(255, 200, 255), 0.5);
    EXPECT_LE(difference(half, flat({4, 4}, qRgb(128, 150, 255))), 1);
}

TEST(EnlargedOver, MixesByTheOpacity) {
    const QImage under = varied({40, 30}, 1);
    const QImage quarter = varied({10, 8}, 2);
    for (const QRect& part : {under.rect(), QRect(7, 5, 20, 11)}) {
        EXPECT_EQ(enlargedOver(quarter, part, under, 0), under.copy(part));
        EXPECT_EQ(enlargedOver(quarter, part, under, 1), enlarged(quarter, part));
        EXPECT_EQ(enlargedOver(quarter, part, under, 0.4), enlargedOver(quarter, under.rect(), under, 0.4).copy(part));
    }
    const QImage mixed =
        enlargedOver(flat({10, 8}, qRgb(0, 100, 255)), {0, 0, 40, 30}, flat(under.size(), qRgb(200, 100, 255)), 0.25);
    EXPECT_LE(difference(mixed, flat(under.size(), qRgb(150, 100, 255))), 1);
}

TEST(Enlarged, LeavesAFlatPictureFlat) {
    EXPECT_EQ(enlarged(flat({5, 7}, kSand), {0, 0, 20, 28}), flat({20, 28}, kSand));
    EXPECT_EQ(enlarged(flat({1, 1}, kWhite), {-9, -9, 30, 30}), flat({30, 30}, kWhite));
}

TEST(Enlarged, GivesPartsAsTheyAreInTheWhole) {
    const QImage quarter = varied({20, 30});
    const QImage whole = enlarged(quarter, {0, 0, 80, 120});
    for (const QRect& part : {QRect(0, 0, 1, 1), QRect(3, 5, 40, 60), QRect(79, 119, 1, 1), QRect(17, 2, 63, 118)})
        EXPECT_EQ(enlarged(quarter, part), whole.copy(part)) << part.x() << " " << part.y();
}

TEST(Enlarged, GoesOnBeyondTheEdges) {
    const QImage quarter = varied({20, 30});
    const QImage whole = enlarged(quarter, {0, 0, 80, 120});
    const QImage beside = enlarged(quarter, {-11, -6, 100, 140});
    EXPECT_EQ(beside.copy(11, 6, 80, 120), whole);
    EXPECT_EQ(beside.pixel(0, 0), quarter.pixel(0, 0));
    EXPECT_EQ(beside.pixel(99, 139), quarter.pixel(19, 29));
}

TEST(Enlarged, KeepsWhereThingsAre) {
    QImage ramp(16, 1, QImage::Format_RGB32);
    for (int x = 0; x < 16; ++x)
        ramp.setPixel(x, 0, qRgb(16 * x + 6, 0, 0));
    const QImage large = enlarged(ramp, {0, 0, 16 * kSoftScale, 1});
    // A pixel of the quarter is the mean of four pixels, so its value is that of the place between the second and third.
    for (int x = 2; x < 62; ++x)
        EXPECT_NEAR(qRed(large.pixel(x, 0)), 4 * x, 1) << x;
}

} // namespace

#include "lockscreen/face/ReadPicture.h"

#include "lockscreen/face/MeasureLuminance.h"
#include "tests/pixels/Pictures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QBuffer>
#include <QFile>

namespace {

using lumora::measureLuminance;
using lumora::readPicture;
using testing::HasSubstr;
using tests::difference;
using tests::flat;
using tests::PictureFolder;
using tests::varied;

/// Three stripes of that width, red, green and blue.
QImage stripes(int width, int height) {
    QImage picture = flat({3 * width, height}, qRgb(255, 0, 0));
    for (int y = 0; y < height; ++y)
        for (int x = width; x < 3 * width; ++x)
            picture.setPixel(x, y, x < 2 * width ? qRgb(0, 255, 0) : qRgb(0, 0, 255));
    return picture;
}

void write(const QString& file, const QByteArray& bytes) {
    QFile target(file);
    ASSERT_TRUE(target.open(QFile::WriteOnly));
    target.write(bytes);
}

/// As a camera that was held upright stores it.
QByteArray turnedJpeg(const QImage& picture) {
    QBuffer buffer;
    picture.save(&buffer, "jpg", 100);
    const auto tag =
        QByteArray::fromHex("ffe1 0022 457869660000 4d4d002a00000008 0001 0112 0003 00000001 00060000 00000000");
    return buffer.buffer().insert(2, tag);
}

std::string errorOf(const QString& file) {
    const auto read = readPicture(file, {40, 80});
    return read ? "it was read" : read.error();
}

TEST(ReadPicture, LeavesOneThatFitsAsItIs) {
    const PictureFolder folder;
    const auto read = readPicture(folder.save(varied({40, 80})), {40, 80});
    ASSERT_TRUE(read) << read.error();
    EXPECT_EQ(read.value(), varied({40, 80}));
    EXPECT_EQ(read.value().format(), QImage::Format_RGB32);
}

TEST(ReadPicture, CutsTheMiddle) {
    const PictureFolder folder;
    for (const char* const name : {"wide.png", "wide.bmp"}) {
        const auto read = readPicture(folder.save(stripes(40, 80), name), {40, 80});
        ASSERT_TRUE(read) << read.error();
        EXPECT_EQ(read.value(), flat({40, 80}, qRgb(0, 255, 0)));
    }
}

TEST(ReadPicture, ScalesEitherWay) {
    const PictureFolder folder;
    const QString file = folder.save(stripes(60, 90));
    for (const QSize& size : {QSize(30, 30), QSize(400, 600), QSize(1, 500), QSize(700, 1), QSize(1, 1)}) {
        const auto read = readPicture(file, size);
        ASSERT_TRUE(read) << read.error();
        EXPECT_EQ(read.value().size(), size);
        EXPECT_GT(qGreen(read.value().pixel(size.width() / 2, size.height() / 2)), 80) << size.width();
    }
}

TEST(ReadPicture, TurnsWhatACameraHasStoredOnItsSide) {
    const PictureFolder folder;
    const QString file = folder.path("turned.jpg");
    write(file, turnedJpeg(stripes(40, 80)));
    const auto read = readPicture(file, {80, 120});
    ASSERT_TRUE(read) << read.error();
    ASSERT_EQ(read.value().size(), QSize(80, 120));
    EXPECT_LT(difference(read.value().copy(0, 0, 80, 30), flat({80, 30}, qRgb(255, 0, 0))), 8);
    EXPECT_LT(difference(read.value().copy(0, 90, 80, 30), flat({80, 30}, qRgb(0, 0, 255))), 8);
}

TEST(ReadPicture, PutsTransparentPartsOverBlack) {
    const PictureFolder folder;
    QImage picture({40, 80}, QImage::Format_ARGB32);
    picture.fill(qRgba(200, 100, 50, 0));
    picture.setPixel(0, 0, qRgba(200, 100, 50, 255));
    picture.setPixel(1, 0, qRgba(200, 100, 50, 128));
    const auto read = readPicture(folder.save(picture), {40, 80});
    ASSERT_TRUE(read) << read.error();
    EXPECT_EQ(read.value().pixel(0, 0), qRgb(200, 100, 50));
    EXPECT_NEAR(qRed(read.value().pixel(1, 0)), 100, 1);
    EXPECT_EQ(read.value().pixel(20, 20), qRgb(0, 0, 0));
}

TEST(ReadPicture, SaysWhatIsNoPicture) {
    const PictureFolder folder;
    write(folder.path("empty.png"), "");
    write(folder.path("text.jpg"), "This is no picture.");
    QBuffer buffer;
    varied({300, 300}).save(&buffer, "png");
    write(folder.path("cut.png"), buffer.data().first(buffer.size() / 2));
    for (const char* const name : {"empty.png", "text.jpg", "cut.png", "missing.png", "."})
        EXPECT_THAT(errorOf(folder.path(name)),
                    HasSubstr("picture " + folder.path(name).toStdString() + " cannot be read"));
}

TEST(ReadPicture, RefusesOneThatClaimsToBeHuge) {
    const PictureFolder folder;
    write(folder.path("huge.ppm"), "P6\n30000 30000\n255\n");
    EXPECT_THAT(errorOf(folder.path("huge.ppm")), HasSubstr("30000 × 30000 pixels are too many"));
}

TEST(MeasureLuminance, TellsBlackFromWhite) {
    EXPECT_DOUBLE_EQ(measureLuminance(flat({48, 48}, qRgb(0, 0, 0)), {2, 2}).range({{}, {1, 1}}).second, 0);
    EXPECT_NEAR(measureLuminance(flat({48, 48}, qRgb(255, 255, 255)), {2, 2}).range({{}, {1, 1}}).first, 1, 1e-5);
}

TEST(MeasureLuminance, TakesTheMeanOfLight) {
    QImage board = flat({60, 60}, qRgb(0, 0, 0));
    for (int y = 0; y < 60; ++y)
        for (int x = y % 2; x < 60; x += 2)
            board.setPixel(x, y, qRgb(255, 255, 255));
    const lumora::Luminance luminance = measureLuminance(board, {3, 3});
    EXPECT_NEAR(luminance.range({{}, {1, 1}}).first, 0.5, 1e-5);
    EXPECT_NEAR(luminance.range({{}, {1, 1}}).second, 0.5, 1e-5);
    // A grey of half the values has a fifth of the light.
    EXPECT_NEAR(measureLuminance(flat({9, 9}, qRgb(128, 128, 128)), {1, 1}).mean({{}, {1, 1}}), 0.2159, 1e-3);
}

TEST(MeasureLuminance, KnowsWhereThePictureIsBright) {
    QImage picture = flat({101, 67}, qRgb(0, 0, 0));
    for (int y = 0; y < 67; ++y)
        for (int x = 51; x < 101; ++x)
            picture.setPixel(x, y, qRgb(0, 255, 0));
    const lumora::Luminance luminance = measureLuminance(picture, {4, 3});
    EXPECT_NEAR(luminance.mean({{0, 0}, {0.25, 1}}), 0, 1e-5);
    EXPECT_NEAR(luminance.mean({{0.75, 0}, {0.25, 1}}), 0.7152, 1e-4);
}

TEST(MeasureLuminance, HasNoMoreCellsThanPixels) {
    EXPECT_NEAR(measureLuminance(flat({2, 1}, qRgb(255, 255, 255)), {40, 80}).mean({{}, {1, 1}}), 1, 1e-5);
    EXPECT_NEAR(measureLuminance(flat({20, 10}, qRgb(255, 255, 255)), {0, 0}).mean({{}, {1, 1}}), 1, 1e-5);
}

} // namespace

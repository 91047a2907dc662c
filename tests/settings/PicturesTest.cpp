#include "tests/support/DeviceFolder.h"

#include <QColor>
#include <QDir>
#include <QImage>
#include <QProcess>
#include <QString>

#include <gmock/gmock.h>

#include <algorithm>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

QStringList picturesIn(const QDir& folder) {
    return folder.entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name);
}

QImage read(const QDir& folder, const QString& name) {
    return QImage(folder.filePath(name)).convertToFormat(QImage::Format_ARGB32);
}

/// The new picture, pale, with what is not as in the other in red: pixels that differ or that only one of them has.
QImage differenceBetween(const QImage& one, const QImage& other, int& pixels) {
    QImage picture(one.size().expandedTo(other.size()), QImage::Format_RGB32);
    pixels = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const bool same = one.valid(x, y) && other.valid(x, y) && one.pixel(x, y) == other.pixel(x, y);
            const int grey = same ? 192 + qGray(other.pixel(x, y)) / 4 : 0;
            picture.setPixel(x, y, same ? qRgb(grey, grey, grey) : qRgb(255, 0, 0));
            pixels += same ? 0 : 1;
        }
    }
    return picture;
}

/// What is to be said about the pictures in a folder that should be those in another. Of each one that differs, the
/// folder `differences` gets the new picture and one that shows where.
std::vector<std::string> compare(const QDir& expected, const QDir& drawn, const QDir& differences) {
    std::vector<std::string> complaints;
    const QStringList names = picturesIn(expected);
    const QStringList drawnNames = picturesIn(drawn);
    for (const QString& name : drawnNames)
        if (!names.contains(name)) complaints.push_back(name.toStdString() + " is new");
    for (const QString& name : names) {
        const std::string called = name.toStdString();
        const QImage before = read(expected, name);
        const QImage now = read(drawn, name);
        if (!drawnNames.contains(name))
            complaints.push_back(called + " is no longer drawn");
        else if (before.isNull() || now.isNull())
            complaints.push_back(called + " is no picture");
        else if (before != now) {
            int pixels = 0;
            const QString shown = differences.filePath(QString(name).chopped(4) + QStringLiteral("-difference.png"));
            const bool left = differences.mkpath(QStringLiteral(".")) &&
                              differenceBetween(before, now, pixels).save(shown) &&
                              now.save(differences.filePath(name));
            complaints.push_back(called + " differs in " + std::to_string(pixels) + " pixels, see " +
                                 (left ? shown.toStdString() : "nothing, as it could not be written"));
        }
    }
    return complaints;
}

TEST(Pictures, AreThoseOfTheDocumentationPixelByPixel) {
    const QDir drawn(QStringLiteral(LUMORA_PICTURES));
    ASSERT_TRUE(QDir(drawn).removeRecursively());
    QProcess tour;
    tour.setProcessChannelMode(QProcess::ForwardedChannels);
    tour.start(QStringLiteral(LUMORA_SOURCE "/scripts/tour"),
               {QStringLiteral(LUMORA_BINARIES), QStringLiteral(LUMORA_TEST_ROOT), drawn.path()});
    ASSERT_TRUE(tour.waitForFinished(-1));
    ASSERT_EQ(tour.exitCode(), 0);

    const QDir golden(QStringLiteral(LUMORA_SOURCE "/docs/pictures"));
    EXPECT_GE(picturesIn(golden).size(), 100);
    EXPECT_THAT(compare(golden, drawn, QDir(drawn.filePath(QStringLiteral("differences")))), IsEmpty())
        << "If the application should look like this now, renew its pictures by scripts/pictures.";
}

class ComparedPictures : public testing::Test {
  protected:
    ComparedPictures() {
        for (const QDir& folder : {before_, now_})
            folder.mkpath(QStringLiteral("."));
        draw(before_, "page.png");
        draw(now_, "page.png");
    }

    static void draw(const QDir& folder, const char* name, QSize size = {4, 3}, QRgb corner = qRgb(1, 2, 3)) {
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(qRgb(1, 2, 3));
        picture.setPixel(size.width() - 1, size.height() - 1, corner);
        ASSERT_TRUE(picture.save(folder.filePath(QString::fromLatin1(name))));
    }
    [[nodiscard]] std::vector<std::string> complaints() const { return compare(before_, now_, differences_); }

    tests::DeviceFolder device_;
    QDir folder_{QString::fromStdString(device_.path().string())};
    QDir before_{folder_.filePath(QStringLiteral("before"))};
    QDir now_{folder_.filePath(QStringLiteral("now"))};
    QDir differences_{folder_.filePath(QStringLiteral("differences"))};
};

TEST_F(ComparedPictures, AreTheSameWhenAllTheirPixelsAre) {
    EXPECT_THAT(complaints(), IsEmpty());
    EXPECT_FALSE(differences_.exists());
}

TEST_F(ComparedPictures, DifferByTheLeastChangeOfOnePixel) {
    draw(now_, "page.png", {4, 3}, qRgb(1, 2, 4));
    EXPECT_THAT(complaints(), ElementsAre(HasSubstr("page.png differs in 1 pixels, see ")));
    EXPECT_EQ(read(differences_, QStringLiteral("page.png")).pixelColor(3, 2), QColor(1, 2, 4));
    const QImage shown = read(differences_, QStringLiteral("page-difference.png"));
    EXPECT_EQ(shown.pixelColor(3, 2), QColor(255, 0, 0));
    EXPECT_EQ(shown.pixelColor(2, 2), QColor(192, 192, 192));
}

TEST_F(ComparedPictures, DifferInWhatOnlyOneOfThemHas) {
    draw(now_, "page.png", {4, 5});
    EXPECT_THAT(complaints(), ElementsAre(HasSubstr("page.png differs in 8 pixels")));
}

TEST_F(ComparedPictures, AreMissedAndAreNoticedWhenTheyAreNew) {
    draw(before_, "former.png");
    draw(now_, "new.png");
    EXPECT_THAT(complaints(), ElementsAre("new.png is new", "former.png is no longer drawn"));
}

TEST_F(ComparedPictures, HaveToBeReadable) {
    device_.write("no picture", "now/page.png");
    EXPECT_THAT(complaints(), ElementsAre("page.png is no picture"));
}

} // namespace

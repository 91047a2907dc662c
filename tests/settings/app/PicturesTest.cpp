#include "platform/foundation/ChildProcess.h"
#include "tests/support/DeviceFolder.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QImage>
#include <QPainter>
#include <QString>

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace std::chrono_literals;

namespace {

constexpr int kUnseen = 12;           ///< of 255
constexpr double kPartOfAnEdge = 0.4; ///< as Debian 13 has it, 0.33

QStringList picturesIn(const QDir& folder) {
    return folder.entryList({"*.png"}, QDir::Files, QDir::Name);
}

QImage read(const QDir& folder, const QString& name) {
    return QImage(folder.filePath(name)).convertToFormat(QImage::Format_ARGB32);
}

enum class Held { toEveryPixel, nearly };

/// Is a pixel of the one what it is in the other, but for a part of the edge that it may be on? What moves by a point
/// changes some pixels from the one side of an edge to the other. A toolkit that smooths edges otherwise has changed
/// them by a third of that, and areas by nothing.
bool isNearly(const QImage& one, const QImage& other, int x, int y) {
    for (const int shift : {0, 8, 16}) {
        const auto channel = [shift](const QImage& picture, int column, int row) {
            return static_cast<int>(picture.pixel(column, row) >> shift) & 255;
        };
        const int difference = std::abs(channel(one, x, y) - channel(other, x, y));
        if (difference <= kUnseen) continue;
        int least = 255;
        int greatest = 0;
        for (const QImage* picture : {&one, &other}) {
            const QRect beside = QRect(x - 1, y - 1, 3, 3) & picture->rect();
            for (int row = beside.top(); row <= beside.bottom(); ++row) {
                for (int column = beside.left(); column <= beside.right(); ++column) {
                    least = std::min(least, channel(*picture, column, row));
                    greatest = std::max(greatest, channel(*picture, column, row));
                }
            }
        }
        if (difference > kPartOfAnEdge * (greatest - least)) return false;
    }
    return true;
}

/// The new picture, pale, with what is not as in the other in red: pixels that differ or that only one of them has.
QImage differenceBetween(const QImage& one, const QImage& other, Held held, int& pixels) {
    QImage picture(one.size().expandedTo(other.size()), QImage::Format_RGB32);
    pixels = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const bool same =
                one.valid(x, y) && other.valid(x, y) &&
                (one.pixel(x, y) == other.pixel(x, y) || (held == Held::nearly && isNearly(one, other, x, y)));
            const int grey = same ? 192 + qGray(other.pixel(x, y)) / 4 : 0;
            picture.setPixel(x, y, same ? qRgb(grey, grey, grey) : qRgb(255, 0, 0));
            pixels += same ? 0 : 1;
        }
    }
    return picture;
}

/// What is to be said about the pictures in a folder that should be those in another. Of each one that differs, the
/// folder `differences` gets the new picture and one that shows where.
std::vector<std::string> compare(const QDir& expected, const QDir& drawn, const QDir& differences, Held held) {
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
            const QImage difference = differenceBetween(before, now, held, pixels);
            if (pixels == 0) continue;
            const QString shown = differences.filePath(QString(name).chopped(4) + "-difference.png");
            const bool left = differences.mkpath(".") && difference.save(shown) && now.save(differences.filePath(name));
            complaints.push_back(called + " differs in " + std::to_string(pixels) + " pixels, see " +
                                 (left ? shown.toStdString() : "nothing, as it could not be written"));
        }
    }
    return complaints;
}

/// What scripts/tour has noted beside its pictures: the loader, which tells the processor, and the libraries on which
/// their pixels depend.
std::string drawnWith(const QDir& folder) {
    QFile file(folder.filePath("drawn-with.txt"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "";
}

TEST(Pictures, AreThoseOfTheDocumentation) {
    const QDir drawn(QStringLiteral(LUMORA_PICTURES));
    ASSERT_TRUE(QDir(drawn).removeRecursively());
    // A process of the toolkit cannot be had in an emulator.
    const auto tour = platform::ChildProcess::start(
        {LUMORA_SOURCE "/scripts/tour", LUMORA_BINARIES, LUMORA_TEST_ROOT, drawn.path().toStdString()}, {});
    ASSERT_TRUE(tour) << tour.error();
    EXPECT_EQ(tour.value()->awaitEnd(tour.value()->patience(1h, 1h)), platform::ChildProcess::Heard::end);
    ASSERT_EQ(tour.value()->end(), 0) << tour.value()->printed();

    const QDir golden(QStringLiteral(LUMORA_SOURCE "/docs/pictures"));
    EXPECT_GE(picturesIn(golden).size(), 100);
    EXPECT_GE(picturesIn(QDir(golden.filePath("lockscreen"))).size(), 20);
    EXPECT_EQ(picturesIn(QDir(golden.filePath("kept"))).size(), 8);
    EXPECT_EQ(picturesIn(QDir(golden.filePath("wide"))).size(), 2);
    EXPECT_EQ(picturesIn(QDir(golden.filePath("panes"))).size(), 20);
    EXPECT_EQ(picturesIn(QDir(golden.filePath("profiles"))).size(), 6);
    EXPECT_EQ(picturesIn(QDir(golden.filePath("search"))).size(), 4);
    ASSERT_THAT(drawnWith(golden), HasSubstr("libQt6Gui"));
    ASSERT_THAT(drawnWith(drawn), HasSubstr("libQt6Gui"));
    const Held held = drawnWith(drawn) == drawnWith(golden) ? Held::toEveryPixel : Held::nearly;
    for (const char* part : {".", "kept", "lockscreen", "panes", "profiles", "search", "wide"})
        EXPECT_THAT(
            compare(QDir(golden.filePath(part)), QDir(drawn.filePath(part)), QDir(drawn.filePath("differences")), held),
            IsEmpty())
            << "If the application should look like this now, renew its pictures by scripts/pictures.";
}

class ComparedPictures : public testing::Test {
  protected:
    ComparedPictures() {
        for (const QDir& folder : {before_, now_})
            folder.mkpath(".");
        draw(before_, "page.png");
        draw(now_, "page.png");
    }

    static void draw(const QDir& folder, const char* name, QSize size = {4, 3}, QRgb corner = qRgb(1, 2, 3)) {
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(qRgb(1, 2, 3));
        picture.setPixel(size.width() - 1, size.height() - 1, corner);
        ASSERT_TRUE(picture.save(folder.filePath(name)));
    }
    [[nodiscard]] std::vector<std::string> complaints() const {
        return compare(before_, now_, differences_, Held::toEveryPixel);
    }

    tests::DeviceFolder device_;
    QDir folder_{QString::fromStdString(device_.path().string())};
    QDir before_{folder_.filePath("before")};
    QDir now_{folder_.filePath("now")};
    QDir differences_{folder_.filePath("differences")};
};

TEST_F(ComparedPictures, AreTheSameWhenAllTheirPixelsAre) {
    EXPECT_THAT(complaints(), IsEmpty());
    EXPECT_FALSE(differences_.exists());
}

TEST_F(ComparedPictures, DifferByTheLeastChangeOfOnePixel) {
    draw(now_, "page.png", {4, 3}, qRgb(1, 2, 4));
    EXPECT_THAT(complaints(), ElementsAre(HasSubstr("page.png differs in 1 pixels, see ")));
    EXPECT_EQ(read(differences_, "page.png").pixelColor(3, 2), QColor(1, 2, 4));
    const QImage shown = read(differences_, "page-difference.png");
    EXPECT_EQ(shown.pixelColor(3, 2), QColor(255, 0, 0));
    EXPECT_EQ(shown.pixelColor(2, 2), QColor(192, 192, 192));
}

TEST_F(ComparedPictures, DifferInWhatOnlyOneOfThemHas) {
    draw(now_, "page.png", {4, 5});
    EXPECT_THAT(complaints(), ElementsAre(HasSubstr("page.png differs in 8 pixels")));
}

TEST_F(ComparedPictures, AreReportedWhenTheyAreMissingOrNew) {
    draw(before_, "former.png");
    draw(now_, "new.png");
    EXPECT_THAT(complaints(), ElementsAre("new.png is new", "former.png is no longer drawn"));
}

TEST_F(ComparedPictures, HaveToBeReadable) {
    device_.write("no picture", "now/page.png");
    EXPECT_THAT(complaints(), ElementsAre("page.png is no picture"));
}

/// Three rows as those of a page: the one in the middle with a faint title, which may have moved, and a round knob.
struct Rows {
    QString title = "Passcode";
    int moved = 0;
    double knobAside = 0;
    QColor colour{160, 160, 165};

    [[nodiscard]] QImage drawn() const {
        QImage picture(240, 132, QImage::Format_ARGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        QFont font("Inter");
        font.setPixelSize(17);
        painter.setFont(font);
        for (int row = 0; row < 3; ++row) {
            const int top = row * 44 + (row == 1 ? moved : 0);
            painter.setPen(colour);
            painter.drawText(16, top + 28, row == 1 ? title : "Enable");
            painter.fillRect(16, top + 43, 224, 1, QColor(224, 224, 227));
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor(0, 122, 255));
            painter.drawEllipse(QPointF(200 + (row == 1 ? knobAside : 0), top + 22), 10, 10);
        }
        return picture;
    }
};

class NearlyTheSamePictures : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        ASSERT_NE(QFontDatabase::addApplicationFont(QStringLiteral(LUMORA_SOURCE "/tests/fonts/Inter.otc")), -1);
    }
    static int unlike(const Rows& before, const Rows& now, Held held = Held::nearly) {
        int pixels = 0;
        differenceBetween(before.drawn(), now.drawn(), held, pixels);
        return pixels;
    }
};

TEST_F(NearlyTheSamePictures, MayHaveEdgesThatAreSmoothedOtherwise) {
    EXPECT_GT(unlike({}, {.knobAside = 0.25}, Held::toEveryPixel), 20);
    EXPECT_EQ(unlike({}, {.knobAside = 0.25}), 0);
}

TEST_F(NearlyTheSamePictures, HaveNoRowThatHasMovedByAPoint) {
    EXPECT_GT(unlike({}, {.moved = 1}), 400);
    EXPECT_GT(unlike({}, {.moved = -2}), 400);
    // Of a row with nothing in it, the line.
    EXPECT_GT(unlike({.title = {}, .knobAside = 100}, {.title = {}, .moved = 1, .knobAside = 100}), 400);
}

TEST_F(NearlyTheSamePictures, HaveNoTextThatDiffersByALetter) {
    for (const auto& [before, now] : {std::pair("Passcode", "Passcade"),
                                      {"Passcode", "Passc0de"},
                                      {"Size", "Sise"},
                                      {"Fill", "Fi1l"},
                                      {"Yes, all", "Yes. all"},
                                      {"Notes", "Notes."}})
        EXPECT_GT(unlike({.title = QString::fromLatin1(before)}, {.title = QString::fromLatin1(now)}), 0)
            << before << ", " << now;
}

} // namespace

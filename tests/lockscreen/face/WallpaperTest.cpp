#include "lockscreen/face/Wallpapers.h"

#include "lockscreen/face/Backdrop.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QProcess>

#include <set>

namespace {

using lumora::wallpaperFile;
using lumora::wallpapers;

QByteArray contents(const QString& name) {
    QFile file(name);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

TEST(Wallpapers, AreForBothShapesOfAScreen) {
    EXPECT_THAT(wallpapers(), testing::ElementsAre("dusk", "day", "night"));
    for (const QString& name : wallpapers()) {
        EXPECT_EQ(QImageReader(wallpaperFile(name, false)).size(), QSize(1170, 2532)) << name.toStdString();
        EXPECT_EQ(QImageReader(wallpaperFile(name, true)).size(), QSize(2532, 1170)) << name.toStdString();
    }
}

TEST(Wallpapers, DifferAndAreSmall) {
    std::set<QByteArray> all;
    qint64 size = 0;
    for (const QString& name : wallpapers())
        for (const bool landscape : {false, true}) {
            all.insert(contents(wallpaperFile(name, landscape)));
            size += QFileInfo(wallpaperFile(name, landscape)).size();
        }
    EXPECT_EQ(all.size(), 6U);
    EXPECT_LT(size, 1'000'000);
}

TEST(Wallpapers, AreTheSameWheneverTheyAreDrawn) {
    const tests::TemporaryFolder folder("lumora-wallpapers");
    const QString path = QString::fromStdString(folder.path().string());
    ASSERT_EQ(QProcess::execute(QStringLiteral(LUMORA_BINARIES "/draw_wallpapers"), {path}), 0);
    for (const QString& name : wallpapers())
        for (const bool landscape : {false, true}) {
            const QString drawn = wallpaperFile(name, landscape);
            EXPECT_EQ(contents(path + "/" + QFileInfo(drawn).fileName()), contents(drawn)) << drawn.toStdString();
        }
}

TEST(Wallpapers, ThatCannotBeWrittenAreTold) {
    EXPECT_EQ(QProcess::execute(QStringLiteral(LUMORA_BINARIES "/draw_wallpapers"), {"/dev/null"}), 1);
    EXPECT_EQ(QProcess::execute(QStringLiteral(LUMORA_BINARIES "/draw_wallpapers"), {}), 2);
}

TEST(Wallpapers, HaveTheDaylightOfTheirNames) {
    const auto brightness = [](const QString& name) {
        const auto made = lumora::makeBackdrop({name, {390, 844}, 1});
        return made ? made.value().luminance.mean({{}, {1, 1}}) : -1;
    };
    EXPECT_GT(brightness("night"), 0);
    EXPECT_GT(brightness("dusk"), brightness("night"));
    EXPECT_GT(brightness("day"), brightness("dusk"));
}

TEST(Wallpapers, LeaveOtherNamesToFiles) {
    EXPECT_EQ(wallpaperFile("picture.png", true), "picture.png");
    EXPECT_EQ(wallpaperFile("/tmp/dusk", false), "/tmp/dusk");
}

} // namespace

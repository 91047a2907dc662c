#include "applist/ApplicationList.h"

#include "tests/applist/Desktop.h"

#include <limits>

namespace {

using applist::ApplicationList;
using tests::decoded;
using tests::entryNamed;
using tests::write;
namespace fs = std::filesystem;

struct Applications : tests::FolderTest {
    fs::path entries = folder / "applications";
    fs::path icons = folder / "icons";
    ApplicationList list{{{entries}, {icons}, {folder / "pixmaps"}}, "hicolor"};

    Applications() {
        write(icons / "hicolor/index.theme", "[Icon Theme]\nName=H\nDirectories=32\n[32]\nSize=32\n");
        write(icons / "hicolor/32/clock.svg", tests::svg(32, 32, "#ff0000"));
        write(entries / "themed.desktop", entryNamed("Themed", "Icon=clock\n"));
        write(entries / "file.desktop", entryNamed("File", "Icon=" + (folder / "own.png").string() + "\n"));
        write(entries / "none.desktop", entryNamed("None"));
        write(folder / "own.png", tests::png(40, 40, 0x00FF00FF));
    }
};

TEST_F(Applications, HaveIconsOfTheirThemeOrOfTheirOwn) {
    const tests::Points themed = decoded(list.icon(29, 2, "themed"));
    EXPECT_EQ(themed.width, 58);
    EXPECT_EQ(themed.at(29, 29), 0xFF0000FF);
    const tests::Points own = decoded(list.icon(29, 1, "file"));
    EXPECT_EQ(own.width, 29);
    EXPECT_EQ(own.at(14, 14), 0x00FF00FF);
    EXPECT_EQ(decoded(list.icon(29, 1.5, "file")).width, 44);
    EXPECT_TRUE(list.icon(29, 1, "none").empty());
    EXPECT_TRUE(list.icon(29, 1, "stranger").empty());
}

TEST_F(Applications, HaveNoIconOfASizeThatIsNone) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double size : {0.0, -29.0, 1e9, infinity, -infinity, nan}) {
        EXPECT_TRUE(list.icon(size, 1, "themed").empty()) << size;
        EXPECT_TRUE(list.icon(29, size, "themed").empty()) << size;
    }
    EXPECT_EQ(list.iconsDrawn(), 0);
}

TEST_F(Applications, HaveTheirIconsDrawnOnce) {
    const auto first = list.icon(29, 1, "themed");
    EXPECT_EQ(list.icon(29, 1, "themed"), first);
    EXPECT_EQ(list.iconsDrawn(), 1);
    EXPECT_EQ(list.applications().size(), 3);
    EXPECT_EQ(list.icon(29, 1, "themed"), first);
    EXPECT_EQ(list.iconsDrawn(), 1);
    EXPECT_FALSE(list.icon(29, 2, "themed").empty());
    EXPECT_EQ(list.iconsDrawn(), 2);
}

TEST_F(Applications, HaveTheirIconsDrawnAgainWhenThoseChange) {
    EXPECT_EQ(decoded(list.icon(29, 1, "file")).at(14, 14), 0x00FF00FF);
    write(folder / "own.png", tests::png(41, 41, 0x0000FFFF));
    EXPECT_EQ(decoded(list.icon(29, 1, "file")).at(14, 14), 0x0000FFFF);
    fs::remove(folder / "own.png");
    EXPECT_TRUE(list.icon(29, 1, "file").empty());
    write(folder / "own.png", tests::png(42, 42, 0xFFFF00FF));
    EXPECT_EQ(decoded(list.icon(29, 1, "file")).at(14, 14), 0xFFFF00FF);
}

TEST_F(Applications, HaveAnotherIconWhenTheirEntriesNameOne) {
    EXPECT_EQ(decoded(list.icon(29, 1, "themed")).at(14, 14), 0xFF0000FF);
    write(entries / "themed.desktop", entryNamed("Themed", "Icon=" + (folder / "own.png").string() + "\n"));
    EXPECT_EQ(list.applications().size(), 3);
    EXPECT_EQ(decoded(list.icon(29, 1, "themed")).at(14, 14), 0x00FF00FF);
}

TEST_F(Applications, FindIconsThatAreInstalledAfterThem) {
    write(entries / "late.desktop", entryNamed("Late", "Icon=late\n"));
    EXPECT_TRUE(list.icon(29, 1, "late").empty());
    write(folder / "pixmaps/late.png", tests::png(29, 29, 0x00FFFFFF));
    EXPECT_EQ(list.applications().size(), 4);
    EXPECT_EQ(decoded(list.icon(29, 1, "late")).at(14, 14), 0x00FFFFFF);
}

TEST_F(Applications, ThatAreBrokenTakeNothingFromTheOthers) {
    write(entries / "broken.desktop", "");
    write(entries / "badicon.desktop", entryNamed("Bad", "Icon=" + (entries / "broken.desktop").string() + "\n"));
    write(entries / "foldericon.desktop", entryNamed("Folder", "Icon=" + folder.string() + "\n"));
    testing::internal::CaptureStderr();
    EXPECT_EQ(list.applications().size(), 5);
    EXPECT_TRUE(list.icon(29, 1, "badicon").empty());
    EXPECT_TRUE(list.icon(29, 1, "foldericon").empty());
    EXPECT_FALSE(list.icon(29, 1, "themed").empty());
    EXPECT_EQ(list.applications().size(), 5);
    EXPECT_FALSE(list.icon(29, 1, "themed").empty());
    EXPECT_EQ(list.iconsDrawn(), 2) << "once the bad and once the good one";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace

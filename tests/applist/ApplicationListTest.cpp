#include "applist/ApplicationList.h"

#include "tests/applist/Desktop.h"

#include <limits>

namespace {

using applist::ApplicationList;
using tests::entryNamed;
using tests::write;
namespace fs = std::filesystem;

struct Applications : tests::FolderTest {
    fs::path entries = folder / "applications";
    fs::path icons = folder / "icons";
    fs::path clock = icons / "hicolor/32/clock.svg";
    fs::path own = folder / "own.png";
    ApplicationList list{{{entries}, {icons}, {folder / "pixmaps"}}, "hicolor"};

    Applications() {
        write(icons / "hicolor/index.theme", "[Icon Theme]\nName=H\nDirectories=32\n[32]\nSize=32\n");
        write(clock, tests::svg(32, 32, "#ff0000"));
        write(entries / "themed.desktop", entryNamed("Themed", "Icon=clock\n"));
        write(entries / "file.desktop", entryNamed("File", "Icon=" + own.string() + "\n"));
        write(entries / "none.desktop", entryNamed("None"));
        write(own, tests::png(40, 40, 0x00FF00FF));
    }
};

TEST_F(Applications, HaveIconsOfTheirThemeOrOfTheirOwn) {
    EXPECT_EQ(list.iconFile(29, 2, "themed"), clock);
    EXPECT_EQ(list.iconFile(29, 1, "file"), own);
    EXPECT_EQ(list.iconFile(29, 1.5, "file"), own);
    EXPECT_EQ(list.iconFile(29, 1, "none"), "");
    EXPECT_EQ(list.iconFile(29, 1, "stranger"), "");
}

TEST_F(Applications, HaveNoIconOfASizeThatIsNone) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double size : {0.0, -29.0, 1e9, infinity, -infinity, nan}) {
        EXPECT_EQ(list.iconFile(size, 1, "themed"), "") << size;
        EXPECT_EQ(list.iconFile(29, size, "themed"), "") << size;
    }
    EXPECT_EQ(list.iconsLookedFor(), 0);
}

TEST_F(Applications, HaveTheirIconsLookedForOnce) {
    EXPECT_EQ(list.iconFile(29, 1, "themed"), clock);
    EXPECT_EQ(list.iconFile(29, 1, "themed"), clock);
    EXPECT_EQ(list.iconsLookedFor(), 1);
    EXPECT_EQ(list.applications().size(), 3);
    EXPECT_EQ(list.iconFile(29, 1, "themed"), clock);
    EXPECT_EQ(list.iconsLookedFor(), 1);
    EXPECT_EQ(list.iconFile(29, 2, "themed"), clock);
    EXPECT_EQ(list.iconsLookedFor(), 2);
}

TEST_F(Applications, HaveTheirIconsLookedForAgainWhenThoseComeAndGo) {
    EXPECT_EQ(list.iconFile(29, 1, "file"), own);
    fs::remove(own);
    EXPECT_EQ(list.iconFile(29, 1, "file"), "");
    EXPECT_EQ(list.iconFile(29, 1, "file"), "");
    write(own, tests::png(42, 42, 0xFFFF00FF));
    EXPECT_EQ(list.iconFile(29, 1, "file"), own);
}

TEST_F(Applications, HaveAnotherIconWhenTheirEntriesNameOne) {
    EXPECT_EQ(list.iconFile(29, 1, "themed"), clock);
    write(entries / "themed.desktop", entryNamed("Themed", "Icon=" + own.string() + "\n"));
    EXPECT_EQ(list.applications().size(), 3);
    EXPECT_EQ(list.iconFile(29, 1, "themed"), own);
}

TEST_F(Applications, FindIconsThatAreInstalledAfterThem) {
    write(entries / "late.desktop", entryNamed("Late", "Icon=late\n"));
    EXPECT_EQ(list.iconFile(29, 1, "late"), "");
    write(folder / "pixmaps/late.png", tests::png(29, 29, 0x00FFFFFF));
    EXPECT_EQ(list.applications().size(), 4);
    EXPECT_EQ(list.iconFile(29, 1, "late"), folder / "pixmaps/late.png");
}

TEST_F(Applications, ThatAreBrokenTakeNothingFromTheOthers) {
    write(entries / "broken.desktop", "");
    write(entries / "foldericon.desktop", entryNamed("Folder", "Icon=" + folder.string() + "\n"));
    testing::internal::CaptureStderr();
    EXPECT_EQ(list.applications().size(), 4);
    EXPECT_EQ(list.iconFile(29, 1, "foldericon"), "");
    EXPECT_EQ(list.iconFile(29, 1, "themed"), clock);
    EXPECT_EQ(list.applications().size(), 4);
    EXPECT_EQ(list.iconFile(29, 1, "themed"), clock);
    EXPECT_EQ(list.iconsLookedFor(), 2) << "the folder and the good one, once each";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace

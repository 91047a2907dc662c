#include "applist/IconTheme.h"

#include "applist/IconThemeName.h"
#include "tests/applist/Desktop.h"

#include <cstdlib>
#include <unistd.h>

namespace {

using applist::IconTheme;
using tests::write;
namespace fs = std::filesystem;

struct Icons : tests::FolderTest {
    fs::path user = folder / "user";
    fs::path system = folder / "system";
    fs::path pixmaps = folder / "pixmaps";

    static std::string index(const std::string& inherits, const std::string& folders, const std::string& groups) {
        return "[Icon Theme]\nName=Theme\nInherits=" + inherits + "\nDirectories=" + folders + "\n" + groups;
    }

    [[nodiscard]] IconTheme theme(const std::string& name) const {
        IconTheme made({user, system}, {pixmaps}, name);
        made.refresh();
        return made;
    }
};

const std::string kSizes = "[16]\nSize=16\nType=Fixed\n[32]\nSize=32\nType=Fixed\n[64]\nSize=64\nType=Fixed\n"
                           "[32@2]\nSize=32\nScale=2\nType=Fixed\n";

TEST_F(Icons, OfMoreParentsThanAnyThemeHasAreNotLookedFor) {
    std::string missing;
    for (int i = 0; i < 100; ++i)
        missing += "missing-" + std::to_string(i) + ",";
    write(system / "near/index.theme", index("p," + missing, "", ""));
    write(system / "far/index.theme", index(missing + "p", "", ""));
    write(system / "p/index.theme", index("", "16", kSizes));
    write(system / "p/16/a.png", "");
    EXPECT_EQ(theme("near").find("a", 16, 1), system / "p/16/a.png");
    EXPECT_EQ(theme("far").find("a", 16, 1), fs::path());
    write(system / "hicolor/index.theme", index("", "16", kSizes));
    write(system / "hicolor/16/b.png", "");
    EXPECT_EQ(theme("far").find("b", 16, 1), system / "hicolor/16/b.png");
}

TEST_F(Icons, OfTheNearestSizeAreFound) {
    write(system / "t/index.theme", index("", "16,32,64,32@2", kSizes));
    for (const char* size : {"16", "32", "64", "32@2"})
        write(system / "t" / size / "clock.png", "");
    const IconTheme icons = theme("t");
    EXPECT_EQ(icons.find("clock", 16, 1), system / "t/16/clock.png");
    EXPECT_EQ(icons.find("clock", 29, 1), system / "t/32/clock.png");
    EXPECT_EQ(icons.find("clock", 23, 1), system / "t/16/clock.png");
    EXPECT_EQ(icons.find("clock", 500, 1), system / "t/64/clock.png");
    EXPECT_EQ(icons.find("clock", 32, 2), system / "t/32@2/clock.png");
    EXPECT_EQ(icons.find("clock", 32, 1), system / "t/32/clock.png");
    EXPECT_EQ(icons.find("missing", 32, 1), fs::path());
}

TEST_F(Icons, MadeForARangeOfSizesGoBeforeNearOnes) {
    write(system / "t/index.theme",
          index("", "32,drawn,near",
                "[32]\nSize=32\nType=Fixed\n[drawn]\nSize=128\nMinSize=8\nMaxSize=512\nType=Scalable\n"
                "[near]\nSize=48\nThreshold=4\n"));
    for (const char* name : {"32/clock.png", "drawn/clock.svg", "near/clock.png", "near/mail.png", "32/mail.png"})
        write(system / "t" / name, "");
    const IconTheme icons = theme("t");
    EXPECT_EQ(icons.find("clock", 29, 1), system / "t/drawn/clock.svg");
    EXPECT_EQ(icons.find("mail", 44, 1), system / "t/near/mail.png");
    EXPECT_EQ(icons.find("mail", 38, 1), system / "t/32/mail.png");
}

TEST_F(Icons, OfAPlaceBeforeAnotherGoFirst) {
    write(system / "t/index.theme", index("", "32", kSizes));
    write(system / "t/32/clock.png", "");
    write(user / "t/32/clock.svg", "");
    EXPECT_EQ(theme("t").find("clock", 32, 1), user / "t/32/clock.svg");
}

TEST_F(Icons, AreLookedForInParentsThenInHicolorThenWithoutATheme) {
    write(system / "child/index.theme", index("mother,father,missing", "32", kSizes));
    write(system / "mother/index.theme", index("grandmother", "32", kSizes));
    write(system / "grandmother/index.theme", index("child,grandmother", "32", kSizes)); // no end of ancestors
    write(system / "father/index.theme", index("hicolor", "32", kSizes));
    write(user / "hicolor/index.theme", index("", "32", kSizes));
    const auto icon = [&](const std::string& name) { return theme("child").find(name, 32, 1); };
    const std::vector<fs::path> files{pixmaps / "a.png",
                                      system / "a.png",
                                      system / "hicolor/32/a.png",
                                      system / "father/32/a.png",
                                      system / "grandmother/32/a.png",
                                      system / "mother/32/a.png",
                                      system / "child/32/a.png"};
    for (const fs::path& file : files) {
        write(file, "");
        EXPECT_EQ(icon("a"), file);
    }
}

TEST_F(Icons, HaveNoNameThatLeadsElsewhere) {
    write(folder / "secret.png", "");
    write(system / "t/index.theme", index("../t,.,..", "32", kSizes));
    for (const char* name : {"../../../secret", "..", ".", "", "/secret"})
        EXPECT_EQ(theme("t").find(name, 32, 1), fs::path()) << name;
    EXPECT_EQ(theme("../system/t").find("a", 32, 1), fs::path());
}

TEST_F(Icons, OfBrokenThemesAreNotFoundAndDoNoHarm) {
    write(system / "t/index.theme", index("", "minus,huge,none,nosize,words,32",
                                          "[minus]\nSize=-3\n[huge]\nSize=99999999999999\n[nosize]\nType=Fixed\n"
                                          "[words]\nSize=large\n" +
                                              kSizes));
    for (const char* name : {"minus", "huge", "none", "nosize", "words", "32"})
        write(system / "t" / name / "a.png", "");
    EXPECT_EQ(theme("t").find("a", 32, 1), system / "t/32/a.png");
    write(system / "noise/index.theme", std::string("\xFF\0[]]", 5));
    write(system / "empty/index.theme", "");
    for (const char* name : {"noise", "empty", "missing"})
        EXPECT_EQ(theme(name).find("a", 32, 1), fs::path()) << name;
}

TEST_F(Icons, OfThemesInstalledLaterAreFoundAfterwards) {
    IconTheme icons({user, system}, {pixmaps}, "t");
    EXPECT_TRUE(icons.refresh());
    EXPECT_FALSE(icons.refresh());
    write(user / "t/32/clock.png", "");
    write(user / "t/index.theme", index("", "32", kSizes));
    EXPECT_TRUE(icons.refresh());
    EXPECT_FALSE(icons.refresh());
    EXPECT_EQ(icons.find("clock", 32, 1), user / "t/32/clock.png");
    fs::remove_all(user / "t");
    EXPECT_TRUE(icons.refresh());
    EXPECT_EQ(icons.find("clock", 32, 1), fs::path());
}

TEST(TheIconTheme, IsTheOneThatTheUserWroteDown) {
    EXPECT_EQ(applist::iconThemeName(), "desktop-theme");
}

// In a process of its own: GLib looks once for what settings there are.
TEST(TheIconThemeDeathTest, IsTheOneOfTheDesktopsSettingsWhereItHasThem) {
    const fs::path schemas = tests::Desktop::systemData() / "glib-2.0/schemas";
    write(schemas / "desktop.gschema.xml",
          "<schemalist><schema id='org.gnome.desktop.interface' path='/org/gnome/desktop/interface/'>"
          "<key name='icon-theme' type='s'><default>'Settings Theme'</default></key></schema></schemalist>");
    ASSERT_EQ(std::system((COMPILE_SCHEMAS " --strict " + schemas.string()).c_str()), 0);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(_exit(applist::iconThemeName() == "Settings Theme" ? 2 : 3), testing::ExitedWithCode(2), "");
    fs::remove_all(schemas);
}

} // namespace

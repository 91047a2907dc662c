#include "decoder/Picture.h"

#include "tests/applist/Desktop.h"

namespace {

using decoder::drawPicture;
using tests::decoded;
using tests::Points;
using tests::write;

using Pictures = tests::FolderTest;

TEST_F(Pictures, AreDrawnAtExactlyTheSizeAskedFor) {
    write(folder / "small.png", tests::png(16, 16, 0x102030FF));
    write(folder / "large.png", tests::png(512, 512, 0x102030FF));
    write(folder / "drawing.svg", tests::svg(7, 7, "#102030"));
    write(folder / "marked.svg", "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n" + tests::svg(7000, 7000, "#102030"));
    write(folder / "indented.svg", "\n  " + tests::svg(29, 29, "#102030"));
    write(folder / "points.xpm", "/* XPM */\nstatic char* p[] = {\"1 1 1 1\", \". c #102030\", \".\"};\n");
    for (const char* name : {"small.png", "large.png", "drawing.svg", "marked.svg", "indented.svg", "points.xpm"}) {
        for (const int pixels : {1, 29, 58, 87}) {
            const Points points = decoded(drawPicture(folder / name, pixels));
            ASSERT_EQ(points.width, pixels) << name;
            ASSERT_EQ(points.height, pixels) << name;
            EXPECT_EQ(points.at(pixels / 2, pixels / 2), 0x102030FF) << name << " " << pixels;
        }
    }
}

TEST_F(Pictures, ThatAreNotSquareAreCentredOnTransparency) {
    write(folder / "wide.png", tests::png(100, 50, 0xFF0000FF));
    const Points wide = decoded(drawPicture(folder / "wide.png", 40));
    ASSERT_EQ(wide.width, 40);
    ASSERT_EQ(wide.height, 40);
    EXPECT_EQ(wide.at(0, 20), 0xFF0000FF);
    EXPECT_EQ(wide.at(39, 20), 0xFF0000FF);
    EXPECT_EQ(wide.at(20, 5) & 0xFF, 0);
    EXPECT_EQ(wide.at(20, 35) & 0xFF, 0);

    write(folder / "high.svg", tests::svg(10, 1000, "#00ff00"));
    const Points high = decoded(drawPicture(folder / "high.svg", 29));
    ASSERT_EQ(high.width, 29);
    ASSERT_EQ(high.height, 29);
    EXPECT_EQ(high.at(2, 14) & 0xFF, 0);
    EXPECT_EQ(high.at(14, 14) >> 8, 0x00FF00);
}

TEST_F(Pictures, ThatCannotBeDrawnAreEmpty) {
    testing::internal::CaptureStderr();
    const std::string whole = tests::png(64, 64, 0xFF0000FF);
    write(folder / "cut.png", whole.substr(0, whole.size() / 2));
    write(folder / "header.png", whole.substr(0, 33));
    write(folder / "empty.png", "");
    write(folder / "text.png", "no picture");
    write(folder / "broken.svg", "<svg xmlns=\"http://www.w3.org/2000/svg\"><rect");
    write(folder / "huge.png", [&] {
        std::string huge = whole;
        huge.replace(16, 8, std::string("\0\1\0\0\0\1\0\0", 8)); // says that it is 65,536 pixels wide and high
        return huge;
    }());
    write(folder / "huge.xpm", "/* XPM */\nstatic char* p[] = {\"20000 20000 1 1\", \". c #102030\", \".\"};\n");
    write(folder / "huge.svg", tests::svg(2000000000, 1, "#102030"));
    for (const char* name :
         {"cut.png", "header.png", "empty.png", "text.png", "broken.svg", "huge.png", "huge.xpm", "missing.png"})
        EXPECT_TRUE(drawPicture(folder / name, 29).empty()) << name;
    EXPECT_TRUE(drawPicture({}, 29).empty());
    EXPECT_LE(drawPicture(folder / "huge.svg", 29).size(), 10'000);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace

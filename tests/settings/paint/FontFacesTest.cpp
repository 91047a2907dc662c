#include "settings/paint/FontFaces.h"

#include "tests/support/OpenedFiles.h"
#include "tests/support/TestFonts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <sys/stat.h>

namespace {

using platform::UIFont;
using settings::FontFaces;
using testing::ElementsAre;
using tests::TestFonts;

/// In these fonts every letter is a box, 8.5 points apart at this size.
constexpr double kSize = 17;
constexpr double kAdvance = 8.5;

UIFont fontIn(const std::filesystem::path& file, int index = 0) {
    return {file.filename(), kSize, file, index};
}

std::string contents(const std::filesystem::path& file) {
    std::ifstream from(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(from), {}};
}

void write(const std::string& bytes, const std::filesystem::path& file) {
    std::ofstream(file, std::ios::binary) << bytes;
}

double heightIn(const std::optional<settings::TextOutline>& outline) {
    return outline ? outline->path.boundingRect().height() : 0;
}

TEST(FontFaces, DrawsATextFromTheBeginningOfItsBaseline) {
    const TestFonts fonts({"twins"});
    FontFaces faces;
    const auto outline = faces.outline(fontIn(fonts.files() / "twin2.ttf"), "abc");
    ASSERT_TRUE(outline);
    EXPECT_NEAR(outline->width, 3 * kAdvance, 0.01);
    EXPECT_FALSE(outline->rightToLeft);
    const QRectF bounds = outline->path.boundingRect();
    EXPECT_NEAR(bounds.bottom(), 0, 0.02);
    EXPECT_NEAR(bounds.height(), 0.7 * kSize, 0.05);
    EXPECT_NEAR(bounds.left(), 0.05 * kSize, 0.05);
}

TEST(FontFaces, TellsFacesAndInstancesOfOneFileApart) {
    const TestFonts fonts({"collection", "variable"});
    FontFaces faces;
    EXPECT_NEAR(heightIn(faces.outline(fontIn(fonts.files() / "collection.ttc", 0), "a")), 0.2 * kSize, 0.05);
    EXPECT_NEAR(heightIn(faces.outline(fontIn(fonts.files() / "collection.ttc", 1), "a")), 0.9 * kSize, 0.05);
    EXPECT_NEAR(heightIn(faces.outline(fontIn(fonts.files() / "vary.ttf", 0), "a")), 0.5 * kSize, 0.05);
    EXPECT_NEAR(heightIn(faces.outline(fontIn(fonts.files() / "vary.ttf", 1 << 16), "a")), 0.2 * kSize, 0.05);
    EXPECT_NEAR(heightIn(faces.outline(fontIn(fonts.files() / "vary.ttf", 3 << 16), "a")), 0.8 * kSize, 0.05);
}

TEST(FontFaces, StandsRightToLeftWordsInTheirOrder) {
    const TestFonts fonts({"arabic"});
    FontFaces faces;
    // A gap of one letter is where the space is: after two of the six letters, counted from the right.
    const auto outline = faces.outline(fontIn(fonts.files() / "arabic.ttf"), "خط عربي");
    ASSERT_TRUE(outline);
    EXPECT_TRUE(outline->rightToLeft);
    EXPECT_NEAR(outline->width, 7 * kAdvance, 0.01);
    const auto hasInk = [&](int letter) { return outline->path.contains(QPointF((letter + 0.5) * kAdvance, -4)); };
    std::vector<bool> ink;
    for (int i = 0; i < 7; ++i)
        ink.push_back(hasInk(i));
    EXPECT_THAT(ink, ElementsAre(true, true, true, true, false, true, true));
}

TEST(FontFaces, DrawsNothingWhenTheFontLacksALetter) {
    const TestFonts fonts({"dumb", "arabic"});
    FontFaces faces;
    EXPECT_TRUE(faces.outline(fontIn(fonts.files() / "dumb.ttf"), "xx"));
    EXPECT_FALSE(faces.outline(fontIn(fonts.files() / "dumb.ttf"), "xyx"));
    EXPECT_FALSE(faces.outline(fontIn(fonts.files() / "arabic.ttf"), "خط Bold"));
}

TEST(FontFaces, DrawsNothingOfNothing) {
    const TestFonts fonts({"twins"});
    FontFaces faces;
    EXPECT_FALSE(faces.outline(fontIn(fonts.files() / "twin1.ttf"), ""));
    EXPECT_FALSE(faces.outline(fontIn(fonts.files() / "twin1.ttf"), "  "));
}

TEST(FontFaces, OpensAFileForTheFirstTextInItOnly) {
    const TestFonts fonts({"many=3"});
    FontFaces faces;
    const tests::OpenedFiles opened(fonts.files());
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(faces.outline(fontIn(fonts.files() / "many0001.ttf"), "Many"));
        EXPECT_TRUE(faces.outline(fontIn(fonts.files() / "many0002.ttf"), "Many"));
    }
    EXPECT_EQ(faces.opened(), 2);
    EXPECT_THAT(opened.names(), ElementsAre("many0001.ttf", "many0002.ttf"));
}

TEST(FontFaces, OpensAFileThatIsNoFontOnce) {
    const TestFonts fonts({});
    write("no font", fonts.files() / "broken.ttf");
    FontFaces faces;
    EXPECT_FALSE(faces.outline(fontIn(fonts.files() / "broken.ttf"), "a"));
    const tests::OpenedFiles opened(fonts.files());
    EXPECT_FALSE(faces.outline(fontIn(fonts.files() / "broken.ttf"), "a"));
    EXPECT_FALSE(faces.outline(fontIn(fonts.files() / "broken.ttf"), "b"));
    EXPECT_THAT(opened.names(), testing::IsEmpty());
    EXPECT_EQ(faces.opened(), 0);
}

TEST(FontFaces, ForgetsAFileThatIsNoFontAsItForgetsFonts) {
    const TestFonts fonts({"many=100"});
    const auto late = fonts.files() / "late.ttf";
    FontFaces faces;
    EXPECT_FALSE(faces.outline(fontIn(late), "M"));
    for (const auto& entry : std::filesystem::directory_iterator(fonts.files()))
        EXPECT_TRUE(faces.outline(fontIn(entry.path()), "M"));
    std::filesystem::copy(fonts.files() / "many0000.ttf", late);
    EXPECT_TRUE(faces.outline(fontIn(late), "M"));
}

TEST(FontFaces, KeepsThoseUsedLastOpenAndNoMore) {
    const TestFonts fonts({"many=100"});
    FontFaces faces;
    const auto draw = [&](int number) {
        std::string file = std::to_string(number);
        file.insert(0, 4 - file.size(), '0');
        EXPECT_TRUE(faces.outline(fontIn(fonts.files() / ("many" + file + ".ttf")), "M"));
    };
    const auto descriptors = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
    const auto before = descriptors();
    for (int i = 0; i < 100; ++i) {
        draw(i);
        draw(0);
    }
    EXPECT_EQ(faces.opened(), 100) << "the one in use stays";
    EXPECT_LE(descriptors() - before, 60);
    draw(1);
    EXPECT_EQ(faces.opened(), 101) << "one that was not used for long is opened again";
}

TEST(FontFaces, DoesNotWaitForAPipe) {
    const TestFonts fonts({});
    ASSERT_EQ(::mkfifo((fonts.files() / "pipe.ttf").c_str(), 0600), 0);
    FontFaces faces;
    EXPECT_FALSE(faces.outline(fontIn(fonts.files() / "pipe.ttf"), "a"));
    EXPECT_FALSE(faces.outline(fontIn(fonts.files()), "a"));
    EXPECT_FALSE(faces.outline(fontIn(fonts.files() / "gone.ttf"), "a"));
    EXPECT_EQ(faces.opened(), 0);
}

TEST(FontFaces, SurvivesAFileThatIsCutShortAnywhere) {
    const TestFonts fonts({"variable"});
    const std::string whole = contents(fonts.files() / "vary.ttf");
    ASSERT_FALSE(whole.empty());
    for (std::size_t size = 0; size < whole.size(); size += 1 + size / 40) {
        write(whole.substr(0, size), fonts.files() / "vary.ttf");
        FontFaces faces;
        EXPECT_TRUE(std::isfinite(heightIn(faces.outline(fontIn(fonts.files() / "vary.ttf", 1 << 16), "abc"))));
    }
}

TEST(FontFaces, SurvivesAFileThatIsCutShortWhileItIsOpen) {
    const TestFonts fonts({"twins"});
    FontFaces faces;
    const UIFont font = fontIn(fonts.files() / "twin1.ttf");
    ASSERT_TRUE(faces.outline(font, "a"));
    std::filesystem::resize_file(font.file(), 0);
    EXPECT_FALSE(faces.outline(font, "bcdefg"));
}

TEST(FontFaces, SurvivesBytesThatAreNotAsTheyShouldBe) {
    const TestFonts fonts({"variable", "collection"});
    std::mt19937 random(1); // the same bytes each time
    for (const char* name : {"vary.ttf", "collection.ttc"}) {
        const std::string whole = contents(fonts.files() / name);
        for (int i = 0; i < 500; ++i) {
            std::string bytes = whole;
            for (int changes = 0; changes < 8; ++changes)
                bytes[random() % bytes.size()] = static_cast<char>(random());
            write(bytes, fonts.files() / name);
            FontFaces faces;
            EXPECT_TRUE(std::isfinite(heightIn(faces.outline(fontIn(fonts.files() / name, 1), "abc"))));
            EXPECT_TRUE(std::isfinite(heightIn(faces.outline(fontIn(fonts.files() / name, 1 << 16), "abc"))));
        }
    }
}

} // namespace

#include "fonts/FontFaces.h"

#include "tests/support/OpenedFiles.h"
#include "tests/support/TestFonts.h"
#include "tests/support/Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <sys/stat.h>

namespace {

using fonts::FontFaces;
using testing::ElementsAre;

/// In these fonts every letter is a box, 8.5 points apart at this size.
constexpr double kSize = 17;
constexpr double kAdvance = 8.5;

std::string contents(const std::filesystem::path& file) {
    std::ifstream from(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(from), {}};
}

void write(const std::string& bytes, const std::filesystem::path& file) {
    std::ofstream(file, std::ios::binary) << bytes;
}

/// Fonts of those kinds, and the faces through which their texts are drawn.
struct Fonts : tests::TestFonts {
    explicit Fonts(const std::vector<std::string>& kinds = {}) : TestFonts(kinds) {}

    std::optional<fonts::TextOutline> outline(const std::string& file, const char* text, int index = 0) {
        return faces->outline({file, kSize, files() / file, index}, text);
    }
    double height(const std::string& file, int index, const char* text = "a") {
        const auto drawn = outline(file, text, index);
        return drawn ? drawn->path.boundingRect().height() : 0;
    }

    std::optional<FontFaces> faces{std::in_place};
};

TEST(FontFaces, DrawsATextFromTheBeginningOfItsBaseline) {
    Fonts fonts({"twins"});
    const auto outline = fonts.outline("twin2.ttf", "abc");
    ASSERT_TRUE(outline);
    EXPECT_NEAR(outline->width, 3 * kAdvance, 0.01);
    EXPECT_FALSE(outline->rightToLeft);
    const QRectF bounds = outline->path.boundingRect();
    EXPECT_NEAR(bounds.bottom(), 0, 0.02);
    EXPECT_NEAR(bounds.height(), 0.7 * kSize, 0.05);
    EXPECT_NEAR(bounds.left(), 0.05 * kSize, 0.05);
}

TEST(FontFaces, TellsFacesAndInstancesOfOneFileApart) {
    Fonts fonts({"collection", "variable"});
    EXPECT_NEAR(fonts.height("collection.ttc", 0), 0.2 * kSize, 0.05);
    EXPECT_NEAR(fonts.height("collection.ttc", 1), 0.9 * kSize, 0.05);
    EXPECT_NEAR(fonts.height("vary.ttf", 0), 0.5 * kSize, 0.05);
    EXPECT_NEAR(fonts.height("vary.ttf", 1 << 16), 0.2 * kSize, 0.05);
    EXPECT_NEAR(fonts.height("vary.ttf", 3 << 16), 0.8 * kSize, 0.05);
}

TEST(FontFaces, PutsRightToLeftWordsInTheirOrder) {
    Fonts fonts({"arabic"});
    // A gap of one letter is where the space is: after two of the six letters, counted from the right.
    const auto outline = fonts.outline("arabic.ttf", "خط عربي");
    ASSERT_TRUE(outline);
    EXPECT_TRUE(outline->rightToLeft);
    EXPECT_NEAR(outline->width, 7 * kAdvance, 0.01);
    std::vector<bool> ink;
    for (int letter = 0; letter < 7; ++letter)
        ink.push_back(outline->path.contains(QPointF((letter + 0.5) * kAdvance, -4)));
    EXPECT_THAT(ink, ElementsAre(true, true, true, true, false, true, true));
}

TEST(FontFaces, DrawsNoTextThatIsEmptyOrHasALetterThatTheFontLacks) {
    Fonts fonts({"dumb", "arabic", "twins"});
    EXPECT_TRUE(fonts.outline("dumb.ttf", "xx"));
    EXPECT_FALSE(fonts.outline("dumb.ttf", "xyx"));
    EXPECT_FALSE(fonts.outline("arabic.ttf", "خط Bold"));
    EXPECT_FALSE(fonts.outline("twin1.ttf", ""));
    EXPECT_FALSE(fonts.outline("twin1.ttf", "  "));
}

TEST(FontFaces, OpensAFileForTheFirstTextInItOnly) {
    Fonts fonts({"many=3"});
    const tests::OpenedFiles opened(fonts.files());
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(fonts.outline("many0001.ttf", "Many"));
        EXPECT_TRUE(fonts.outline("many0002.ttf", "Many"));
    }
    EXPECT_EQ(fonts.faces->opened(), 2);
    EXPECT_THAT(opened.names(), ElementsAre("many0001.ttf", "many0002.ttf"));
}

TEST(FontFaces, OpensAFileThatIsNoFontOnce) {
    Fonts fonts;
    write("no font", fonts.files() / "broken.ttf");
    EXPECT_FALSE(fonts.outline("broken.ttf", "a"));
    const tests::OpenedFiles opened(fonts.files());
    EXPECT_FALSE(fonts.outline("broken.ttf", "a"));
    EXPECT_FALSE(fonts.outline("broken.ttf", "b"));
    EXPECT_THAT(opened.names(), testing::IsEmpty());
    EXPECT_EQ(fonts.faces->opened(), 0);
}

TEST(FontFaces, ForgetsAFileThatIsNoFontAsItForgetsFonts) {
    Fonts fonts({"many=100"});
    EXPECT_FALSE(fonts.outline("late.ttf", "M"));
    for (const auto& entry : std::filesystem::directory_iterator(fonts.files()))
        EXPECT_TRUE(fonts.outline(entry.path().filename(), "M"));
    std::filesystem::copy(fonts.files() / "many0000.ttf", fonts.files() / "late.ttf");
    EXPECT_TRUE(fonts.outline("late.ttf", "M"));
}

TEST(FontFaces, KeepsOnlyTheFacesUsedLastOpen) {
    Fonts fonts({"many=100"});
    const auto draw = [&](int number) {
        EXPECT_TRUE(fonts.outline("many00" + std::to_string(100 + number).substr(1) + ".ttf", "M"));
    };
    const auto before = tests::descriptorCount();
    for (int i = 0; i < 100; ++i) {
        draw(i);
        draw(0);
    }
    EXPECT_EQ(fonts.faces->opened(), 100) << "the one in use stays";
    EXPECT_LE(tests::descriptorCount() - before, 60);
    draw(1);
    EXPECT_EQ(fonts.faces->opened(), 101) << "one that was not used for long is opened again";
}

TEST(FontFaces, DoesNotWaitForAPipe) {
    Fonts fonts;
    ASSERT_EQ(::mkfifo((fonts.files() / "pipe.ttf").c_str(), 0600), 0);
    for (const char* file : {"pipe.ttf", ".", "gone.ttf"})
        EXPECT_FALSE(fonts.outline(file, "a")) << file;
    EXPECT_EQ(fonts.faces->opened(), 0);
}

TEST(FontFaces, SurvivesAFileThatIsCutShortAnywhere) {
    Fonts fonts({"variable"});
    const std::string whole = contents(fonts.files() / "vary.ttf");
    ASSERT_FALSE(whole.empty());
    for (std::size_t size = 0; size < whole.size(); size += 1 + size / 40) {
        write(whole.substr(0, size), fonts.files() / "vary.ttf");
        fonts.faces.emplace();
        EXPECT_TRUE(std::isfinite(fonts.height("vary.ttf", 1 << 16, "abc")));
    }
}

TEST(FontFaces, SurvivesAFileThatIsCutShortWhileItIsOpen) {
    Fonts fonts({"twins"});
    ASSERT_TRUE(fonts.outline("twin1.ttf", "a"));
    std::filesystem::resize_file(fonts.files() / "twin1.ttf", 0);
    EXPECT_FALSE(fonts.outline("twin1.ttf", "bcdefg"));
}

TEST(FontFaces, SurvivesDamagedFiles) {
    Fonts fonts({"variable", "collection"});
    std::mt19937 random(1); // the same bytes each time
    for (const char* name : {"vary.ttf", "collection.ttc"}) {
        const std::string whole = contents(fonts.files() / name);
        for (int i = 0; i < 500; ++i) {
            std::string bytes = whole;
            for (int changes = 0; changes < 8; ++changes)
                bytes[random() % bytes.size()] = static_cast<char>(random());
            write(bytes, fonts.files() / name);
            fonts.faces.emplace();
            for (const int index : {1, 1 << 16})
                EXPECT_TRUE(std::isfinite(fonts.height(name, index, "abc")));
        }
    }
}

} // namespace

#include "appview/Recorder.h"

#include "appview/Question.h"
#include "appview/ScreenFont.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace lumora;
using testing::ElementsAre;
using Kind = DrawingStep::Kind;

struct Recorders : testing::Test {
    LumoraExtent write(const char* words, double x, double width, std::uint32_t align, std::uint32_t lines = 1) {
        const LumoraText text{words, x, 10, width, 20, 400, align, lines};
        return canvas.text(&canvas, &text);
    }
    /// The lines, each with where it begins and how wide it is.
    std::vector<DrawingStep> taken() {
        auto steps = recorder.take();
        EXPECT_TRUE(steps);
        return steps ? std::move(steps).value() : std::vector<DrawingStep>();
    }

    TextExtents extents;
    Recorder recorder{extents};
    const LumoraCanvas& canvas = recorder.canvas();
};

TEST_F(Recorders, TellHowMuchRoomATextTakes) {
    const LumoraExtent extent = write("Lakeside", 5, 0, LUMORA_ALIGN_LEFT);
    EXPECT_NEAR(extent.width, extents.width("Lakeside", 20, 400), 1e-9);
    EXPECT_GT(extent.width, 60);
    EXPECT_LT(extent.width, 120);
    EXPECT_DOUBLE_EQ(extent.height, 20 * kTextLine);
    const auto steps = taken();
    ASSERT_EQ(steps.size(), 1U);
    EXPECT_THAT(steps[0].numbers, ElementsAre(5, 10 + 20 * kTextAscent, extent.width, 20, 400, 0));
}

TEST_F(Recorders, PutTextsWhereTheyAreAligned) {
    const double wide = extents.width("Lakeside", 20, 400);
    for (const double box : {0.0, 200.0})
        for (const std::uint32_t align : {LUMORA_ALIGN_LEFT, LUMORA_ALIGN_CENTER, LUMORA_ALIGN_RIGHT})
            write("Lakeside", 100, box, align);
    std::vector<double> places;
    for (const DrawingStep& step : taken())
        places.push_back(step.numbers[0]);
    EXPECT_THAT(places, ElementsAre(100, 100 - wide / 2, 100 - wide, 100, 100 + (200 - wide) / 2, 100 + 200 - wide));
}

TEST_F(Recorders, BreakAndCutLongTexts) {
    const double narrow = extents.width("Clearing from", 20, 400) + 1;
    const LumoraExtent extent = write("Clearing from the north and the west", 0, narrow, LUMORA_ALIGN_LEFT, 2);
    const auto steps = taken();
    ASSERT_EQ(steps.size(), 2U);
    EXPECT_EQ(steps[0].text, "Clearing from");
    EXPECT_TRUE(steps[1].text.starts_with("the n")) << steps[1].text;
    EXPECT_TRUE(steps[1].text.ends_with("…")) << steps[1].text;
    EXPECT_LE(steps[1].numbers[2], narrow);
    EXPECT_DOUBLE_EQ(extent.height, 2 * 20 * kTextLine);
    // Not even the ellipsis fits.
    write("Güte", 0, 1, LUMORA_ALIGN_LEFT, 3);
    const auto none = taken();
    ASSERT_EQ(none.size(), 1U);
    EXPECT_EQ(none[0].text, "…");
    EXPECT_EQ(none[0].numbers[2], 1);
}

TEST_F(Recorders, RecordWhatNoPluginShouldDrawWithinBounds) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    canvas.line(&canvas, none, 0, 0, 0, 1);
    canvas.line(&canvas, 0, 0, 1e300, -infinite, -1);
    canvas.arc(&canvas, 0, 0, -4, infinite, 3, 0);
    canvas.fillColor(&canvas, {77, -1, 2, 0.5, 9});
    const LumoraPathPart bad{'Q', 0, 0, 0, 0, 0, 0};
    canvas.path(&canvas, &bad, 1, 0);
    canvas.picture(&canvas, "/etc/passwd", 0, 0, 1);
    canvas.caption(&canvas, "two\nlines\033[2J");
    write("caf\xE9", 0, 0, 0);
    const auto steps = taken();
    ASSERT_EQ(steps.size(), 3U);
    EXPECT_THAT(steps[0].numbers, ElementsAre(0, 0, 10'000, -10'000, 0));
    EXPECT_THAT(steps[1].numbers, ElementsAre(0, 0, 1, 0.5, 1));
    EXPECT_EQ(steps[2].text, "two lines [2J");
    EXPECT_TRUE(writeDrawing({steps, 0}));
}

TEST_F(Recorders, FailAfterTooMuch) {
    for (std::size_t i = 0; i <= DrawingLimits::steps; ++i)
        canvas.line(&canvas, 0, 0, 1, 1, 1);
    const auto many = recorder.take();
    ASSERT_FALSE(many);
    EXPECT_EQ(many.error(), "it draws too many steps");

    Recorder other(extents);
    const std::vector<LumoraPathPart> parts(DrawingLimits::pathParts + 1, {'M', 0, 0, 0, 0, 0, 0});
    for (int i = 0; i < 100; ++i)
        other.canvas().path(&other.canvas(), parts.data(), DrawingLimits::pathParts, 1);
    const auto large = other.take();
    ASSERT_FALSE(large);
    EXPECT_EQ(large.error(), "its drawing is too large");

    Recorder third(extents);
    third.canvas().path(&third.canvas(), parts.data(), parts.size(), 1);
    const auto path = third.take();
    ASSERT_FALSE(path);
    EXPECT_EQ(path.error(), "a path has too many parts");
}

TEST(Questions, AreReadAsTheyAreWritten) {
    DrawingQuestion question{322,   257, 1.5,
                             false, {},  {{"test.clock.word", "Güte"}, {"test.clock.none", std::nan("")}}};
    question.time.tm_hour = 18;
    question.time.tm_min = 36;
    const auto archive = writeQuestion(question);
    ASSERT_TRUE(archive);
    const auto read = readQuestion(archive.value());
    ASSERT_TRUE(read);
    EXPECT_TRUE(read.value().isLike(question));
    EXPECT_EQ(read.value().time.tm_min, 36);
    EXPECT_FALSE(readQuestion({1, 2, 3}));
}

TEST(Questions, HaveNoMoreThanThePlugInsOwnSettings) {
    const platform::Dictionary all{{"kAutoUnlockPasscode", "1234"},
                                   {"test.clock", 1},
                                   {"test.clock.face", 2},
                                   {"test.clocks.face", 3},
                                   {"test.clock.face.size", 4}};
    EXPECT_EQ(ownSettings(all, "test.clock"),
              (platform::Dictionary{{"test.clock.face", 2}, {"test.clock.face.size", 4}}));
}

} // namespace

#include "pickers/BrightnessView.h"

#include <gtest/gtest.h>

#include <variant>
#include <vector>

namespace {

using lumora::BrightnessView;
using platform::CGDrawing;
using platform::CGRectMake;
using platform::make;
using platform::UIColor;
using Stop = platform::CGGradient::Stop;

struct BrightnessBar : testing::Test {
    std::shared_ptr<BrightnessView> bar = make<BrightnessView>();
    BrightnessBar() { bar->setFrame(CGRectMake(20, 295, 280, 30)); }

    platform::CGDrawingRef drawn() const {
        bar->displayIfNeeded();
        return bar->drawing();
    }
};

TEST_F(BrightnessBar, FadesFromItsColourToBlack) {
    bar->setColor(UIColor::colorWithHue(0.5, 0.25, 1, 1));
    ASSERT_NE(bar->gradient(), nullptr);
    EXPECT_EQ(bar->gradient()->stops(), (std::vector{Stop{0, 0.75, 1, 1, 1}, Stop{1, 0, 0, 0, 1}}));
}

TEST_F(BrightnessBar, LeavesOutTheAlphaOfItsColour) {
    bar->setColor(UIColor::colorWithRed(0.1, 0.2, 0.3, 0.4));
    EXPECT_EQ(bar->gradient()->stops().front(), (Stop{0, 0.1, 0.2, 0.3, 1}));
}

TEST_F(BrightnessBar, IsDrawnAnewForEveryColourButTheVerySame) {
    const auto color = UIColor::colorWithHue(0.5, 1, 1, 1);
    bar->setColor(color);
    const auto gradient = bar->gradient();
    const auto drawing = drawn();
    bar->setColor(color);
    EXPECT_EQ(bar->gradient(), gradient);
    EXPECT_EQ(drawn(), drawing);
    const auto equal = UIColor::colorWithHue(0.5, 1, 1, 1);
    bar->setColor(equal);
    EXPECT_EQ(bar->color(), equal);
    EXPECT_NE(bar->gradient(), gradient);
    EXPECT_NE(drawn(), drawing);
}

TEST_F(BrightnessBar, ReleasesTheGradientBefore) {
    bar->setColor(UIColor::colorWithHue(0.5, 1, 1, 1));
    const std::weak_ptr first = bar->gradient();
    bar->setColor(UIColor::colorWithHue(0.6, 1, 1, 1));
    EXPECT_TRUE(first.expired());
    const std::weak_ptr second = bar->gradient();
    bar.reset();
    EXPECT_TRUE(second.expired());
}

TEST_F(BrightnessBar, IsDrawnAcrossItsWholeFrameWithoutGoingOnBeyondIt) {
    bar->setColor(UIColor::colorWithHue(0.5, 1, 1, 1));
    const auto drawing = drawn();
    ASSERT_NE(drawing, nullptr);
    EXPECT_EQ(drawing->size, (platform::CGSize{280, 30}));
    ASSERT_EQ(drawing->steps.size(), 4U);
    EXPECT_TRUE(std::holds_alternative<CGDrawing::SaveState>(drawing->steps[0]));
    EXPECT_EQ(std::get<CGDrawing::Clip>(drawing->steps[1]).rect, CGRectMake(0, 0, 280, 30));
    const auto& gradient = std::get<CGDrawing::LinearGradient>(drawing->steps[2]);
    EXPECT_EQ(gradient.gradient, bar->gradient());
    EXPECT_EQ(gradient.start, (platform::CGPoint{0, 0}));
    EXPECT_EQ(gradient.end, (platform::CGPoint{280, 0}));
    EXPECT_EQ(gradient.options, 0U);
    EXPECT_TRUE(std::holds_alternative<CGDrawing::RestoreState>(drawing->steps[3]));
}

TEST_F(BrightnessBar, ShowsNothingBeforeItsFirstColour) {
    EXPECT_EQ(bar->color(), nullptr);
    EXPECT_EQ(bar->gradient(), nullptr);
    const auto drawing = drawn();
    ASSERT_NE(drawing, nullptr);
    for (const auto& step : drawing->steps)
        EXPECT_FALSE(std::holds_alternative<CGDrawing::LinearGradient>(step));
}

} // namespace

#include "platform/ui/CGContext.h"

#include <gtest/gtest.h>

#include <utility>
#include <variant>
#include <vector>

namespace {

using namespace platform;
using Stop = CGGradient::Stop;

TEST(CGGradient, WithoutLocationsHasItsStopsEvenlyFromZeroToOne) {
    const auto three = CGGradientCreateWithColorComponents({1, 0, 0, 1, 0, 1, 0, 0.5, 0, 0, 1, 0});
    ASSERT_NE(three, nullptr);
    EXPECT_EQ(three->stops(), (std::vector{Stop{0, 1, 0, 0, 1}, Stop{0.5, 0, 1, 0, 0.5}, Stop{1, 0, 0, 1, 0}}));
    EXPECT_EQ(CGGradientCreateWithColorComponents({1, 0, 0, 1})->stops(), (std::vector{Stop{0, 1, 0, 0, 1}}));
}

TEST(CGGradient, HasItsStopsWhereItIsTold) {
    const auto gradient = CGGradientCreateWithColorComponents({1, 0, 0, 1, 0, 1, 0, 1}, {0.25, 0.5});
    ASSERT_NE(gradient, nullptr);
    EXPECT_EQ(gradient->stops(), (std::vector{Stop{0.25, 1, 0, 0, 1}, Stop{0.5, 0, 1, 0, 1}}));
}

TEST(CGGradient, IsNullWhenTheNumbersDoNotFit) {
    EXPECT_EQ(CGGradientCreateWithColorComponents({}), nullptr);
    EXPECT_EQ(CGGradientCreateWithColorComponents({1, 0, 0}), nullptr);
    EXPECT_EQ(CGGradientCreateWithColorComponents({1, 0, 0, 1, 0}), nullptr);
    EXPECT_EQ(CGGradientCreateWithColorComponents({1, 0, 0, 1}, {0, 1}), nullptr);
}

TEST(CGContext, KeepsWhatIsDrawnInOrderAndLeavesOutANullGradient) {
    const auto gradient = CGGradientCreateWithColorComponents({1, 0, 0, 1});
    CGContext context({10, 20});
    context.saveGState();
    context.clipToRect(CGRectMake(1, 2, 3, 4));
    context.drawLinearGradient(gradient, {0, 0}, {10, 0}, 3);
    context.drawLinearGradient(nullptr, {0, 0}, {10, 0}, 0);
    context.restoreGState();
    const CGDrawing drawing = std::move(context).take();
    EXPECT_EQ(drawing.size, (CGSize{10, 20}));
    ASSERT_EQ(drawing.steps.size(), 4U);
    EXPECT_TRUE(std::holds_alternative<CGDrawing::SaveState>(drawing.steps[0]));
    EXPECT_EQ(std::get<CGDrawing::Clip>(drawing.steps[1]).rect, CGRectMake(1, 2, 3, 4));
    const auto& drawn = std::get<CGDrawing::LinearGradient>(drawing.steps[2]);
    EXPECT_EQ(drawn.gradient, gradient);
    EXPECT_EQ(drawn.start, (CGPoint{0, 0}));
    EXPECT_EQ(drawn.end, (CGPoint{10, 0}));
    EXPECT_EQ(drawn.options, 3U);
    EXPECT_TRUE(std::holds_alternative<CGDrawing::RestoreState>(drawing.steps[3]));
}

} // namespace

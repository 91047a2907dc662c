#include "platform/ui/UIView.h"

#include <gtest/gtest.h>

namespace {

using platform::CGRectMake;
using platform::make;
using platform::UIView;

TEST(UIView, HoldsItsSubviewsBackToFrontAndNoOneElses) {
    const auto parent = make<UIView>(CGRectMake(0, 0, 100, 100));
    const auto other = make<UIView>(CGRectMake(0, 0, 100, 100));
    const auto first = make<UIView>(CGRectMake(0, 0, 10, 10));
    const auto second = make<UIView>(CGRectMake(0, 0, 10, 10));
    parent->addSubview(first);
    parent->addSubview(second);
    parent->addSubview(first); // to the front
    EXPECT_EQ(parent->subviews(), (std::vector{second, first}));
    other->addSubview(first);
    EXPECT_EQ(parent->subviews(), std::vector{second});
    EXPECT_EQ(first->superview(), other.get());
    first->removeFromSuperview();
    EXPECT_EQ(first->superview(), nullptr);
    EXPECT_TRUE(other->subviews().empty());
}

TEST(UIView, LeavesItsSubviewsWithoutAParentWhenItGoes) {
    const auto child = make<UIView>(CGRectMake(0, 0, 10, 10));
    make<UIView>(CGRectMake(0, 0, 100, 100))->addSubview(child);
    EXPECT_EQ(child->superview(), nullptr);
}

struct Autoresizing : testing::Test {
    std::shared_ptr<UIView> parent = make<UIView>(CGRectMake(0, 0, 300, 400));
    std::shared_ptr<UIView> child = make<UIView>(CGRectMake(20, 20, 260, 310));

    platform::CGRect afterGrowthBy(double width, double height, unsigned mask) {
        child->setAutoresizingMask(mask);
        parent->addSubview(child);
        parent->setFrame(CGRectMake(0, 0, 300 + width, 400 + height));
        return child->frame();
    }
};

TEST_F(Autoresizing, WithoutAMaskKeepsTheFrame) {
    EXPECT_EQ(afterGrowthBy(50, 60, 0), CGRectMake(20, 20, 260, 310));
}

TEST_F(Autoresizing, WithFlexibleWidthAndHeightTakesAllTheGrowth) {
    EXPECT_EQ(afterGrowthBy(50, 60, 18), CGRectMake(20, 20, 310, 370));
}

TEST_F(Autoresizing, WithFlexibleWidthAndTopMarginStaysAtTheBottom) {
    EXPECT_EQ(afterGrowthBy(50, 60, 10), CGRectMake(20, 80, 310, 310));
}

TEST_F(Autoresizing, SharesTheGrowthInProportionToTheFlexibleParts) {
    const unsigned leftAndWidth =
        platform::UIViewAutoresizingFlexibleLeftMargin | platform::UIViewAutoresizingFlexibleWidth;
    EXPECT_EQ(afterGrowthBy(28, 0, leftAndWidth), CGRectMake(22, 20, 286, 310));
}

TEST_F(Autoresizing, ShrinksNoFurtherThanNothing) {
    EXPECT_EQ(afterGrowthBy(-290, 0, 2).size.width, 0);
}

} // namespace

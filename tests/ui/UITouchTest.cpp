#include "TouchedView.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;

/// A page that stands away from its window's corner, with two views in it.
struct Touches : testing::Test {
    using enum UITouchPhase;
    std::shared_ptr<TouchedView> page = make<TouchedView>(CGRectMake(0, 100, 100, 100));
    std::shared_ptr<TouchedView> left = make<TouchedView>(CGRectMake(10, 10, 40, 80));
    std::shared_ptr<TouchedView> right = make<TouchedView>(CGRectMake(50, 10, 40, 80));
    UITouchRouter router;
    Touches() {
        page->addSubview(left);
        page->addSubview(right);
    }
    void send(const std::vector<UITouchRouter::Point>& points) { router.send(page, points); }
};

TEST_F(Touches, BelongToTheViewUnderThemUntilTheyEnd) {
    send({{1, began, {15, 120}}});
    send({{1, moved, {60, 130}}});
    send({{1, ended, {-5, 500}}});
    EXPECT_EQ(left->calls,
              (std::vector<Call>{{"began", {{5, 10}}, 1}, {"moved", {{50, 20}}, 1}, {"ended", {{-15, 390}}, 1}}));
    EXPECT_TRUE(right->calls.empty());
    send({{1, moved, {60, 130}}});
    EXPECT_EQ(left->calls.size(), 3U) << "one that has ended belongs to no view";
}

TEST_F(Touches, ThatBeginOutsideReachNoView) {
    send({{1, began, {15, 99}}});
    send({{1, moved, {15, 120}}, {1, ended, {15, 120}}});
    send({{2, moved, {15, 120}}});
    EXPECT_TRUE(left->calls.empty());
    EXPECT_TRUE(page->calls.empty());
}

TEST_F(Touches, OfOneViewAndPhaseComeTogetherInTheirOrder) {
    send({{2, began, {20, 130}}, {7, began, {55, 115}}, {1, began, {15, 120}}});
    EXPECT_EQ(left->calls, (std::vector<Call>{{"began", {{10, 20}, {5, 10}}, 3}}));
    EXPECT_EQ(right->calls, (std::vector<Call>{{"began", {{5, 5}}, 3}}));
    send({{1, moved, {15, 121}}, {2, ended, {20, 131}}});
    EXPECT_EQ(left->calls.at(1), (Call{"moved", {{5, 11}}, 2}));
    EXPECT_EQ(left->calls.at(2), (Call{"ended", {{10, 21}}, 2}));
}

TEST_F(Touches, WhoseViewHasGoneReachNoOther) {
    send({{1, began, {15, 120}}, {2, began, {60, 120}}});
    left->removeFromSuperview();
    left.reset();
    send({{1, moved, {15, 121}}, {2, moved, {60, 121}}});
    EXPECT_TRUE(page->calls.empty());
    EXPECT_EQ(right->calls.back(), (Call{"moved", {{10, 11}}, 1}));
}

TEST_F(Touches, ThatAreDownAreCancelledOnce) {
    send({{1, began, {15, 120}}, {2, began, {60, 120}}});
    send({{2, ended, {60, 120}}});
    right->calls.clear();
    router.cancel();
    router.cancel();
    ASSERT_EQ(left->calls.size(), 2U);
    EXPECT_EQ(left->calls.back().operation, "cancelled");
    EXPECT_TRUE(right->calls.empty());
    send({{1, moved, {15, 120}}});
    EXPECT_EQ(left->calls.size(), 2U);
}

TEST_F(Touches, ThatAreCancelledAreOver) {
    send({{1, began, {15, 120}}});
    send({{1, cancelled, {15, 120}}});
    send({{1, moved, {15, 120}}});
    ASSERT_EQ(left->calls.size(), 2U);
    EXPECT_EQ(left->calls.back().operation, "cancelled");
}

TEST_F(Touches, AreCancelledWhenTheirFingerComesDownAgain) {
    send({{1, began, {15, 120}}});
    send({{1, began, {60, 120}}, {2, began, {61, 120}}});
    ASSERT_EQ(left->calls.size(), 2U);
    EXPECT_EQ(left->calls.back().operation, "cancelled");
    EXPECT_EQ(right->calls, (std::vector<Call>{{"began", {{10, 10}, {11, 10}}, 2}}));
    send({{1, began, {5, 99}}}); // outside
    send({{1, moved, {60, 121}}});
    EXPECT_EQ(right->calls.size(), 2U);
    EXPECT_EQ(right->calls.back().operation, "cancelled");
    send({{2, ended, {61, 120}}});
    EXPECT_EQ(right->calls.back().operation, "ended");
}

TEST_F(Touches, GoOnWhenThePageHasLostItsView) {
    send({{1, began, {15, 120}}});
    router.send(nullptr, {{1, moved, {15, 121}}, {2, began, {15, 121}}});
    EXPECT_EQ(left->calls.back(), (Call{"moved", {{5, 11}}, 1}));
}

} // namespace

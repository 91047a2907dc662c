#include "platform/ui/UITouch.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using platform::CGPoint;
using platform::CGRectMake;
using platform::make;
using platform::UIEvent;
using platform::UITouches;
using platform::UITouchPhase;
using platform::UITouchRouter;
using platform::UIView;

/// What reached a view at once.
struct Call {
    std::string operation;
    std::vector<CGPoint> points; ///< in the view
    std::size_t inEvent = 0;     ///< touches in the whole event
    friend bool operator==(const Call&, const Call&) = default;
};

struct Touched : UIView {
    std::vector<Call> calls;

    void touchesBegan(const UITouches& touches, const UIEvent& event) override { note("began", touches, event); }
    void touchesMoved(const UITouches& touches, const UIEvent& event) override { note("moved", touches, event); }
    void touchesEnded(const UITouches& touches, const UIEvent& event) override { note("ended", touches, event); }
    void touchesCancelled(const UITouches& touches, const UIEvent& event) override {
        note("cancelled", touches, event);
    }

  private:
    void note(const char* operation, const UITouches& touches, const UIEvent& event) {
        Call call{operation, {}, event.allTouches.size()};
        for (const auto& touch : touches)
            call.points.push_back(touch->locationInView(*this));
        calls.push_back(call);
    }
};

/// A page that stands away from its window's corner, with two views in it.
struct Touches : testing::Test {
    std::shared_ptr<Touched> page = make<Touched>(CGRectMake(0, 100, 100, 100));
    std::shared_ptr<Touched> left = make<Touched>(CGRectMake(10, 10, 40, 80));
    std::shared_ptr<Touched> right = make<Touched>(CGRectMake(50, 10, 40, 80));
    UITouchRouter router;
    Touches() {
        page->addSubview(left);
        page->addSubview(right);
    }
    void send(const std::vector<UITouchRouter::Point>& points) { router.send(page, points); }
};

TEST_F(Touches, BelongToTheViewUnderThemUntilTheyEnd) {
    send({{1, UITouchPhase::began, {15, 120}}});
    send({{1, UITouchPhase::moved, {60, 130}}});
    send({{1, UITouchPhase::ended, {-5, 500}}});
    EXPECT_EQ(left->calls,
              (std::vector<Call>{{"began", {{5, 10}}, 1}, {"moved", {{50, 20}}, 1}, {"ended", {{-15, 390}}, 1}}));
    EXPECT_TRUE(right->calls.empty());
    send({{1, UITouchPhase::moved, {60, 130}}});
    EXPECT_EQ(left->calls.size(), 3U) << "one that has ended is nobody's";
}

TEST_F(Touches, ThatBeginOutsideReachNobody) {
    send({{1, UITouchPhase::began, {15, 99}}});
    send({{1, UITouchPhase::moved, {15, 120}}, {1, UITouchPhase::ended, {15, 120}}});
    send({{2, UITouchPhase::moved, {15, 120}}});
    EXPECT_TRUE(left->calls.empty());
    EXPECT_TRUE(page->calls.empty());
}

TEST_F(Touches, OfOneViewAndPhaseComeTogetherInTheirOrder) {
    send({{2, UITouchPhase::began, {20, 130}},
          {7, UITouchPhase::began, {55, 115}},
          {1, UITouchPhase::began, {15, 120}}});
    EXPECT_EQ(left->calls, (std::vector<Call>{{"began", {{10, 20}, {5, 10}}, 3}}));
    EXPECT_EQ(right->calls, (std::vector<Call>{{"began", {{5, 5}}, 3}}));
    send({{1, UITouchPhase::moved, {15, 121}}, {2, UITouchPhase::ended, {20, 131}}});
    EXPECT_EQ(left->calls.at(1), (Call{"moved", {{5, 11}}, 2}));
    EXPECT_EQ(left->calls.at(2), (Call{"ended", {{10, 21}}, 2}));
}

TEST_F(Touches, WhoseViewHasGoneReachNobody) {
    send({{1, UITouchPhase::began, {15, 120}}, {2, UITouchPhase::began, {60, 120}}});
    left->removeFromSuperview();
    left.reset();
    send({{1, UITouchPhase::moved, {15, 121}}, {2, UITouchPhase::moved, {60, 121}}});
    EXPECT_TRUE(page->calls.empty());
    EXPECT_EQ(right->calls.back(), (Call{"moved", {{10, 11}}, 1}));
}

TEST_F(Touches, ThatAreDownAreCancelledOnce) {
    send({{1, UITouchPhase::began, {15, 120}}, {2, UITouchPhase::began, {60, 120}}});
    send({{2, UITouchPhase::ended, {60, 120}}});
    right->calls.clear();
    router.cancel();
    router.cancel();
    ASSERT_EQ(left->calls.size(), 2U);
    EXPECT_EQ(left->calls.back().operation, "cancelled");
    EXPECT_TRUE(right->calls.empty());
    send({{1, UITouchPhase::moved, {15, 120}}});
    EXPECT_EQ(left->calls.size(), 2U);
}

TEST_F(Touches, ThatAreCancelledAreOver) {
    send({{1, UITouchPhase::began, {15, 120}}});
    send({{1, UITouchPhase::cancelled, {15, 120}}});
    send({{1, UITouchPhase::moved, {15, 120}}});
    ASSERT_EQ(left->calls.size(), 2U);
    EXPECT_EQ(left->calls.back().operation, "cancelled");
}

TEST_F(Touches, AreCancelledWhenTheirFingerComesDownAgain) {
    send({{1, UITouchPhase::began, {15, 120}}});
    send({{1, UITouchPhase::began, {60, 120}}, {2, UITouchPhase::began, {61, 120}}});
    ASSERT_EQ(left->calls.size(), 2U);
    EXPECT_EQ(left->calls.back().operation, "cancelled");
    EXPECT_EQ(right->calls, (std::vector<Call>{{"began", {{10, 10}, {11, 10}}, 2}}));
    send({{1, UITouchPhase::began, {5, 99}}}); // outside
    send({{1, UITouchPhase::moved, {60, 121}}});
    EXPECT_EQ(right->calls.size(), 2U);
    EXPECT_EQ(right->calls.back().operation, "cancelled");
    send({{2, UITouchPhase::ended, {61, 120}}});
    EXPECT_EQ(right->calls.back().operation, "ended");
}

TEST_F(Touches, GoOnWhenThePageHasNoViewAnyMore) {
    send({{1, UITouchPhase::began, {15, 120}}});
    router.send(nullptr, {{1, UITouchPhase::moved, {15, 121}}, {2, UITouchPhase::began, {15, 121}}});
    EXPECT_EQ(left->calls.back(), (Call{"moved", {{5, 11}}, 1}));
}

} // namespace

#include "lockscreen/Hand.h"

#include "tests/lockscreen/SampleDevice.h"

#include <gtest/gtest.h>

using namespace lumora;
using namespace tests;
using platform::CGPoint;
using platform::Dictionary;
using platform::List;

namespace {

constexpr const char* kWayIntoPhone = "tap icons[0]\nkey 1\nkey 2\nkey 3\nkey 4";

Player playerOn(Surface surface) {
    Player player(Dictionary{{kTweakEnabled, true},
                             {kAppsEnabled, List{"org.lumora.samples.Phone", "org.lumora.samples.Weather"}},
                             {kAppViewsEnabled, List{"org.lumora.plugins.weather"}}},
                  sampleDevice());
    player.behaviour.show(surface, player.now);
    return player;
}

/// The gesture of a finger that is put down there and dragged by so many points.
std::string drag(const Look& look, CGPoint from, double right, double down) {
    Hand hand;
    hand.press(look, 1, from, 0);
    for (int step = 1; step <= 4; ++step)
        hand.move({from.x + right * step / 4, from.y + down * step / 4});
    const auto gesture = hand.release();
    return gesture ? gesture->line() : "nothing";
}

constexpr CGPoint kBeside{200, 300};

} // namespace

TEST(Hand, TapsThePartThatItTouches) {
    const Look apps = playerOn(Surface::apps).look();
    EXPECT_EQ(drag(apps, CGRectGetCenter(apps.icons[1].frame), 3, 3), "tap icons[1]");
    EXPECT_EQ(drag(apps, kBeside, 0, 0), "tap");
    const Look passcode = playerOn(Surface::passcode).look();
    EXPECT_EQ(drag(passcode, CGRectGetCenter(passcode.keys[4].frame), 0, 0), "tap keys[4]");
    EXPECT_EQ(drag(passcode, CGRectGetCenter(passcode.passcode.cancel.frame), 0, 0), "tap passcode.cancel");
    const Look opened = playerOn(Surface::apps).play(kWayIntoPhone).look();
    EXPECT_EQ(drag(opened, CGRectGetCenter(opened.opened.button.frame), 0, 0), "home");
}

TEST(Hand, SwipesBetweenStages) {
    const Look apps = playerOn(Surface::apps).look();
    EXPECT_EQ(drag(apps, kBeside, -60, 10), "swipe left");
    EXPECT_EQ(drag(apps, kBeside, 60, -10), "swipe right");
    EXPECT_EQ(drag(apps, CGRectGetCenter(apps.icons[0].frame), -60, 0), "swipe left");
    EXPECT_EQ(drag(apps, kBeside, 20, 0), "nothing") << "too short";
    EXPECT_EQ(drag(apps, kBeside, 10, 80), "swipe down");
    EXPECT_EQ(drag(apps, kBeside, 10, -80), "nothing");
}

TEST(Hand, SwipesANoticeToTheRightByAShareOfItsWidth) {
    const Look look = playerOn(Surface::notices).look();
    const platform::CGRect& notice = look.notices.items[1].frame;
    EXPECT_EQ(drag(look, CGRectGetCenter(notice), notice.size.width / 2, 0), "swipe notices.items[1] 0.5");
    EXPECT_EQ(drag(look, CGRectGetCenter(notice), -60, 0), "swipe left");
}

TEST(Hand, SlidesTheBeadAndPullsWhatSticksOut) {
    const Look look = playerOn(Surface::notices).look();
    const CGPoint hint = CGRectGetCenter(look.slideHint.frame);
    EXPECT_EQ(drag(look, hint, 100, 0), "slide");
    EXPECT_EQ(drag(look, hint, 30, 0), "nothing");
    EXPECT_EQ(drag(look, hint, -60, 0), "swipe left");
    EXPECT_EQ(drag(look, CGRectGetCenter(look.camera.frame), -40, 0), "pull camera");
    EXPECT_EQ(drag(look, CGRectGetCenter(look.topGrabber.frame), 0, 40), "pull topGrabber");
    EXPECT_EQ(drag(look, CGRectGetCenter(look.bottomGrabber.frame), 0, -40), "pull bottomGrabber");
}

TEST(Hand, LeavesAnApplicationUpwards) {
    const Look look = playerOn(Surface::apps).play(kWayIntoPhone).look();
    EXPECT_EQ(drag(look, kBeside, 0, -80), "home");
    EXPECT_EQ(drag(look, kBeside, -80, 0), "nothing");
}

TEST(Hand, HoldsAnIconOnceAndIsNoTapThen) {
    const Look look = playerOn(Surface::apps).look();
    Hand hand;
    hand.press(look, 1, CGRectGetCenter(look.icons[0].frame), 10);
    EXPECT_FALSE(hand.hold(10.4));
    EXPECT_EQ(hand.holdsAt(), 10.5);
    EXPECT_EQ(hand.hold(10.5)->line(), "hold icons[0]");
    EXPECT_FALSE(hand.hold(11));
    EXPECT_FALSE(hand.release());
}

TEST(Hand, HoldsNothingThatMovesOrIsNoIcon) {
    const Look look = playerOn(Surface::apps).look();
    Hand hand;
    hand.press(look, 1, kBeside, 0);
    EXPECT_FALSE(hand.holdsAt());
    hand.press(look, 1, CGRectGetCenter(look.icons[0].frame), 0);
    hand.move({0, 0});
    EXPECT_FALSE(hand.hold(5));
}

TEST(Hand, TellsHowFarItDrags) {
    const Look look = playerOn(Surface::apps).look();
    Hand hand;
    hand.press(look, 1, kBeside, 0);
    hand.move({kBeside.x - 8, kBeside.y});
    EXPECT_EQ(hand.dragged(), CGPoint{}) << "may still be a tap";
    hand.move({kBeside.x - 30, kBeside.y});
    EXPECT_EQ(hand.dragged(), (CGPoint{-30, 0}));
    hand.cancel();
    EXPECT_EQ(hand.dragged(), CGPoint{});
    EXPECT_FALSE(hand.release());
}

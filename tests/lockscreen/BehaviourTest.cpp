#include "tests/lockscreen/SampleDevice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace lumora;
using namespace tests;
using platform::Dictionary;
using platform::List;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kPhone = "org.lumora.samples.Phone";
constexpr const char* kWeather = "org.lumora.samples.Weather";
constexpr const char* kWeatherView = "org.lumora.plugins.weather";

Dictionary enabled(std::vector<Dictionary::Entry> others = {}) {
    others.emplace_back(kTweakEnabled, true);
    others.emplace_back(kAppsEnabled, List{kPhone, kWeather});
    others.emplace_back(kAppViewsEnabled, List{kWeatherView, "org.lumora.plugins.clock"});
    return Dictionary(std::move(others));
}

std::vector<Dictionary::Entry> automatic(std::vector<Dictionary::Entry> others = {}) {
    others.emplace_back(kAutoUnlockEnabled, true);
    others.emplace_back(kAutoUnlockPasscode, "1234");
    return others;
}

Player onApps(Dictionary settings, const std::string& passcode = "1234") {
    Player player(std::move(settings), sampleDevice(false, passcode));
    player.behaviour.show(Surface::apps, player.now);
    return player;
}

struct GestureCase {
    bool switched;
    bool forViewsOnly;
    const char* gesture;
    std::size_t icon;
    const char* outcome; ///< the first one; empty for none
};

class OnAnIcon : public testing::TestWithParam<GestureCase> {};

} // namespace

TEST_P(OnAnIcon, OpensOrShowsTheAppViewAsTheTwoSwitchesSay) {
    const auto& [switched, forViewsOnly, gesture, icon, outcome] = GetParam();
    Player player = onApps(enabled({{kSwitchTapAndLongHold, switched}, {kLongHoldForPluginApps, forViewsOnly}}), "");
    player.play(std::string(gesture) + " icons[" + std::to_string(icon) + "]");
    if (*outcome == '\0')
        EXPECT_THAT(player.outcomes(), IsEmpty());
    else
        EXPECT_THAT(player.outcomes(), ElementsAre(outcome));
}

constexpr const char* kShows = "shows org.lumora.plugins.weather";
constexpr const char* kOpensWeather = "opens org.lumora.samples.Weather";
constexpr const char* kOpensPhone = "opens org.lumora.samples.Phone";
INSTANTIATE_TEST_SUITE_P(
    Behaviour, OnAnIcon,
    testing::Values(GestureCase{false, false, "tap", 1, kOpensWeather}, GestureCase{false, false, "hold", 1, kShows},
                    GestureCase{false, false, "tap", 0, kOpensPhone}, GestureCase{false, false, "hold", 0, ""},
                    GestureCase{true, false, "tap", 1, kShows}, GestureCase{true, false, "hold", 1, kOpensWeather},
                    GestureCase{true, false, "tap", 0, ""}, GestureCase{true, false, "hold", 0, kOpensPhone},
                    GestureCase{false, true, "tap", 1, kShows}, GestureCase{false, true, "hold", 1, kOpensWeather},
                    GestureCase{false, true, "tap", 0, kOpensPhone}, GestureCase{false, true, "hold", 0, ""},
                    GestureCase{true, true, "tap", 1, kShows}, GestureCase{true, true, "hold", 1, kOpensWeather},
                    GestureCase{true, true, "tap", 0, kOpensPhone}, GestureCase{true, true, "hold", 0, ""}));

TEST(Behaviour, OpensWithoutAPasscodeAndGoesHome) {
    Player player = onApps(enabled(), "");
    EXPECT_THAT(player.play("tap icons[0]\nhome").outcomes(), ElementsAre(kOpensPhone, "home screen"));
}

TEST(Behaviour, ReturnsToTheLockScreenWhereThatIsAskedFor) {
    Player player = onApps(enabled({{kAlwaysReturnToLSEnabled, true}}), "");
    EXPECT_THAT(player.play("tap icons[0]\nhome").outcomes(), ElementsAre(kOpensPhone, "lock screen"));
}

TEST(Behaviour, UnlocksFullyWithBothPasscodes) {
    Player player = onApps(enabled(automatic({{kFullAutoUnlockEnabled, true}, {kAutoUnlockPasscodeConfirm, "1234"}})));
    EXPECT_THAT(player.play("tap icons[0]\nhome").outcomes(), ElementsAre("unlocked", kOpensPhone, "home screen"));
    EXPECT_FALSE(player.behaviour.state().locked);
}

TEST(Behaviour, UnlocksForOneApplicationAloneWithoutTheConfirmation) {
    Player player = onApps(enabled(automatic({{kFullAutoUnlockEnabled, true}, {kAutoUnlockPasscodeConfirm, "1235"}})));
    EXPECT_THAT(player.play("tap icons[0]\nhome").outcomes(),
                ElementsAre("unlocked for org.lumora.samples.Phone alone", kOpensPhone, "lock screen, locked"));
    EXPECT_EQ(player.surface(), Surface::notices);
}

TEST(Behaviour, AsksForThePasscodeOfExceptedApplicationsAndWithAWrongOne) {
    for (const Dictionary& settings : {enabled(), enabled(automatic({{kAUAppsDisabled, List{kPhone}}})),
                                       enabled({{kAutoUnlockEnabled, true}, {kAutoUnlockPasscode, "999"}})}) {
        Player player = onApps(settings);
        EXPECT_THAT(
            player.play("tap icons[0]\ntap keys[0]\nkey 2\nkey 4\nkey BackSpace\nkey 3\nkey 4\nhome").outcomes(),
            ElementsAre("asks for the passcode", "unlocked", kOpensPhone, "home screen"));
    }
}

TEST(Behaviour, GoesBackFromThePasscodeToWhereItWasAskedFor) {
    Player player = onApps(enabled());
    player.play("tap icons[0]\nkey 1\ntap passcode.cancel");
    EXPECT_EQ(player.surface(), Surface::passcode) << "that was Delete";
    player.play("tap passcode.cancel");
    EXPECT_EQ(player.surface(), Surface::apps);
    player.play("slide\nkey 1\nkey Escape");
    EXPECT_EQ(player.surface(), Surface::apps);
}

TEST(Behaviour, UnlocksByTheHintOnEveryStage) {
    for (const Surface stage : {Surface::notices, Surface::apps, Surface::appView}) {
        Player player(enabled(), sampleDevice());
        const Look look = lookOf(enabled(), sampleDevice(), player.behaviour.show(stage, player.now));
        EXPECT_TRUE(look.slideHint.visible);
        player.play("slide\nkey Escape");
        EXPECT_EQ(player.surface(), stage) << "is where the passcode was asked for";
        player.play("slide\nkey 1\nkey 2\nkey 3\nkey 4");
        EXPECT_THAT(player.outcomes(),
                    ElementsAre("asks for the passcode", "back", "asks for the passcode", "unlocked", "home screen"));
    }
}

TEST(Behaviour, TakesNoKeysForAWhileAfterFourWrongPasscodes) {
    Player player = onApps(enabled());
    player.play("slide");
    for (int i = 0; i < 4; ++i)
        player.play("key 4\nkey 4\nkey 4\nkey 4");
    EXPECT_EQ(player.outcomes().back(), "takes no keys for 5 s");
    EXPECT_TRUE(player.behaviour.state().blocked);
    EXPECT_EQ(player.behaviour.nextChange(), player.now + 5);
    player.play("wait 4.9\nkey 1\nkey 2\nkey 3\nkey 4");
    EXPECT_EQ(player.surface(), Surface::passcode);
    player.play("wait 0.1");
    EXPECT_EQ(player.outcomes().back(), "takes keys again");
    EXPECT_FALSE(player.behaviour.state().blocked);
    player.play("key 1\nkey 2\nkey 3\nkey 4");
    EXPECT_EQ(player.outcomes().back(), "home screen");
}

TEST(Behaviour, UnlocksForASwipedNoticeAtOnceOrOnceItHasLeft) {
    const std::string play = "swipe notices.items[0] 0.39\nswipe notices.items[0] 0.4\nwait 0.3";
    const auto settings = [](bool afterwards) {
        return enabled(automatic({{kAutoUnlockNotifications, true}, {kAUNotificationsOnMainThread, afterwards}}));
    };
    Player atOnce(settings(false), sampleDevice());
    EXPECT_THAT(atOnce.play(play).outcomes(), ElementsAre("unlocked for org.lumora.samples.Messages alone",
                                                          "opens org.lumora.samples.Messages", "swiped away"));
    Player afterwards(settings(true), sampleDevice());
    EXPECT_THAT(afterwards.play(play).outcomes(),
                ElementsAre("swiped away", "unlocked for org.lumora.samples.Messages alone",
                            "opens org.lumora.samples.Messages"));
    Player asking(enabled(automatic()), sampleDevice());
    EXPECT_THAT(asking.play(play).outcomes(), ElementsAre("asks for the passcode"));
}

TEST(Behaviour, SleepsAfterItsTimeAndHandsOnNoTouchThatWakes) {
    Player player = onApps(enabled({{kSleepTime, 3600}}));
    player.play("wait 3597.5");
    EXPECT_EQ(player.look().sleepVeil.opacity, 0);
    player.play("wait 1");
    EXPECT_EQ(player.look().sleepVeil.opacity, 0.4);
    player.play("wait 1.5\ntap icons[0]");
    EXPECT_THAT(player.outcomes(), ElementsAre("sleeps", "wakes"));
    EXPECT_EQ(player.surface(), Surface::notices);
}

TEST(Behaviour, CountsATouchThatBecomesNoGesture) {
    Player player(enabled(), sampleDevice());
    EXPECT_FALSE(player.behaviour.touch(player.now += 9));
    player.play("wait 9");
    EXPECT_FALSE(player.behaviour.state().asleep);
    EXPECT_TRUE(player.behaviour.touch(player.now += 9));
    EXPECT_THAT(player.outcomes(), ElementsAre("sleeps", "wakes"));
    EXPECT_FALSE(player.behaviour.touch(player.now)) << "it is awake";
}

TEST(Behaviour, StaysAwakeOnAnAppViewAndCountsFromItsEnd) {
    Player player(enabled({{kSleepDisabledForAppViews, true}}), sampleDevice());
    player.behaviour.show(Surface::appView, player.now);
    player.play("wait 500\nswipe down\nwait 9.9");
    EXPECT_FALSE(player.behaviour.state().asleep);
    player.play("wait 0.2");
    EXPECT_TRUE(player.behaviour.state().asleep);
}

TEST(Behaviour, HidesAndShowsTheNoticesByATapBesideThem) {
    Player player(enabled({{kNotificationsHideOnTap, true}}), sampleDevice());
    EXPECT_FALSE(player.play("tap").look().notices.visible);
    EXPECT_TRUE(player.play("tap").look().notices.visible);
    Player off(enabled(), sampleDevice());
    EXPECT_TRUE(off.play("tap").look().notices.visible);
}

TEST(Behaviour, SwipesThroughStagesAndRoundTheAppViews) {
    Player player(enabled(), sampleDevice());
    EXPECT_THAT(player.play("swipe right\nswipe left\nswipe left\nswipe left\nswipe left\nswipe right").outcomes(),
                ElementsAre("stage A", "stage V", "shows org.lumora.plugins.clock", "shows org.lumora.plugins.weather",
                            "shows org.lumora.plugins.clock"));
    EXPECT_EQ(player.play("swipe down").surface(), Surface::apps);
}

TEST(Behaviour, TellsOfEachWayFromOneStageToAnother) {
    Player player(enabled(), sampleDevice());
    player.play("swipe left\nswipe left\nswipe down\nkey Escape\nswipe left\nhome\nhome");
    EXPECT_THAT(player.outcomes(), ElementsAre("stage A", "stage V", "stage A", "stage N", "stage A", "stage N"));
    Player alone(Dictionary{{kTweakEnabled, true}, {kAppViewsEnabled, List{kWeatherView}}}, sampleDevice());
    EXPECT_THAT(alone.play("swipe left\nswipe down").outcomes(), ElementsAre("stage V", "stage N"));
}

TEST(Behaviour, LeavesAStageThatIsSwitchedOff) {
    Player player = onApps(enabled());
    player.behaviour.setSettings(Dictionary{{kTweakEnabled, false}});
    EXPECT_EQ(player.surface(), Surface::notices);
}

TEST(Behaviour, PullsOnlyWhatIsThere) {
    Player player(enabled(), sampleDevice());
    EXPECT_THAT(player.play("pull camera\npull topGrabber").outcomes(),
                ElementsAre("pulls the camera", "pulls the topGrabber"));
    Player hidden(enabled({{kGrabbersDisabled, true}, {kCameraGrabberDisabled, true}}), sampleDevice());
    EXPECT_THAT(hidden.play("pull camera\npull topGrabber").outcomes(), IsEmpty());
}

TEST(Behaviour, DoesItAllByKeys) {
    Player player(enabled(), sampleDevice());
    player.play("key Right\nkey Down\nkey Right\nkey Shift+Enter");
    EXPECT_EQ(player.surface(), Surface::appView);
    player.play("key Escape\nkey Down\nkey Enter\nkey 1\nkey 2\nkey 3\nkey 4");
    EXPECT_EQ(player.outcomes().back(), kOpensPhone);
    player.play("key Home\nkey S\nkey Enter\nkey Down\nkey Enter");
    EXPECT_EQ(player.outcomes().back(), "asks for the passcode");
}

TEST(Gesture, IsReadAsItIsWritten) {
    for (const std::string line : {"tap icons[2]", "tap", "swipe notices.items[0] 0.4", "swipe left", "slide",
                                   "key Shift+Enter", "home", "wait 3.5"})
        EXPECT_EQ(Gesture::read(line).value().line(), line);
    for (const char* wrong : {"", "touch icons[0]", "wait", "wait soon", "swipe left nan", "tap a 1 b"})
        EXPECT_FALSE(Gesture::read(wrong)) << wrong;
}

TEST(Behaviour, TellsWhenSomethingHappensByItself) {
    Player player(enabled({{kSleepTime, 20}}), sampleDevice());
    EXPECT_EQ(player.behaviour.nextChange(), player.now + 18) << "the screen dims";
    player.play("wait 18");
    EXPECT_EQ(player.behaviour.nextChange(), player.now + 2);
    player.play("wait 2");
    EXPECT_EQ(player.behaviour.nextChange(), std::nullopt) << "it is asleep";
}

TEST(Behaviour, StaysAwakeWhereItIsToldTo) {
    Player player(enabled(), sampleDevice());
    player.behaviour.setFallsAsleep(false);
    EXPECT_EQ(player.behaviour.nextChange(), std::nullopt);
    player.play("wait 5000");
    EXPECT_FALSE(player.look().sleepVeil.visible);
    player.play("key S");
    EXPECT_TRUE(player.behaviour.state().asleep);
}

TEST(Behaviour, IsUnlockedWhenToldToShowTheHomeScreen) {
    Player player(enabled(), sampleDevice());
    player.behaviour.show(Surface::opened, player.now);
    EXPECT_EQ(player.look().opened.identifier, "");
    EXPECT_FALSE(player.behaviour.state().locked);
}

#include "lockscreen/app/Inputs.h"
#include "lockscreen/app/EventLog.h"
#include "lockscreen/app/Playing.h"

#include "link/PreferenceKeys.h"
#include "json/Json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace lumora;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(Gestures, AreReadALineEach) {
    const auto gestures = gesturesIn("# the passcode\n\nslide\r\n  key 7\n\twait 2.5\n#\nhome");
    ASSERT_TRUE(gestures) << gestures.error();
    std::vector<std::string> lines;
    for (const Gesture& gesture : gestures.value())
        lines.push_back(gesture.line());
    EXPECT_THAT(lines, ElementsAre("slide", "key 7", "wait 2.5", "home"));
    EXPECT_TRUE(gesturesIn(""));
}

TEST(Gestures, TellTheLineThatCannotBeRead) {
    for (const auto& [text, line] :
         std::vector<std::pair<std::string, std::string>>{{"dance", "line 1: "},
                                                          {"slide\n\n# note\nwait 7391\nwait long", "line 5: "},
                                                          {"7391", "line 1: "},
                                                          {"tap\nwait -1", "line 2: "},
                                                          {"swipe left 1 7391", "line 1: "},
                                                          {std::string("tap\n\0", 5), "line 2: "}}) {
        const auto gestures = gesturesIn(text);
        ASSERT_FALSE(gestures) << text;
        EXPECT_THAT(gestures.error(), testing::StartsWith(line));
        EXPECT_THAT(gestures.error(), Not(HasSubstr("7391")));
    }
}

TEST(EventLog, HidesWhichDigitsAreTyped) {
    EXPECT_EQ(discreet("key 7"), "key •");
    EXPECT_EQ(discreet("tap keys[4]"), "tap keys[•]");
    EXPECT_EQ(discreet("hold keys[4]"), "hold keys[•]");
    for (const char* line : {"key Left", "key S", "tap icons[2]", "tap passcode.cancel", "tap", "wait 3", "slide",
                             "swipe notices.items[0] 0.4", "-> wrong", "-> opens org.example.7", "-> page 2"})
        EXPECT_EQ(discreet(line), line);
}

platform::Result<std::vector<TourScene>> scenesOf(const std::string& json) {
    return scenesIn(readJson(json).value());
}

TEST(TourScenes, AddTheirSettingsToThoseOfAll) {
    const auto scenes = scenesOf(R"({"settings": {"kAppsPerRow": 3, "kAppIconSize": 50}, "scenes": [
        {"name": "plain"},
        {"name": "full", "settings": {"kAppIconSize": 60}, "surface": "P", "gestures": ["key 1", "wait 2"],
         "wallpaper": "night", "landscape": true, "ratio": 2}]})");
    ASSERT_TRUE(scenes) << scenes.error();
    ASSERT_EQ(scenes.value().size(), 2U);
    const TourScene& plain = scenes.value()[0];
    EXPECT_EQ(plain.name, "plain");
    EXPECT_EQ(plain.settings, (platform::Dictionary{{kAppsPerRow, 3}, {kAppIconSize, 50}}));
    EXPECT_EQ(plain.surface, Surface::notices);
    EXPECT_EQ(plain.ratio, 1);
    const TourScene& full = scenes.value()[1];
    EXPECT_EQ(full.settings, (platform::Dictionary{{kAppsPerRow, 3}, {kAppIconSize, 60}}));
    EXPECT_EQ(full.surface, Surface::passcode);
    EXPECT_EQ(full.gestures.size(), 2U);
    EXPECT_EQ(full.wallpaper, "night");
    EXPECT_TRUE(full.landscape);
    EXPECT_EQ(full.ratio, 2);
}

TEST(TourScenes, TellWhichCannotBeRead) {
    for (const auto& [json, why] : std::vector<std::pair<std::string, std::string>>{
             {"{}", "no scenes"},
             {R"({"scenes": []})", "no scenes"},
             {R"({"settings": 1, "scenes": [{"name": "a"}]})", "settings"},
             {R"({"scenes": [{"name": "a"}, {"surface": "A"}]})", "scene 2: it has no name"},
             {R"({"scenes": [{"name": "../a"}]})", "scene 1: no name"},
             {R"({"scenes": [{"name": "a"}, {"name": "a"}]})", "scene 2: its name is that of another"},
             {R"({"scenes": [{"name": "a", "surface": "X"}]})", "no surface"},
             {R"({"scenes": [{"name": "a", "wallpaper": "noon"}]})", "no wallpaper"},
             {R"({"scenes": [{"name": "a", "gestures": ["dance"]}]})", "gestures, line 1"},
             {R"({"scenes": [{"name": "a", "colour": 1}]})", "a scene has no colour"}}) {
        const auto scenes = scenesOf(json);
        ASSERT_FALSE(scenes) << json;
        EXPECT_THAT(scenes.error(), HasSubstr(why)) << json;
    }
}

struct Playing : testing::Test {
    Playing() {
        device.passcode = "7391";
        device.applications = {{"org.example.Mail", "Mail"}};
        device.views = {{"view.clock", "Clock", "", false}};
    }
    [[nodiscard]] Behaviour begun() const {
        return {platform::Dictionary{{kTweakEnabled, true},
                                     {kAppsEnabled, platform::List{"org.example.Mail"}},
                                     {kAppViewsEnabled, platform::List{"view.clock"}}},
                device,
                {}};
    }

    Device device;
    Options options;
    Inputs inputs;
};

TEST_F(Playing, BeginsAtAnySurface) {
    for (const Surface surface :
         {Surface::notices, Surface::apps, Surface::appView, Surface::passcode, Surface::opened}) {
        Behaviour behaviour = begun();
        options.surface = surface;
        EXPECT_TRUE(play(behaviour, options, inputs));
        EXPECT_EQ(behaviour.state().surface, surface);
        EXPECT_EQ(behaviour.state().locked, surface != Surface::opened);
    }
    device.passcode.clear();
    Behaviour behaviour = begun();
    options.surface = Surface::opened;
    EXPECT_TRUE(play(behaviour, options, inputs));
    EXPECT_EQ(behaviour.state().surface, Surface::opened);
}

TEST_F(Playing, FailsWhereTheSettingsLeaveNoWay) {
    device.applications.clear();
    Behaviour behaviour = begun();
    options.surface = Surface::apps;
    const auto played = play(behaviour, options, inputs);
    ASSERT_FALSE(played);
    EXPECT_THAT(played.error(), HasSubstr("surface A"));
}

TEST_F(Playing, LetsTimePassInItsGesturesAndAtTheEnd) {
    inputs.gestures = gesturesIn("wait 9\nswipe left\nwait 9").value();
    Behaviour behaviour = begun();
    EXPECT_TRUE(play(behaviour, options, inputs));
    EXPECT_FALSE(behaviour.state().asleep);
    EXPECT_EQ(behaviour.state().now, 18);
    EXPECT_EQ(behaviour.state().lastTouch, 9);
    options.idle = 1;
    Behaviour idle = begun();
    EXPECT_TRUE(play(idle, options, inputs));
    EXPECT_TRUE(idle.state().asleep);
}

} // namespace

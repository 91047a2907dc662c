#include "lockscreen/Turning.h"

#include "tests/lockscreen/SampleDevice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace lumora;
using namespace tests;
using platform::Dictionary;
using platform::List;

namespace {

Dictionary with(std::vector<Dictionary::Entry> others) {
    others.emplace_back(kTweakEnabled, true);
    others.emplace_back(kAppsEnabled, List{"org.lumora.samples.Phone"});
    return Dictionary(std::move(others));
}

/// Where the face turns to from a surface, when one key changes from its stock.
std::optional<Surface> turnedFrom(Surface surface, std::string_view key, platform::Value value) {
    State state;
    state.surface = surface;
    return surfaceOf({with({}), {std::string(key)}}, with({Dictionary::Entry(std::string(key), std::move(value))}),
                     sampleDevice(), state);
}

} // namespace

TEST(Turning, WaitsForAMomentOfRestAndForThePersonAtTheFace) {
    Turning turning;
    EXPECT_FALSE(turning.due());
    turning.changed(with({}), {std::string(kAppIconSize)}, 5);
    EXPECT_DOUBLE_EQ(*turning.due(), 5.15);
    turning.changed(with({{kAppIconSize, 60}}), {std::string(kAppIconSize)}, 5.1);
    EXPECT_DOUBLE_EQ(*turning.due(), 5.25);
    turning.touched(5.2);
    EXPECT_DOUBLE_EQ(*turning.due(), 15.2);
}

TEST(Turning, GathersWhatChangesAndKeepsTheSettingsFromBefore) {
    Turning turning;
    turning.changed(with({}), {std::string(kAppIconSize)}, 5);
    turning.changed(with({{kAppIconSize, 60}}), {std::string(kAppsPerRow)}, 5.1);
    const Turning::Changed changed = turning.take();
    EXPECT_EQ(changed.before, with({}));
    EXPECT_THAT(changed.keys, testing::ElementsAre(kAppIconSize, kAppsPerRow));
    EXPECT_FALSE(turning.due());
}

TEST(Turning, ForgetsWhatChangesWhileItDoesNotFollow) {
    Turning turning;
    turning.changed(with({}), {std::string(kAppIconSize)}, 5);
    turning.setFollows(false);
    EXPECT_FALSE(turning.due());
    turning.changed(with({}), {std::string(kAppIconSize)}, 6);
    EXPECT_FALSE(turning.due());
}

TEST(Turning, StaysWhereAChangeShowsAndElseGoesWhereItDoes) {
    EXPECT_EQ(turnedFrom(Surface::notices, kLSDateFontSize, 40), Surface::notices);
    EXPECT_EQ(turnedFrom(Surface::apps, kLSDateFontSize, 40), Surface::apps);
    EXPECT_EQ(turnedFrom(Surface::notices, kAppIconSize, 50), Surface::apps);
    EXPECT_EQ(turnedFrom(Surface::apps, kLSPButtonDiam, 10), Surface::passcode);
    EXPECT_EQ(turnedFrom(Surface::passcode, kCameraGrabberDisabled, true), Surface::notices);
    EXPECT_EQ(turnedFrom(Surface::passcode, "org.lumora.plugins.weather.unit", 1), std::nullopt);
}

TEST(ChangedFrame, IsAroundThePartsThatDifferAndAreSeen) {
    const Look before = lookOf(with({}), sampleDevice(), State{});
    EXPECT_FALSE(changedFrame(before, before));
    EXPECT_FALSE(changedFrame(before, lookOf(with({{kAppIconSize, 50}}), sampleDevice(), State{}))) << "not in view";
    EXPECT_EQ(changedFrame(before, lookOf(with({{kCameraGrabberDisabled, true}}), sampleDevice(), State{})),
              before.camera.frame)
        << "gone";
    const Look moved = lookOf(with({{kGrabbersDisabled, true}}), sampleDevice(), State{});
    EXPECT_EQ(changedFrame(before, moved), CGRectUnion(before.topGrabber.frame, before.bottomGrabber.frame));
}

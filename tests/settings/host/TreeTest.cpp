#include "tests/settings/host/TreeTest.h"

#include "tests/support/Allocations.h"
#include "tests/support/Deadline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <future>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace tests;
using platform::Dictionary;
using platform::List;
using platform::Value;
using testing::ElementsAre;
using testing::IsSupersetOf;

/// What a process holds that could grow.
struct Holdings {
    std::ptrdiff_t descriptors;
    std::size_t objects; ///< blocks from the allocator that are in use
};

Holdings holdings() {
    tests::RecordingTweak::waitUntilIdle();
    const Allocations all = Allocations::now();
    return {tests::descriptorCount(), all.count - all.freed};
}

TEST_F(TreeTest, OpensEveryLinkOfEveryPage) {
    std::set<std::string> classes{top().className};
    visit([&] {
        classes.insert(top().className);
        EXPECT_NE(top().title, "") << top().className;
        EXPECT_TRUE(!top().rows.empty() || top().view) << top().className << " shows nothing";
    });
    EXPECT_THAT(classes, IsSupersetOf({"LumoraPreferences", "AppsController", "AppsListController",
                                       "AutoUnlockController", "AUAppsListController", "PluginsListController",
                                       "PluginsListViewController", "LSSettingsController", "LSPasscodeSettings",
                                       "ColorPickerController", "LSDateViewSettings", "FontViewController",
                                       "ChangeLogController", "PSListItemsController"}));
}

TEST_F(TreeTest, ShowsAutoUnlockAppsAsItKnewThemWhileTheAnswerToItsPageIsUnderWay) {
    auto& tweak = tests::RecordingTweak::shared();
    tweak.setSettings(Dictionary{{"kAppsEnabled", List{"org.one", "org.two"}}});
    followTwice({"Apps", "Auto-Unlock", "Auto-Unlock Apps"});
    EXPECT_THAT(enabled(), ElementsAre("org.one", "org.two"));
    goBack(3);

    followTwice({"Apps", "Apps"});
    navigation.handle(top().id, RowMoved{{0, 0}, {1, 0}});
    EXPECT_THAT(tweak.waitForChanges(1),
                ElementsAre(Value(Dictionary{{"key", "kAppsEnabled"}, {"object", List{"org.two"}}})));
    goBack(2);

    tweak.setSettings(Dictionary{{"kAppsEnabled", List{"org.two"}}}); // as a tweak answers from then on
    tweak.holdAnswers(true);
    {
        const tests::Deadline deadline("pages that were open before, which wait for no answer");
        follow({"Apps", "Auto-Unlock", "Auto-Unlock Apps"});
    }
    EXPECT_THAT(enabled(), ElementsAre("org.one", "org.two"));
    tweak.holdAnswers(false);
    EXPECT_TRUE(tests::eventually([this] {
        goBack(1);
        follow({"Auto-Unlock Apps"});
        return enabled() == std::vector<std::string>{"org.two"};
    })) << "the change never came to be shown";
}

TEST_F(TreeTest, ShowsTheEarlierSubtitleOnThePageBelowTheOneThatChangesIt) {
    auto& tweak = tests::RecordingTweak::shared();
    tweak.setSettings(Dictionary{{"kLSDateSubtitle", "earlier"}});
    followTwice({"Lock Screen Settings", "Date View"});
    navigation.handle(top().id, ValueChanged{rowOf("kLSDateSubtitle"), "later"});
    tweak.waitForChanges(1);
    EXPECT_EQ(top().rows[rowOf("kLSDateSubtitle")].value, Value("later"));
    tweak.setSettings(Dictionary{{"kLSDateSubtitle", "later"}}); // as a tweak answers from then on
    goBack(1);
    EXPECT_EQ(top().className, "LSSettingsController");
    EXPECT_EQ(top().rows[rowOf("kLSDateSubtitle")].value, Value("earlier"));
}

const Value kCyan = Dictionary{{"h", 0.5}, {"s", 1.0}, {"b", 1.0}};
const Value kRed = Dictionary{{"h", 0.0}, {"s", 1.0}, {"b", 1.0}};
const std::vector<std::string> kToColour{"Lock Screen Settings", "Passcode View", "Blur Color"};

/// Of the colour page.
double hue(const PageSnapshot& page) {
    const auto* preview = page.view && !page.view->subviews.empty() ? &page.view->subviews.front() : nullptr;
    return preview && preview->layer.backgroundColor ? preview->layer.backgroundColor->getHue().hue : -1;
}

TEST_F(TreeTest, ShowsWhatAProfileChangesInAViewThatIsOpenedAgain) {
    auto& tweak = tests::RecordingTweak::shared();
    tweak.setSettings(Dictionary{{"kLSBlurColor", kCyan}});
    navigation.setSender([&](const std::vector<SettingChange>& changes) {
        tweak.setSettings(Dictionary{{changes.front().key, changes.front().after}});
        return Sent{.made = changes};
    });
    followTwice(kToColour);
    EXPECT_DOUBLE_EQ(hue(top()), 0.5);
    navigation.apply("Quiet", {{"kLSBlurColor", kCyan, kRed}});
    EXPECT_DOUBLE_EQ(hue(top()), 0) << "while it is open";
    goBack(kToColour.size());
    navigation.undo();
    tweak.holdAnswers(true);
    follow(kToColour);
    tweak.holdAnswers(false);
    EXPECT_DOUBLE_EQ(hue(top()), 0.5);
}

TEST_F(TreeTest, ShowsWhatTheTweakAnswersLateOnAPageThatIsReloaded) {
    auto& tweak = tests::RecordingTweak::shared();
    tweak.setSettings(Dictionary{{"kLSBlurColor", kCyan}});
    followTwice(kToColour);
    tweak.setSettings(Dictionary{{"kLSBlurColor", kRed}, {"kLSPasscodeBlurHidden", true}});
    tweak.holdAnswers(true);
    const auto late = std::async(std::launch::async, [&tweak, before = tweak.requests()] {
        EXPECT_TRUE(tests::eventually([&] { return tweak.requests() > before; }));
        std::this_thread::sleep_for(std::chrono::milliseconds(50)); // a page that does not wait has been shown by then
        tweak.holdAnswers(false);
    });
    navigation.reload(top().id);
    EXPECT_DOUBLE_EQ(hue(top()), 0);
    goBack(1);
    EXPECT_EQ(top().rows[rowOf("kLSPasscodeBlurHidden")].value, Value());
    navigation.reload(top().id);
    EXPECT_EQ(top().rows[rowOf("kLSPasscodeBlurHidden")].value, Value(true));
}

TEST_F(TreeTest, LeavesNothingBehindOfAThousandOpenedAndClosedPages) {
    const auto openPages = [this](int count) {
        for (int opened = 0; opened < count;)
            visit([&] { ++opened; });
    };
    openPages(200); // whatever is kept for good has been made by then
    const Holdings before = holdings();
    openPages(1000);
    const Holdings after = holdings();
    std::printf("descriptors %td, then %td; objects %zu, then %zu\n", before.descriptors, after.descriptors,
                before.objects, after.objects);
    EXPECT_LE(after.descriptors, before.descriptors);
    EXPECT_LE(after.objects, before.objects + 100) << "not even one for each page";
    EXPECT_EQ(shown.pages.size(), 1U);
}

} // namespace

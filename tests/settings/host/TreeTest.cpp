#include "settings/host/Navigation.h"

#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/NSBundle.h"
#include "platform/preferences/PSSpecifier.h"
#include "tests/pages/RecordingTweak.h"
#include "tests/support/Allocations.h"
#include "tests/support/Deadline.h"
#include "tests/support/Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace settings;
using platform::Dictionary;
using platform::List;
using platform::Value;
using testing::ElementsAre;
using testing::IsSupersetOf;

/// The pages of the real bundle, with the samples of the device root that the build makes.
class TreeTest : public testing::Test {
  protected:
    TreeTest() {
        tests::RecordingTweak::shared();
        platform::setDeviceRoot(LUMORA_TEST_ROOT);
        const auto bundle =
            platform::NSBundle::bundleWithPath(LUMORA_TEST_ROOT "/Library/PreferenceBundles/Lumora.bundle");
        EXPECT_TRUE(bundle && bundle->load());
        EXPECT_TRUE(navigation.open(bundle->principalClass(), "Lumora"));
    }

    const PageSnapshot& top() const { return *shown.pages.back(); }
    /// The rows of the page on top that open another one.
    std::vector<std::size_t> links() const {
        std::vector<std::size_t> found;
        for (std::size_t row = 0; row < top().rows.size(); ++row)
            if (!top().rows[row].detail.empty()) found.push_back(row);
        return found;
    }
    /// Opens every page that can be reached from the one on top, calls back with each, and goes back.
    void visit(const std::function<void()>& opened) {
        for (const std::size_t row : links()) {
            const RowSnapshot link = top().rows[row];
            const std::size_t depth = shown.pages.size();
            navigation.handle(top().id, RowTapped{row});
            ASSERT_EQ(shown.pages.size(), depth + 1) << link.name << " opens nothing";
            EXPECT_EQ(top().className, link.detail);
            opened();
            visit(opened);
            navigation.back(top().id);
            ASSERT_EQ(shown.pages.size(), depth);
        }
    }

    void goBack(std::size_t pages) {
        for (; pages > 0; --pages)
            navigation.back(top().id);
    }
    /// Taps these links, each on the page that the one before has opened.
    void follow(const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            const auto row = std::ranges::find(top().rows, name, &RowSnapshot::name);
            ASSERT_NE(row, top().rows.end()) << "no link to " << name;
            navigation.handle(top().id, RowTapped{std::size_t(row - top().rows.begin())});
        }
    }
    /// The second time, the pages have what the tweak answers now, whatever this process knew before.
    void followTwice(const std::vector<std::string>& names) {
        follow(names);
        ASSERT_TRUE(platform::dispatch_wait_until_idle(tests::kLongEnough));
        goBack(names.size());
        follow(names);
    }
    /// The first section of the list on top.
    std::vector<std::string> enabled() const {
        std::vector<std::string> identifiers;
        for (const auto& [path, cell] : top().table->cells)
            if (path.section == 0) identifiers.push_back(cell.identifier);
        return identifiers;
    }

    StackSnapshot shown;
    Navigation navigation{[this](StackSnapshot stack) { shown = std::move(stack); }};
};

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

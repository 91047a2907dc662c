#include "pages/LumoraPreferences.h"

#include "tests/pages/RecordingTweak.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

namespace {

using lumora::LumoraPreferences;
using platform::Dictionary;
using platform::make;
using platform::Value;
using testing::MatchesRegex;
using tests::RecordingTweak;

struct ExpectedRow {
    int cell;
    std::string name;
    std::string identifier;
    std::string detail;
};

/// The page as its users know it, written down a second time.
const std::vector<ExpectedRow> expectedRows{
    {0, "General", "", ""},
    {6, "Enable Lumora", "kTweakEnabled", ""},
    {1, "Apps", "", "AppsController"},
    {0, "Lock Sleep Timer", "", ""},
    {2, "Sleep After", "kSleepTime", "PSListItemsController"},
    {6, "Disable For AppViews", "kSleepDisabledForAppViews", ""},
    {0, "Options", "", ""},
    {1, "App Views", "", "PluginsListController"},
    {1, "Lock Screen Settings", "", "LSSettingsController"},
    {6, "Hide Notifications On Tap", "kNotificationsHideOnTap", ""},
    {0, "Changes", "", ""},
    {1, "Change Log", "", "ChangeLogController"},
    {0, "Contact", "", ""},
    {13, "@nevo_lumora", "", ""},
    {13, "support@nevo.example", "", ""},
};

struct RootPage : testing::Test {
    RecordingTweak& tweak = RecordingTweak::shared();

    /// Opens the page with these settings at the tweak, and waits until its own request has been answered: the class's
    /// dictionary lives as long as the process, and a reply that lands late would undo what a test has changed.
    std::shared_ptr<LumoraPreferences> open(Dictionary settings = {}) {
        static int openings = 0;
        settings.set("opening", ++openings);
        tweak.setSettings(settings);
        auto page = make<LumoraPreferences>();
        const auto probe = platform::PSSpecifier::preferenceSpecifierNamed("", nullptr, nullptr, nullptr, {},
                                                                           platform::PSSwitchCell, false);
        probe->setIdentifier("opening");
        while (page->getValue(*probe) != Value(openings))
            std::this_thread::yield();
        return page;
    }
    static platform::PSSpecifierRef row(LumoraPreferences& page, const std::string& identifier) {
        for (const auto& row : *page.specifiers())
            if (row->identifier() == identifier) return row;
        return nullptr;
    }
};

TEST_F(RootPage, HasFifteenRowsInOrder) {
    const auto page = open();
    ASSERT_NE(page, nullptr);
    const auto rows = page->specifiers();
    ASSERT_EQ(rows->size(), 15U);
    for (std::size_t i = 0; i < rows->size(); ++i) {
        SCOPED_TRACE(i + 1);
        EXPECT_EQ(rows->at(i)->cellType(), expectedRows[i].cell);
        EXPECT_EQ(rows->at(i)->name(), expectedRows[i].name);
        EXPECT_EQ(rows->at(i)->identifier(), expectedRows[i].identifier);
        EXPECT_EQ(rows->at(i)->detail().name(), expectedRows[i].detail);
        EXPECT_EQ(rows->at(i)->target(), page.get());
    }
    EXPECT_TRUE(rows->at(12)->property("footerText").text());
    EXPECT_TRUE(rows->at(13)->action);
    EXPECT_TRUE(rows->at(14)->action);
}

TEST_F(RootPage, OffersSevenSleepTimesOfWhichNeverIsAnHour) {
    const auto page = open();
    const auto sleep = row(*page, "kSleepTime");
    EXPECT_EQ(sleep->titles(), (std::vector<std::string>{"5 Seconds", "10 Seconds", "15 Seconds", "20 Seconds",
                                                         "30 Seconds", "60 Seconds", "Never"}));
    EXPECT_EQ(sleep->values(), (std::vector<Value>{5, 10, 15, 20, 30, 60, 3600}));
}

TEST_F(RootPage, StoresAndSendsTheIntegerOfNever) {
    const auto page = open();
    const auto sleep = row(*page, "kSleepTime");
    sleep->performSetter(sleep->values().back());
    EXPECT_EQ(sleep->performGetter(), Value(3600));
    EXPECT_EQ(tweak.waitForChanges(1).front(), Value(Dictionary{{"key", "kSleepTime"}, {"object", 3600}}));
}

TEST_F(RootPage, SendsASwitchAtOnceUnderItsKey) {
    const auto page = open();
    row(*page, "kTweakEnabled")->performSetter(true);
    EXPECT_EQ(tweak.waitForChanges(1).front(), Value(Dictionary{{"key", "kTweakEnabled"}, {"object", true}}));
}

TEST_F(RootPage, GivesTheSameRowListASecondTime) {
    const auto page = open();
    const auto first = page->specifiers();
    EXPECT_EQ(page->specifiers(), first);
    EXPECT_EQ(page->specifiers()->front(), first->front());
}

TEST_F(RootPage, ReadsAnAbsentKeyAsNil) {
    const auto page = open();
    EXPECT_TRUE(row(*page, "kNotificationsHideOnTap")->performGetter().isNil());
    EXPECT_TRUE(row(*page, "kSleepDisabledForAppViews")->performGetter().isNil());
}

TEST_F(RootPage, LogsItsWholeDictionaryEachTimeItAppears) {
    const auto page = open({{"kTweakEnabled", true}, {"kSleepTime", 5}});
    row(*page, "kSleepTime")->performSetter(20);
    for (int appearance = 0; appearance < 2; ++appearance) {
        testing::internal::CaptureStderr();
        page->viewWillAppear(true);
        EXPECT_THAT(testing::internal::GetCapturedStderr(),
                    MatchesRegex(".*\\{\n    kSleepTime = 20;\n    kTweakEnabled = 1;\n    opening = [0-9]+;\n\\}\n"));
    }
}

} // namespace

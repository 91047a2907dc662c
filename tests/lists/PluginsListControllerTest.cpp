#include "lists/PluginsListController.h"

#include "platform/foundation/NSBundle.h"
#include "tests/lists/PluginFolder.h"
#include "tests/pages/RecordingTweak.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

namespace {

using lumora::PluginsListController;
using platform::Dictionary;
using platform::make;
using platform::PSListController;
using platform::Value;
using tests::RecordingTweak;
namespace fs = std::filesystem;

struct ExpectedRow {
    int cell;
    std::string name;
    std::string identifier;
    std::string detail;
    std::string footer;
};

const std::vector<ExpectedRow> firstRows{
    {0, "", "", "",
     "If your device has a passcode, insert here to use secure App Views. See footer note for more info."},
    {6, "Enable App Views", "kWidgetsEnabled", "", ""},
    {12, "", "kAutoUnlockWidgetPasscode", "", ""},
    {0, "App Views", "", "", ""},
    {1, "Select Plugins", "", "PluginsListViewController", ""},
};

const std::vector<ExpectedRow> lastRows{
    {0, "", "", "", "Tap and hold onto an App View's associated application to reveal the App View"},
    {0, "", "", "", ""},
    {0, "", "", "", "What is a secure App View and why does Lumora require my passcode to use it?"},
    {0, "", "", "",
     R"(If your device is locked with a passcode, the lockscreen requires the passcode before it will allow Lumora to )"
     R"(render "secure" or "private" views (SMS, Mail, Facebook, Twitter) on the Lock Screen. If your device does not )"
     R"(have a passcode you can leave the passcode field above empty.)"},
};

void expectRows(PSListController& page, const std::vector<ExpectedRow>& expected) {
    const auto rows = page.specifiers();
    ASSERT_EQ(rows->size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(i + 1);
        const auto& row = rows->at(i);
        EXPECT_EQ(row->cellType(), expected[i].cell);
        EXPECT_EQ(row->name(), expected[i].name);
        EXPECT_EQ(row->identifier(), expected[i].identifier);
        EXPECT_EQ(row->detail().name(), expected[i].detail);
        EXPECT_EQ(row->target(), &page);
        EXPECT_EQ(row->property("footerText"), expected[i].footer.empty() ? Value() : Value(expected[i].footer));
    }
}

std::vector<ExpectedRow> withBetween(const std::vector<ExpectedRow>& between) {
    std::vector<ExpectedRow> rows = firstRows;
    rows.insert(rows.end(), between.begin(), between.end());
    rows.insert(rows.end(), lastRows.begin(), lastRows.end());
    return rows;
}

struct AppViewsPage : testing::Test {
    RecordingTweak& tweak = RecordingTweak::shared();
    tests::PluginFolder plugins;

    void SetUp() override { tweak.setSettings(Dictionary{}); }

    /// Makes the page that a link row of the page opens.
    static std::shared_ptr<PSListController> opened(const platform::PSSpecifierRef& row) {
        const platform::Class pageClass = row->detail().resolve();
        return pageClass ? std::dynamic_pointer_cast<PSListController>(pageClass->make()) : nullptr;
    }
};

TEST_F(AppViewsPage, HasNineRowsWithoutPlugIns) {
    const auto page = make<PluginsListController>();
    ASSERT_NE(page, nullptr);
    expectRows(*page, withBetween({}));
    const auto field = std::dynamic_pointer_cast<platform::PSTextFieldSpecifier>(page->specifiers()->at(2));
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->placeholder(), "Passcode");
    EXPECT_EQ(page->specifiers(), page->specifiers());
}

TEST_F(AppViewsPage, ShowsAGroupWithOneLinkForTheOnePlugInWithAPage) {
    plugins.add("Radio.bundle", "PagePlugin");
    plugins.add("pageless-1.bundle", "TestPlugin");
    plugins.add("no-name-1.bundle", "TestPlugin");
    const auto page = make<PluginsListController>();
    expectRows(*page, withBetween({{0, "Settings", "", "", ""}, {1, "Radio", "", "TestPage", ""}}));
    EXPECT_EQ(PluginsListController::getPluginsWithSettings().size(), 1U);
}

TEST_F(AppViewsPage, KeepsItsRowsWhenAPlugInComesLater) {
    const auto page = make<PluginsListController>();
    expectRows(*page, withBetween({}));
    plugins.add("Later.bundle", "PagePlugin");
    expectRows(*page, withBetween({}));
    expectRows(*make<PluginsListController>(),
               withBetween({{0, "Settings", "", "", ""}, {1, "Later", "", "TestPage", ""}}));
}

TEST_F(AppViewsPage, OpensThePageOfTheVeryPlugInWhereTwoUseOneClassName) {
    const fs::path icons = fs::path(LUMORA_TEST_ROOT) / "Library/PreferenceBundles/Lumora.bundle";
    fs::copy_file(icons / "mail.png", plugins.add("First.bundle", "PagePlugin") / "icon.png");
    plugins.add("Second.bundle", "PagePlugin"); // without an icon
    const auto page = make<PluginsListController>();
    const auto rows = page->specifiers();
    ASSERT_EQ(rows->size(), firstRows.size() + 3 + lastRows.size());
    for (const std::size_t link : {firstRows.size() + 1, firstRows.size() + 2}) {
        const std::string plugin = rows->at(link)->name();
        SCOPED_TRACE(plugin);
        const auto itsPage = opened(rows->at(link));
        ASSERT_NE(itsPage, nullptr);
        const auto itsRows = itsPage->specifiers();
        ASSERT_EQ(itsRows->size(), 2U);
        EXPECT_EQ(itsRows->front()->name(), plugin);
        EXPECT_EQ(itsRows->back()->identifier(), "test." + plugin + ".on");
        EXPECT_EQ(itsRows->back()->imageProperty("iconImage") != nullptr, plugin == "First") << "icons of its own only";
    }
    EXPECT_EQ(platform::NSClassFromString("TestPage"), nullptr) << "pages of plug-ins are in no registry";
}

TEST_F(AppViewsPage, GivesThePageOfAPlugInASessionAndKeysOfItsOwn) {
    tweak.setSettings(Dictionary{{"test.Alone.on", true}});
    plugins.add("Alone.bundle", "PagePlugin");
    const auto page = make<PluginsListController>();
    const auto itsPage = opened(page->specifiers()->at(firstRows.size() + 1));
    ASSERT_NE(itsPage, nullptr);
    const auto toggle = itsPage->specifiers()->back();
    EXPECT_EQ(toggle->performGetter(), Value(true));
    toggle->performSetter(false);
    EXPECT_EQ(toggle->performGetter(), Value(false));
    EXPECT_EQ(tweak.waitForChanges(1).front(), Value(Dictionary{{"key", "test.Alone.on"}, {"object", false}}));
}

TEST_F(AppViewsPage, SendsTheSwitchAndThePasscodeAtOnce) {
    const auto page = make<PluginsListController>();
    page->specifiers()->at(1)->performSetter(true);
    EXPECT_EQ(tweak.waitForChanges(1).back(), Value(Dictionary{{"key", "kWidgetsEnabled"}, {"object", true}}));
    page->specifiers()->at(2)->performSetter("24680");
    EXPECT_EQ(tweak.waitForChanges(2).back(),
              Value(Dictionary{{"key", "kAutoUnlockWidgetPasscode"}, {"object", "24680"}}));
}

TEST_F(AppViewsPage, OpensThePagesOfTheSamplesWithIconsOfTheirOwn) {
    platform::setDeviceRoot(LUMORA_TEST_ROOT);
    EXPECT_EQ(lumora::discoverPlugins(false).size(), 4U);
    const auto page = make<PluginsListController>();
    std::vector<std::string> names;
    for (const auto& row : *page->specifiers()) {
        if (row->cellType() != platform::PSLinkCell || row->name() == "Select Plugins") continue;
        names.push_back(row->name());
        const auto itsPage = opened(row);
        ASSERT_NE(itsPage, nullptr);
        std::size_t icons = 0;
        for (const auto& itsRow : *itsPage->specifiers()) {
            if (itsRow->hasProperty("iconImage")) {
                ++icons;
                EXPECT_NE(itsRow->imageProperty("iconImage"), nullptr) << itsRow->name();
            }
            const bool needsNoDefault = itsRow->identifier().empty() || itsRow->cellType() == platform::PSEditTextCell;
            EXPECT_TRUE(needsNoDefault || !itsRow->performGetter().isNil()) << itsRow->identifier();
        }
        EXPECT_EQ(icons, 3U);
    }
    EXPECT_THAT(names, testing::UnorderedElementsAre("Notes", "Weather"));
}

/// A page whose row list is not empty when the rows are asked for.
struct PreparedPage final : lumora::SettingsPage {
    PreparedPage() : SettingsPage(session()) {
        _specifiers = std::make_shared<const Rows>(Rows{platform::PSSpecifier::preferenceSpecifierNamed(
            "Ahead", this, nullptr, nullptr, {}, platform::PSGroupCell, false)});
    }
    static lumora::SettingsSession& session() {
        static auto& session = *new lumora::SettingsSession;
        return session;
    }
    Rows rows(lumora::PreferenceHelper& make) override { return {make.header("Own")}; }
};

TEST_F(AppViewsPage, LikeEveryPageHasRowsThatWereThereBeforeStandAhead) {
    const auto page = make<PreparedPage>();
    for (int request = 0; request < 2; ++request) {
        const auto rows = page->specifiers();
        ASSERT_EQ(rows->size(), 2U);
        EXPECT_EQ(rows->front()->name(), "Ahead");
        EXPECT_EQ(rows->back()->name(), "Own");
    }
}

} // namespace

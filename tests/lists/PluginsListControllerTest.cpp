#include "lists/PluginsListController.h"

#include "platform/foundation/NSBundle.h"
#include "tests/lists/PluginFolder.h"
#include "tests/pages/ExpectedRows.h"
#include "tests/pages/OpenPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using lumora::PluginsListController;
using platform::Dictionary;
using platform::make;
using platform::PSListController;
using platform::Value;
using tests::RecordingTweak;
namespace fs = std::filesystem;

const tests::ExpectedRows firstRows{
    tests::group("",
                 "If your device has a passcode, insert here to use secure App Views. See footer note for more info."),
    tests::toggle("Enable App Views", "kWidgetsEnabled"),
    tests::secret("Passcode", "kAutoUnlockWidgetPasscode"),
    tests::group("App Views"),
    tests::page("Select Plugins", "PluginsListViewController"),
};

const tests::ExpectedRows lastRows{
    tests::group("", "Tap and hold onto an App View's associated application to reveal the App View"),
    tests::group(""),
    tests::group("", "What is a secure App View and why does Lumora require my passcode to use it?"),
    tests::group("",
                 R"(If your device is locked with a passcode, the lockscreen requires the passcode before it will )"
                 R"(allow Lumora to render "secure" or "private" views (SMS, Mail, Facebook, Twitter) on the Lock )"
                 R"(Screen. If your device does not have a passcode you can leave the passcode field above empty.)"),
};

tests::ExpectedRows withBetween(const tests::ExpectedRows& between) {
    tests::ExpectedRows rows = firstRows;
    rows.insert(rows.end(), between.begin(), between.end());
    rows.insert(rows.end(), lastRows.begin(), lastRows.end());
    return rows;
}

struct AppViewsPage : testing::Test {
    RecordingTweak& tweak = RecordingTweak::shared();
    tests::PluginFolder plugins;

    void SetUp() override { tests::giveSettings<PluginsListController>(Dictionary{}); }

    /// Makes the page that a link row of the page opens.
    static std::shared_ptr<PSListController> opened(const platform::PSSpecifierRef& row) {
        const platform::Class pageClass = row->detail().resolve();
        return pageClass ? std::dynamic_pointer_cast<PSListController>(pageClass->make()) : nullptr;
    }
};

TEST_F(AppViewsPage, HasNineRowsWithoutPlugIns) {
    const auto page = make<PluginsListController>();
    ASSERT_NE(page, nullptr);
    tests::expectRows(*page, withBetween({}));
    EXPECT_EQ(page->specifiers(), page->specifiers());
}

TEST_F(AppViewsPage, ShowsAGroupWithOneLinkForTheOnePlugInWithAPage) {
    plugins.add("Radio.bundle", "PagePlugin");
    plugins.addEach({"pageless-1", "no-name-1"});
    const auto page = make<PluginsListController>();
    tests::expectRows(*page, withBetween({tests::group("Settings"), tests::page("Radio", "TestPage")}));
    EXPECT_EQ(PluginsListController::getPluginsWithSettings().size(), 1U);
}

TEST_F(AppViewsPage, KeepsItsRowsWhenAPlugInComesLater) {
    const auto page = make<PluginsListController>();
    tests::expectRows(*page, withBetween({}));
    plugins.add("Later.bundle", "PagePlugin");
    tests::expectRows(*page, withBetween({}));
    tests::expectRows(*make<PluginsListController>(),
                      withBetween({tests::group("Settings"), tests::page("Later", "TestPage")}));
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
    tests::giveSettings<PluginsListController>(Dictionary{{"test.Alone.on", true}});
    plugins.add("Alone.bundle", "PagePlugin");
    const auto page = make<PluginsListController>();
    const auto itsPage = opened(page->specifiers()->at(firstRows.size() + 1));
    ASSERT_NE(itsPage, nullptr);
    const auto toggle = itsPage->specifiers()->back();
    EXPECT_EQ(toggle->performGetter(), Value(true));
    toggle->performSetter(false);
    EXPECT_EQ(toggle->performGetter(), Value(false));
    EXPECT_THAT(tweak.changes(), testing::ElementsAre(Value(Dictionary{{"key", "test.Alone.on"}, {"object", false}})));
    EXPECT_EQ(page->getValue(*toggle), Value(true)) << "the dictionary of the page above is another one";
}

TEST_F(AppViewsPage, SendsTheSwitchAndThePasscodeAtOnce) {
    tests::expectSet<PluginsListController>("kWidgetsEnabled", true);
    tests::expectSet<PluginsListController>("kAutoUnlockWidgetPasscode", "24680");
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
    EXPECT_THAT(names, testing::ElementsAre("Notes", "Weather"));
}

TEST_F(AppViewsPage, PutsItsRowsAfterThoseThatWereThereBefore) {
    const auto page = make<PluginsListController>();
    const auto ahead = platform::PSSpecifier::preferenceSpecifierNamed("Ahead", page.get(), nullptr, nullptr, {},
                                                                       platform::PSGroupCell, false);
    tests::setRowList(*page, {ahead});
    tests::ExpectedRows expected = withBetween({});
    expected.insert(expected.begin(), tests::group("Ahead"));
    tests::expectRows(*page, expected);
    EXPECT_EQ(page->specifiers()->front(), ahead);
    EXPECT_EQ(page->specifiers(), page->specifiers());
}

} // namespace

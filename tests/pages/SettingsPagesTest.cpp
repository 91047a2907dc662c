#include "pages/AppsController.h"
#include "pages/AutoUnlockController.h"
#include "pages/LSDateViewSettings.h"
#include "pages/LSPasscodeSettings.h"
#include "pages/LSSettingsController.h"
#include "pages/LumoraPreferences.h"

#include "tests/pages/ExpectedRows.h"
#include "tests/pages/OpenPage.h"
#include "tweak/Defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Each page as its users know it, written down a second time, and what its rows do.
namespace {

using lumora::AppsController;
using lumora::AutoUnlockController;
using lumora::LSDateViewSettings;
using lumora::LSPasscodeSettings;
using lumora::LSSettingsController;
using lumora::LumoraPreferences;
using platform::Dictionary;
using platform::Value;
using namespace tests;

struct SettingsPages : testing::Test {
    RecordingTweak& tweak = RecordingTweak::shared();
};

// Lockscreen Apps

TEST_F(SettingsPages, LockscreenAppsHasItsRowsInOrder) {
    const auto apps = openPage<AppsController>();
    expectRows(
        *apps,
        {
            group("Lockscreen Apps"),
            page("Apps", "AppsListController"),
            page("Auto-Unlock", "AutoUnlockController"),
            group("Options"),
            options("Apps Per Row", "kAppsPerRow", {"1", "2", "3", "4", "5"}, {1, 2, 3, 4, 5}),
            options("Apps Per Row In Landscape", "kAppsPerRowLandscape", {"1", "2", "3", "4", "5", "6", "7"},
                    {1, 2, 3, 4, 5, 6, 7}),
            toggle("Badges", "kAppBadgesEnabled"),
            toggle("Labels", "kAppLabelsEnabled"),
            toggle("Round Icons", "kAppRoundedEnabled"),
            group(""),
            text("Opacity (1.0)"),
            slider("kAppIconOpacity", 0, 1),
            text("Size (70)"),
            slider("kAppIconSize", 50, 90),
            group(""),
            toggle("Blur Icon View Background", "kIconViewBlurEnabled"),
            toggle("Open Apps With Long Hold", "kSwitchTapAndLongHold"),
            toggle("Long Hold For Plugin Apps Only", "kLongHoldForPluginApps"),
            toggle("Always Return To Lock Screen", "kAlwaysReturnToLSEnabled"),
            group(
                "",
                R"(Enable "Open App With Long Hold" to open the app with a long hold and open app view plugins with a tap.)"),
            group(
                "",
                R"(Enable "Long Hold For Plugin Apps Only" to open apps with associated plugins with a long hold and all other apps with a tap.)"),
            group(
                "",
                R"(Enable "Always Return To Lock Screen" to always return to the lockscreen when the home button is clicked after opening an app from Lumora, even when the device does not have a passcode.)"),
        });
}

// Lock Screen Settings

TEST_F(SettingsPages, LockScreenSettingsHasItsRowsInOrder) {
    const auto lockScreen = openPage<LSSettingsController>();
    expectRows(*lockScreen, {
                                group("Hide Lock Screen View Items", "On = Hidden"),
                                toggle("Status Bar", "kLSStatusBarHidden"),
                                toggle("Top/Bottom Grabbers", "kGrabbersDisabled"),
                                toggle("Camera Grabber", "kCameraGrabberDisabled"),
                                toggle("Date View", "kDateViewDisabled"),
                                toggle("Date Subtitle", "kLSDateSubtitleHidden"),
                                toggle("Slide To Unlock", "kSlideToUnlockDisabled"),
                                group("", "Keeps the battery visible when the status bar is hidden"),
                                toggle("Always Show Battery", "kAlwaysShowBattery"),
                                group("Settings"),
                                page("Passcode View", "LSPasscodeSettings"),
                                page("Date View", "LSDateViewSettings"),
                                group(""),
                                field("Date Subtitle Text", "kLSDateSubtitle"),
                                field("Slide To Unlock Text", "kSlideToUnlockText"),
                            });
}

TEST_F(SettingsPages, OpeningAPageBelowFetchesTheSettingsAnew) {
    const auto lockScreen = openPage<LSSettingsController>();
    const struct {
        const char* title;
        const char* key;
        double value;
    } below[] = {{"Passcode View", "kLSPBlurOpacity", 0.25}, {"Date View", "kLSDateOffset", 4.0}};
    for (const auto& [title, key, value] : below) {
        tweak.setSettings(Dictionary{{key, value}}); // since the page above was opened, the tweak has got these
        const auto rows = lockScreen->specifiers();
        const auto link = std::find_if(rows->begin(), rows->end(), [&, wanted = std::string(title)](const auto& row) {
            return row->cellType() == platform::PSLinkCell && row->name() == wanted;
        });
        ASSERT_NE(link, rows->end());
        const auto page = std::dynamic_pointer_cast<platform::PSListController>((*link)->detail().resolve()->make());
        ASSERT_NE(page, nullptr);
        tweak.waitUntilIdle();
        EXPECT_EQ(rowOf(*page, key)->performGetter(), Value(value)) << title;
    }
}

// Auto-Unlock

TEST_F(SettingsPages, AutoUnlockHasItsRowsInOrder) {
    const auto unlock = openPage<AutoUnlockController>();
    expectRows(*unlock,
               {
                   group("Auto-Unlock", "Enable and enter your passcode to temporarily unlock the device when opening "
                                        "apps from Lumora. Device will relock if the home button is pressed."),
                   toggle("Enable Auto-Unlock", "kAutoUnlockEnabled"),
                   secret("Passcode", "kAutoUnlockPasscode"),
                   group("", "Enable to fully unlock your device when opening apps from Lumora. Please confirm your "
                             "passcode to enable this feature."),
                   toggle("Fully Unlock Device", "kFullAutoUnlockEnabled"),
                   secret("Passcode", "kAutoUnlockPasscodeConfirm"),
                   group("", "Swipe notifications to temporarily unlock the LockScreen. Auto-Unlock must be enabled "
                             "and passcode must be entered above for this feature to work."),
                   toggle("Auto Unlock Notifications", "kAutoUnlockNotifications"),
                   group("", "Enable to run the notification auto unlock on the main thread. This will cause a slight "
                             "delay in the notification unlock, but is more stable. If you are not experiencing any "
                             "issues with notification auto unlock, you can leave this disabled."),
                   toggle("Unlock on Main Thread", "kAUNotificationsOnMainThread"),
                   group("", "If you don't want all your apps in lumora to auto-unlock, specify them here."),
                   page("Auto-Unlock Apps", "AUAppsListController"),
               });
}

// Passcode View

TEST_F(SettingsPages, PasscodeViewHasItsRowsInOrder) {
    const auto passcode = openPage<LSPasscodeSettings>();
    expectRows(*passcode, {
                              group("Hide Items", "On = Hidden"),
                              toggle("Passcode Blur", "kLSPasscodeBlurHidden"),
                              toggle("Emergency & Cancel", "kLSPasscodeButtonsHidden"),
                              toggle("Status Title", "kLSPasscodeTitleHidden"),
                              group("Settings"),
                              toggle("Custom Blur Color", "kLSBlurColorEnabled"),
                              page("Blur Color", "ColorPickerController"),
                              toggle("Blur Cutoff", "kLSBlurCutoffEnabled"),
                              text("Blur Opacity (1)"),
                              slider("kLSPBlurOpacity", 0, 1),
                              text("Tint Opacity (1)"),
                              slider("kLSPTintOpacity", 0, 1),
                              group(""),
                              toggle("Enable Blur For Icon View", "kIconViewBlurEnabled"),
                              group(""),
                              text("Button Diameter Offset (0)"),
                              slider("kLSPButtonDiam", -15, 15),
                              text("Button Horizontal Spacing (1.0)"),
                              slider("kLSPButtonSpacingH", 0, 3),
                              text("Button Vertical Spacing (1.0)"),
                              slider("kLSPButtonSpacingV", 0, 3),
                          });
}

TEST_F(SettingsPages, TheColourLinkStaysWhetherTheCustomColourIsOnOrOff) {
    for (const bool on : {false, true}) {
        const auto passcode = openPage<LSPasscodeSettings>({{"kLSBlurColorEnabled", on}});
        const auto link = passcode->specifiers()->at(6);
        EXPECT_EQ(link->cellType(), platform::PSLinkCell);
        EXPECT_EQ(link->detail().name(), "ColorPickerController");
    }
}

// Date View

TEST_F(SettingsPages, DateViewHasItsRowsInOrder) {
    const auto dateView = openPage<LSDateViewSettings>();
    expectRows(*dateView, {
                              group("Hide Items", "On = Hidden"),
                              toggle("Date View", "kDateViewDisabled"),
                              toggle("Date Subtitle", "kLSDateSubtitleHidden"),
                              group("Settings"),
                              page("Date View Font", "FontViewController"),
                              text("Time Font Size (87.5)"),
                              slider("kLSDateFontSize", 10, 150),
                              text("Date Subtitle Font Size (18)"),
                              slider("kLSDateSubtitleFontSize", 5, 50),
                              text("Date View Offset (0)"),
                              slider("kLSDateOffset", -10, 50),
                              group(""),
                              field("Date Subtitle Text", "kLSDateSubtitle"),
                          });
}

// All of them

TEST_F(SettingsPages, StoreAndSendWhatTheirRowsAreSetTo) {
    expectSet<LumoraPreferences>("kSleepTime", 3600); // "Never"
    expectSet<LumoraPreferences>("kTweakEnabled", true);
    expectSet<AppsController>("kAppsPerRowLandscape", 7);
    expectSet<LSSettingsController>("kDateViewDisabled", true); // on is hidden
    expectSet<LSSettingsController>("kSlideToUnlockText", "go on, then");
    expectSet<LSSettingsController>("kSlideToUnlockText", "", {{"kSlideToUnlockText", "before"}});
    expectSet<AutoUnlockController>("kAutoUnlockPasscode", "1234");
    expectSet<AutoUnlockController>("kAutoUnlockPasscodeConfirm", "4321", {{"kAutoUnlockPasscode", "1234"}});
    expectSet<AutoUnlockController>("kFullAutoUnlockEnabled", true, {{"kAutoUnlockPasscode", "1234"}}); // unconfirmed
}

template<class Page>
struct EveryPageOfRows : testing::Test {};
using PagesOfRows = testing::Types<LumoraPreferences, AppsController, AutoUnlockController, LSDateViewSettings,
                                   LSPasscodeSettings, LSSettingsController>;
TYPED_TEST_SUITE(EveryPageOfRows, PagesOfRows);

TYPED_TEST(EveryPageOfRows, IsFoundByItsClassName) {
    const std::string name = testing::internal::GetTypeName<TypeParam>();
    const auto found = platform::NSClassFromString(name.substr(name.rfind(':') + 1));
    ASSERT_NE(found, nullptr) << name;
    EXPECT_EQ(found->name, name.substr(name.rfind(':') + 1));
}

TYPED_TEST(EveryPageOfRows, GivesTheVeryRowListASecondTime) {
    const auto opened = openPage<TypeParam>();
    EXPECT_EQ(opened->specifiers(), opened->specifiers());
}

TYPED_TEST(EveryPageOfRows, LeavesARowListThatIsAlreadySetAsItIs) {
    const auto opened = openPage<TypeParam>();
    setRowList(*opened, {});
    ASSERT_NE(opened->specifiers(), nullptr);
    EXPECT_TRUE(opened->specifiers()->empty());
}

TYPED_TEST(EveryPageOfRows, SetsNoTitleOfItsOwn) {
    const auto opened = openPage<TypeParam>();
    opened->setTitle("the opening row's");
    EXPECT_EQ(opened->title(), "the opening row's");
    EXPECT_EQ(opened->navigationTitle(), "the opening row's");
}

TYPED_TEST(EveryPageOfRows, ReadsEveryAbsentKeyAsNilAndSendsNothing) {
    const auto opened = openPage<TypeParam>();
    for (const auto& row : *opened->specifiers())
        EXPECT_TRUE(row->performGetter().isNil()) << row->identifier();
    EXPECT_THAT(RecordingTweak::shared().changes(), testing::IsEmpty());
}

TYPED_TEST(EveryPageOfRows, BoundsEachNumberAsTheTweakDoes) {
    const auto opened = openPage<TypeParam>();
    for (const auto& row : *opened->specifiers()) {
        Value least = row->property("min");
        Value most = row->property("max");
        if (!row->values().empty()) least = row->values().front(), most = row->values().back();
        if (least.isNil()) continue;
        const lumora::Setting* setting = lumora::findSetting(row->identifier());
        ASSERT_TRUE(setting && setting->bounds) << row->identifier();
        EXPECT_EQ(least.doubleValue(), setting->bounds->least) << row->identifier();
        EXPECT_EQ(most.doubleValue(), setting->bounds->most) << row->identifier();
    }
}

} // namespace

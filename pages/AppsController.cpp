#include "pages/AppsController.h"

#include "link/PreferenceKeys.h"

namespace lumora {

PLATFORM_CLASS(AppsController)

AppsController::AppsController() : SettingsPage(sessionOf<AppsController>()) {
}

SettingsPage::Rows AppsController::rows(PreferenceHelper& make) {
    return {
        make.header("Lockscreen Apps"),
        make.link("Apps", "AppsListController"),
        make.link("Auto-Unlock", "AutoUnlockController"),

        make.header("Options"),
        make.link("Apps Per Row", kAppsPerRow, {"1", "2", "3", "4", "5"}, {1, 2, 3, 4, 5}),
        make.link("Apps Per Row In Landscape", kAppsPerRowLandscape, {"1", "2", "3", "4", "5", "6", "7"},
                  {1, 2, 3, 4, 5, 6, 7}),
        make.toggle("Badges", kAppBadgesEnabled),
        make.toggle("Labels", kAppLabelsEnabled),
        make.toggle("Round Icons", kAppRoundedEnabled),

        make.spacer(),
        make.static_("Opacity (1.0)"), // the numbers in such labels are plain text: the tweak's own defaults
        make.slider(kAppIconOpacity, 0.0F, 1.0F),
        make.static_("Size (70)"),
        make.slider(kAppIconSize, 50.0F, 90.0F),

        make.spacer(),
        make.toggle("Blur Icon View Background", kIconViewBlurEnabled),
        make.toggle("Open Apps With Long Hold", kSwitchTapAndLongHold),
        make.toggle("Long Hold For Plugin Apps Only", kLongHoldForPluginApps),
        make.toggle("Always Return To Lock Screen", kAlwaysReturnToLSEnabled),

        // Kept on purpose: the explanations stand together at the end, and the first says "App" where its switch says
        // "Apps".
        make.footer(
            "Enable \"Open App With Long Hold\" to open the app with a long hold and open app view plugins with a "
            "tap."),
        make.footer(
            "Enable \"Long Hold For Plugin Apps Only\" to open apps with associated plugins with a long hold and "
            "all other apps with a tap."),
        make.footer(
            "Enable \"Always Return To Lock Screen\" to always return to the lockscreen when the home button is "
            "clicked after opening an app from Lumora, even when the device does not have a passcode."),
    };
}

} // namespace lumora

#include "pages/AutoUnlockController.h"

#include "link/PreferenceKeys.h"

namespace lumora {

PLATFORM_CLASS(AutoUnlockController)

AutoUnlockController::AutoUnlockController() : SettingsPage(sessionOf<AutoUnlockController>()) {
}

SettingsPage::Rows AutoUnlockController::rows(PreferenceHelper& make) {
    return {
        make.header("Auto-Unlock",
                    "Enable and enter your passcode to temporarily unlock the device when opening apps from "
                    "Lumora. Device will relock if the home button is pressed."),
        make.toggle("Enable Auto-Unlock", kAutoUnlockEnabled),
        make.field("Passcode", kAutoUnlockPasscode, true),

        make.footer("Enable to fully unlock your device when opening apps from Lumora. Please confirm your passcode to "
                    "enable this feature."),
        make.toggle("Fully Unlock Device", kFullAutoUnlockEnabled),
        make.field("Passcode", kAutoUnlockPasscodeConfirm, true),

        make.footer(
            "Swipe notifications to temporarily unlock the LockScreen. Auto-Unlock must be enabled and passcode "
            "must be entered above for this feature to work."),
        make.toggle("Auto Unlock Notifications", kAutoUnlockNotifications),

        make.footer(
            "Enable to run the notification auto unlock on the main thread. This will cause a slight delay in the "
            "notification unlock, but is more stable. If you are not experiencing any issues with notification "
            "auto unlock, you can leave this disabled."),
        make.toggle("Unlock on Main Thread", kAUNotificationsOnMainThread),

        make.footer("If you don't want all your apps in lumora to auto-unlock, specify them here."),
        make.link("Auto-Unlock Apps", "AUAppsListController"),
    };
}

} // namespace lumora

#include "pages/LSSettingsController.h"

#include "link/PreferenceKeys.h"

namespace lumora {

PLATFORM_CLASS(LSSettingsController)

LSSettingsController::LSSettingsController() : SettingsPage(sessionOf<LSSettingsController>()) {
}

SettingsPage::Rows LSSettingsController::rows(PreferenceHelper& make) {
    return {
        make.header("Hide Lock Screen View Items", "On = Hidden"),
        make.toggle("Status Bar", kLSStatusBarHidden),
        make.toggle("Top/Bottom Grabbers", kGrabbersDisabled),
        make.toggle("Camera Grabber", kCameraGrabberDisabled),
        make.toggle("Date View", kDateViewDisabled),
        make.toggle("Date Subtitle", kLSDateSubtitleHidden),
        make.toggle("Slide To Unlock", kSlideToUnlockDisabled),

        make.footer("Keeps the battery visible when the status bar is hidden"),
        make.toggle("Always Show Battery", kAlwaysShowBattery),

        make.header("Settings"),
        make.link("Passcode View", "LSPasscodeSettings"),
        make.link("Date View", "LSDateViewSettings"),

        make.spacer(),
        make.field("Date Subtitle Text", kLSDateSubtitle),
        make.field("Slide To Unlock Text", kSlideToUnlockText),
    };
}

} // namespace lumora

#include "pages/LSPasscodeSettings.h"

#include "link/PreferenceKeys.h"

namespace lumora {

PLATFORM_CLASS(LSPasscodeSettings)

LSPasscodeSettings::LSPasscodeSettings() : SettingsPage(sessionOf<LSPasscodeSettings>()) {
}

SettingsPage::Rows LSPasscodeSettings::rows(PreferenceHelper& make) {
    return {
        make.header("Hide Items", "On = Hidden"),
        make.toggle("Passcode Blur", kLSPasscodeBlurHidden),
        make.toggle("Emergency & Cancel", kLSPasscodeButtonsHidden),
        make.toggle("Status Title", kLSPasscodeTitleHidden),

        make.header("Settings"),
        make.toggle("Custom Blur Color", kLSBlurColorEnabled),
        make.link("Blur Color", "ColorPickerController"),
        make.toggle("Blur Cutoff", kLSBlurCutoffEnabled),
        make.static_("Blur Opacity (1)"),
        make.slider(kLSPBlurOpacity, 0.0F, 1.0F),
        make.static_("Tint Opacity (1)"),
        make.slider(kLSPTintOpacity, 0.0F, 1.0F),

        make.spacer(),
        make.toggle("Enable Blur For Icon View", kIconViewBlurEnabled),

        make.spacer(),
        make.static_("Button Diameter Offset (0)"),
        make.slider(kLSPButtonDiam, -15.0F, 15.0F),
        make.static_("Button Horizontal Spacing (1.0)"),
        make.slider(kLSPButtonSpacingH, 0.0F, 3.0F),
        make.static_("Button Vertical Spacing (1.0)"),
        make.slider(kLSPButtonSpacingV, 0.0F, 3.0F),
    };
}

} // namespace lumora

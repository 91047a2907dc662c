#include "pages/LSDateViewSettings.h"

#include "link/PreferenceKeys.h"

namespace lumora {

PLATFORM_CLASS(LSDateViewSettings)

LSDateViewSettings::LSDateViewSettings() : SettingsPage(sessionOf<LSDateViewSettings>()) {
}

SettingsPage::Rows LSDateViewSettings::rows(PreferenceHelper& make) {
    return {
        make.header("Hide Items", "On = Hidden"),
        make.toggle("Date View", kDateViewDisabled),
        make.toggle("Date Subtitle", kLSDateSubtitleHidden),

        make.header("Settings"),
        make.link("Date View Font", "FontViewController"),
        make.static_("Time Font Size (87.5)"),
        make.slider(kLSDateFontSize, 10.0F, 150.0F),
        make.static_("Date Subtitle Font Size (18)"),
        make.slider(kLSDateSubtitleFontSize, 5.0F, 50.0F),
        make.static_("Date View Offset (0)"),
        make.slider(kLSDateOffset, -10.0F, 50.0F), // lopsided on purpose

        make.spacer(),
        make.field("Date Subtitle Text", kLSDateSubtitle),
    };
}

} // namespace lumora

#include "pages/LumoraPreferences.h"

#include "link/PreferenceKeys.h"
#include "platform/foundation/NSLog.h"

namespace lumora {

using platform::selector;
using PreferenceHelperAdditions::addIcon;

PLATFORM_CLASS(LumoraPreferences)

LumoraPreferences::LumoraPreferences() : SettingsPage(sessionOf<LumoraPreferences>()) {
}

SettingsPage::Rows LumoraPreferences::rows(PreferenceHelper& make) {
    return {
        make.header("General"),
        make.toggle("Enable Lumora", kTweakEnabled),
        make.link("Apps", "AppsController"),

        make.header("Lock Sleep Timer"),
        make.link("Sleep After", kSleepTime,
                  {"5 Seconds", "10 Seconds", "15 Seconds", "20 Seconds", "30 Seconds", "60 Seconds", "Never"},
                  {5, 10, 15, 20, 30, 60, 3600}), // kept on purpose: the tweak is given an hour for "Never"
        make.toggle("Disable For AppViews", kSleepDisabledForAppViews),

        make.header("Options"),
        make.link("App Views", "PluginsListController"),
        make.link("Lock Screen Settings", "LSSettingsController"),
        make.toggle("Hide Notifications On Tap", kNotificationsHideOnTap),

        make.header("Changes"),
        make.link("Change Log", "ChangeLogController"),

        make.header("Contact", "Questions, ideas and problem reports are welcome."),
        addIcon(make.button("@nevo_lumora", selector(&LumoraPreferences::openTwitter)), "twitter"),
        addIcon(make.button("support@nevo.example", selector(&LumoraPreferences::openEmail)), "mail"),
    };
}

void LumoraPreferences::viewWillAppear(bool animated) {
    SettingsPage::viewWillAppear(animated);
    platform::NSLog(platform::description(session().settings()));
}

// The two contact actions have nothing to call yet: the platform layer offers neither opening an address nor a mail
// composer. Until it does, a tap on either button does nothing.
void LumoraPreferences::openTwitter(platform::PSSpecifier& /*sender*/) {
}

void LumoraPreferences::openEmail(platform::PSSpecifier& /*sender*/) {
}

} // namespace lumora

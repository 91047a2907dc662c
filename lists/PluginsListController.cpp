#include "lists/PluginsListController.h"

#include "link/PreferenceKeys.h"

namespace lumora {

PLATFORM_CLASS(PluginsListController)

PluginsListController::PluginsListController() : SettingsPage(sessionOf<PluginsListController>()) {
}

platform::PSSpecifierList PluginsListController::specifiers() {
    return hasBuiltRows() ? _specifiers : buildRows();
}

std::vector<Plugin> PluginsListController::getPluginsWithSettings() {
    return discoverPlugins(true);
}

SettingsPage::Rows PluginsListController::rows(PreferenceHelper& make) {
    Rows rows{
        make.footer("If your device has a passcode, insert here to use secure App Views. See footer note for more "
                    "info."),
        make.toggle("Enable App Views", kWidgetsEnabled),
        make.field("Passcode", kAutoUnlockWidgetPasscode, true),
        make.header("App Views"),
        make.link("Select Plugins", "PluginsListViewController"),
    };

    const std::vector<Plugin> plugins = getPluginsWithSettings();
    if (!plugins.empty()) rows.push_back(make.header("Settings"));
    for (const Plugin& plugin : plugins) {
        const auto page = plugin.settingsController();
        rows.push_back(make.link(plugin.name().value_or(""), page ? page.value() : platform::PSDetail()));
    }

    const Rows notes{
        make.footer("Tap and hold onto an App View's associated application to reveal the App View"),
        make.spacer(),
        make.footer("What is a secure App View and why does Lumora require my passcode to use it?"),
        make.footer("If your device is locked with a passcode, the lockscreen requires the passcode before it will "
                    "allow Lumora to render \"secure\" or \"private\" views (SMS, Mail, Facebook, Twitter) on the Lock "
                    "Screen. If your device does not have a passcode you can leave the passcode field above empty."),
    };
    rows.insert(rows.end(), notes.begin(), notes.end());
    return rows;
}

} // namespace lumora

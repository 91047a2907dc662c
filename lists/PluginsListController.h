#pragma once

#include "lists/PluginDiscovery.h"
#include "pages/base/SettingsPage.h"

#include <vector>

namespace lumora {

/// The App Views page: switches App Views on, takes the passcode that secure ones need, and leads to the order of the
/// plug-ins and to the settings page of every plug-in that has one.
class PluginsListController final : public SettingsPage {
  public:
    PluginsListController();

    /// Builds the row list on the first request. Kept on purpose: rows that it holds by then come before the page's own.
    platform::PSSpecifierList specifiers() override;

    /// The plug-ins that have a settings page; looks into the plug-in folder anew at each call.
    [[nodiscard]] static std::vector<Plugin> getPluginsWithSettings();

  protected:
    Rows rows(PreferenceHelper& make) override;
};

} // namespace lumora

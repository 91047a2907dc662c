#pragma once

#include "lists/PluginDiscovery.h"
#include "pages/SettingsPage.h"

#include <vector>

namespace lumora {

/// The App Views page: switches App Views on, keeps the passcode that secure ones need, leads to the plug-in order list
/// and to the settings page of every plug-in that has one.
class PluginsListController final : public SettingsPage {
  public:
    PluginsListController();

    /// Looks into the plug-in folder anew at each call.
    [[nodiscard]] static std::vector<Plugin> getPluginsWithSettings();

  protected:
    Rows rows(PreferenceHelper& make) override;
};

} // namespace lumora

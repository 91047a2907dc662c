#pragma once

#include "lists/PluginDiscovery.h"
#include "pages/base/SettingsPage.h"

#include <vector>

namespace lumora {

/// The App Views page: switches App Views on, keeps the passcode that secure ones need, leads to the plug-in order list
/// and to the settings page of every plug-in that has one.
class PluginsListController final : public SettingsPage {
  public:
    PluginsListController();

    /// Built on the first request. Kept on purpose: rows that are in the row list by then come before the page's own.
    platform::PSSpecifierList specifiers() override;

    /// Looks into the plug-in folder anew at each call.
    [[nodiscard]] static std::vector<Plugin> getPluginsWithSettings();

  protected:
    Rows rows(PreferenceHelper& make) override;
};

} // namespace lumora

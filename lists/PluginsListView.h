#pragma once

#include "lists/PluginDiscovery.h"
#include "lists/SelectionListView.h"

namespace lumora {

/// The content of the "Plugins" page: the installed App View plug-ins, those that are enabled in the user's order. Main
/// thread.
class PluginsListView final : public SelectionListView {
  public:
    PluginsListView();

    /// Every plug-in that is installed and can be used, with a settings page or without.
    [[nodiscard]] static std::vector<Plugin> getPlugins();

  protected:
    Selection setupArrays() override;
    const Titles& titles() const override { return plugins_; }
    std::string footer() const override;
    const char* savedKey() const override;
    const std::vector<std::string>& savedList() const override { return enabled(); }

  private:
    Titles plugins_; ///< of two plug-ins with one identifier, the later one's name
};

} // namespace lumora

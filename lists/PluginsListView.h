#pragma once

#include "lists/PluginDiscovery.h"
#include "lists/SelectionListView.h"

namespace lumora {

/// The content of the "Plugins" page: the installed App View plug-ins, the enabled ones in the user's order. Main
/// thread.
class PluginsListView final : public SelectionListView {
  public:
    PluginsListView();

    /// Every plug-in that can be used; looks into the plug-in folder anew at each call.
    [[nodiscard]] static std::vector<Plugin> getPlugins();

  protected:
    Selection setupArrays() override;
    const Titles& titles() const override { return plugins_; }
    std::string footer() const override;

  private:
    Titles plugins_; ///< of two plug-ins with one identifier, the later one's name
};

} // namespace lumora

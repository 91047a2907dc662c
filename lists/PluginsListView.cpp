#include "lists/PluginsListView.h"

#include "link/PreferenceKeys.h"
#include "lists/PluginDiscovery.h"

namespace lumora {

PluginsListView::PluginsListView() : SelectionListView(sessionOf<PluginsListView>()) {
}

Selection PluginsListView::setupArrays() {
    plugins_.clear();
    for (const auto& plugin : getPlugins())
        plugins_[plugin.identifier()] = plugin.name();
    Selection lists;
    lists.enabled = saved(kAppViewsEnabled);
    lists.disabled = without(sortedByTitle(plugins_), lists.enabled);
    return lists;
}

std::string PluginsListView::footer() const {
    return "Tap and hold onto an App View's associated application to reveal the App View.";
}

const char* PluginsListView::savedKey() const {
    return kAppViewsEnabled;
}

} // namespace lumora

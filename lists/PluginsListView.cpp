#include "lists/PluginsListView.h"

#include "link/PreferenceKeys.h"

namespace lumora {

PluginsListView::PluginsListView() : SelectionListView(sessionOf<PluginsListView>(), kAppViewsEnabled) {
}

std::vector<Plugin> PluginsListView::getPlugins() {
    return discoverPlugins(false);
}

Selection PluginsListView::setupArrays() {
    plugins_.clear();
    for (const Plugin& plugin : getPlugins())
        plugins_[plugin.identifier().value_or("")] = plugin.name().value_or("");
    Selection lists;
    lists.enabled = saved(kAppViewsEnabled);
    lists.disabled = restSortedByTitle(plugins_, lists.enabled);
    return lists;
}

std::string PluginsListView::footer() const {
    return "Tap and hold onto an App View's associated application to reveal the App View.";
}

} // namespace lumora

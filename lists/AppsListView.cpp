#include "lists/AppsListView.h"

#include "link/PreferenceKeys.h"

namespace lumora {

AppsListView::AppsListView() : ApplicationsListView(sessionOf<AppsListView>(), kAppsEnabled) {
}

Selection AppsListView::setupArrays() {
    Selection lists;
    lists.enabled = saved(kAppsEnabled);
    std::vector<std::string> others = hiddenDisplayIdentifiers();
    others.insert(others.end(), lists.enabled.begin(), lists.enabled.end());
    lists.disabled = restSortedByTitle(titles(), others);
    return lists;
}

} // namespace lumora

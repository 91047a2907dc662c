#include "lists/AppsListView.h"

#include "link/PreferenceKeys.h"

namespace lumora {

AppsListView::AppsListView() : ApplicationsListView(sessionOf<AppsListView>()) {
}

Selection AppsListView::setupArrays() {
    Selection lists;
    lists.enabled = saved(kAppsEnabled);
    lists.disabled = restSortedByTitle(titles(), {hiddenDisplayIdentifiers(), lists.enabled});
    return lists;
}

const char* AppsListView::savedKey() const {
    return kAppsEnabled;
}

} // namespace lumora

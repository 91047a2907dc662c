#include "lists/AUAppsListView.h"

#include "link/PreferenceKeys.h"

namespace lumora {

AUAppsListView::AUAppsListView() : ApplicationsListView(sessionOf<AUAppsListView>()) {
}

Selection AUAppsListView::setupArrays() {
    Selection lists;
    lists.disabled = sortedByTitle(saved(kAUAppsDisabled), titles()); // the order in which they were saved is not kept
    lists.enabled = without(saved(kAppsEnabled), lists.disabled);
    return lists;
}

const char* AUAppsListView::savedKey() const {
    return kAUAppsDisabled;
}

} // namespace lumora

#include "lists/AUAppsListView.h"

#include "link/PreferenceKeys.h"

#include <string_view>
#include <unordered_set>

namespace lumora {

AUAppsListView::AUAppsListView() : ApplicationsListView(sessionOf<AUAppsListView>(), kAUAppsDisabled) {
}

Selection AUAppsListView::setupArrays() {
    Selection lists;
    lists.disabled = sortedByTitle(saved(kAUAppsDisabled), titles()); // whatever the order in which they were saved
    lists.enabled = saved(kAppsEnabled);
    const std::unordered_set<std::string_view> gone(lists.disabled.begin(), lists.disabled.end());
    std::erase_if(lists.enabled, [&](const std::string& identifier) { return gone.contains(identifier); });
    return lists;
}

} // namespace lumora

#include "lists/AUAppsListController.h"

#include "lists/AUAppsListView.h"

namespace lumora {

PLATFORM_CLASS(AUAppsListController)

std::shared_ptr<platform::UIView> AUAppsListController::makeView(const platform::CGRect& frame) {
    return platform::make<AUAppsListView>(frame);
}

} // namespace lumora

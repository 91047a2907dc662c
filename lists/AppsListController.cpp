#include "lists/AppsListController.h"

#include "lists/AppsListView.h"

namespace lumora {

PLATFORM_CLASS(AppsListController)

std::shared_ptr<platform::UIView> AppsListController::makeView(const platform::CGRect& frame) {
    return platform::make<AppsListView>(frame);
}

} // namespace lumora

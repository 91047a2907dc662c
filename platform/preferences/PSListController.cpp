#include "platform/preferences/PSListController.h"

#include "platform/ui/UIView.h"

#include <utility>

namespace platform {

PSListController::PSListController() : view_(make<UIView>(CGRect{})) {
}

PSListController::~PSListController() = default;

bool PSListController::init() {
    return true;
}

void PSListController::viewWillAppear(bool /*animated*/) {
}

void PSListController::setView(std::shared_ptr<UIView> view) {
    view_ = std::move(view);
    hostsView_ = true;
}

} // namespace platform

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

PSSpecifierList PSListController::specifiers() {
    return _specifiers;
}

void PSListController::viewWillAppear(bool /*animated*/) {
}

std::string PSListController::title() const {
    return title_;
}

std::string PSListController::navigationTitle() const {
    return title_;
}

void PSListController::setTitle(std::string title) {
    title_ = std::move(title);
}

UINavigationItem* PSListController::navigationItem() {
    return &navigationItem_;
}

void PSListController::setView(std::shared_ptr<UIView> view) {
    view_ = std::move(view);
    hostsView_ = true;
}

} // namespace platform

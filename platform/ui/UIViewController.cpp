#include "platform/ui/UIViewController.h"

#include <utility>

namespace platform {

UIViewController::~UIViewController() {
    if (presented_) presented_->presenting_ = nullptr;
}

void UIViewController::presentViewController(std::shared_ptr<UIViewController> controller, bool animated,
                                             const std::function<void()>& completion) {
    if (!controller || presented_ || controller->presenting_) return;
    controller->presenting_ = this;
    presented_ = std::move(controller);
    presentsAnimated_ = animated;
    if (completion) completion();
}

void UIViewController::dismissViewControllerAnimated(bool animated, const std::function<void()>& completion) {
    if (!presented_) {
        if (presenting_) presenting_->dismissViewControllerAnimated(animated, completion);
        return;
    }
    // Kept until the end: it may be the one that asked, with no other owner.
    const std::shared_ptr<UIViewController> dismissed = std::exchange(presented_, nullptr);
    dismissed->presenting_ = nullptr;
    presentsAnimated_ = animated;
    if (completion) completion();
}

} // namespace platform

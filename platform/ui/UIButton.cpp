#include "platform/ui/UIButton.h"

#include "platform/ui/UITouch.h"

#include <algorithm>

namespace platform {

void UIButton::touchesEnded(const UITouches& touches, const UIEvent& /*event*/) {
    const bool inside = std::any_of(touches.begin(), touches.end(), [this](const auto& touch) {
        return CGRectContainsPoint(bounds(), touch->locationInView(*this));
    });
    if (!inside) return;
    for (const Action& action : std::vector<Action>(actions_)) // an action may add another
        if (action.events & UIControlEventTouchUpInside) action.perform(*this);
}

std::vector<UIAccessibilityElement> UIButton::accessibilityElements() const {
    return {{accessibilityLabel(), bounds(), {}}};
}

} // namespace platform

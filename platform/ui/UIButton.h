#pragma once

#include "platform/ui/UIView.h"

#include <functional>
#include <utility>
#include <vector>

namespace platform {

/// What happens to a control; the platform's numbers, added up.
enum UIControlEvents : unsigned { UIControlEventTouchUpInside = 64 };

/// A rectangle to press, which looks like its layer. Main thread.
class PLATFORM_EXPORT UIButton final : public UIView {
  public:
    /// Calls an operation of the target, with the button, when the event happens. The button does not own the target,
    /// which outlives the button or is a view around it.
    template<class Target>
    void addTarget(Target& target, void (Target::*action)(UIButton& sender), unsigned controlEvents) {
        actions_.push_back({controlEvents, [&target, action](UIButton& sender) { (target.*action)(sender); }});
    }

    // Touches stay with the button, instead of going on to the view that it is in.
    void touchesBegan(const UITouches& /*touches*/, const UIEvent& /*event*/) override {}
    void touchesMoved(const UITouches& /*touches*/, const UIEvent& /*event*/) override {}
    /// A touch that ends inside the button has pressed it; one that ends elsewhere has not.
    void touchesEnded(const UITouches& touches, const UIEvent& event) override;
    void touchesCancelled(const UITouches& /*touches*/, const UIEvent& /*event*/) override {}

    [[nodiscard]] std::vector<UIAccessibilityElement> accessibilityElements() const override;

  private:
    struct Action {
        unsigned events;
        std::function<void(UIButton& sender)> perform;
    };
    std::vector<Action> actions_;
};

} // namespace platform

#pragma once

#include "platform/foundation/NSObject.h"

#include <functional>
#include <memory>

namespace platform {

/// Shows a screen, over which it may present another controller until that is dismissed.
///
///     page->presentViewController(composer, true, nullptr);
///     composer->dismissViewControllerAnimated(true, nullptr);
///
/// A controller owns the one that it presents. Main thread.
class PLATFORM_EXPORT UIViewController : public NSObject, public std::enable_shared_from_this<UIViewController> {
  public:
    ~UIViewController() override;

    /// Calls the completion once the other controller is presented. Does nothing while this one presents another, or
    /// when the other one is being presented already.
    void presentViewController(std::shared_ptr<UIViewController> controller, bool animated,
                               const std::function<void()>& completion);
    /// Null for none.
    [[nodiscard]] const std::shared_ptr<UIViewController>& presentedViewController() const { return presented_; }
    /// Whether the last controller was presented with an animation or, once it is dismissed, dismissed with one.
    [[nodiscard]] bool presentsAnimated() const { return presentsAnimated_; }
    /// Ends what this one presents or, when it presents nothing, its own presentation.
    void dismissViewControllerAnimated(bool animated, const std::function<void()>& completion);

  private:
    std::shared_ptr<UIViewController> presented_;
    bool presentsAnimated_ = false;
    UIViewController* presenting_ = nullptr; ///< owns this one, and clears this pointer before it goes
};

} // namespace platform

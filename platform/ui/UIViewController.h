#pragma once

#include "platform/foundation/NSObject.h"

#include <functional>
#include <memory>

namespace platform {

/// What shows a screen, and may present another one over its own until that is dismissed.
///
///     page->presentViewController(composer, true, nullptr);
///     composer->dismissViewControllerAnimated(true, nullptr);
///
/// One that presents another keeps it. Main thread.
class PLATFORM_EXPORT UIViewController : public NSObject, public std::enable_shared_from_this<UIViewController> {
  public:
    ~UIViewController() override;

    /// Does nothing while another one is presented already, or for one that somebody presents. The completion is called
    /// when it is presented.
    void presentViewController(std::shared_ptr<UIViewController> controller, bool animated,
                               const std::function<void()>& completion);
    /// Null when none is.
    [[nodiscard]] const std::shared_ptr<UIViewController>& presentedViewController() const { return presented_; }
    /// Whether what was presented last was to be seen coming, or going once it was dismissed.
    [[nodiscard]] bool presentsAnimated() const { return presentsAnimated_; }
    /// Ends what this one presents or, when it presents nothing, its own presentation.
    void dismissViewControllerAnimated(bool animated, const std::function<void()>& completion);

  private:
    std::shared_ptr<UIViewController> presented_;
    bool presentsAnimated_ = false;
    UIViewController* presenting_ = nullptr; ///< keeps this one, so it is there as long as it is named here
};

} // namespace platform

#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/ui/CGGeometry.h"
#include "platform/ui/UIColor.h"

#include <memory>
#include <vector>

namespace platform {

/// What follows when the parent's size changes; the platform's numbers, added up.
enum UIViewAutoresizing : unsigned {
    UIViewAutoresizingNone = 0,
    UIViewAutoresizingFlexibleLeftMargin = 1,
    UIViewAutoresizingFlexibleWidth = 2,
    UIViewAutoresizingFlexibleRightMargin = 4,
    UIViewAutoresizingFlexibleTopMargin = 8,
    UIViewAutoresizingFlexibleHeight = 16,
    UIViewAutoresizingFlexibleBottomMargin = 32,
};

/// A rectangle on the screen with other views in it. A parent holds its subviews; a subview only refers to its parent.
/// Main thread.
class PLATFORM_EXPORT UIView : public NSObject {
  public:
    UIView() = default;
    ~UIView() override;

    /// Subclasses build themselves completely here. False makes make<T>(frame) give null.
    virtual bool initWithFrame(const CGRect& frame);

    [[nodiscard]] const CGRect& frame() const { return frame_; }
    /// Resizes the subviews by their masks when the size changes.
    void setFrame(const CGRect& frame);
    /// The view's own coordinate space: its size at the origin.
    [[nodiscard]] CGRect bounds() const { return {{0, 0}, frame_.size}; }

    [[nodiscard]] unsigned autoresizingMask() const { return autoresizingMask_; }
    void setAutoresizingMask(unsigned mask) { autoresizingMask_ = mask; }

    [[nodiscard]] const UIColorRef& backgroundColor() const { return backgroundColor_; }
    void setBackgroundColor(UIColorRef color) { backgroundColor_ = std::move(color); }

    [[nodiscard]] bool isHidden() const { return hidden_; }
    void setHidden(bool hidden) { hidden_ = hidden; }

    [[nodiscard]] UIView* superview() const { return superview_; }
    /// Back to front.
    [[nodiscard]] const std::vector<std::shared_ptr<UIView>>& subviews() const { return subviews_; }
    /// Puts the view in front of the others, taking it from its former parent.
    void addSubview(std::shared_ptr<UIView> view);
    void removeFromSuperview();

  private:
    CGRect frame_;
    unsigned autoresizingMask_ = UIViewAutoresizingNone;
    UIColorRef backgroundColor_;
    bool hidden_ = false;
    UIView* superview_ = nullptr;
    std::vector<std::shared_ptr<UIView>> subviews_;
};

} // namespace platform

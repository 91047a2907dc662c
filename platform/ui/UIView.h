#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/ui/CALayer.h"
#include "platform/ui/CGContext.h"
#include "platform/ui/CGGeometry.h"
#include "platform/ui/UIAccessibilityElement.h"
#include "platform/ui/UIColor.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class UITouch;
struct UIEvent;
using UITouches = std::vector<std::shared_ptr<const UITouch>>;

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
///
/// Layout and drawing are put off: a change only notes that they are due, and whoever shows the views lets them lay
/// themselves out and draw before each picture. Main thread.
class PLATFORM_EXPORT UIView : public NSObject {
  public:
    UIView() = default;
    ~UIView() override;

    /// Calls initWithFrame() with an empty frame.
    virtual bool init() { return initWithFrame({}); }
    /// Subclasses build themselves completely here. False makes make<T>(frame) give null.
    virtual bool initWithFrame(const CGRect& frame);

    // -- where it is --

    [[nodiscard]] const CGRect& frame() const { return frame_; }
    /// Resizes the subviews by their masks when the size changes.
    void setFrame(const CGRect& frame);
    /// The view's own coordinate space: its size at the origin.
    [[nodiscard]] CGRect bounds() const { return {{0, 0}, frame_.size}; }
    [[nodiscard]] CGPoint center() const { return center_; }
    /// Moves the view; it keeps its size.
    void setCenter(CGPoint center);

    [[nodiscard]] unsigned autoresizingMask() const { return autoresizingMask_; }
    void setAutoresizingMask(unsigned mask) { autoresizingMask_ = mask; }

    // -- how it looks --

    [[nodiscard]] CALayer& layer() { return layer_; }
    [[nodiscard]] const CALayer& layer() const { return layer_; }
    /// The layer's.
    [[nodiscard]] const UIColorRef& backgroundColor() const { return layer_.backgroundColor; }
    void setBackgroundColor(UIColorRef color) { layer_.backgroundColor = std::move(color); }
    [[nodiscard]] bool clipsToBounds() const { return layer_.masksToBounds; }
    void setClipsToBounds(bool clips) { layer_.masksToBounds = clips; }

    [[nodiscard]] bool isHidden() const { return hidden_; }
    void setHidden(bool hidden) { hidden_ = hidden; }
    /// Null until one is set.
    [[nodiscard]] const UIColorRef& tintColor() const { return tintColor_; }
    virtual void setTintColor(UIColorRef color) { tintColor_ = std::move(color); }

    // -- what is in it --

    [[nodiscard]] UIView* superview() const { return superview_; }
    /// Back to front.
    [[nodiscard]] const std::vector<std::shared_ptr<UIView>>& subviews() const { return subviews_; }
    /// Puts the view in front of the others, taking it from its former parent.
    void addSubview(std::shared_ptr<UIView> view) { attach(std::move(view), nullptr); }
    /// Puts the view directly in front of one that is in this view; in front of all when that one is not.
    void insertSubview(std::shared_ptr<UIView> view, const UIView& aboveSubview) {
        attach(std::move(view), &aboveSubview);
    }
    void removeFromSuperview();
    /// The view is about to enter another parent, or none. By default does nothing.
    virtual void willMoveToSuperview(UIView* /*newSuperview*/) {}

    [[nodiscard]] int tag() const { return tag_; }
    void setTag(int tag) { tag_ = tag; }

    // -- layout and drawing --

    /// Due at first, when the size changes, and when a subview is added.
    void setNeedsLayout() { needsLayout_ = true; }
    /// Places the subviews. By default does nothing; the masks have been followed already.
    virtual void layoutSubviews() {}
    /// Lays out the view and all that is in it, as far as it is due.
    void layoutIfNeeded();

    /// Due at first; a change of size only stretches what was drawn.
    void setNeedsDisplay() { needsDisplay_ = true; }
    /// Draws into UIGraphicsGetCurrentContext(). By default does nothing.
    virtual void drawRect(const CGRect& /*rect*/) {}
    /// Draws the view and all that is in it, as far as it is due and they have any size.
    void displayIfNeeded();
    /// Something in this view looks different by itself, after no event: tells who watches it, or a view around it.
    void contentsChanged() const;
    /// For whoever shows the views; null for nobody.
    void watchContents(std::function<void()> watcher) { watcher_ = std::move(watcher); }
    /// What drawRect() drew last; null for nothing.
    [[nodiscard]] const CGDrawingRef& drawing() const { return drawing_; }

    // -- touches --

    [[nodiscard]] bool isUserInteractionEnabled() const { return userInteractionEnabled_; }
    /// A view that is not enabled is touched through, with all that is in it.
    void setUserInteractionEnabled(bool enabled) { userInteractionEnabled_ = enabled; }

    // By default these go on to the parent.
    virtual void touchesBegan(const UITouches& touches, const UIEvent& event);
    virtual void touchesMoved(const UITouches& touches, const UIEvent& event);
    virtual void touchesEnded(const UITouches& touches, const UIEvent& event);
    virtual void touchesCancelled(const UITouches& touches, const UIEvent& event);

    /// What assistive tools call the view.
    [[nodiscard]] const std::string& accessibilityLabel() const { return accessibilityLabel_; }
    void setAccessibilityLabel(std::string label) { accessibilityLabel_ = std::move(label); }
    /// What the keyboard and assistive tools can reach in the view, its subviews' own elements aside. By default
    /// nothing.
    [[nodiscard]] virtual std::vector<UIAccessibilityElement> accessibilityElements() const { return {}; }

  protected:
    /// Tells views apart: no number comes twice in a process.
    [[nodiscard]] static std::uint64_t newId();

  private:
    void attach(std::shared_ptr<UIView> view, const UIView* above);
    void detach();

    CGRect frame_;
    CGPoint center_; ///< beside the frame, so that it is exactly what it was set to
    unsigned autoresizingMask_ = UIViewAutoresizingNone;
    CALayer layer_;
    UIColorRef tintColor_;
    bool hidden_ = false;
    bool userInteractionEnabled_ = true;
    bool needsLayout_ = true;
    bool needsDisplay_ = true;
    int tag_ = 0;
    CGDrawingRef drawing_;
    std::function<void()> watcher_;
    std::string accessibilityLabel_;
    UIView* superview_ = nullptr;
    std::vector<std::shared_ptr<UIView>> subviews_;
};

/// The frontmost view under a point, which is in the coordinates of `view`; null when the point is outside of it.
/// Hidden views and those that are not enabled for touches are left out. Main thread.
[[nodiscard]] PLATFORM_EXPORT std::shared_ptr<UIView> hitTest(const std::shared_ptr<UIView>& view, CGPoint point);

} // namespace platform

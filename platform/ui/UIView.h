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

/// Which parts of a view's place change with the parent's size; the platform's numbers, added up.
enum UIViewAutoresizing : unsigned {
    UIViewAutoresizingNone = 0,
    UIViewAutoresizingFlexibleLeftMargin = 1,
    UIViewAutoresizingFlexibleWidth = 2,
    UIViewAutoresizingFlexibleRightMargin = 4,
    UIViewAutoresizingFlexibleTopMargin = 8,
    UIViewAutoresizingFlexibleHeight = 16,
    UIViewAutoresizingFlexibleBottomMargin = 32,
};

/// A rectangle on the screen with other views in it, in points. A parent owns its subviews; a subview only refers to
/// its parent.
///
/// Layout and drawing wait: a change only notes that they are due, and the Settings application has them done before
/// each picture. Main thread.
class PLATFORM_EXPORT UIView : public NSObject {
  public:
    UIView() = default;
    ~UIView() override;

    /// Calls initWithFrame() with an empty frame.
    virtual bool init() { return initWithFrame({}); }
    /// Subclasses build themselves completely here. If this returns false, make<T>(frame) gives null.
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
    // The next two are the layer's.
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
    /// Takes the view from its former parent and puts it in front of the others.
    void addSubview(std::shared_ptr<UIView> view) { attach(std::move(view), nullptr); }
    /// The same, but directly in front of `aboveSubview` if that is a subview of this view.
    void insertSubview(std::shared_ptr<UIView> view, const UIView& aboveSubview) {
        attach(std::move(view), &aboveSubview);
    }
    void removeFromSuperview();
    /// The view is about to enter another parent, or null for none.
    virtual void willMoveToSuperview(UIView* /*newSuperview*/) {}

    [[nodiscard]] int tag() const { return tag_; }
    void setTag(int tag) { tag_ = tag; }

    // -- layout and drawing --

    /// Due at first, when the size changes, and when a subview is added.
    void setNeedsLayout() { needsLayout_ = true; }
    /// Places the subviews, which have followed their masks already.
    virtual void layoutSubviews() {}
    /// Lays out the view, and every view in it, where that is due.
    void layoutIfNeeded();

    /// Due at first; a change of size only stretches the drawing.
    void setNeedsDisplay() { needsDisplay_ = true; }
    /// Draws into UIGraphicsGetCurrentContext().
    virtual void drawRect(const CGRect& /*rect*/) {}
    /// Draws the view, and every view in it, where that is due and the size is not empty.
    void displayIfNeeded();
    /// To be called when something in this view has changed its look without an event: calls the watcher of this view,
    /// or of the nearest view around it that has one.
    void contentsChanged() const;
    /// Null for no watcher.
    void watchContents(std::function<void()> watcher) { watcher_ = std::move(watcher); }
    /// What drawRect() drew last; null if it drew nothing.
    [[nodiscard]] const CGDrawingRef& drawing() const { return drawing_; }

    // -- touches --

    [[nodiscard]] bool isUserInteractionEnabled() const { return userInteractionEnabled_; }
    /// Touches go through a view that is not enabled, and through every view in it.
    void setUserInteractionEnabled(bool enabled) { userInteractionEnabled_ = enabled; }

    // By default, touches go on to the parent.
    virtual void touchesBegan(const UITouches& touches, const UIEvent& event);
    virtual void touchesMoved(const UITouches& touches, const UIEvent& event);
    virtual void touchesEnded(const UITouches& touches, const UIEvent& event);
    virtual void touchesCancelled(const UITouches& touches, const UIEvent& event);

    /// What assistive tools call the view.
    [[nodiscard]] const std::string& accessibilityLabel() const { return accessibilityLabel_; }
    void setAccessibilityLabel(std::string label) { accessibilityLabel_ = std::move(label); }
    /// What the keyboard and assistive tools can reach in the view itself, apart from its subviews.
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

/// The frontmost view under a point, given in the coordinates of `view`; null when the point is outside of that.
/// Leaves out views that are hidden or not enabled for touches. Main thread.
[[nodiscard]] PLATFORM_EXPORT std::shared_ptr<UIView> hitTest(const std::shared_ptr<UIView>& view, CGPoint point);

} // namespace platform

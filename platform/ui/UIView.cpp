#include "platform/ui/UIView.h"

#include <algorithm>
#include <utility>

namespace platform {
namespace {

/// One dimension of autoresizing: the flexible parts share the parent's growth in proportion to their lengths, or
/// equally where all of them are 0.
void resize(double& start, double& length, double before, double after, bool startFlexes, bool lengthFlexes,
            bool endFlexes) {
    const double end = before - start - length;
    const double flexible = (startFlexes ? start : 0) + (lengthFlexes ? length : 0) + (endFlexes ? end : 0);
    const int parts = int(startFlexes) + int(lengthFlexes) + int(endFlexes);
    if (parts == 0) return;
    const double growth = after - before;
    const auto shareOf = [&](double part) { return flexible != 0 ? growth * part / flexible : growth / parts; };
    const double startShare = startFlexes ? shareOf(start) : 0;
    const double lengthShare = lengthFlexes ? shareOf(length) : 0;
    start += startShare;
    length = std::max(0.0, length + lengthShare);
}

CGRect autoresized(CGRect frame, unsigned mask, CGSize before, CGSize after) {
    const auto flexes = [mask](unsigned part) { return (mask & part) != 0; };
    resize(frame.origin.x, frame.size.width, before.width, after.width, flexes(UIViewAutoresizingFlexibleLeftMargin),
           flexes(UIViewAutoresizingFlexibleWidth), flexes(UIViewAutoresizingFlexibleRightMargin));
    resize(frame.origin.y, frame.size.height, before.height, after.height, flexes(UIViewAutoresizingFlexibleTopMargin),
           flexes(UIViewAutoresizingFlexibleHeight), flexes(UIViewAutoresizingFlexibleBottomMargin));
    return frame;
}

CGContext* currentContext = nullptr;

} // namespace

CGContext* UIGraphicsGetCurrentContext() {
    return currentContext;
}

std::uint64_t UIView::newId() {
    static std::uint64_t last = 0;
    return ++last;
}

UIView::~UIView() {
    for (const auto& view : subviews_)
        view->superview_ = nullptr;
}

bool UIView::initWithFrame(const CGRect& frame) {
    setFrame(frame);
    return true;
}

void UIView::setFrame(const CGRect& frame) {
    const CGSize before = frame_.size;
    frame_ = frame;
    center_ = CGRectGetCenter(frame);
    if (before == frame.size) return;
    setNeedsLayout();
    for (const auto& view : subviews_)
        if (view->autoresizingMask_ != UIViewAutoresizingNone)
            view->setFrame(autoresized(view->frame(), view->autoresizingMask_, before, frame.size));
}

void UIView::setCenter(CGPoint center) {
    center_ = center;
    frame_.origin = {center.x - frame_.size.width / 2, center.y - frame_.size.height / 2};
}

void UIView::attach(std::shared_ptr<UIView> view, const UIView* above) {
    if (!view || view.get() == this || view.get() == above) return;
    if (view->superview_ != this) view->willMoveToSuperview(this);
    view->detach();
    view->superview_ = this;
    const auto below =
        std::find_if(subviews_.begin(), subviews_.end(), [above](const auto& other) { return other.get() == above; });
    subviews_.insert(below == subviews_.end() ? below : below + 1, std::move(view));
    setNeedsLayout();
}

void UIView::removeFromSuperview() {
    if (!superview_) return;
    willMoveToSuperview(nullptr);
    detach();
}

void UIView::detach() {
    if (!superview_) return;
    auto& siblings = superview_->subviews_;
    superview_ = nullptr;
    // The parent may be the last owner of this view, so this comes last.
    siblings.erase(
        std::find_if(siblings.begin(), siblings.end(), [this](const auto& view) { return view.get() == this; }));
}

void UIView::layoutIfNeeded() {
    if (std::exchange(needsLayout_, false)) layoutSubviews();
    const auto views = subviews_; // laying one out may add another
    for (const auto& view : views)
        view->layoutIfNeeded();
}

void UIView::contentsChanged() const {
    for (const UIView* view = this; view; view = view->superview_)
        if (view->watcher_) return view->watcher_();
}

void UIView::displayIfNeeded() {
    if (needsDisplay_ && frame_.size.width > 0 && frame_.size.height > 0) {
        needsDisplay_ = false;
        CGContext context(frame_.size);
        CGContext* const before = std::exchange(currentContext, &context);
        drawRect(bounds());
        currentContext = before;
        CGDrawing drawing = std::move(context).take();
        drawing_ = drawing.steps.empty() ? nullptr : std::make_shared<const CGDrawing>(std::move(drawing));
    }
    for (const auto& view : subviews_)
        view->displayIfNeeded();
}

void UIView::touchesBegan(const UITouches& touches, const UIEvent& event) {
    if (superview_) superview_->touchesBegan(touches, event);
}

void UIView::touchesMoved(const UITouches& touches, const UIEvent& event) {
    if (superview_) superview_->touchesMoved(touches, event);
}

void UIView::touchesEnded(const UITouches& touches, const UIEvent& event) {
    if (superview_) superview_->touchesEnded(touches, event);
}

void UIView::touchesCancelled(const UITouches& touches, const UIEvent& event) {
    if (superview_) superview_->touchesCancelled(touches, event);
}

std::shared_ptr<UIView> hitTest(const std::shared_ptr<UIView>& view, CGPoint point) {
    if (view->isHidden() || !view->isUserInteractionEnabled() || !CGRectContainsPoint(view->bounds(), point))
        return nullptr;
    const auto& subviews = view->subviews();
    // NOLINTNEXTLINE(modernize-loop-convert): clang 14 cannot compile the reversed view of this standard library
    for (auto subview = subviews.rbegin(); subview != subviews.rend(); ++subview) {
        const CGPoint origin = (*subview)->frame().origin;
        if (auto hit = hitTest(*subview, {point.x - origin.x, point.y - origin.y})) return hit;
    }
    return view;
}

} // namespace platform

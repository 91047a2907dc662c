#include "platform/ui/UIView.h"

#include <algorithm>
#include <utility>

namespace platform {
namespace {

/// One dimension of autoresizing: what the parent grew by goes to the flexible parts in proportion to their lengths,
/// in equal shares where all of them are 0.
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

} // namespace

UIView::~UIView() {
    for (const auto& view : subviews_)
        view->superview_ = nullptr;
}

bool UIView::initWithFrame(const CGRect& frame) {
    frame_ = frame;
    return true;
}

void UIView::setFrame(const CGRect& frame) {
    const CGSize before = frame_.size;
    frame_ = frame;
    if (before == frame.size) return;
    for (const auto& view : subviews_)
        view->setFrame(autoresized(view->frame(), view->autoresizingMask_, before, frame.size));
}

void UIView::addSubview(std::shared_ptr<UIView> view) {
    if (!view || view.get() == this) return;
    view->removeFromSuperview();
    view->superview_ = this;
    subviews_.push_back(std::move(view));
}

void UIView::removeFromSuperview() {
    if (!superview_) return;
    auto& siblings = superview_->subviews_;
    superview_ = nullptr;
    siblings.erase(
        std::find_if(siblings.begin(), siblings.end(), [this](const auto& view) { return view.get() == this; }));
}

} // namespace platform

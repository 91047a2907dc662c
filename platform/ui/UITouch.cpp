#include "platform/ui/UITouch.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

struct Group {
    std::shared_ptr<UIView> view;
    UITouchPhase phase;
    UITouches touches;
};

void hand(const Group& group, const UIEvent& event) {
    switch (group.phase) {
    case UITouchPhase::began:
        return group.view->touchesBegan(group.touches, event);
    case UITouchPhase::moved:
        return group.view->touchesMoved(group.touches, event);
    case UITouchPhase::ended:
        return group.view->touchesEnded(group.touches, event);
    case UITouchPhase::cancelled:
        return group.view->touchesCancelled(group.touches, event);
    }
}

} // namespace

CGPoint UITouch::locationInView(const UIView& view) const {
    CGPoint point = location_;
    for (const UIView* step = &view; step; step = step->superview()) {
        point.x -= step->frame().origin.x;
        point.y -= step->frame().origin.y;
    }
    return point;
}

void UITouchRouter::send(const std::shared_ptr<UIView>& pageView, const std::vector<Point>& points) {
    std::vector<Group> groups;
    UIEvent event;
    for (const Point& point : points) {
        if (point.phase == UITouchPhase::began) cancel(point.finger); // its end has been missed
        if (point.phase == UITouchPhase::began && pageView) {
            const CGPoint origin = pageView->frame().origin;
            const CGPoint inside{point.location.x - origin.x, point.location.y - origin.y};
            views_[point.finger] = hitTest(pageView, inside);
        }
        const auto held = views_.find(point.finger);
        if (held == views_.end()) continue;
        const std::shared_ptr<UIView> view = held->second.lock();
        if (!view || point.phase == UITouchPhase::ended || point.phase == UITouchPhase::cancelled) views_.erase(held);
        if (!view) continue;
        auto touch = std::make_shared<const UITouch>(point.location, point.phase);
        event.allTouches.push_back(touch);
        const auto group = std::find_if(groups.begin(), groups.end(), [&](const Group& other) {
            return other.view == view && other.phase == point.phase;
        });
        if (group == groups.end())
            groups.push_back({view, point.phase, {std::move(touch)}});
        else
            group->touches.push_back(std::move(touch));
    }
    for (const Group& group : groups)
        hand(group, event);
}

void UITouchRouter::cancel() {
    while (!views_.empty())
        cancel(views_.begin()->first);
}

void UITouchRouter::cancel(std::int64_t finger) {
    const auto held = views_.extract(finger);
    const std::shared_ptr<UIView> view = held ? held.mapped().lock() : nullptr;
    if (!view) return;
    const UIEvent event{{std::make_shared<const UITouch>(CGPoint{}, UITouchPhase::cancelled)}};
    view->touchesCancelled(event.allTouches, event);
}

} // namespace platform

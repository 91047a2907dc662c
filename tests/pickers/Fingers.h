#pragma once

#include "platform/ui/UITouch.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace tests {

/// Fingers on a page, numbered from 0, as the window hands them on.
class Fingers {
  public:
    explicit Fingers(const std::shared_ptr<platform::UIView>& page) : page_(page) {}

    void down(const std::vector<platform::CGPoint>& points) { send(platform::UITouchPhase::began, points); }
    void move(const std::vector<platform::CGPoint>& points) { send(platform::UITouchPhase::moved, points); }
    void up(const std::vector<platform::CGPoint>& points) { send(platform::UITouchPhase::ended, points); }
    void tap(platform::CGPoint point) {
        down({point});
        up({point});
    }

  private:
    void send(platform::UITouchPhase phase, const std::vector<platform::CGPoint>& points) {
        std::vector<platform::UITouchRouter::Point> touches;
        std::int64_t finger = 0;
        for (const platform::CGPoint point : points)
            touches.push_back({finger++, phase, point});
        router_.send(page_.lock(), touches);
    }

    std::weak_ptr<platform::UIView> page_;
    platform::UITouchRouter router_;
};

/// Touches as a view gets them, at places of the page that it is in.
inline platform::UITouches touchesAt(const std::vector<platform::CGPoint>& points) {
    platform::UITouches touches;
    for (const platform::CGPoint point : points)
        touches.push_back(std::make_shared<const platform::UITouch>(point, platform::UITouchPhase::began));
    return touches;
}

} // namespace tests

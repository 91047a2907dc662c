#pragma once

#include "platform/ui/CGGeometry.h"
#include "platform/ui/UIView.h"

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace platform {

/// The platform's numbers.
enum class UITouchPhase : unsigned char { began = 0, moved = 1, ended = 3, cancelled = 4 };

/// A finger on the screen, or the mouse with its button down, as it is at one moment. Main thread.
class PLATFORM_EXPORT UITouch {
  public:
    UITouch(CGPoint location, UITouchPhase phase) : location_(location), phase_(phase) {}

    /// In the view's own coordinates.
    [[nodiscard]] CGPoint locationInView(const UIView& view) const;
    [[nodiscard]] UITouchPhase phase() const { return phase_; }

  private:
    CGPoint location_; ///< on the page
    UITouchPhase phase_;
};

/// The touches that come at one moment. Main thread.
struct UIEvent {
    UITouches allTouches;
};

/// Hands touches to views. A touch belongs to the view under which it began until it ends; touches of one event and one
/// phase reach a view together, in their order. A touch whose view is gone is dropped. A finger that comes down without
/// having left cancels its former touch. Main thread.
class PLATFORM_EXPORT UITouchRouter {
  public:
    struct Point {
        std::int64_t finger = 0; ///< tells apart the touches that are down at one time
        UITouchPhase phase = UITouchPhase::began;
        CGPoint location; ///< on the page
        friend bool operator==(const Point&, const Point&) = default;
    };

    void send(const std::shared_ptr<UIView>& pageView, const std::vector<Point>& points);
    /// Cancels every touch that is down.
    void cancel();
    [[nodiscard]] bool isTouched() const { return !views_.empty(); }

  private:
    void cancel(std::int64_t finger);

    std::map<std::int64_t, std::weak_ptr<UIView>> views_;
};

} // namespace platform

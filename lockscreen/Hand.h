#pragma once

#include "lockscreen/Device.h"
#include "lockscreen/Gesture.h"
#include "lockscreen/Look.h"

#include "platform/ui/CGGeometry.h"

#include <optional>
#include <string>

namespace lumora {

/// A finger, or a mouse, on the screen: what it touches, and the gesture that it makes. Points are those of the screen.
///
///     hand.press(look, unit, point, now);
///     hand.move(point); …                   // dragged() and part() tell what to draw under the finger
///     if (const auto gesture = hand.hold(now)) …
///     if (const auto gesture = hand.release()) behaviour.apply(*gesture, now);
///
/// One thread.
class Hand {
  public:
    /// `unit` is that of the device.
    void press(const Look& look, double unit, platform::CGPoint point, Seconds now);
    void move(platform::CGPoint point);
    /// Once the finger has rested on an icon for kHold; the release that follows is no gesture then.
    [[nodiscard]] std::optional<Gesture> hold(Seconds now);
    [[nodiscard]] std::optional<Gesture> release();
    /// The finger has been taken away from the screen by something else.
    void cancel() { down_ = false; }

    [[nodiscard]] bool isDown() const { return down_; }
    /// What was touched, as a path of Look; empty for what is beside all parts, and while no finger is down.
    [[nodiscard]] std::string part() const { return down_ ? part_ : ""; }
    /// How far the finger is from where it was put down; nothing as long as it may still be a tap.
    [[nodiscard]] platform::CGPoint dragged() const;
    /// When hold() has something to say, if the finger stays.
    [[nodiscard]] std::optional<Seconds> holdsAt() const;

    static constexpr Seconds kHold = 0.5;
    /// In units: a finger that moves less has not moved.
    static constexpr double kSlop = 10;
    /// In units: what a swipe to another stage, a pull and a swipe downwards take at least.
    static constexpr double kSwipe = 40;
    static constexpr double kPull = 30;
    static constexpr double kSwipeDown = 60;
    /// The share of its rail that the bead is slid by at least.
    static constexpr double kSlide = 0.5;

  private:
    [[nodiscard]] std::optional<Gesture> dragGesture() const;

    bool down_ = false;
    bool dragging_ = false;
    bool held_ = false;
    std::string part_;
    bool opened_ = false; ///< an application is shown
    double width_ = 0;    ///< of the part
    double unit_ = 1;
    platform::CGPoint from_;
    platform::CGPoint at_;
    Seconds since_ = 0;
};

/// The part that takes a touch at this point, as a path of Look: the topmost one. Small ones reach a little beyond their
/// frames. Empty beside all of them. Any thread.
[[nodiscard]] std::string partAt(const Look& look, double unit, platform::CGPoint point);

} // namespace lumora

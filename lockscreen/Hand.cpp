#include "lockscreen/Hand.h"

#include <cmath>

using platform::CGPoint;
using platform::CGRect;

namespace lumora {
namespace {

constexpr double kBeyond = 14; ///< in units: so far do small parts reach beyond their frames

/// Looks for a point among parts that are given from the topmost one on.
class Search {
  public:
    Search(CGPoint point, double unit) : point_(point), unit_(unit) {}

    void among(const Part& part, const std::string& path, double beyond = 0) {
        if (found || !part.visible || !reaches(part.frame, beyond * unit_)) return;
        found = &part;
        foundPath = path;
    }
    template<class List>
    void amongAll(const List& parts, const std::string& path) {
        for (std::size_t i = 0; i < parts.size() && !found; ++i)
            among(parts[i], path + "[" + std::to_string(i) + "]");
    }

    const Part* found = nullptr;
    std::string foundPath;

  private:
    [[nodiscard]] bool reaches(const CGRect& frame, double by) const {
        return CGRectContainsPoint(platform::CGRectMake(frame.origin.x - by, frame.origin.y - by,
                                                        frame.size.width + 2 * by, frame.size.height + 2 * by),
                                   point_);
    }

    CGPoint point_;
    double unit_;
};

Search search(const Look& look, double unit, CGPoint point) {
    Search search(point, unit);
    search.among(look.opened.button, "opened.button", kBeyond);
    search.amongAll(look.keys, "keys");
    search.among(look.passcode.cancel, "passcode.cancel", kBeyond);
    search.among(look.passcode.emergency, "passcode.emergency", kBeyond);
    search.among(look.camera, "camera");
    search.amongAll(look.icons, "icons");
    search.amongAll(look.notices.items, "notices.items");
    search.among(look.appView, "appView");
    search.among(look.slideHint, "slideHint", kBeyond);
    search.among(look.topGrabber, "topGrabber", kBeyond);
    search.among(look.bottomGrabber, "bottomGrabber", kBeyond);
    return search;
}

} // namespace

std::string partAt(const Look& look, double unit, CGPoint point) {
    return search(look, unit, point).foundPath;
}

void Hand::press(const Look& look, double unit, CGPoint point, Seconds now) {
    const Search touched = search(look, unit, point);
    down_ = true;
    dragging_ = held_ = false;
    part_ = touched.foundPath;
    width_ = touched.found ? touched.found->frame.size.width : look.sleepVeil.frame.size.width;
    opened_ = look.opened.visible;
    unit_ = unit;
    from_ = at_ = point;
    since_ = now;
}

void Hand::move(CGPoint point) {
    if (!down_) return;
    at_ = point;
    dragging_ = dragging_ || std::hypot(at_.x - from_.x, at_.y - from_.y) > kSlop * unit_;
}

CGPoint Hand::dragged() const {
    return down_ && dragging_ && !held_ ? CGPoint{at_.x - from_.x, at_.y - from_.y} : CGPoint{};
}

std::optional<Seconds> Hand::holdsAt() const {
    if (!down_ || dragging_ || held_ || !placeIn(part_, "icons")) return {};
    return since_ + kHold;
}

std::optional<Gesture> Hand::hold(Seconds now) {
    const auto due = holdsAt();
    if (!due || now < *due) return {};
    held_ = true;
    return Gesture{Gesture::Kind::hold, part_, 1};
}

std::optional<Gesture> Hand::release() {
    if (!down_) return {};
    auto gesture = held_       ? std::nullopt
                   : dragging_ ? dragGesture()
                               : std::optional(Gesture{Gesture::Kind::tap, part_, 1});
    down_ = false;
    if (gesture && gesture->kind == Gesture::Kind::tap && part_ == "opened.button")
        return Gesture{Gesture::Kind::home, "", 1};
    return gesture;
}

std::optional<Gesture> Hand::dragGesture() const {
    using enum Gesture::Kind;
    const double right = (at_.x - from_.x) / unit_;
    const double down = (at_.y - from_.y) / unit_;
    if (opened_) return down <= -kSwipeDown ? std::optional(Gesture{home, "", 1}) : std::nullopt;
    if (part_ == "slideHint" && right > 0)
        return right * unit_ >= kSlide * width_ ? std::optional(Gesture{slide, "", 1}) : std::nullopt;
    const bool pulls = (part_ == "camera" && right <= -kPull) || (part_ == "topGrabber" && down >= kPull) ||
                       (part_ == "bottomGrabber" && down <= -kPull);
    if (pulls) return Gesture{pull, part_, 1};
    if (std::abs(right) <= std::abs(down))
        return down >= kSwipeDown ? std::optional(Gesture{swipe, "down", 1}) : std::nullopt;
    if (right > 0 && placeIn(part_, "notices.items")) return Gesture{swipe, part_, right * unit_ / width_};
    if (std::abs(right) < kSwipe) return {};
    return Gesture{swipe, right < 0 ? "left" : "right", 1};
}

} // namespace lumora

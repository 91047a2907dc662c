#include "settings/model/EdgeSwipe.h"

#include "settings/model/TouchItem.h"

#include <QCoreApplication>
#include <QQuickWindow>
#include <QTouchEvent>

#include <algorithm>
#include <cmath>

namespace settings {

namespace {

constexpr double kSlack = 8;         ///< points that a finger may stray without going anywhere
constexpr quint64 kSpeedWindow = 80; ///< milliseconds before the end that tell how fast a finger is

/// Whether whatever hears of the finger does not let go of it. A view always hears of it.
bool isHeld(const QTouchEvent& event) {
    const auto* item = qobject_cast<QQuickItem*>(event.exclusiveGrabber(event.points().first()));
    if (const auto* view = qobject_cast<const TouchItem*>(item)) return view->isInUse();
    return item && (item->keepTouchGrab() || item->keepMouseGrab());
}

} // namespace

void EdgeSwipe::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange) watch(data.window);
    if ((change == ItemEnabledHasChanged || change == ItemVisibleHasChanged) && !data.boolValue) cancel();
    QQuickItem::itemChange(change, data);
}

/// A window tells what it is about to hand on, whichever item that is for.
void EdgeSwipe::watch(QQuickWindow* window) {
    cancel();
    if (window_) window_->removeEventFilter(this);
    window_ = window;
    if (window_) window_->installEventFilter(this);
}

bool EdgeSwipe::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (takesAway_) return false;
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        if (!take(*static_cast<QTouchEvent*>(event))) return false;
        event->accept(); // or else the toolkit would make a mouse of the finger
        return true;
    case QEvent::TouchCancel:
        cancel();
        setState(State::idle);
        return false;
    default:
        return false;
    }
}

bool EdgeSwipe::take(const QTouchEvent& event) {
    const auto& points = event.points();
    const bool isFirst = event.type() == QEvent::TouchBegin && points.size() == 1;
    if (isFirst) {
        cancel();
        start_ = points.first().position();
        setState(isEnabled() && isVisible() && contains(mapFromScene(start_)) ? State::waiting : State::idle);
        return false;
    }
    const bool isLast = event.type() == QEvent::TouchEnd;
    if (points.size() > 1) cancel();
    if (state_ == State::idle) return false;
    if (state_ == State::waiting && !isLast) begin(event);
    // As long as it is not clear where the finger goes, it has not moved.
    const bool isOurs = state_ != State::idle && (state_ != State::waiting || !isLast);
    if (state_ == State::following) note(event);
    if (isLast) {
        const bool wasFollowing = state_ == State::following;
        setState(State::idle);
        if (wasFollowing) emit released(speed());
    }
    return isOurs;
}

/// Takes the finger away from whatever hears of it, once it is clear that it goes inwards.
void EdgeSwipe::begin(const QTouchEvent& event) {
    const QPointF place = event.points().first().position();
    const double across = inwards(place);
    const double along = std::abs(place.y() - start_.y());
    if (std::max(std::abs(across), along) < kSlack) return;
    if (across <= along || isHeld(event)) return setState(State::idle);
    takesAway_ = true;
    QTouchEvent taken(QEvent::TouchCancel, event.pointingDevice());
    QCoreApplication::sendEvent(window_, &taken);
    takesAway_ = false;
    start_ = place;
    distance_ = 0;
    lately_.clear();
    setState(State::following);
}

void EdgeSwipe::note(const QTouchEvent& event) {
    const double now = inwards(event.points().first().position());
    lately_.emplace_back(event.timestamp(), now);
    while (lately_.back().first - lately_.front().first > kSpeedWindow)
        lately_.pop_front();
    if (std::exchange(distance_, std::max(0.0, now)) != distance_) emit distanceChanged();
}

void EdgeSwipe::cancel() {
    const State before = state_;
    setState(before == State::following || before == State::ignoring ? State::ignoring : State::idle);
    if (before == State::following) emit canceled();
}

void EdgeSwipe::setState(State state) {
    const bool was = isActive();
    state_ = state;
    if (was != isActive()) emit activeChanged();
}

double EdgeSwipe::inwards(QPointF place) const {
    const double across = place.x() - start_.x();
    return mirrored_ ? -across : across;
}

double EdgeSwipe::speed() const {
    if (lately_.size() < 2) return 0;
    const auto time = double(lately_.back().first - lately_.front().first);
    return time > 0 ? (lately_.back().second - lately_.front().second) * 1000 / time : 0;
}

} // namespace settings

#include "settings/model/TouchItem.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QTouchEvent>

namespace settings {

using platform::UITouchPhase;

namespace {

constexpr std::int64_t kMouse = -1; ///< the numbers of fingers begin at 0

} // namespace

TouchItem::TouchItem(QQuickItem* parent) : QQuickItem(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptTouchEvents(true);
    setKeepMouseGrab(true);
    setKeepTouchGrab(true);
}

void TouchItem::wantEveryMove() {
    // Merges events of mouse and fingers as the display server sends them; the toolkit has switched this on by now.
    QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
    // Keeps events of fingers until the next picture is due.
    qputenv("QML_NO_TOUCH_COMPRESSION", "1");
}

TouchItem::~TouchItem() {
    cancelMouse();
    cancelFingers();
}

void TouchItem::setPage(PageModel* page) {
    if (page_ == page) return;
    cancelMouse();
    cancelFingers();
    page_ = page;
}

void TouchItem::mousePressEvent(QMouseEvent* event) {
    sendMouse(UITouchPhase::began, event->position());
}

void TouchItem::mouseMoveEvent(QMouseEvent* event) {
    sendMouse(UITouchPhase::moved, event->position());
}

void TouchItem::mouseReleaseEvent(QMouseEvent* event) {
    sendMouse(UITouchPhase::ended, event->position());
}

/// Comes in addition to the press, which has been sent. The item would lose the mouse if it ignored this.
void TouchItem::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept();
}

void TouchItem::mouseUngrabEvent() {
    cancelMouse();
}

void TouchItem::touchEvent(QTouchEvent* event) {
    if (event->type() == QEvent::TouchCancel) return cancelFingers();
    std::vector<Point> points;
    for (const QEventPoint& point : event->points()) {
        const auto state = point.state(); // a finger that has not moved is in none of these
        if (state == QEventPoint::Pressed) add(points, point.id(), UITouchPhase::began, point.position());
        if (state == QEventPoint::Updated) add(points, point.id(), UITouchPhase::moved, point.position());
        if (state == QEventPoint::Released) add(points, point.id(), UITouchPhase::ended, point.position());
    }
    send(points);
}

/// The view has already been told of fingers that are up.
void TouchItem::touchUngrabEvent() {
    cancelFingers();
}

/// Leaves out a touch that did not begin here or has been cancelled, and a second beginning: what scrolls around this
/// item hands on some of them twice.
void TouchItem::add(std::vector<Point>& points, std::int64_t finger, UITouchPhase phase, QPointF place) {
    if ((phase == UITouchPhase::began) == down_.contains(finger)) return;
    points.push_back({finger, phase, {place.x(), place.y()}});
    if (phase == UITouchPhase::ended)
        down_.erase(finger);
    else
        down_[finger] = points.back().location;
    if (phase == UITouchPhase::began) emit began(place);
}

void TouchItem::send(const std::vector<Point>& points) {
    if (page_ && !points.empty()) page_->touch(points);
}

void TouchItem::sendMouse(UITouchPhase phase, QPointF place) {
    std::vector<Point> points;
    add(points, kMouse, phase, place);
    send(points);
}

/// Cancels the touch of the mouse, or those of all fingers.
void TouchItem::cancel(bool mouse) {
    const auto ends = [mouse](const auto& down) { return (down.first == kMouse) == mouse; };
    std::vector<Point> points;
    for (const auto& down : down_)
        if (ends(down)) points.push_back({down.first, UITouchPhase::cancelled, down.second});
    std::erase_if(down_, ends);
    send(points);
}

} // namespace settings

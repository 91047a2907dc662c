#include "settings/model/DoubleClicks.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>
#include <QTouchEvent>

#include <utility>

namespace settings {

bool DoubleClicks::eventFilter(QObject* /*watched*/, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto* press = static_cast<QMouseEvent*>(event);
        if (press->button() == Qt::LeftButton)
            takes_ = takesPress(press->position(), QGuiApplication::styleHints()->mouseDoubleClickDistance());
        return takes_;
    }
    case QEvent::TouchBegin: {
        const auto* press = static_cast<QTouchEvent*>(event);
        takes_ =
            takesPress(press->points().first().position(), QGuiApplication::styleHints()->touchDoubleTapDistance());
        return takes_;
    }
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::TouchUpdate:
        return takes_;
    case QEvent::MouseButtonRelease:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        return std::exchange(takes_, false);
    default:
        return false;
    }
}

bool DoubleClicks::takesPress(QPointF place, int distance) {
    const bool follows = sincePress_.isValid() &&
                         !sincePress_.hasExpired(QGuiApplication::styleHints()->mouseDoubleClickInterval()) &&
                         (place - place_).manhattanLength() <= distance;
    sincePress_.start();
    place_ = place;
    opened_ = opened_ && follows;
    return opened_;
}

} // namespace settings

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
            takes_ = takesPress(press->timestamp(), press->position(),
                                QGuiApplication::styleHints()->mouseDoubleClickDistance());
        return takes_;
    }
    case QEvent::TouchBegin: {
        const auto* press = static_cast<QTouchEvent*>(event);
        takes_ = takesPress(press->timestamp(), press->points().first().position(),
                            QGuiApplication::styleHints()->touchDoubleTapDistance());
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

bool DoubleClicks::takesPress(quint64 time, QPointF place, int distance) {
    const auto interval = static_cast<quint64>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    const bool isSoon = time - std::exchange(time_, time) <= interval;
    const bool isNear = (place - std::exchange(place_, place)).manhattanLength() <= distance;
    opened_ = opened_ && isSoon && isNear;
    return opened_;
}

} // namespace settings

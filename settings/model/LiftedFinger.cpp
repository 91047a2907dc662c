#include "settings/model/LiftedFinger.h"

#include <QCoreApplication>
#include <QEvent>

namespace settings {

bool LiftedFinger::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::TouchEnd || event->type() == QEvent::TouchCancel)
        QCoreApplication::postEvent(watched, new QEvent(QEvent::Leave)); // when the window has heard of it
    return false;
}

} // namespace settings

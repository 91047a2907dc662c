#include "settings/model/WheelItem.h"

#include <QCoreApplication>
#include <QWheelEvent>

namespace settings {

void WheelItem::wheelEvent(QWheelEvent* event) {
    event->ignore();
    if (!target_ || !target_->isVisible() || !target_->isEnabled()) return;
    const QPointF middle(target_->width() / 2, target_->height() / 2);
    QWheelEvent handedOn(middle, target_->mapToGlobal(middle), event->pixelDelta(), event->angleDelta(),
                         event->buttons(), event->modifiers(), event->phase(), event->inverted(), event->source(),
                         event->pointingDevice());
    handedOn.setTimestamp(event->timestamp());
    QCoreApplication::sendEvent(target_, &handedOn);
    event->setAccepted(handedOn.isAccepted());
}

} // namespace settings

#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace settings {

/// Hands the wheel on to another item, as if the mouse were in the middle of that. Lies beneath what takes the wheel
/// itself, and draws nothing. GUI thread.
class WheelItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// Null for none.
    Q_PROPERTY(QQuickItem* target MEMBER target_ NOTIFY targetChanged)

  public:
    using QQuickItem::QQuickItem;

  signals:
    void targetChanged();

  protected:
    void wheelEvent(QWheelEvent* event) override;

  private:
    QPointer<QQuickItem> target_;
};

} // namespace settings

#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace settings {

/// A box of dashes with round corners. GUI thread.
class DashedBox : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    Q_PROPERTY(double radius MEMBER radius_ NOTIFY changed)

  public:
    explicit DashedBox(QQuickItem* parent = nullptr);
    void paint(QPainter* painter) override;

  signals:
    void changed();

  private:
    QColor color_;
    double radius_ = 0;
};

} // namespace settings

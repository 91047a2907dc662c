#pragma once

#include "pixels/DrawnItem.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace settings {

/// A box of dashes with round corners. GUI thread.
class DashedBox : public lumora::DrawnItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    Q_PROPERTY(double radius MEMBER radius_ NOTIFY changed)

  public:
    explicit DashedBox(QQuickItem* parent = nullptr);
  signals:
    void changed();

  protected:
    QImage draw(const QSize& pixels, double ratio) override;

  private:
    QColor color_;
    double radius_ = 0;
};

} // namespace settings

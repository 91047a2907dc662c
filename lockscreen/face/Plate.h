#pragma once

#include "pixels/DrawnItem.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace lumora {

/// An area of one colour that fades out towards its edges over a width of `fade`, as if it were out of focus. GUI thread.
class Plate : public lumora::DrawnItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    Q_PROPERTY(double fade MEMBER fade_ NOTIFY changed)

  public:
    explicit Plate(QQuickItem* parent = nullptr);

  signals:
    void changed();

  private:
    QImage draw(const QSize& pixels, double ratio) override;

    QColor color_ = Qt::black;
    double fade_ = 0;
};

} // namespace lumora

#pragma once

#include "pixels/DrawnItem.h"

#include <QColor>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace lumora {

/// A small sign of one colour, over the whole item: "battery", "bead", "camera", "corner", "home", "lock", "rail",
/// "ring", "signal", "tab", "unlock" or "wifi". Lines grow with the item. `level` is the battery's charge, the share of
/// the signal's bars that stand out, and how far a ring is pressed. A corner covers what is outside of a round one at the
/// top left. GUI thread.
class Glyph : public lumora::DrawnItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name MEMBER name_ NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    Q_PROPERTY(double level MEMBER level_ NOTIFY changed)

  public:
    explicit Glyph(QQuickItem* parent = nullptr);
    [[nodiscard]] static QStringList names();

  signals:
    void changed();

  private:
    QImage draw(const QSize& pixels, double ratio) override;

    QString name_;
    QColor color_ = Qt::white;
    double level_ = 1;
};

} // namespace lumora

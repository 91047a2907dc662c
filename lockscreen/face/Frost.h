#pragma once

#include "lockscreen/face/Backdrop.h"
#include "pixels/DrawnItem.h"

#include <QColor>
#include <QPointF>
#include <QPointer>

namespace lumora {

/// A pane with round corners, filled with the backdrop's blur at its own place under a tint; its rim catches light from
/// above. GUI thread.
class Frost : public lumora::DrawnItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(lumora::Backdrop* backdrop READ backdrop WRITE setBackdrop NOTIFY changed)
    Q_PROPERTY(double radius MEMBER radius_ NOTIFY changed)
    Q_PROPERTY(QColor tint MEMBER tint_ NOTIFY changed)
    Q_PROPERTY(double tintOpacity MEMBER tintOpacity_ NOTIFY changed)
    Q_PROPERTY(QPointF place MEMBER place_ NOTIFY changed)

  public:
    explicit Frost(QQuickItem* parent = nullptr);
    [[nodiscard]] Backdrop* backdrop() const { return backdrop_; }
    void setBackdrop(Backdrop* backdrop);

  signals:
    /// The backdrop, or how it is shown.
    void changed();

  private:
    QImage draw(const QSize& pixels, double ratio) override;

    QPointer<Backdrop> backdrop_;
    double radius_ = 0;
    QColor tint_ = Qt::white;
    double tintOpacity_ = 0;
    QPointF place_; ///< of the item's corner on the screen
};

} // namespace lumora

#pragma once

#include "lockscreen/face/Backdrop.h"
#include "pixels/PixelNode.h"

#include <QColor>
#include <QPointer>
#include <QQuickItem>

namespace lumora {

/// Shows the backdrop over the whole item, which is as large as the screen: sharp, in the memory of the backdrop itself;
/// or soft, by a `share` of the blur over the sharp picture, with a tint over both. It is opaque, and changing share and
/// tint costs less than changing its opacity. GUI thread.
///
///     PictureItem { backdrop: face.backdrop }
///     PictureItem { backdrop: face.backdrop; soft: true; share: 0.8; tint: "navy"; tintOpacity: 0.3 }
class PictureItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(lumora::Backdrop* backdrop READ backdrop WRITE setBackdrop NOTIFY changed)
    Q_PROPERTY(bool soft MEMBER soft_ NOTIFY changed)
    Q_PROPERTY(double share MEMBER share_ NOTIFY changed)
    Q_PROPERTY(QColor tint MEMBER tint_ NOTIFY changed)
    Q_PROPERTY(double tintOpacity MEMBER tintOpacity_ NOTIFY changed)

  public:
    explicit PictureItem(QQuickItem* parent = nullptr);
    [[nodiscard]] Backdrop* backdrop() const { return backdrop_; }
    void setBackdrop(Backdrop* backdrop);

  signals:
    /// The backdrop, or how it is shown.
    void changed();

  protected:
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& geometry, const QRectF& former) override;

  private:
    [[nodiscard]] Pixels pixels() const;

    QPointer<Backdrop> backdrop_;
    bool soft_ = false;
    double share_ = 1;
    QColor tint_ = Qt::black;
    double tintOpacity_ = 0;
};

} // namespace lumora

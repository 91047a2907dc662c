#pragma once

#include "lockscreen/face/FaceModel.h"
#include "pixels/DrawnItem.h"

#include <QColor>
#include <QImage>
#include <QPointer>
#include <QString>

namespace lumora {

/// The icon of an application, over the whole item; a round one is cut to a circle from a picture 1.14 times as large.
/// It is darker while it is pressed. `shade` is its mean colour. GUI thread.
class AppIcon : public lumora::DrawnItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(lumora::FaceModel* face READ face WRITE setFace REQUIRED)
    Q_PROPERTY(QString identifier MEMBER identifier_ NOTIFY changed)
    Q_PROPERTY(bool round MEMBER round_ NOTIFY changed)
    Q_PROPERTY(bool pressed MEMBER pressed_ NOTIFY changed)
    Q_PROPERTY(QColor shade READ shade NOTIFY shadeChanged)

  public:
    explicit AppIcon(QQuickItem* parent = nullptr);
    [[nodiscard]] FaceModel* face() const { return face_; }
    void setFace(FaceModel* face);
    [[nodiscard]] QColor shade() const;

  signals:
    void changed();
    void shadeChanged();

  private:
    QImage draw(const QSize& pixels, double ratio) override;
    void look();

    QPointer<FaceModel> face_;
    QString identifier_;
    bool round_ = false;
    bool pressed_ = false;
    QImage icon_;
    QImage scaled_; ///< the icon in the item's size
};

} // namespace lumora

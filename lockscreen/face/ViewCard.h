#pragma once

#include "lockscreen/face/FaceModel.h"
#include "pixels/DrawnItem.h"

#include <QColor>
#include <QPointer>
#include <QString>

namespace lumora {

/// What an App View draws, over the whole item; with a fault, its last drawing, dimmed and without its middle. It is asked
/// to draw while the item is seen. `unit` is how many points of the screen one of the view's is. GUI thread.
class ViewCard : public lumora::DrawnItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(lumora::FaceModel* face READ face WRITE setFace REQUIRED)
    Q_PROPERTY(QString identifier MEMBER identifier_ NOTIFY changed)
    Q_PROPERTY(QColor ink MEMBER ink_ NOTIFY changed)
    Q_PROPERTY(double unit MEMBER unit_ NOTIFY changed)
    Q_PROPERTY(bool draws READ draws NOTIFY drawnChanged)
    Q_PROPERTY(QString caption READ caption NOTIFY drawnChanged)
    Q_PROPERTY(QString words READ words NOTIFY drawnChanged)
    Q_PROPERTY(bool stopped READ hasStopped NOTIFY drawnChanged)
    Q_PROPERTY(bool tooMuch READ isTooMuch NOTIFY drawnChanged)

  public:
    explicit ViewCard(QQuickItem* parent = nullptr);
    ~ViewCard() override;
    [[nodiscard]] FaceModel* face() const { return face_; }
    void setFace(FaceModel* face);
    [[nodiscard]] bool draws() const;
    /// Of the present drawing, as all texts are, for assistive tools: none while there is a fault.
    [[nodiscard]] QString caption() const { return hasFault() ? QString() : drawn_.caption; }
    [[nodiscard]] QString words() const { return hasFault() ? QString() : drawn_.words; }
    [[nodiscard]] bool hasStopped() const { return drawn_.fault == ViewStore::Fault::stopped; }
    [[nodiscard]] bool isTooMuch() const { return drawn_.fault == ViewStore::Fault::tooMuch; }
    Q_INVOKABLE void restart();

  signals:
    void changed();
    void drawnChanged();

  protected:
    void componentComplete() override;
    void geometryChange(const QRectF& geometry, const QRectF& former) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

  private:
    QImage draw(const QSize& pixels, double ratio) override;
    [[nodiscard]] ViewStore* store() const { return face_ ? face_->viewStore() : nullptr; }
    [[nodiscard]] bool hasFault() const { return drawn_.fault != ViewStore::Fault::none; }
    void place();
    void look();

    QPointer<FaceModel> face_;
    QString identifier_;
    QColor ink_ = Qt::white;
    double unit_ = 1;
    ViewStore::Drawn drawn_;
};

} // namespace lumora

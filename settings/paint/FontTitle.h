#pragma once

#include "pixels/DrawnItem.h"
#include "platform/ui/UIFont.h"

#include <QColor>
#include <QPainterPath>
#include <QString>
#include <QVariant>

namespace settings {

/// Draws a line of text in an installed font. The baseline is at the same height in every font; what stands out above
/// and below the item is cut off. A text that is too long is cut with an ellipsis. It stands at the right if it begins
/// there, or if all is `mirrored`. The font is opened once the item is in view; `drawn` is true once there is something
/// to see. The scale of the letters is a part of the font's own size. GUI thread.
class FontTitle : public lumora::DrawnItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text MEMBER text_ NOTIFY changed)
    Q_PROPERTY(QVariant titleFont READ titleFont WRITE setTitleFont NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    Q_PROPERTY(double letterScale MEMBER letterScale_ NOTIFY changed)
    Q_PROPERTY(bool inView MEMBER inView_ NOTIFY inViewChanged)
    Q_PROPERTY(bool mirrored MEMBER mirrored_ NOTIFY changed)
    Q_PROPERTY(bool drawn READ drawn NOTIFY drawnChanged)

  public:
    explicit FontTitle(QQuickItem* parent = nullptr);
    /// Holds a platform::UIFontRef, of which QML knows nothing.
    [[nodiscard]] QVariant titleFont() const { return QVariant::fromValue(font_); }
    void setTitleFont(const QVariant& font);
    [[nodiscard]] bool drawn() const { return !path_.isEmpty(); }

  signals:
    /// The text, its font, its colour, its side or its scale has changed.
    void changed();
    void inViewChanged();
    void drawnChanged();

  protected:
    QImage draw(const QSize& pixels, double ratio) override;
    void updatePolish() override;
    void geometryChange(const QRectF& geometry, const QRectF& former) override;

  private:
    void layOutSoon();
    [[nodiscard]] QPainterPath layOut() const;

    QString text_;
    platform::UIFontRef font_;
    QColor color_;
    double letterScale_ = 1;
    bool inView_ = false;
    bool mirrored_ = false;
    bool due_ = true;
    QPainterPath path_; ///< where it is to be drawn; painting may be on the render thread
};

} // namespace settings

#pragma once

#include "platform/ui/UIFont.h"

#include <QColor>
#include <QPainterPath>
#include <QQuickPaintedItem>
#include <QString>
#include <QVariant>

namespace settings {

/// Draws a line of text in an installed font, its baseline where it is for every font, what stands out above and below
/// cut off. A text that is too long, when drawn at the usual scale, shrinks at first, and is then cut with an ellipsis.
/// The font is opened once the item is in view; `drawn` is false until there is something to see. GUI thread.
class FontTitle : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text MEMBER text_ WRITE setText NOTIFY changed)
    Q_PROPERTY(QVariant titleFont READ titleFont WRITE setTitleFont NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER color_ WRITE setColor NOTIFY changed)
    Q_PROPERTY(double usualScale MEMBER usualScale_ WRITE setUsualScale NOTIFY changed)
    Q_PROPERTY(double smallestScale MEMBER smallestScale_ NOTIFY changed)
    Q_PROPERTY(bool inView MEMBER inView_ WRITE setInView NOTIFY changed)
    Q_PROPERTY(bool drawn READ drawn NOTIFY drawnChanged)

  public:
    explicit FontTitle(QQuickItem* parent = nullptr);
    void setText(const QString& text);
    /// Holds a platform::UIFontRef, of which QML knows nothing.
    [[nodiscard]] QVariant titleFont() const { return QVariant::fromValue(font_); }
    void setTitleFont(const QVariant& font);
    void setUsualScale(double scale);
    void setColor(const QColor& color);
    void setInView(bool inView);
    [[nodiscard]] bool drawn() const { return drawn_; }
    void paint(QPainter* painter) override;

  signals:
    void changed();
    void drawnChanged();

  protected:
    void updatePolish() override;
    void geometryChange(const QRectF& geometry, const QRectF& former) override;

  private:
    void layOutSoon();
    [[nodiscard]] QPainterPath layOut() const;

    QString text_;
    platform::UIFontRef font_;
    QColor color_;
    double usualScale_ = 1;
    double smallestScale_ = 1;
    bool inView_ = false;
    bool due_ = true;
    bool drawn_ = false;
    QPainterPath path_; ///< where it is to be drawn; painting may be on the render thread
};

} // namespace settings

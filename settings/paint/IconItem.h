#pragma once

#include "platform/ui/UIImage.h"

#include <QImage>
#include <QQuickPaintedItem>
#include <QVariant>

namespace settings {

/// Draws an icon, in the resolution that the screen has. GUI thread.
class IconItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QVariant icon READ icon WRITE setIcon NOTIFY iconChanged REQUIRED)

  public:
    /// Holds a platform::UIImageRef, of which QML knows nothing; null for none.
    [[nodiscard]] QVariant icon() const { return QVariant::fromValue(icon_); }
    void setIcon(const QVariant& icon);
    void paint(QPainter* painter) override;

  signals:
    void iconChanged();

  private:
    platform::UIImageRef icon_;
    QImage decoded_;
    double decodedScale_ = 0;
};

} // namespace settings

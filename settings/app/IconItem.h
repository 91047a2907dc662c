#pragma once

#include "platform/ui/UIImage.h"

#include <QImage>
#include <QQuickPaintedItem>

namespace settings {

/// Draws an icon, in the resolution that the screen has. GUI thread.
class IconItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(platform::UIImageRef icon READ icon WRITE setIcon NOTIFY iconChanged REQUIRED)

  public:
    /// Null for none.
    [[nodiscard]] platform::UIImageRef icon() const { return icon_; }
    void setIcon(const platform::UIImageRef& icon);
    void paint(QPainter* painter) override;

  signals:
    void iconChanged();

  private:
    platform::UIImageRef icon_;
    QImage decoded_;
    double decodedScale_ = 0;
};

} // namespace settings

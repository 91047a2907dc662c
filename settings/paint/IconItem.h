#pragma once

#include "pixels/DrawnItem.h"
#include "platform/ui/UIImage.h"

#include <QVariant>

namespace settings {

/// Draws an icon over the whole item, from its file for the screen's resolution. GUI thread.
class IconItem : public lumora::DrawnItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QVariant icon READ icon WRITE setIcon REQUIRED)

  public:
    /// Holds a platform::UIImageRef, of which QML knows nothing; null for none.
    [[nodiscard]] QVariant icon() const { return QVariant::fromValue(icon_); }
    void setIcon(const QVariant& icon);

  protected:
    QImage draw(const QSize& pixels, double ratio) override;

  private:
    platform::UIImageRef icon_;
};

} // namespace settings

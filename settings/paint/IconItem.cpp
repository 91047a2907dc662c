#include "settings/paint/IconItem.h"

#include <QPainter>

namespace settings {

void IconItem::setIcon(const QVariant& icon) {
    const auto image = icon.value<platform::UIImageRef>();
    if (icon_ == image) return;
    icon_ = image;
    redraw();
}

QImage IconItem::draw(const QSize& pixels, double ratio) {
    if (!icon_) return {};
    return painted(pixels, ratio, [&](QPainter& painter) {
        const platform::Data& file = icon_->encoded(ratio);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(boundingRect(), QImage::fromData(file.data(), static_cast<int>(file.size())));
    });
}

} // namespace settings

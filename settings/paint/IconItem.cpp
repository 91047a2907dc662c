#include "settings/paint/IconItem.h"

#include <QPainter>

namespace settings {

void IconItem::setIcon(const QVariant& icon) {
    const auto image = icon.value<platform::UIImageRef>();
    if (icon_ == image) return;
    icon_ = image;
    decodedScale_ = 0;
    update();
}

void IconItem::paint(QPainter* painter) {
    if (!icon_) return;
    const double scale = painter->device()->devicePixelRatioF();
    if (scale != decodedScale_) {
        const platform::Data& file = icon_->encoded(scale);
        decoded_ = QImage::fromData(file.data(), static_cast<int>(file.size()));
        decodedScale_ = scale;
    }
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(boundingRect(), decoded_);
}

} // namespace settings

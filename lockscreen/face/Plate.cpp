#include "lockscreen/face/Plate.h"

#include <algorithm>
#include <vector>

namespace lumora {
namespace {

/// How much of the colour there is along an edge of so many pixels, from 0 to 1.
std::vector<double> sharesAlong(int pixels, double fade) {
    std::vector<double> shares;
    for (int i = 0; i < pixels; ++i) {
        const double inside = std::min(i, pixels - 1 - i) + 0.5;
        const double share = fade > 0 ? std::min(1.0, inside / fade) : 1;
        shares.push_back(share * share * (3 - 2 * share));
    }
    return shares;
}

} // namespace

Plate::Plate(QQuickItem* parent) : DrawnItem(parent) {
    connect(this, &Plate::changed, this, &Plate::redraw);
}

QImage Plate::draw(const QSize& pixels, double ratio) {
    const auto across = sharesAlong(pixels.width(), fade_ * ratio);
    const auto down = sharesAlong(pixels.height(), fade_ * ratio);
    QImage plate(pixels, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < pixels.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(plate.scanLine(y));
        for (const double share : across) {
            const int alpha = qRound(255 * share * down[static_cast<std::size_t>(y)]);
            *row++ = qPremultiply(qRgba(color_.red(), color_.green(), color_.blue(), alpha));
        }
    }
    return plate;
}

} // namespace lumora

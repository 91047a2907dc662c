#include "platform/ui/UIColor.h"

#include <algorithm>
#include <cmath>

namespace platform {

UIColorRef UIColor::colorWithRed(double red, double green, double blue, double alpha) {
    return std::make_shared<const UIColor>(CGColorSpaceModel::rgb, red, green, blue, alpha);
}

UIColorRef UIColor::colorWithWhite(double white, double alpha) {
    return std::make_shared<const UIColor>(CGColorSpaceModel::monochrome, white, white, white, alpha);
}

UIColorRef UIColor::blackColor() {
    static const auto& black = *new UIColorRef(colorWithWhite(0, 1));
    return black;
}

UIColorRef UIColor::whiteColor() {
    static const auto& white = *new UIColorRef(colorWithWhite(1, 1));
    return white;
}

std::vector<double> UIColor::components() const {
    if (model_ == CGColorSpaceModel::monochrome) return {red_, alpha_};
    return {red_, green_, blue_, alpha_};
}

UIColorRef UIColor::colorWithHue(double hue, double saturation, double brightness, double alpha) {
    const auto unit = [](double component) { return component > 0 ? std::min(component, 1.0) : 0.0; };
    const double h = unit(hue);
    const double s = unit(saturation);
    const double b = unit(brightness);
    const double sector = h * 6;
    const double floor = std::floor(sector);
    const double within = sector - floor;
    const double low = b * (1 - s);
    const double falling = b * (1 - s * within);
    const double rising = b * (1 - s * (1 - within));
    const double a = unit(alpha);
    switch (static_cast<int>(floor)) {
    case 1:
        return colorWithRed(falling, b, low, a);
    case 2:
        return colorWithRed(low, b, rising, a);
    case 3:
        return colorWithRed(low, falling, b, a);
    case 4:
        return colorWithRed(rising, low, b, a);
    case 5:
        return colorWithRed(b, low, falling, a);
    default: // the first sector, and the hue 1, which is red again
        return colorWithRed(b, rising, low, a);
    }
}

UIColor::HSB UIColor::getHue() const {
    const double most = std::max({red_, green_, blue_});
    const double least = std::min({red_, green_, blue_});
    const double chroma = most - least;
    HSB hsb{0, 0, most, alpha_};
    if (chroma <= 0) return hsb;
    hsb.saturation = chroma / most;
    double sector = 0;
    if (most == red_)
        sector = (green_ - blue_) / chroma;
    else if (most == green_)
        sector = 2 + (blue_ - red_) / chroma;
    else
        sector = 4 + (red_ - green_) / chroma;
    hsb.hue = sector < 0 ? sector / 6 + 1 : sector / 6;
    if (hsb.hue >= 1) hsb.hue = 0; // a negative sector so small that the sum was rounded up
    return hsb;
}

} // namespace platform

#include "platform/ui/UIColor.h"

namespace platform {

UIColor::UIColor(double red, double green, double blue, double alpha)
    : red_(red), green_(green), blue_(blue), alpha_(alpha) {
}

UIColorRef UIColor::colorWithRed(double red, double green, double blue, double alpha) {
    return std::make_shared<const UIColor>(red, green, blue, alpha);
}

UIColorRef UIColor::blackColor() {
    static const auto& black = *new UIColorRef(colorWithRed(0, 0, 0, 1));
    return black;
}

UIColorRef UIColor::whiteColor() {
    static const auto& white = *new UIColorRef(colorWithRed(1, 1, 1, 1));
    return white;
}

UIColorRef UIColor::clearColor() {
    static const auto& clear = *new UIColorRef(colorWithRed(0, 0, 0, 0));
    return clear;
}

} // namespace platform

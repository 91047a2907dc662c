#pragma once

#include "platform/ui/CGGeometry.h"

/// Turns points of the colour control into components of a colour, and back. A point and its rectangle, which is never
/// empty, are in one coordinate space; the components of a point in the rectangle are in [0, 1]. Any thread.
namespace lumora {

/// What a point of the field stands for. Hue grows from left to right, saturation from bottom to top.
struct HueSaturation {
    double hue = 0;
    double saturation = 0;
    friend bool operator==(const HueSaturation&, const HueSaturation&) = default;
};

constexpr HueSaturation hueSaturationAt(platform::CGPoint point, const platform::CGRect& field) {
    return {(point.x - field.origin.x) / field.size.width, 1 - (point.y - field.origin.y) / field.size.height};
}

constexpr platform::CGPoint pointOf(HueSaturation color, const platform::CGRect& field) {
    return {field.origin.x + color.hue * field.size.width, field.origin.y + (1 - color.saturation) * field.size.height};
}

/// Brightness grows from the right end of the bar to the left end; the height of the point does not matter.
constexpr double brightnessAt(platform::CGPoint point, const platform::CGRect& bar) {
    return 1 - (point.x - bar.origin.x) / bar.size.width;
}

/// The point for a brightness, halfway up the bar.
constexpr platform::CGPoint pointOf(double brightness, const platform::CGRect& bar) {
    return {bar.origin.x + (1 - brightness) * bar.size.width, CGRectGetCenter(bar).y};
}

} // namespace lumora

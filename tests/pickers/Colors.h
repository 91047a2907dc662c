#pragma once

#include "platform/foundation/Value.h"
#include "platform/ui/UIColor.h"

namespace tests {

inline platform::UIColorRef hsb(double hue, double saturation, double brightness) {
    return platform::UIColor::colorWithHue(hue, saturation, brightness, 1.0);
}

/// A colour as it is stored.
inline platform::Dictionary dictionary(double hue, double saturation, double brightness) {
    return {{"h", hue}, {"s", saturation}, {"b", brightness}};
}

} // namespace tests

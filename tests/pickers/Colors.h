#pragma once

#include "platform/foundation/Value.h"
#include "platform/ui/UIColor.h"

namespace tests {

inline platform::UIColorRef hsb(double hue, double saturation, double brightness) {
    return platform::UIColor::colorWithHue(hue, saturation, brightness, 1.0);
}

/// A colour as it is stored, or something in its place.
inline platform::Dictionary dictionary(const platform::Value& hue, const platform::Value& saturation,
                                       const platform::Value& brightness) {
    return {{"h", hue}, {"s", saturation}, {"b", brightness}};
}

} // namespace tests

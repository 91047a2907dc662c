#pragma once

#include "platform/ui/CGGeometry.h"
#include "platform/ui/UIColor.h"

namespace platform {

/// How a view's rectangle looks, apart from what is drawn in it. Lengths are in points. From back to front: the shadow
/// of the rounded rectangle, its background, the view's drawing and its subviews, and the border, whose width lies
/// inside the rectangle. Plain data; any thread.
struct CALayer {
    UIColorRef backgroundColor; ///< null for none
    double cornerRadius = 0;
    double borderWidth = 0;
    UIColorRef borderColor = UIColor::blackColor();
    bool masksToBounds = false; ///< content and subviews are cut off at the rounded rectangle
    UIColorRef shadowColor = UIColor::blackColor();
    CGSize shadowOffset{0, -3};
    double shadowRadius = 3;  ///< of the blur
    double shadowOpacity = 0; ///< in [0, 1]; 0 is no shadow at all

    /// Compares colours as objects, so layers can differ by the identity of a colour alone.
    friend bool operator==(const CALayer&, const CALayer&) = default;
};

} // namespace platform

#pragma once

#include "platform/ui/CGGeometry.h"
#include "platform/ui/UIColor.h"

namespace platform {

/// How a view's rectangle looks, beside what is drawn in it. Lengths are in points. From the back: the shadow of the
/// rounded rectangle, its background, what is drawn in the view and the subviews, and the border, whose width lies
/// inside the rectangle. Plain data; copies.
struct CALayer {
    UIColorRef backgroundColor; ///< null for none
    double cornerRadius = 0;
    double borderWidth = 0;
    UIColorRef borderColor = UIColor::blackColor();
    bool masksToBounds = false; ///< content and subviews are cut off at the rounded rectangle
    UIColorRef shadowColor = UIColor::blackColor();
    CGSize shadowOffset{0, -3};
    double shadowRadius = 3;  ///< of the blur
    double shadowOpacity = 0; ///< 0 is no shadow, whatever the rest says

    /// Colours are compared as objects: a difference may be one of identity only.
    friend bool operator==(const CALayer&, const CALayer&) = default;
};

} // namespace platform

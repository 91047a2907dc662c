#pragma once

#include "platform/ui/CGGeometry.h"

#include <string>
#include <vector>

namespace platform {

/// Something in a view that the keyboard and assistive tools can reach. They have no operations of their own: what they
/// do arrives as a touch at the place that means it. Plain data.
struct UIAccessibilityElement {
    /// A quantity that a touch inside the frame sets by where it is.
    struct Axis {
        std::string label;
        double value = 0;      ///< in [0, 1]
        bool vertical = false; ///< runs from the top downwards, not from the left to the right
        bool reversed = false; ///< is 1 where it begins and 0 where it ends
        friend bool operator==(const Axis&, const Axis&) = default;
    };

    std::string label;
    CGRect frame;           ///< in the coordinates of the view that tells of it
    std::vector<Axis> axes; ///< none for a button
    friend bool operator==(const UIAccessibilityElement&, const UIAccessibilityElement&) = default;
};

} // namespace platform

#pragma once

#include "platform/ui/CGGeometry.h"

#include <string>
#include <vector>

namespace platform {

/// Something in a view that the keyboard and assistive tools can reach. What they do to it arrives as a touch at the
/// place that has this effect. Plain data; any thread.
struct UIAccessibilityElement {
    /// A quantity that a touch inside the frame sets by its place.
    struct Axis {
        std::string label;
        double value = 0;      ///< in [0, 1]
        bool vertical = false; ///< runs downwards instead of to the right
        bool reversed = false; ///< runs from 1 to 0 instead of from 0 to 1
        friend bool operator==(const Axis&, const Axis&) = default;
    };

    std::string label;
    CGRect frame;           ///< in the coordinates of its view
    std::vector<Axis> axes; ///< empty for a button
    friend bool operator==(const UIAccessibilityElement&, const UIAccessibilityElement&) = default;
};

} // namespace platform

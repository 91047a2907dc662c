#pragma once

#include "platform/Export.h"

#include <memory>
#include <vector>

namespace platform {

class CGGradient;
using CGGradientRef = std::shared_ptr<const CGGradient>;

/// A run of colours in the device's RGB space, components in [0, 1]. Immutable; any thread.
class PLATFORM_EXPORT CGGradient {
  public:
    struct Stop {
        double location; ///< 0 at the start, 1 at the end
        double red;
        double green;
        double blue;
        double alpha;
        friend bool operator==(const Stop&, const Stop&) = default;
    };

    explicit CGGradient(std::vector<Stop> stops) : stops_(std::move(stops)) {}
    [[nodiscard]] const std::vector<Stop>& stops() const { return stops_; }

  private:
    std::vector<Stop> stops_;
};

/// Each stop has four components: red, green, blue, alpha. Without locations, the stops stand evenly from 0 to 1. Null
/// without any stop, or when the numbers of components and locations do not match.
[[nodiscard]] PLATFORM_EXPORT CGGradientRef
CGGradientCreateWithColorComponents(const std::vector<double>& components, const std::vector<double>& locations = {});

} // namespace platform

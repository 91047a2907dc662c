#include "platform/ui/CGGradient.h"

namespace platform {

CGGradientRef CGGradientCreateWithColorComponents(const std::vector<double>& components,
                                                  const std::vector<double>& locations) {
    constexpr std::size_t perStop = 4;
    const std::size_t count = components.size() / perStop;
    if (count == 0 || components.size() % perStop != 0) return nullptr;
    if (!locations.empty() && locations.size() != count) return nullptr;
    const auto evenly = [count](std::size_t i) { return count > 1 ? double(i) / double(count - 1) : 0.0; };
    std::vector<CGGradient::Stop> stops;
    for (std::size_t i = 0; i < count; ++i) {
        const double* stop = components.data() + i * perStop;
        stops.push_back({locations.empty() ? evenly(i) : locations[i], stop[0], stop[1], stop[2], stop[3]});
    }
    return std::make_shared<const CGGradient>(std::move(stops));
}

} // namespace platform

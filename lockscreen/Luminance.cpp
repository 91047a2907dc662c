#include "lockscreen/Luminance.h"

#include "lockscreen/Look.h"

#include <algorithm>
#include <cmath>

namespace lumora {
namespace {

double linear(double component) {
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double encoded(double luminance) {
    return luminance <= 0.0031308 ? luminance * 12.92 : 1.055 * std::pow(luminance, 1 / 2.4) - 0.055;
}

} // namespace

Luminance::Luminance(std::size_t columns, std::size_t rows, std::vector<float> cells)
    : columns_(columns), rows_(rows), cells_(std::move(cells)) {
}

template<class Visit>
void Luminance::eachCell(const platform::CGRect& part, Visit visit) const {
    if (cells_.empty()) return;
    const auto span = [](double from, double length, std::size_t count) {
        const double begin = std::clamp(from, 0.0, 1.0) * static_cast<double>(count);
        const double end = std::clamp(from + length, 0.0, 1.0) * static_cast<double>(count);
        return std::pair(begin, end);
    };
    const auto [left, right] = span(part.origin.x, part.size.width, columns_);
    const auto [top, bottom] = span(part.origin.y, part.size.height, rows_);
    for (auto row = static_cast<std::size_t>(top); row < rows_ && static_cast<double>(row) < bottom; ++row) {
        const double tall = std::min(bottom, static_cast<double>(row + 1)) - std::max(top, static_cast<double>(row));
        for (auto column = static_cast<std::size_t>(left); column < columns_ && static_cast<double>(column) < right;
             ++column) {
            const double wide =
                std::min(right, static_cast<double>(column + 1)) - std::max(left, static_cast<double>(column));
            visit(cells_[row * columns_ + column], tall * wide);
        }
    }
}

double Luminance::mean(const platform::CGRect& part) const {
    double sum = 0;
    double area = 0;
    eachCell(part, [&](double cell, double share) {
        sum += cell * share;
        area += share;
    });
    return area > 0 ? sum / area : 0;
}

std::pair<double, double> Luminance::range(const platform::CGRect& part) const {
    float lowest = cells_.empty() ? 0 : 1;
    float highest = 0;
    eachCell(part, [&](float cell, double) {
        lowest = std::min(lowest, cell);
        highest = std::max(highest, cell);
    });
    return {lowest, highest};
}

double luminanceOf(const Color& color) {
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double laidOver(double surface, const Color& color, double opacity) {
    if (opacity == 0) return surface;
    // Screens blend encoded values, each channel by itself.
    const double grey = encoded(surface) * (1 - opacity);
    return luminanceOf({grey + color.red * opacity, grey + color.green * opacity, grey + color.blue * opacity});
}

double contrast(double one, double other) {
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

} // namespace lumora

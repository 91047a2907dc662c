#pragma once

#include <algorithm>
#include <cmath>

namespace wallpaper {

/// A colour in linear light, in which glows add up as they do in the air.
struct Light {
    double red = 0;
    double green = 0;
    double blue = 0;
};

inline constexpr double kGamma = 2.2;

/// Of a colour as screens have it, such as 0xff9f86.
inline Light light(unsigned color) {
    const auto channel = [&](unsigned bits) { return std::pow((color >> bits & 255) / 255.0, kGamma); };
    return {channel(16), channel(8), channel(0)};
}

inline Light operator*(const Light& light, double factor) {
    return {light.red * factor, light.green * factor, light.blue * factor};
}

inline Light operator+(const Light& one, const Light& other) {
    return {one.red + other.red, one.green + other.green, one.blue + other.blue};
}

inline Light mixed(const Light& one, const Light& other, double share) {
    const double part = std::clamp(share, 0.0, 1.0);
    return one * (1 - part) + other * part;
}

} // namespace wallpaper

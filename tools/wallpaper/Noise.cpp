#include "tools/wallpaper/Noise.h"

#include <algorithm>
#include <cmath>

namespace wallpaper {

double chance(std::int64_t x, std::int64_t y) {
    std::uint64_t bits =
        static_cast<std::uint64_t>(x) * 0x9E3779B97F4A7C15 ^ static_cast<std::uint64_t>(y) * 0xC2B2AE3D27D4EB4F;
    bits ^= bits >> 29;
    bits *= 0xBF58476D1CE4E5B9;
    bits ^= bits >> 32;
    return static_cast<double>(bits >> 11) / 9007199254740992.0;
}

double noise(double x, int seed) {
    const double cell = std::floor(x);
    const double within = x - cell;
    const double share = within * within * within * (within * (within * 6 - 15) + 10);
    const auto number = static_cast<std::int64_t>(cell);
    return chance(number, seed) * (1 - share) + chance(number + 1, seed) * share;
}

double roughNoise(double x, int seed, int octaves, double gain) {
    double sum = 0;
    double strength = 1;
    double whole = 0;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += strength * noise(x, seed + octave * 101);
        whole += strength;
        strength *= gain;
        x *= 2.03;
    }
    return sum / whole;
}

double smoothStep(double begin, double end, double x) {
    const double share = std::clamp((x - begin) / (end - begin), 0.0, 1.0);
    return share * share * (3 - 2 * share);
}

} // namespace wallpaper

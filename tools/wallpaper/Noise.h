#pragma once

#include <cstdint>

namespace wallpaper {

/// From 0 to 1; the same for the same place on every machine.
double chance(std::int64_t x, std::int64_t y);

/// From 0 to 1, smooth along x.
double noise(double x, int seed);

/// Noise with ever finer noise on it, each as strong as `gain` times the one before. From 0 to 1.
double roughNoise(double x, int seed, int octaves, double gain = 0.5);

/// From 0 to 1 while x goes from `begin` to `end`, gently at both.
double smoothStep(double begin, double end, double x);

} // namespace wallpaper

#include "tools/wallpaper/Landscape.h"

#include "tools/wallpaper/Noise.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace wallpaper {
namespace {

/// The height of the whole landscape, in widths of a wide picture.
constexpr double kWideHeight = 0.72;
/// Of what a wide picture leaves out, the share at the top.
constexpr double kCutAbove = 0.72;
/// Stars and the aurora end above this height.
constexpr double kStarsEnd = 0.5;
constexpr double kAuroraEnds = 0.6;

double square(double value) {
    return value * value;
}

/// A value as screens have it, from 0 to 255; `rest` from 0 to 1 rounds it up where it is the larger, which hides steps.
unsigned encoded(double value, double rest) {
    return static_cast<unsigned>(
        std::clamp(255 * std::pow(std::clamp(value, 0.0, 1.0), 1 / kGamma) + rest, 0.0, 255.0));
}

QRgb pixel(const Light& light, double rest) {
    return qRgb(static_cast<int>(encoded(light.red, rest)), static_cast<int>(encoded(light.green, rest)),
                static_cast<int>(encoded(light.blue, rest)));
}

} // namespace

Landscape::Landscape(const Scene& scene, const QSize& pixels)
    : scene_(scene), pixels_(pixels), unit_(std::max<double>(pixels.height(), pixels.width() * kWideHeight)),
      above_((unit_ - pixels.height()) / unit_ * kCutAbove) {
    for (int x = 0; x < pixels.width(); ++x)
        columns_.push_back(columnAt((x + 0.5 - pixels.width() / 2.0) / unit_));
}

Landscape::Column Landscape::columnAt(double x) const {
    Column column;
    column.x = x;
    for (const Scene::Ridge& ridge : scene_.ridges) {
        const double wave = roughNoise(x * ridge.density * 2.6 + 40 + ridge.seed, ridge.seed, 7, ridge.roughness);
        const double crest = 1 - std::abs(2 * wave - 1) * 0.9; // pointed above, round below
        column.crests.push_back(ridge.height - ridge.relief * (crest * 1.7 - 0.85));
    }
    for (std::size_t i = 0; i < kCurtains; ++i) {
        const auto number = static_cast<double>(i);
        const int seed = static_cast<int>(i);
        column.curtains[i] = 0.20 + 0.09 * number +
                             0.20 * (roughNoise(x * 1.6 + number * 7.3 + 3, 200 + seed, 3) - 0.5) -
                             0.16 * x * (number - 0.6);
        column.strengths[i] = 0.23 * (0.5 + 0.5 * noise(x * 3.1 + number, 400 + seed));
    }
    return column;
}

QImage Landscape::painted() const {
    QImage image(pixels_, QImage::Format_RGB32);
    for (int y = 0; y < pixels_.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        const double height = above_ + (y + 0.5) / unit_;
        const Light behind = sky(height);
        // Darker towards top and bottom, where texts stand.
        const double shade = 1 - 0.20 * smoothStep(0.55, 1, std::abs((y + 0.5) / pixels_.height() * 2 - 1));
        for (int x = 0; x < pixels_.width(); ++x)
            row[x] = pixel(at(columns_[static_cast<std::size_t>(x)], height, behind) * shade,
                           chance(x, std::int64_t{y} * 7919));
    }
    return image;
}

Light Landscape::at(const Column& column, double height, const Light& sky) const {
    Light light = sky + glow(column.x, height);
    if (scene_.aurora > 0 && height < kAuroraEnds) light = light + aurora(column, height);
    if (scene_.starry > 0 && height < kStarsEnd) light = light + star(column.x, height);
    return ridges(column, height, light);
}

Light Landscape::sky(double height) const {
    const auto below = std::ranges::find_if(scene_.sky, [&](const Scene::Stop& stop) { return height <= stop.height; });
    if (below == scene_.sky.end()) return scene_.sky.back().light;
    if (below == scene_.sky.begin()) return below->light;
    const auto over = std::prev(below);
    const double share = (height - over->height) / (below->height - over->height);
    return mixed(over->light, below->light, (smoothStep(0, 1, share) + share) / 2);
}

Light Landscape::glow(double x, double height) const {
    const Scene::Glow& glow = scene_.glow;
    const double distance = (square(x - glow.x) * 0.8 + square(height - glow.height) * 1.6) / square(glow.size);
    return distance < 9 ? glow.light * (glow.strength * std::exp(-distance * 1.2)) : Light{};
}

/// Curtains with a sharp lower edge, and long veils with rays above it.
Light Landscape::aurora(const Column& column, double height) const {
    static const std::array<Light, kCurtains> tints{light(0x39d6c0), light(0x5a7bff), light(0xb868ff)};
    Light sum;
    for (std::size_t i = 0; i < kCurtains; ++i) {
        const double below = height - column.curtains[i];
        const double veil = std::exp(-square(below) / (below > 0 ? 0.0009 : 0.014));
        if (veil < 0.001) continue;
        const auto number = static_cast<double>(i);
        const double rays = 0.62 + 0.38 * noise(column.x * 46 + number * 9 + below * 6, 300 + static_cast<int>(i));
        sum = sum + tints[i] * (scene_.aurora * column.strengths[i] * veil * rays);
    }
    return sum;
}

/// Every fifth cell of a grid has a star somewhere in it.
Light Landscape::star(double x, double height) const {
    constexpr double cell = 1 / 84.0;
    static const Light tint = light(0xdfe6ff);
    const auto column = static_cast<std::int64_t>(std::floor(x / cell));
    const auto row = static_cast<std::int64_t>(std::floor(height / cell));
    const auto share = [&](int which) { return chance(column + 420, row + which); };
    if (share(9000) <= 0.8) return {};
    const double starX = (static_cast<double>(column) + 0.15 + 0.7 * share(1)) * cell;
    const double starHeight = (static_cast<double>(row) + 0.15 + 0.7 * share(2)) * cell;
    const double size = (0.35 + 0.55 * std::pow(share(3), 3)) / 844;
    const double distance = (square(x - starX) + square(height - starHeight)) / square(size);
    const double brightness = scene_.starry * (0.25 + 0.75 * share(4)) * smoothStep(kStarsEnd, kStarsEnd / 2, height);
    return distance < 9 ? tint * (brightness * std::exp(-distance)) : Light{};
}

Light Landscape::ridges(const Column& column, double height, Light behind) const {
    constexpr double edge = 0.6; // of crests, in pixels
    for (std::size_t i = 0; i < scene_.ridges.size(); ++i) {
        const double depth = height - column.crests[i];
        const double cover = smoothStep(-edge, edge, depth * unit_);
        if (cover <= 0) continue;
        const Scene::Ridge& ridge = scene_.ridges[i];
        // Mist lies at one height along a ridge, so peaks stand out of it.
        const double mist =
            (depth * 0.35 + (height - ridge.height + ridge.relief * 0.55) * 0.65) / (ridge.relief * 1.55);
        const Light rock = mixed(ridge.crest, ridge.foot, smoothStep(0, 1, mist));
        // Light comes from the glow's side and catches the crests, those that are near it most.
        const double rim = scene_.rim * std::exp(-depth * 320 - square(column.x - scene_.glow.x) * 8) /
                           (1 + square(static_cast<double>(i)) * 0.7);
        behind = mixed(behind, rock + scene_.glow.light * rim, cover);
    }
    return behind;
}

} // namespace wallpaper

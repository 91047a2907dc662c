#pragma once

#include "tools/wallpaper/Scenes.h"

#include <QImage>
#include <QSize>

#include <array>
#include <vector>

namespace wallpaper {

/// Paints a scene, pixel by pixel. A wide picture shows more of the landscape at its sides and less of the sky.
class Landscape {
  public:
    Landscape(const Scene& scene, const QSize& pixels);
    [[nodiscard]] QImage painted() const;

  private:
    static constexpr std::size_t kCurtains = 3;

    /// What is the same all the way down.
    struct Column {
        double x = 0;                             ///< from the middle
        std::vector<double> crests;               ///< heights
        std::array<double, kCurtains> curtains{}; ///< heights of the aurora's lower edges
        std::array<double, kCurtains> strengths{};
    };

    [[nodiscard]] Column columnAt(double x) const;
    [[nodiscard]] Light at(const Column& column, double height, const Light& sky) const;
    [[nodiscard]] Light sky(double height) const;
    [[nodiscard]] Light glow(double x, double height) const;
    [[nodiscard]] Light aurora(const Column& column, double height) const;
    [[nodiscard]] Light star(double x, double height) const;
    /// The ridges, in front of what is behind them.
    [[nodiscard]] Light ridges(const Column& column, double height, Light behind) const;

    const Scene& scene_;
    QSize pixels_;
    double unit_;  ///< pixels to the height of the whole landscape
    double above_; ///< how much of the landscape is above the picture
    std::vector<Column> columns_;
};

} // namespace wallpaper

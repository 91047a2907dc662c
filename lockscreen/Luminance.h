#pragma once

#include "platform/ui/CGGeometry.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace lumora {

struct Color;

/// How bright a picture is, as a grid of relative luminances from 0 (black) to 1 (white) that covers the screen. One
/// without cells is black throughout. Any thread.
class Luminance {
  public:
    Luminance() = default;
    /// Rows from the top, each from the left; as many values as there are cells.
    Luminance(std::size_t columns, std::size_t rows, std::vector<float> cells);

    /// Of what lies under a rectangle, in fractions of the screen; cells that it touches count in part.
    [[nodiscard]] double mean(const platform::CGRect& part) const;
    /// The lowest and the highest.
    [[nodiscard]] std::pair<double, double> range(const platform::CGRect& part) const;

  private:
    /// Calls for each cell that the part touches, with the share of the cell.
    template<class Visit>
    void eachCell(const platform::CGRect& part, Visit visit) const;

    std::size_t columns_ = 0;
    std::size_t rows_ = 0;
    std::vector<float> cells_;
};

/// Relative luminance of a colour.
[[nodiscard]] double luminanceOf(const Color& color);
/// The luminance of a colour laid over a grey surface of some luminance.
[[nodiscard]] double laidOver(double surface, const Color& color, double opacity);
/// From 1 to 21, of two luminances.
[[nodiscard]] double contrast(double one, double other);

} // namespace lumora

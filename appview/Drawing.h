#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lumora {

/// A step of an App View's drawing. Lengths are points of the view. By kind, its numbers are:
///
///     color      role, red, green, blue, opacity
///     gradient   x, y, the five of a colour; x, y, the five of the other
///     rectangle  x, y, width, height, radius
///     line       x, y, x, y, thickness
///     arc        x, y, radius, first angle, angle in degrees, thickness
///     path       thickness, and for each part its kind (PathPart) and its points
///     text       x, baseline, width, size, weight, alignment; the text is one line, and no wider than that
///     picture    x, y, edge; the text is its name
///     clip       x, y, width, height, radius
///     caption    none; a text
struct DrawingStep {
    enum class Kind : unsigned char { color, gradient, rectangle, line, arc, path, text, picture, clip, caption };
    Kind kind = Kind::color;
    std::vector<double> numbers;
    std::string text;
    friend bool operator==(const DrawingStep&, const DrawingStep&) = default;
};

/// The parts of a path, and how many coordinates each has.
enum class PathPart : unsigned char { move, line, curve, close };
[[nodiscard]] constexpr std::size_t coordinatesOf(PathPart part) {
    return part == PathPart::curve ? 6 : part == PathPart::close ? 0 : 2;
}

/// What a plug-in has drawn.
struct Drawing {
    std::vector<DrawingStep> steps;
    double again = 0; ///< seconds until it wants to draw anew; 0 for not before a change
    friend bool operator==(const Drawing&, const Drawing&) = default;
};

struct DrawingLimits {
    static constexpr std::size_t steps = 4096;
    static constexpr std::size_t pathParts = 4096;             ///< of one path
    static constexpr std::size_t bytes = std::size_t{1} << 20; ///< of the archive
    static constexpr std::size_t textBytes = 4096;             ///< of one text
    static constexpr double points = 10'000;                   ///< no coordinate is further from 0
    static constexpr double again = 86'400;
};

/// Whether a picture of a bundle may have that name: of letters, digits, "-", "_" and ".", not at its beginning.
[[nodiscard]] bool isPictureName(std::string_view name);

/// The drawing as a keyed archive, {"again": seconds, "steps": [["rectangle", x, y, …], …]}. Fails for what
/// readDrawing() refuses. Any thread, as for what follows.
[[nodiscard]] platform::Result<platform::Data> writeDrawing(const Drawing& drawing);
/// Any bytes give a drawing within the limits, of which every step is as it is described above, or why there is none.
[[nodiscard]] platform::Result<Drawing> readDrawing(const platform::Data& archive);

} // namespace lumora

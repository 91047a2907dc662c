#pragma once

#include "platform/Export.h"

#include <memory>
#include <vector>

namespace platform {

class UIColor;
/// Colours are shared and immutable; two objects may be equal colours.
using UIColorRef = std::shared_ptr<const UIColor>;

/// What a colour's components mean; the platform's numbers.
enum class CGColorSpaceModel : int { monochrome = 0, rgb = 1 };

/// A colour with components in [0, 1]. Colours of one model with equal components are equal; a grey never equals the
/// same colour made of red, green and blue. Any thread.
class PLATFORM_EXPORT UIColor {
  public:
    struct HSB {
        double hue = 0; ///< a fraction of the colour circle: 0 is red, 1/3 green, 2/3 blue
        double saturation = 0;
        double brightness = 0;
        double alpha = 1;
        friend bool operator==(const HSB&, const HSB&) = default;
    };

    [[nodiscard]] static UIColorRef colorWithRed(double red, double green, double blue, double alpha);
    [[nodiscard]] static UIColorRef colorWithWhite(double white, double alpha);
    /// An RGB colour by the standard conversion. A component out of range counts as the nearest in range.
    [[nodiscard]] static UIColorRef colorWithHue(double hue, double saturation, double brightness, double alpha);
    [[nodiscard]] static UIColorRef blackColor(); ///< monochrome, as is the next one
    [[nodiscard]] static UIColorRef whiteColor();

    [[nodiscard]] CGColorSpaceModel colorSpaceModel() const { return model_; }
    /// White level and alpha, or red, green, blue and alpha.
    [[nodiscard]] std::vector<double> components() const;
    /// By the standard conversion: a grey has the hue and saturation 0, and no hue is 1.
    [[nodiscard]] HSB getHue() const;

    // A grey has its white level in the first three.
    [[nodiscard]] double red() const { return red_; }
    [[nodiscard]] double green() const { return green_; }
    [[nodiscard]] double blue() const { return blue_; }
    [[nodiscard]] double alpha() const { return alpha_; }

    friend bool operator==(const UIColor&, const UIColor&) = default;

    UIColor(CGColorSpaceModel model, double red, double green, double blue, double alpha)
        : model_(model), red_(red), green_(green), blue_(blue), alpha_(alpha) {}

  private:
    CGColorSpaceModel model_;
    double red_;
    double green_;
    double blue_;
    double alpha_;
};

} // namespace platform

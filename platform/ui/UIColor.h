#pragma once

#include "platform/Export.h"

#include <memory>

namespace platform {

class UIColor;
/// Colours are shared and immutable; whether two are one object and whether they are equal are two questions.
using UIColorRef = std::shared_ptr<const UIColor>;

/// A colour with components in [0, 1]. Any thread.
class PLATFORM_EXPORT UIColor {
  public:
    [[nodiscard]] static UIColorRef colorWithRed(double red, double green, double blue, double alpha);
    [[nodiscard]] static UIColorRef blackColor();
    [[nodiscard]] static UIColorRef whiteColor();
    [[nodiscard]] static UIColorRef clearColor();

    [[nodiscard]] double red() const { return red_; }
    [[nodiscard]] double green() const { return green_; }
    [[nodiscard]] double blue() const { return blue_; }
    [[nodiscard]] double alpha() const { return alpha_; }

    friend bool operator==(const UIColor&, const UIColor&) = default;

    UIColor(double red, double green, double blue, double alpha);

  private:
    double red_;
    double green_;
    double blue_;
    double alpha_;
};

} // namespace platform

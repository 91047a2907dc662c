#pragma once

#include "platform/ui/UIView.h"

namespace lumora {

/// The brightness bar of the colour control: fades from a colour at its left edge to black at its right edge. It draws
/// nothing until it has a colour. Main thread.
class BrightnessView final : public platform::UIView {
  public:
    /// Null until a colour is set.
    [[nodiscard]] const platform::UIColorRef& color() const { return color_; }
    /// Takes the colour of the left edge, at full brightness and never null; its alpha is ignored. The same object again
    /// changes nothing, while another object is drawn anew even if its colour is equal.
    void setColor(platform::UIColorRef color);

    /// Null until a colour is set.
    [[nodiscard]] const platform::CGGradientRef& gradient() const { return gradient_; }
    void drawRect(const platform::CGRect& rect) override;

  private:
    void setupGradient();

    platform::CGGradientRef gradient_;
    platform::UIColorRef color_;
};

} // namespace lumora

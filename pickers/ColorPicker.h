#pragma once

#include "pickers/BrightnessView.h"
#include "platform/foundation/Value.h"
#include "platform/ui/UIImageView.h"

#include <functional>
#include <memory>
#include <vector>

namespace lumora {

/// A colour control: a field of hues and saturations above a bar of brightnesses, each with a mark that follows the
/// finger. Every change of the colour is reported to the change block, while the finger is still down.
///
///     auto picker = make<ColorPicker>(frame, color, [](const UIColorRef& chosen) { show(chosen); });
///     addSubview(picker); // shows the colour, and black when there is none
///
/// The control keeps the colour as the object that was chosen last, and also as hue, saturation and brightness: grey
/// and black have no hue, yet the marks stay where the finger left them until the control moves. Main thread.
class ColorPicker final : public platform::UIView {
  public:
    /// Receives the colour that is now stored.
    using DidChangeColorBlock = std::function<void(const platform::UIColorRef& color)>;

    using UIView::initWithFrame;
    /// Stores the colour, which may be null, and reports nothing. The subviews are made later.
    bool initWithFrame(const platform::CGRect& frame, platform::UIColorRef color,
                       DidChangeColorBlock andDidChangeColorBlock);

    /// Null only until the control is placed in a view.
    [[nodiscard]] const platform::UIColorRef& color() const { return color_; }
    /// Moves the marks to a colour and reports it if it differs from the stored one; null does nothing. A grey is
    /// stored as an opaque RGB colour.
    ///
    /// Kept on purpose: while the change is reported, hue and saturation are those of the new colour, and brightness is
    /// still that of the former one.
    void setColor(const platform::UIColorRef& color);

    [[nodiscard]] double currentHue() const { return currentHue_; } ///< a fraction of the circle, 0 is red
    [[nodiscard]] double currentSaturation() const { return currentSaturation_; }
    [[nodiscard]] double currentBrightness() const { return currentBrightness_; }
    /// The current {"h": hue, "s": saturation, "b": brightness}.
    [[nodiscard]] platform::Dictionary getHSB() const;
    /// Has the components of a dictionary as getHSB() gives, and their colour, and reports nothing. A component that is
    /// missing or not a number counts as 0, and one out of bounds as the nearer bound.
    void setHSB(const platform::Value& hsb);

    [[nodiscard]] const DidChangeColorBlock& didChangeColorBlock() const { return didChangeColorBlock_; }
    /// Null if changes are not reported.
    void setDidChangeColorBlock(DidChangeColorBlock block) { didChangeColorBlock_ = std::move(block); }

    /// Recolours the borders of field and bar, and the bar's mark. Kept on purpose: the view's own tint stays.
    void setTintColor(platform::UIColorRef color) override;
    /// Black: the colour of the borders until setTintColor() is called.
    [[nodiscard]] static platform::UIColorRef _defaultTintColor();

    // The first call makes and places the view.
    const std::shared_ptr<platform::UIImageView>& hueSatImage();
    const std::shared_ptr<BrightnessView>& gradientView();
    const std::shared_ptr<platform::UIView>& crossHairs();
    const std::shared_ptr<platform::UIView>& brightnessIndicator();
    void setHueSatImage(std::shared_ptr<platform::UIImageView> view) { hueSatImage_ = std::move(view); }
    void setGradientView(std::shared_ptr<BrightnessView> view) { gradientView_ = std::move(view); }
    void setCrossHairs(std::shared_ptr<platform::UIView> view) { crossHairs_ = std::move(view); }
    void setBrightnessIndicator(std::shared_ptr<platform::UIView> view) { brightnessIndicator_ = std::move(view); }

    void willMoveToSuperview(platform::UIView* newSuperview) override;
    void layoutSubviews() override;
    void touchesBegan(const platform::UITouches& touches, const platform::UIEvent& event) override;
    void touchesMoved(const platform::UITouches& touches, const platform::UIEvent& event) override;
    [[nodiscard]] std::vector<platform::UIAccessibilityElement> accessibilityElements() const override;

  private:
    [[nodiscard]] platform::CGRect fieldFrame() const;
    [[nodiscard]] platform::CGRect barFrame() const;

    /// Where a colour comes to be another one, which the block is told of; setHSB() tells nobody.
    void _setColor(const platform::UIColorRef& color);
    void _updateGradientColor();
    void _updateCrosshairPosition();
    void _updateBrightnessPosition();
    void _updateHueSatWithMovement(platform::CGPoint point);
    void _updateBrightnessWithMovement(platform::CGPoint point);
    void dispatchTouchEvent(platform::CGPoint point);

    double currentBrightness_ = 0;
    double currentHue_ = 0;
    double currentSaturation_ = 0;
    DidChangeColorBlock didChangeColorBlock_;
    platform::UIColorRef color_;
    std::shared_ptr<BrightnessView> gradientView_;
    std::shared_ptr<platform::UIView> brightnessIndicator_;
    std::shared_ptr<platform::UIImageView> hueSatImage_;
    std::shared_ptr<platform::UIView> crossHairs_;
};

} // namespace lumora

#include "pickers/ColorPicker.h"

#include "pickers/ColorMapping.h"
#include "platform/foundation/NSBundle.h"
#include "platform/ui/UITouch.h"

#include <algorithm>
#include <utility>

namespace lumora {

using namespace platform;

namespace {

constexpr double kMargin = 20;      ///< left, right and top of the field, and beneath the bar
constexpr double kBarHeight = 30;   ///< of the bar, which stands a margin beneath the field
constexpr double kMarkSide = 28;    ///< of the field's mark
constexpr CGSize kIndicator{5, 40}; ///< the bar's mark

void setBorder(UIView& view, UIColorRef color) {
    view.layer().borderColor = std::move(color);
    view.layer().borderWidth = 0.5;
    view.layer().cornerRadius = 2.0;
    view.setClipsToBounds(true);
}

void setMark(UIView& view) {
    view.setAutoresizingMask(UIViewAutoresizingNone);
    view.layer().borderColor = UIColor::whiteColor();
    view.layer().borderWidth = 0.5;
    view.layer().shadowOffset = {0, 0};
    view.layer().shadowRadius = 0.5;
    view.layer().shadowOpacity = 1.0;
}

} // namespace

bool ColorPicker::initWithFrame(const CGRect& frame, UIColorRef color, DidChangeColorBlock andDidChangeColorBlock) {
    if (!UIView::init()) return false;
    setFrame(frame);
    color_ = std::move(color);
    didChangeColorBlock_ = std::move(andDidChangeColorBlock);
    return true;
}

UIColorRef ColorPicker::_defaultTintColor() {
    return UIColor::blackColor();
}

// -- the subviews --

CGRect ColorPicker::fieldFrame() const {
    const auto [width, height] = frame().size;
    return CGRectMake(kMargin, kMargin, width - 2 * kMargin, height - (3 * kMargin + kBarHeight));
}

CGRect ColorPicker::barFrame() const {
    const auto [width, height] = frame().size;
    return CGRectMake(kMargin, height - (kMargin + kBarHeight), width - 2 * kMargin, kBarHeight);
}

const std::shared_ptr<UIImageView>& ColorPicker::hueSatImage() {
    if (!hueSatImage_) {
        // Without the map the field is empty, and works all the same.
        const auto file = NSBundle::bundleForClass(typeid(ColorPicker))->pathForResource("colormap", "png");
        hueSatImage_ = make<UIImageView>(UIImage::imageWithContentsOfFile(file));
        hueSatImage_->setFrame(fieldFrame());
        hueSatImage_->setAutoresizingMask(UIViewAutoresizingFlexibleWidth | UIViewAutoresizingFlexibleHeight);
        setBorder(*hueSatImage_, _defaultTintColor());
    }
    if (!hueSatImage_->superview()) addSubview(hueSatImage_);
    return hueSatImage_;
}

const std::shared_ptr<BrightnessView>& ColorPicker::gradientView() {
    if (!gradientView_) {
        gradientView_ = make<BrightnessView>();
        gradientView_->setFrame(barFrame());
        gradientView_->setAutoresizingMask(UIViewAutoresizingFlexibleWidth | UIViewAutoresizingFlexibleTopMargin);
        setBorder(*gradientView_, _defaultTintColor());
    }
    if (!gradientView_->superview()) addSubview(gradientView_);
    return gradientView_;
}

const std::shared_ptr<UIView>& ColorPicker::crossHairs() {
    if (!crossHairs_) {
        const auto [width, height] = frame().size;
        crossHairs_ = make<UIView>(CGRectMake(width * 0.5, height * 0.5, kMarkSide, kMarkSide));
        setMark(*crossHairs_);
        crossHairs_->layer().cornerRadius = kMarkSide / 2;
        crossHairs_->layer().shadowColor = UIColor::blackColor();
    }
    if (!crossHairs_->superview()) insertSubview(crossHairs_, *hueSatImage());
    return crossHairs_;
}

const std::shared_ptr<UIView>& ColorPicker::brightnessIndicator() {
    if (!brightnessIndicator_) {
        const CGRect bar = gradientView()->frame();
        brightnessIndicator_ =
            make<UIView>(CGRectMake(bar.size.width * 0.5, bar.origin.y - 4, kIndicator.width, kIndicator.height));
        setMark(*brightnessIndicator_);
        brightnessIndicator_->setBackgroundColor(UIColor::whiteColor());
    }
    if (!brightnessIndicator_->superview()) insertSubview(brightnessIndicator_, *gradientView());
    return brightnessIndicator_;
}

void ColorPicker::setTintColor(UIColorRef color) {
    hueSatImage()->layer().borderColor = color;
    gradientView()->layer().borderColor = color;
    brightnessIndicator()->setBackgroundColor(std::move(color));
}

// -- the colour --

Dictionary ColorPicker::getHSB() const {
    return {{"h", currentHue_}, {"s", currentSaturation_}, {"b", currentBrightness_}};
}

void ColorPicker::setHSB(const Value& hsb) {
    const auto component = [&](const char* key) { return std::clamp(hsb[key].doubleValue(), 0.0, 1.0); };
    currentHue_ = component("h");
    currentSaturation_ = component("s");
    currentBrightness_ = component("b");
    color_ = UIColor::colorWithHue(currentHue_, currentSaturation_, currentBrightness_, 1.0);
    brightnessIndicator()->setCenter(pointOf(currentBrightness_, gradientView()->frame()));
    _updateCrosshairPosition();
}

void ColorPicker::setColor(const UIColorRef& color) {
    if (!color) return;
    const UIColor::HSB hsb = color->getHue();
    currentHue_ = hsb.hue;
    currentSaturation_ = hsb.saturation;
    _setColor(color);
    _updateGradientColor();
    _updateBrightnessPosition();
    _updateCrosshairPosition();
}

void ColorPicker::_setColor(const UIColorRef& color) {
    if (color_ && *color_ == *color) return;
    color_ = color->colorSpaceModel() == CGColorSpaceModel::monochrome
                 ? UIColor::colorWithHue(0, 0, color->components().front(), 1.0)
                 : color;
    // Copies, since the block may replace itself and set another colour.
    const auto didChangeColor = didChangeColorBlock_;
    const auto stored = color_;
    if (didChangeColor) didChangeColor(stored);
}

void ColorPicker::_updateGradientColor() {
    const auto full = UIColor::colorWithHue(currentHue_, currentSaturation_, 1.0, 1.0);
    crossHairs()->layer().backgroundColor = full;
    brightnessIndicator()->layer().backgroundColor = full;
    gradientView()->setColor(full);
}

void ColorPicker::_updateCrosshairPosition() {
    crossHairs()->setCenter(pointOf(HueSaturation{currentHue_, currentSaturation_}, hueSatImage()->frame()));
    _updateGradientColor();
}

void ColorPicker::_updateBrightnessPosition() {
    if (color_) currentBrightness_ = color_->getHue().brightness;
    brightnessIndicator()->setCenter(pointOf(currentBrightness_, gradientView()->frame()));
}

// -- events --

void ColorPicker::willMoveToSuperview(UIView* newSuperview) {
    UIView::willMoveToSuperview(newSuperview);
    if (!color_) color_ = _defaultTintColor();
    crossHairs()->setHidden(false);
    brightnessIndicator()->setHidden(false);
    setColor(color_); // it is the stored colour, so nothing is reported
}

void ColorPicker::layoutSubviews() {
    UIView::layoutSubviews();
    hueSatImage()->setFrame(fieldFrame());
    gradientView()->setFrame(barFrame());
    _updateBrightnessPosition();
    _updateCrosshairPosition();
}

void ColorPicker::touchesBegan(const UITouches& touches, const UIEvent& /*event*/) {
    for (const auto& touch : touches)
        dispatchTouchEvent(touch->locationInView(*this));
}

void ColorPicker::touchesMoved(const UITouches& touches, const UIEvent& event) {
    touchesBegan(touches, event);
}

void ColorPicker::dispatchTouchEvent(CGPoint point) {
    if (CGRectContainsPoint(hueSatImage()->frame(), point)) {
        crossHairs()->setCenter(point);
        _updateHueSatWithMovement(point);
    } else if (const CGRect bar = gradientView()->frame(); CGRectContainsPoint(bar, point)) {
        brightnessIndicator()->setCenter({point.x, CGRectGetCenter(bar).y});
        _updateBrightnessWithMovement(point);
    }
}

void ColorPicker::_updateHueSatWithMovement(CGPoint point) {
    const auto [hue, saturation] = hueSaturationAt(point, hueSatImage()->frame());
    currentHue_ = hue;
    currentSaturation_ = saturation;
    _updateGradientColor();
    _setColor(UIColor::colorWithHue(hue, saturation, currentBrightness_, 1.0));
}

void ColorPicker::_updateBrightnessWithMovement(CGPoint point) {
    currentBrightness_ = brightnessAt(point, gradientView()->frame());
    _setColor(UIColor::colorWithHue(currentHue_, currentSaturation_, currentBrightness_, 1.0));
}

std::vector<UIAccessibilityElement> ColorPicker::accessibilityElements() const {
    if (!hueSatImage_ || !gradientView_) return {};
    return {{"Hue and Saturation",
             hueSatImage_->frame(),
             {{"Hue", currentHue_}, {"Saturation", currentSaturation_, /*vertical=*/true, /*reversed=*/true}}},
            {"Brightness",
             gradientView_->frame(),
             {{"Brightness", currentBrightness_, /*vertical=*/false, /*reversed=*/true}}}};
}

} // namespace lumora

#include "pickers/BrightnessView.h"

namespace lumora {

using namespace platform;

void BrightnessView::setColor(UIColorRef color) {
    if (color == color_) return;
    color_ = std::move(color);
    setupGradient();
    setNeedsDisplay();
}

void BrightnessView::setupGradient() {
    gradient_ = CGGradientCreateWithColorComponents({color_->red(), color_->green(), color_->blue(), 1.0, // colour
                                                     0, 0, 0, 1.0});                                      // black
}

void BrightnessView::drawRect(const CGRect& /*rect*/) {
    const auto [width, height] = frame().size;
    CGContext& context = *UIGraphicsGetCurrentContext();
    context.saveGState();
    context.clipToRect(CGRectMake(0, 0, width, height));
    context.drawLinearGradient(gradient_, {0, 0}, {width, 0}, 0);
    context.restoreGState();
}

} // namespace lumora

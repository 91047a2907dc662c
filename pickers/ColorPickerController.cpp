#include "pickers/ColorPickerController.h"

#include "link/PreferenceKeys.h"
#include "pickers/ColorPickerView.h"

namespace lumora {

PLATFORM_CLASS(ColorPickerController)

ColorPickerController::~ColorPickerController() {
    cutChangeBlock();
}

std::shared_ptr<platform::UIView> ColorPickerController::makeView(const platform::CGRect& frame) {
    const auto view = platform::make<ColorPickerView>(frame);
    view->setIdentifier(kLSBlurColor);
    cutChangeBlock();
    colorView_ = view;
    return view;
}

void ColorPickerController::cutChangeBlock() {
    if (const auto view = colorView_.lock()) view->pickerView()->setDidChangeColorBlock(nullptr);
}

} // namespace lumora

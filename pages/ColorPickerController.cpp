#include "pages/ColorPickerController.h"

#include "link/PreferenceKeys.h"
#include "pickers/ColorPickerView.h"

namespace lumora {

PLATFORM_CLASS(ColorPickerController)

ColorPickerController::~ColorPickerController() {
    cutChangeBlock();
}

std::shared_ptr<platform::UIView> ColorPickerController::makeView(const platform::CGRect& frame) {
    const auto view = platform::make<ColorPickerView>(frame);
    if (view) view->setIdentifier(kLSBlurColor);
    cutChangeBlock();
    colorView_ = view;
    return view;
}

void ColorPickerController::cutChangeBlock() {
    const auto view = colorView_.lock();
    if (view && view->pickerView()) view->pickerView()->setDidChangeColorBlock(nullptr);
}

} // namespace lumora

#include "pickers/FontViewController.h"

#include "pickers/FontView.h"

namespace lumora {

PLATFORM_CLASS(FontViewController)

std::shared_ptr<platform::UIView> FontViewController::makeView(const platform::CGRect& frame) {
    return platform::make<FontView>(frame);
}

} // namespace lumora

#pragma once

#include "pages/base/HostedViewPage.h"

#include <memory>

namespace lumora {

class ColorPickerView;

/// The "Color" page: hosts the choice of the blur's colour. Main thread.
class ColorPickerController final : public HostedViewPage {
  public:
    ColorPickerController() : HostedViewPage("Color") {}
    ~ColorPickerController() override;

  protected:
    std::shared_ptr<platform::UIView> makeView(const platform::CGRect& frame) override;

  private:
    /// Cuts the change block of the latest view: the block holds the view, which would otherwise live for ever.
    void cutChangeBlock();

    std::weak_ptr<ColorPickerView> colorView_;
};

} // namespace lumora

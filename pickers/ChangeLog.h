#pragma once

#include "platform/ui/UIView.h"

namespace lumora {

/// Shows the bundle's change log, a text to read and scroll. The text is empty if the file is missing or not UTF-8. Main
/// thread.
class ChangeLog final : public platform::UIView {
  public:
    bool initWithFrame(const platform::CGRect& frame) override;

  private:
    void setupTextViewWithFrame(const platform::CGRect& frame);
};

} // namespace lumora

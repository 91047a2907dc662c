#pragma once

#include "platform/ui/UIView.h"

namespace lumora {

/// Shows the bundle's change log, a text to read and scroll. A file that is missing or not in UTF-8 shows as an empty
/// text. Main thread.
class ChangeLog final : public platform::UIView {
  public:
    bool initWithFrame(const platform::CGRect& frame) override;

  private:
    void setupTextViewWithFrame(const platform::CGRect& frame);
};

} // namespace lumora

#pragma once

#include "pages/HostedViewPage.h"

namespace lumora {

/// The "Fonts" page: hosts the list of installed fonts. Main thread.
class FontViewController final : public HostedViewPage {
  public:
    FontViewController() : HostedViewPage("Fonts") {}

  protected:
    std::shared_ptr<platform::UIView> makeView(const platform::CGRect& frame) override;
};

} // namespace lumora

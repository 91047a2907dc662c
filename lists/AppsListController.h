#pragma once

#include "pages/HostedViewPage.h"

namespace lumora {

/// The "Apps" page: hosts the list of applications on the lock screen. Main thread.
class AppsListController final : public HostedViewPage {
  public:
    AppsListController() : HostedViewPage("Apps") {}

  protected:
    std::shared_ptr<platform::UIView> makeView(const platform::CGRect& frame) override;
};

} // namespace lumora

#pragma once

#include "pages/HostedViewPage.h"

namespace lumora {

/// The "Auto-Unlock Apps" page: hosts the list of applications exempt from auto-unlock. Main thread.
class AUAppsListController final : public HostedViewPage {
  public:
    AUAppsListController() : HostedViewPage("Auto-Unlock Apps") {}

  protected:
    std::shared_ptr<platform::UIView> makeView(const platform::CGRect& frame) override;
};

} // namespace lumora

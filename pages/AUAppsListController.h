#pragma once

#include "lists/AUAppsListView.h"
#include "pages/base/HostedViewPage.h"

namespace lumora {

/// The "Auto-Unlock Apps" page: hosts the choice of applications that leave the device locked. Main thread.
class AUAppsListController final : public PageOf<AUAppsListView> {
  public:
    AUAppsListController() : PageOf("Auto-Unlock Apps") {}
};

} // namespace lumora

#pragma once

#include "lists/AppsListView.h"
#include "pages/base/HostedViewPage.h"

namespace lumora {

/// The "Apps" page: hosts the list of applications on the lock screen. Main thread.
class AppsListController final : public PageOf<AppsListView> {
  public:
    AppsListController() : PageOf("Apps") {}
};

} // namespace lumora

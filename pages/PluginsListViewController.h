#pragma once

#include "lists/PluginsListView.h"
#include "pages/base/HostedViewPage.h"

namespace lumora {

/// The "Plugins" page: hosts the order list of App View plug-ins. Main thread.
class PluginsListViewController final : public PageOf<PluginsListView> {
  public:
    PluginsListViewController() : PageOf("Plugins") {}
};

} // namespace lumora

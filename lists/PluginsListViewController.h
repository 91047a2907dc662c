#pragma once

#include "pages/HostedViewPage.h"

namespace lumora {

/// The "Plugins" page: hosts the order list of App View plug-ins. Main thread.
class PluginsListViewController final : public HostedViewPage {
  public:
    PluginsListViewController() : HostedViewPage("Plugins") {}

  protected:
    std::shared_ptr<platform::UIView> makeView(const platform::CGRect& frame) override;
};

} // namespace lumora

#pragma once

#include "pages/HostedViewPage.h"

namespace lumora {

/// The "Change Log" page: hosts the change log. Main thread.
class ChangeLogController final : public HostedViewPage {
  public:
    ChangeLogController() : HostedViewPage("Change Log") {}

  protected:
    std::shared_ptr<platform::UIView> makeView(const platform::CGRect& frame) override;
};

} // namespace lumora

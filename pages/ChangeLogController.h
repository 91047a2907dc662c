#pragma once

#include "pages/base/HostedViewPage.h"
#include "pickers/ChangeLog.h"

namespace lumora {

/// The "Change Log" page: hosts the change log. Main thread.
class ChangeLogController final : public PageOf<ChangeLog> {
  public:
    ChangeLogController() : PageOf("Change Log") {}
};

} // namespace lumora

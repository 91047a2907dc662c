#pragma once

#include "platform/messaging/CFMessagePort.h"
#include "platform/messaging/PortAddress.h"
#include "platform/messaging/PortListener.h"

#include <memory>
#include <optional>

namespace platform {

/// Either end: a remote port is only an address, a local one has its listener and callout too.
class CFMessagePort {
  public:
    std::optional<PortAddress> address; ///< nothing for a name that can be none
    std::unique_ptr<PortListener> listener;
    CFMessagePortCallBack callout;
};

} // namespace platform

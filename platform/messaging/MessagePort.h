#pragma once

#include "platform/messaging/CFMessagePort.h"
#include "platform/messaging/PortAddress.h"
#include "platform/messaging/PortListener.h"

#include <memory>
#include <optional>
#include <sys/types.h>

namespace platform {

/// Either end of a channel: a remote port has an address only, a local one its listener and callout too.
class CFMessagePort {
  public:
    std::optional<PortAddress> address; ///< nothing when no port can have the name
    std::unique_ptr<PortListener> listener;
    CFMessagePortCallBack callout;
    pid_t sender = 0; ///< while the callout runs: of the request that it answers
};

} // namespace platform

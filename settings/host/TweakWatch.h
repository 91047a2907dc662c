#pragma once

#include "link/Messages.h"
#include "platform/messaging/PortWatch.h"

namespace settings {

/// Tells whether a tweak is there: one that serves both ports of the bundle.
class TweakWatch : public platform::PortWatch {
  public:
    TweakWatch()
        : PortWatch({lumora::portName(lumora::kUpdateSettings), lumora::portName(lumora::kRequestTweakSettings)}) {}
};

} // namespace settings

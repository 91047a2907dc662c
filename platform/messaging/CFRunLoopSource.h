#pragma once

#include "platform/messaging/Poller.h"

namespace platform {

/// What a run loop serves. All calls come on the loop's thread.
class CFRunLoopSource {
  public:
    CFRunLoopSource() = default;
    CFRunLoopSource(const CFRunLoopSource&) = delete;
    CFRunLoopSource& operator=(const CFRunLoopSource&) = delete;
    virtual ~CFRunLoopSource() = default;

    /// Puts its descriptors under the loop's poller, which stays until cancel().
    virtual void schedule(Poller& poller) = 0;
    /// Takes them away again and ends what was under way.
    virtual void cancel() = 0;
};

} // namespace platform

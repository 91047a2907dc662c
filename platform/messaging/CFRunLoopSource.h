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

    /// Adds its descriptors to the loop's poller, which outlives cancel().
    virtual void schedule(Poller& poller) = 0;
    /// Takes them away again, and ends what is under way.
    virtual void cancel() = 0;
};

} // namespace platform

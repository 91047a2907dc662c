#pragma once

#include "platform/Export.h"

#include <chrono>
#include <functional>

namespace platform {

/// A queue of work items: the default-priority global queue, concurrent, or the main queue, one at a time.
class DispatchQueue;

/// The concurrent queue. Its threads come as they are needed, up to 256 with small stacks (256 KiB), and go again when
/// idle; one that is stuck holds up no other. Priority 0 and flags 0 are the only ones known.
[[nodiscard]] PLATFORM_EXPORT DispatchQueue& dispatch_get_global_queue(long priority, unsigned long flags);

/// The queue of the main thread, which runs every call into the bundle and the plug-ins.
[[nodiscard]] PLATFORM_EXPORT DispatchQueue& dispatch_get_main_queue();

/// Hands in a work item and returns at once. Items handed to the main queue run in that order; between items on the
/// global queue there is none. Any thread.
PLATFORM_EXPORT void dispatch_async(DispatchQueue& queue, std::function<void()> block);

/// Makes the calling thread the main thread: runs the main queue's items, one after the other, without end.
[[noreturn]] PLATFORM_EXPORT void dispatch_main();

/// Waits until no item of the global queue is running or waiting, at most so long; true when it is so. For a program
/// that is about to leave.
PLATFORM_EXPORT bool dispatch_wait_until_idle(std::chrono::milliseconds atMost);

} // namespace platform

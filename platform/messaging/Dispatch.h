#pragma once

#include "platform/Export.h"

#include <chrono>
#include <functional>

namespace platform {

/// A queue of work items: the global queue of default priority runs them side by side, the main queue one at a time.
class DispatchQueue;

/// The global queue. Its threads come as they are needed, up to 256 with small stacks (256 KiB), and go again when
/// idle; one that is stuck holds up no other. There is only priority 0, with flags 0.
[[nodiscard]] PLATFORM_EXPORT DispatchQueue& dispatch_get_global_queue(long priority, unsigned long flags);

/// The queue of the main thread, which runs every call into the bundle and the plug-ins.
[[nodiscard]] PLATFORM_EXPORT DispatchQueue& dispatch_get_main_queue();

/// Hands in a work item and returns at once. The main queue runs items in the order in which they come; the global
/// queue promises no order. Any thread.
PLATFORM_EXPORT void dispatch_async(DispatchQueue& queue, std::function<void()> block);

/// Makes the calling thread the main thread: runs the main queue's items, one after the other, without end.
[[noreturn]] PLATFORM_EXPORT void dispatch_main();

/// Gives the process a main thread beside the threads that it has. Once, however often it is called: a process has one.
/// Any thread.
PLATFORM_EXPORT void startMainThread();

/// Waits until no item of the global queue runs or waits; false when that takes longer. For a program that is about to
/// end. Any thread.
PLATFORM_EXPORT bool dispatch_wait_until_idle(std::chrono::milliseconds atMost);

} // namespace platform

#pragma once

#include "platform/Export.h"

#include <memory>

namespace platform {

/// A thread's own loop of event sources. Sources come from local message ports alone.
class CFRunLoop;
using CFRunLoopRef = std::shared_ptr<CFRunLoop>;

/// Something that a run loop serves: made by CFMessagePortCreateRunLoopSource().
class CFRunLoopSource;
using CFRunLoopSourceRef = std::shared_ptr<CFRunLoopSource>;

/// The calling thread's loop, made on the first call.
[[nodiscard]] PLATFORM_EXPORT CFRunLoopRef CFRunLoopGetCurrent();
/// Adds a source to the calling thread's loop before the loop runs. A null source is ignored.
PLATFORM_EXPORT void CFRunLoopAddSource(const CFRunLoopRef& loop, const CFRunLoopSourceRef& source);
/// Serves the calling thread's sources until CFRunLoopStop(), then lets go of them, so that the caller can hold a
/// port's last reference. Returns at once when there are none.
PLATFORM_EXPORT void CFRunLoopRun();
/// Makes the loop's CFRunLoopRun() return soon, or its next one at once. Any thread.
PLATFORM_EXPORT void CFRunLoopStop(const CFRunLoopRef& loop);

} // namespace platform

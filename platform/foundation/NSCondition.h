#pragma once

#include "platform/Export.h"

#include <condition_variable>
#include <mutex>

namespace platform {

/// A lock with a condition to wait for.
///
///     condition.lock();
///     while (!ready) condition.wait();   // releases the lock while it waits; may wake for no reason
///     condition.unlock();
class PLATFORM_EXPORT NSCondition {
  public:
    NSCondition() = default;
    NSCondition(const NSCondition&) = delete;
    NSCondition& operator=(const NSCondition&) = delete;

    void lock() { mutex_.lock(); }
    void unlock() { mutex_.unlock(); }
    /// Waits without a time limit. The caller holds the lock before and after.
    void wait();
    void signal() { signalled_.notify_one(); }

    /// How many threads of this process wait on any condition just now: tells a page that waits for the tweak from one
    /// that works. Any thread.
    [[nodiscard]] static int waiting();

  private:
    std::mutex mutex_;
    std::condition_variable signalled_;
};

} // namespace platform

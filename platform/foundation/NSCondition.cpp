#include "platform/foundation/NSCondition.h"

#include <atomic>

namespace platform {

namespace {

std::atomic<int> waitingThreads = 0;

} // namespace

void NSCondition::wait() {
    std::unique_lock held(mutex_, std::adopt_lock);
    ++waitingThreads;
    signalled_.wait(held);
    --waitingThreads;
    held.release();
}

int NSCondition::waiting() {
    return waitingThreads;
}

} // namespace platform

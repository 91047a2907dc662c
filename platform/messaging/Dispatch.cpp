#include "platform/messaging/Dispatch.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <pthread.h>
#include <thread>
#include <utility>
#include <vector>

namespace platform {

using Block = std::function<void()>;

class DispatchQueue {
  public:
    DispatchQueue() = default;
    DispatchQueue(const DispatchQueue&) = delete;
    DispatchQueue& operator=(const DispatchQueue&) = delete;
    virtual ~DispatchQueue() = default;
    virtual void async(Block block) = 0;
};

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t kStackSize = 4 << 20; // instrumented frames are many times as large
#else
constexpr std::size_t kStackSize = 256 << 10;
#endif

constexpr int kMostThreads = 256;
constexpr std::chrono::milliseconds kIdleTime(1500);

/// A pool in which at least one thread always looks for work, until there are as many threads as there may be.
///
/// A thread that takes an item first makes sure that another one looks, and only then runs the item, which may be stuck
/// for seconds. So handing in an item never starts a thread, except for the very first item and after the system has
/// refused a thread.
class GlobalQueue final : public DispatchQueue {
  public:
    void async(Block block) override {
        std::unique_lock held(mutex_);
        items_.push_back(std::move(block));
        ++unfinished_;
        Thread* const idle = callIdleThread();
        const bool alone = claimLooker();
        held.unlock();
        // Woken under the lock, the thread could take the processor from the caller only to wait for the lock.
        if (idle != nullptr) idle->wake.notify_one();
        if (alone) startLooker();
    }

    bool waitUntilIdle(std::chrono::milliseconds atMost) {
        std::unique_lock held(mutex_);
        return idle_.wait_for(held, atMost, [this] { return unfinished_ == 0; });
    }

  private:
    /// What the other threads know of one. The thread that fell idle last is called first: its memory is still in the
    /// caches, and the others get to leave.
    struct Thread {
        std::condition_variable wake;
        bool called = false;
    };

    /// The thread to wake, null when none is idle. The thread may be gone by then; its record stays.
    Thread* callIdleThread() {
        if (resting_.empty()) return nullptr;
        Thread* const idle = resting_.back();
        resting_.pop_back();
        idle->called = true;
        return idle;
    }

    /// Reserves the place of a thread that will look for work, if none does and one may be started.
    bool claimLooker() {
        if (looking_ > 0 || threads_ == kMostThreads) return false;
        ++looking_;
        ++threads_;
        return true;
    }

    void startLooker() {
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstacksize(&attributes, kStackSize);
        pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
        pthread_t thread{};
        const auto main = [](void* queue) -> void* {
            static_cast<GlobalQueue*>(queue)->work();
            return nullptr;
        };
        const int error = ::pthread_create(&thread, &attributes, main, this);
        pthread_attr_destroy(&attributes);
        if (error == 0) return;

        // Nothing is lost: the items wait for the next thread that is done with its own or can be started.
        const std::lock_guard held(mutex_);
        --looking_;
        --threads_;
    }

    void work() {
        std::unique_lock held(mutex_);
        auto self = spare_.empty() ? std::make_unique<Thread>() : std::move(spare_.back());
        if (!spare_.empty()) spare_.pop_back();
        while (waitForItem(held, *self)) {
            Block item = std::move(items_.front());
            items_.pop_front();
            --looking_;
            const bool alone = claimLooker();
            held.unlock();
            if (alone) startLooker();
            item();
            item = nullptr; // what the item holds goes before the item counts as done
            held.lock();
            ++looking_;
            if (--unfinished_ == 0) idle_.notify_all();
        }
        spare_.push_back(std::move(self));
        --looking_;
        --threads_;
    }

    /// False when the thread should leave: others look for work, and it has not been called for a while.
    bool waitForItem(std::unique_lock<std::mutex>& held, Thread& self) {
        while (items_.empty()) {
            self.called = false;
            resting_.push_back(&self);
            const auto called = [&self] { return self.called; };
            if (looking_ == 1) {
                self.wake.wait(held, called);
            } else if (!self.wake.wait_for(held, kIdleTime, called)) {
                std::erase(resting_, &self);
                if (looking_ > 1) return false;
            }
        }
        return true;
    }

    std::mutex mutex_;
    std::condition_variable idle_;
    std::deque<Block> items_;
    std::vector<Thread*> resting_;
    std::vector<std::unique_ptr<Thread>> spare_; ///< records of threads that have gone, for new ones
    std::size_t unfinished_ = 0;                 ///< waiting or running
    int threads_ = 0;
    int looking_ = 0; ///< threads that wait for an item, or are about to
};

class MainQueue final : public DispatchQueue {
  public:
    void async(Block block) override {
        {
            const std::lock_guard held(mutex_);
            items_.push_back(std::move(block));
        }
        available_.notify_one();
    }

    [[noreturn]] void serve() {
        while (true)
            next()();
    }

  private:
    Block next() {
        std::unique_lock held(mutex_);
        available_.wait(held, [this] { return !items_.empty(); });
        Block item = std::move(items_.front());
        items_.pop_front();
        return item;
    }

    std::mutex mutex_;
    std::condition_variable available_;
    std::deque<Block> items_;
};

// Queues live as long as the process: threads may use them to its very end.
GlobalQueue& globalQueue() {
    static auto& queue = *new GlobalQueue;
    return queue;
}

MainQueue& mainQueue() {
    static auto& queue = *new MainQueue;
    return queue;
}

} // namespace

DispatchQueue& dispatch_get_global_queue(long /*priority*/, unsigned long /*flags*/) {
    return globalQueue();
}

DispatchQueue& dispatch_get_main_queue() {
    return mainQueue();
}

void dispatch_async(DispatchQueue& queue, std::function<void()> block) {
    queue.async(std::move(block));
}

void dispatch_main() {
    mainQueue().serve();
}

void startMainThread() {
    [[maybe_unused]] static const bool started = (std::thread(dispatch_main).detach(), true);
}

bool dispatch_wait_until_idle(std::chrono::milliseconds atMost) {
    return globalQueue().waitUntilIdle(atMost);
}

} // namespace platform

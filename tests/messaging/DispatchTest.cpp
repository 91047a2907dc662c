#include "platform/messaging/Dispatch.h"
#include "tests/support/Waiting.h"

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <dlfcn.h>
#include <future>
#include <gtest/gtest.h>
#include <latch>
#include <mutex>
#include <pthread.h>
#include <thread>
#include <vector>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define THREADS_ARE_WATCHED false
#else
#define THREADS_ARE_WATCHED true
#endif

namespace {

std::atomic<bool> refuseThreads = false;
std::atomic<int> threadsMade = 0;
thread_local int threadsMadeHere = 0;

} // namespace

#if THREADS_ARE_WATCHED
/// Stands in front of the system's own, which sanitizers replace themselves.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                              void* argument) noexcept {
    if (refuseThreads) return EAGAIN;
    ++threadsMade;
    ++threadsMadeHere;
    static const auto original = reinterpret_cast<decltype(&pthread_create)>(::dlsym(RTLD_NEXT, "pthread_create"));
    return original(thread, attributes, run, argument);
}
#endif

using namespace platform;
using namespace tests;

namespace {

const std::ptrdiff_t threadsAtStart = threadCount();
std::ptrdiff_t mainThreads = 0; ///< that run the main queue

void async(std::function<void()> block) {
    dispatch_async(dispatch_get_global_queue(0, 0), std::move(block));
}

/// Items that are stuck until they are let go.
class StuckItems {
  public:
    explicit StuckItems(int count) {
        for (int i = 0; i < count; ++i) {
            async([this] {
                std::unique_lock held(mutex_);
                ++running_;
                changed_.notify_all();
                changed_.wait(held, [this] { return released_; });
                ++finished_;
            });
        }
    }
    ~StuckItems() {
        release();
        EXPECT_TRUE(dispatch_wait_until_idle(kLongEnough));
    }
    StuckItems(const StuckItems&) = delete;
    StuckItems& operator=(const StuckItems&) = delete;

    bool waitUntilRunning(int count) {
        std::unique_lock held(mutex_);
        return changed_.wait_for(held, kLongEnough, [&] { return running_ >= count; });
    }
    void release() {
        const std::lock_guard held(mutex_);
        released_ = true;
        changed_.notify_all();
    }
    int running() {
        const std::lock_guard held(mutex_);
        return running_;
    }
    int finished() {
        const std::lock_guard held(mutex_);
        return finished_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool released_ = false;
    int running_ = 0;
    int finished_ = 0;
};

} // namespace

TEST(GlobalQueue, RunsEveryItemOnce) {
    constexpr int kItems = 10'000;
    std::vector<std::atomic<int>> runs(kItems);
    for (auto& run : runs)
        async([&run] { ++run; });
    ASSERT_TRUE(dispatch_wait_until_idle(kLongEnough));
    for (const auto& run : runs)
        EXPECT_EQ(run, 1);
}

TEST(GlobalQueue, TakesItemsFromManyThreadsAndFromItsOwnItems) {
    std::atomic<int> runs = 0;
    std::vector<std::thread> callers;
    for (int i = 0; i < 4; ++i) {
        callers.emplace_back([&runs] {
            for (int n = 0; n < 500; ++n)
                async([&runs] { async([&runs] { ++runs; }); });
        });
    }
    for (auto& caller : callers)
        caller.join();
    ASSERT_TRUE(dispatch_wait_until_idle(kLongEnough));
    EXPECT_EQ(runs, 2000);
}

TEST(GlobalQueue, RunsAnItemWhileTwoHundredAreStuck) {
    StuckItems stuck(200);
    std::promise<void> ran;
    async([&ran] { ran.set_value(); });
    EXPECT_EQ(ran.get_future().wait_for(kLongEnough), std::future_status::ready);
    EXPECT_EQ(stuck.finished(), 0);
}

TEST(GlobalQueue, HasAtMost256Threads) {
    const auto before = threadCount();
    StuckItems stuck(300);
    ASSERT_TRUE(stuck.waitUntilRunning(256));
    EXPECT_LE(threadCount(), before + 256);
    EXPECT_EQ(stuck.running(), 256);
    stuck.release();
    ASSERT_TRUE(dispatch_wait_until_idle(kLongEnough));
    EXPECT_EQ(stuck.finished(), 300);
}

TEST(GlobalQueue, GivesItsThreadsBackWhenTheyAreIdle) {
    {
        StuckItems stuck(50);
        ASSERT_TRUE(stuck.waitUntilRunning(50));
        EXPECT_GE(threadCount(), 50);
    }
    EXPECT_TRUE(eventually([&] { return threadCount() <= threadsAtStart + mainThreads + 1; })) << "one stays";
}

TEST(GlobalQueue, IsIdleOnlyWhenNothingRunsOrWaits) {
    ASSERT_TRUE(dispatch_wait_until_idle(kLongEnough));
    StuckItems stuck(1);
    EXPECT_FALSE(dispatch_wait_until_idle(std::chrono::milliseconds(0)));
    stuck.release();
    EXPECT_TRUE(dispatch_wait_until_idle(kLongEnough));
    EXPECT_EQ(stuck.finished(), 1);
}

TEST(GlobalQueue, LetsGoOfWhatAnItemHoldsBeforeItCountsAsDone) {
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = held;
    async([held = std::move(held)] {});
    ASSERT_TRUE(dispatch_wait_until_idle(kLongEnough));
    EXPECT_TRUE(watched.expired());
}

TEST(GlobalQueue, NeverMakesAThreadOnItsCallersTimeButForTheFirstItem) {
    if (!THREADS_ARE_WATCHED) GTEST_SKIP() << "the sanitizer has its own way of making threads";
    const int before = threadsMadeHere;
    async([] {});
    const int atFirst = threadsMadeHere;
    EXPECT_LE(atFirst - before, 1);
    StuckItems stuck(100);
    ASSERT_TRUE(stuck.waitUntilRunning(100));
    EXPECT_GE(threadsMade, 100);
    EXPECT_EQ(threadsMadeHere, atFirst);
}

TEST(GlobalQueue, LosesNothingWhenTheSystemRefusesThreads) {
    if (!THREADS_ARE_WATCHED) GTEST_SKIP() << "the sanitizer has its own way of making threads";
    refuseThreads = true;
    StuckItems stuck(10); // all threads that there are get stuck; no further one can be made
    EXPECT_FALSE(dispatch_wait_until_idle(std::chrono::milliseconds(0)));
    refuseThreads = false;
    async([] {}); // the next item brings the threads that are missing
    EXPECT_TRUE(stuck.waitUntilRunning(10));
}

TEST(MainQueue, RunsItsItemsInOrderOnOneThread) {
    if (mainThreads == 0) {
        std::thread(dispatch_main).detach(); // for good: it never returns
        mainThreads = 1;
    }
    constexpr int kItems = 1000;
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    std::promise<void> done;
    for (int i = 0; i < kItems; ++i) {
        dispatch_async(dispatch_get_main_queue(), [&, i] {
            order.push_back(i);
            threads.push_back(std::this_thread::get_id());
            if (i == kItems - 1) done.set_value();
        });
    }
    ASSERT_EQ(done.get_future().wait_for(kLongEnough), std::future_status::ready);
    for (std::size_t i = 0; i < kItems; ++i) {
        EXPECT_EQ(order[i], static_cast<int>(i));
        EXPECT_EQ(threads[i], threads[0]);
    }
    EXPECT_NE(threads[0], std::this_thread::get_id());
}

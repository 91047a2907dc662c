#pragma once

#include "tests/support/Waiting.h"

#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace tests {

/// Gives a limit to what has none of its own, such as the first opening of a page: ends the program, and says what did
/// not come, when its scope is not left in time.
///
///     const Deadline deadline("the answer to a page that opens");
class Deadline {
  public:
    explicit Deadline(std::string awaited)
        : awaited_(std::move(awaited)), thread_([this] {
              std::unique_lock held(mutex_);
              if (left_.wait_for(held, kLongEnough, [this] { return hasLeft_; })) return;
              std::fprintf(stderr, "waited in vain for %s\n", awaited_.c_str());
              std::abort();
          }) {}
    ~Deadline() {
        {
            const std::lock_guard held(mutex_);
            hasLeft_ = true;
        }
        left_.notify_one();
        thread_.join();
    }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

  private:
    std::string awaited_;
    std::mutex mutex_;
    std::condition_variable left_;
    bool hasLeft_ = false;
    std::thread thread_;
};

} // namespace tests

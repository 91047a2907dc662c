#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace lumora {

/// Tells those who follow the settings of every change: each on a port of its own, by a thread of its own, so that one
/// that is stuck, dead or lying delays neither an answer of the tweak nor another follower. What changes while a follower
/// is being told waits for the next message, the last value of each key. One that refuses or lets time pass three times
/// in a row, or whose port is gone, is told no more. Any thread.
class Followers {
  public:
    /// So many may follow at a time.
    static constexpr std::size_t kMost = 16;
    static constexpr int kTries = 3;

    Followers();
    Followers(const Followers&) = delete;
    Followers& operator=(const Followers&) = delete;
    /// Waits for messages that are under way: two seconds at most.
    ~Followers();

    /// Tells whoever serves the port from now on; nothing new if it is being told. Fails if kMost others are whose ports
    /// are served, or if no thread can be started.
    [[nodiscard]] platform::Result<void> add(const std::string& port);
    /// Hands on a change, and returns at once. Revisions grow.
    void changed(std::int64_t revision, const std::string& key, const platform::Value& value);
    /// How many are being told.
    [[nodiscard]] std::size_t count() const;

  private:
    class Follower;

    template<class Condition>
    void forgetIf(Condition holds);

    /// Wakes whoever tells of changes, as that takes longer than all else of an answer.
    void wakeAll(const std::stop_token& stop);

    mutable std::mutex changing_; ///< guards what follows; never held while a message is under way
    std::vector<std::shared_ptr<Follower>> followers_;
    std::condition_variable_any news_;
    bool hasNews_ = false;
    std::jthread herald_; ///< ends before the rest does
};

/// Whether a follower of that process may have the port: "followers/PID-N". Nobody has the tweak write to other ports.
[[nodiscard]] bool isFollowersPort(const std::string& port, long process);

} // namespace lumora

#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <utility>

namespace settings {

/// Notices that the GUI thread takes too long for one thing that no event of its loop can interrupt. Watches from a
/// thread of its own and calls `overdue` there, a moment late, so that the loop can end what it can itself.
class DrawingLimit {
    using Clock = std::chrono::steady_clock;

  public:
    DrawingLimit(std::chrono::milliseconds atMost, std::function<void()> overdue)
        : atMost_(atMost + kMoment), overdue_(std::move(overdue)),
          watching_([this](const std::stop_token& stop) { watch(stop); }) {}

    /// One thing that the GUI thread does, for as long as this object lives.
    class Turn {
      public:
        explicit Turn(DrawingLimit& limit) : limit_(limit) { limit_.set(Clock::now() + limit_.atMost_); }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;
        ~Turn() { limit_.set(std::nullopt); }

      private:
        DrawingLimit& limit_;
    };

  private:
    static constexpr std::chrono::milliseconds kMoment{250};

    void set(std::optional<Clock::time_point> deadline) {
        {
            const std::lock_guard held(mutex_);
            deadline_ = deadline;
        }
        changed_.notify_one();
    }

    void watch(const std::stop_token& stop) {
        std::unique_lock held(mutex_);
        while (!stop.stop_requested()) {
            const auto deadline = deadline_;
            const auto another = [&] { return deadline_ != deadline; };
            if (!deadline) {
                changed_.wait(held, stop, another);
            } else if (!changed_.wait_until(held, stop, *deadline, another) && !stop.stop_requested()) {
                deadline_.reset();
                overdue_();
            }
        }
    }

    std::chrono::milliseconds atMost_;
    std::function<void()> overdue_;
    std::mutex mutex_; ///< guards the deadline
    std::condition_variable_any changed_;
    std::optional<Clock::time_point> deadline_;
    std::jthread watching_; ///< ends before the rest does
};

} // namespace settings

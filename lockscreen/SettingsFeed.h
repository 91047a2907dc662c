#pragma once

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/Value.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace lumora {

/// What a feed knows of the settings at a moment.
struct Heard {
    platform::Dictionary settings{}; ///< all of them; empty while no tweak answers
    bool tweakAnswers = false;
    std::int64_t revision = 0;          ///< of the settings; 0 where the tweak does not count its changes
    std::vector<std::string> changed{}; ///< keys whose values are not those handed on before
};

/// The keys that have another value, in the order of the settings that they have it in, and then those that have none any
/// more.
[[nodiscard]] std::vector<std::string> changedKeys(const platform::Dictionary& before,
                                                   const platform::Dictionary& after);

/// Keeps up with the tweak's settings, and hands on what differs from what it has handed on before: first what it finds,
/// or that no tweak answers, and then each change.
///
///     SettingsFeed feed([&](const Heard& heard) { show(heard.settings); });
///
/// It follows the settings, and asks for them four times a second where it cannot. A tweak that goes, comes or begins
/// anew is noticed at once as far as the files of its ports show it, and else within a minute. What a tweak has told does
/// not count once it is gone.
///
/// The listener runs on the feed's thread. While it is busy, changes wait together: the next call has the last value of
/// each key, and memory stays flat however many messages come. Construction and setVisible(): any thread.
class SettingsFeed {
  public:
    using Listener = std::function<void(const Heard& heard)>;

    /// How often it sends a message when nothing happens; tests have paces of their own.
    struct Pace {
        std::chrono::milliseconds following = std::chrono::seconds(60); ///< subscribes anew
        std::chrono::milliseconds asking = std::chrono::milliseconds(250);
        std::chrono::milliseconds missing = std::chrono::seconds(1); ///< looks for a tweak where none answers
    };

    explicit SettingsFeed(Listener listener, bool visible = true)
        : SettingsFeed(std::move(listener), visible, Pace()) {}
    SettingsFeed(Listener listener, bool visible, Pace pace);
    SettingsFeed(const SettingsFeed&) = delete;
    SettingsFeed& operator=(const SettingsFeed&) = delete;
    /// Waits for a call of the listener, and up to two seconds for a message under way. Not within the listener.
    ~SettingsFeed();

    /// While nobody sees the settings, the feed neither wakes nor sends anything, and its port is closed. When it is
    /// visible again, it catches up at once. A call of the listener may still be under way.
    void setVisible(bool visible);

  private:
    class Hearing;

    void run();
    /// Waits for a wake-up, for a change of the files if there is a hearing, and until its next message is due.
    void wait(Hearing* hearing);
    void handOn(const Hearing& hearing);
    void wake() const;

    Listener listener_;
    Pace pace_;
    platform::FileDescriptor wake_; ///< readable when the thread has to look at the flags
    std::atomic<bool> visible_;
    std::atomic<bool> ended_ = false;
    Heard heard_; ///< handed on last; the thread's own, like hasHeard_
    bool hasHeard_ = false;
    std::thread thread_; ///< the last one, as it begins at once
};

} // namespace lumora

#pragma once

#include "lockscreen/SettingsFeed.h"

#include "link/Messages.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "tests/support/ServedPort.h"
#include "tests/support/Waiting.h"
#include "tests/tweak/Messages.h"
#include "tests/tweak/Program.h"
#include "tests/tweak/Sandbox.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tests {

using namespace lumora;
using platform::Data;
using platform::Dictionary;
using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;
using platform::Value;

/// So slow that nothing of the kind happens in a test.
inline constexpr auto kNever = std::chrono::hours(24);

/// A feed, and what it has handed on.
class Ear {
  public:
    explicit Ear(SettingsFeed::Pace pace = {}, bool visible = true)
        : feed_(std::make_unique<SettingsFeed>([this](const Heard& heard) { take(heard); }, visible, pace)) {}

    [[nodiscard]] Heard heard() const {
        const std::lock_guard held(mutex_);
        return heard_;
    }
    [[nodiscard]] std::size_t calls() const {
        const std::lock_guard held(mutex_);
        return calls_;
    }
    /// Of the thread on which the feed runs; once there has been a call.
    [[nodiscard]] pid_t thread() const {
        const std::lock_guard held(mutex_);
        return thread_;
    }
    [[nodiscard]] bool comesToHear(const Value& value, const std::string& key = "kSleepTime") const {
        return eventually([&] { return heard().settings[key] == value; });
    }
    [[nodiscard]] bool comesToHearATweak(bool answers = true) const {
        return eventually([&] { return calls() > 0 && heard().tweakAnswers == answers; });
    }
    /// Holds up the feed's thread in its next call, until goOn().
    void holdUp() {
        const std::lock_guard held(mutex_);
        gate_ = std::make_shared<std::promise<void>>();
    }
    void goOn() {
        const std::lock_guard held(mutex_);
        std::exchange(gate_, nullptr)->set_value();
    }
    void setVisible(bool visible) { feed_->setVisible(visible); }
    void end() { feed_.reset(); }

  private:
    void take(const Heard& heard) {
        std::unique_lock held(mutex_);
        heard_ = heard;
        ++calls_;
        thread_ = ::gettid();
        const auto gate = gate_;
        held.unlock();
        if (gate) awaited(gate->get_future(), "the gate");
    }

    mutable std::mutex mutex_;
    Heard heard_;
    std::size_t calls_ = 0;
    pid_t thread_ = 0;
    std::shared_ptr<std::promise<void>> gate_;
    std::unique_ptr<SettingsFeed> feed_; ///< the first one to go
};

/// The port of a tweak of another make on which it is asked to be followed: answers as it is told, or not at all.
class ScriptedFollowing {
  public:
    using Answer = std::function<std::optional<Data>(const std::string& follower)>;

    explicit ScriptedFollowing(Answer answer) : answer_(std::move(answer)) {}

    static std::optional<Data> settings(std::int64_t revision, const Dictionary& settings) {
        return NSKeyedArchiver::archivedDataWithRootObject(revisionOf(revision, settings));
    }

  private:
    Answer answer_;
    ServedPort port_{portName(kFollowSettings), [this](auto&, auto, const auto& body) {
                         const Value asked = NSKeyedUnarchiver::unarchiveObjectWithData(*body)[kObjectEntry];
                         return answer_(std::string(*asked[kPortEntry].text()));
                     }};
};

inline void tell(const std::string& follower, const std::optional<Data>& body, std::int32_t id = kMessageId) {
    std::optional<Data> reply;
    EXPECT_EQ(send(follower, body, reply, id), platform::kCFMessagePortSuccess);
    EXPECT_EQ(reply, std::nullopt);
}
inline void tell(const std::string& follower, std::int64_t revision, const Dictionary& settings) {
    tell(follower, NSKeyedArchiver::archivedDataWithRootObject(messageWith(revisionOf(revision, settings))));
}

class FeedTest : public testing::Test {
  protected:
    [[nodiscard]] std::unique_ptr<RunningTweak> startTweak() const {
        return std::make_unique<RunningTweak>(std::vector<std::string>{LUMORA_TWEAK, "--settings", sandbox.settings()});
    }
    /// The ports of followers.
    [[nodiscard]] std::vector<std::string> followers() const {
        std::vector<std::string> found;
        std::error_code missing;
        for (const auto& entry : std::filesystem::directory_iterator(sandbox.ports() / portName("followers"), missing))
            found.push_back(entry.path().filename());
        return found;
    }
    [[nodiscard]] bool comesToBeWithoutFollowers() const {
        return eventually([&] { return followers().empty(); });
    }

    Sandbox sandbox;
};

} // namespace tests

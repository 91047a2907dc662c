#include "tweak/Followers.h"

#include "link/Messages.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/messaging/CFMessagePort.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <iterator>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include <sched.h>

using platform::Dictionary;
using platform::NSKeyedArchiver;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

/// Followers are woken so long after a change, by when its answer has left.
constexpr std::chrono::milliseconds kHeadStart{1};

/// Has the calling thread wait until a processor is free instead of taking one from whoever answers a change. It still
/// gets its share of them.
void yieldToAnswers() {
    const sched_param none{};
    ::sched_setscheduler(0, SCHED_BATCH, &none); // without it, all is as right and a little later
}

} // namespace

/// One that is told, with its thread.
class Followers::Follower {
  public:
    explicit Follower(std::string port) : port_(std::move(port)), thread_([this] { tell(); }) {}
    Follower(const Follower&) = delete;
    Follower& operator=(const Follower&) = delete;
    ~Follower() {
        {
            const std::lock_guard held(mutex_);
            ended_ = true;
        }
        awaited_.notify_one();
        thread_.join();
    }

    [[nodiscard]] const std::string& port() const { return port_; }
    [[nodiscard]] bool hasEnded() const {
        const std::lock_guard held(mutex_);
        return ended_;
    }
    /// It has asked again, so what has failed by now counts no longer. False when it has been given up already.
    [[nodiscard]] bool renew() {
        const std::lock_guard held(mutex_);
        renewed_ = true;
        return !ended_;
    }
    /// Keeps it until the next wake().
    void changed(std::int64_t revision, const std::string& key, const Value& value) {
        const std::lock_guard held(mutex_);
        revision_ = revision;
        pending_.set(key, value);
    }
    /// Has it tell what has changed.
    void wake() { awaited_.notify_one(); }

  private:
    void tell() {
        yieldToAnswers();
        int failures = 0;
        std::unique_lock held(mutex_);
        while (true) {
            awaited_.wait(held, [this] { return ended_ || !pending_.empty(); });
            if (ended_) return;
            const Dictionary settings = std::exchange(pending_, {});
            const std::int64_t revision = revision_;
            renewed_ = false;
            held.unlock();
            const auto result = send(revision, settings);
            held.lock();
            if (result == platform::kCFMessagePortSuccess) {
                failures = 0;
                continue;
            }
            if (renewed_)
                failures = 0;
            else if (result == platform::kCFMessagePortIsInvalid || ++failures == kTries)
                ended_ = true;
            for (const auto& [key, value] : settings)
                if (!pending_.contains(key)) pending_.set(key, value);
        }
    }

    [[nodiscard]] platform::CFMessagePortResult send(std::int64_t revision, const Dictionary& settings) const {
        const auto body = NSKeyedArchiver::archivedDataWithRootObject(messageWith(revisionOf(revision, settings)));
        const auto remote = platform::CFMessagePortCreateRemote(portName(port_));
        return platform::CFMessagePortSendRequest(*remote, kMessageId, body, kSendTimeout, kReceiveTimeout, nullptr);
    }

    std::string port_;
    mutable std::mutex mutex_; ///< guards what follows
    std::condition_variable awaited_;
    Dictionary pending_;
    std::int64_t revision_ = 0;
    bool renewed_ = false; ///< since the message under way began
    bool ended_ = false;
    std::thread thread_; ///< the last one, as it begins at once
};

Followers::Followers() : herald_([this](const std::stop_token& stop) { wakeAll(stop); }) {
}

Followers::~Followers() = default;

void Followers::wakeAll(const std::stop_token& stop) {
    yieldToAnswers();
    std::unique_lock held(changing_);
    while (news_.wait(held, stop, [this] { return hasNews_; })) {
        news_.wait_for(held, stop, kHeadStart, [] { return false; });
        hasNews_ = false;
        const auto all = followers_;
        held.unlock();
        for (const auto& follower : all)
            follower->wake();
        held.lock();
    }
}

template<class Condition>
void Followers::forgetIf(Condition holds) {
    std::vector<std::shared_ptr<Follower>> forgotten; // their threads have nothing left to do, and are joined unlocked
    const std::lock_guard held(changing_);
    const auto first =
        std::stable_partition(followers_.begin(), followers_.end(), [&](const auto& one) { return !holds(*one); });
    std::move(first, followers_.end(), std::back_inserter(forgotten));
    followers_.erase(first, followers_.end());
}

Result<void> Followers::add(const std::string& port) {
    forgetIf([](const Follower& one) { return one.hasEnded(); });
    if (count() >= kMost)
        forgetIf([](const Follower& one) { return !platform::CFMessagePortIsServed(portName(one.port())); });
    const std::lock_guard held(changing_);
    const bool isTold =
        std::ranges::any_of(followers_, [&](const auto& one) { return one->port() == port && one->renew(); });
    if (isTold) return {};
    if (followers_.size() >= kMost) return Result<void>::failure(std::to_string(kMost) + " follow already");
    try {
        followers_.push_back(std::make_shared<Follower>(port));
    } catch (const std::system_error& error) {
        return Result<void>::failure("no thread can be started: " + error.code().message());
    }
    return {};
}

void Followers::changed(std::int64_t revision, const std::string& key, const Value& value) {
    {
        const std::lock_guard held(changing_);
        if (followers_.empty()) return;
        for (const auto& follower : followers_)
            follower->changed(revision, key, value);
        hasNews_ = true;
    }
    news_.notify_one();
}

std::size_t Followers::count() const {
    const std::lock_guard held(changing_);
    return static_cast<std::size_t>(
        std::ranges::count_if(followers_, [](const auto& one) { return !one->hasEnded(); }));
}

bool isFollowersPort(const std::string& port, long process) {
    const std::string begin = "followers/" + std::to_string(process) + "-";
    if (!port.starts_with(begin)) return false;
    const std::string_view number = std::string_view(port).substr(begin.size());
    return !number.empty() && number.size() <= 10 && number.find_first_not_of("0123456789") == std::string_view::npos;
}

} // namespace lumora

#include "lockscreen/SettingsFeed.h"

#include "lockscreen/FollowerPort.h"

#include "link/Messages.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/messaging/CFMessagePort.h"
#include "platform/messaging/PortWatch.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

using platform::Data;
using platform::Dictionary;
using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;
using platform::Value;

namespace lumora {

using Clock = std::chrono::steady_clock;

namespace {

/// Several files change when a tweak comes or goes, so that a moment is waited for the others.
constexpr std::chrono::milliseconds kMoment(20);

/// The body of the tweak's answer; nothing when there is none.
std::optional<Data> ask(const char* message, const std::optional<Data>& body) {
    std::optional<Data> reply;
    const auto remote = platform::CFMessagePortCreateRemote(portName(message));
    const auto result =
        platform::CFMessagePortSendRequest(*remote, kMessageId, body, kSendTimeout, kReceiveTimeout, &reply);
    return result == platform::kCFMessagePortSuccess ? reply : std::nullopt;
}

/// Of each feed in this process.
std::int64_t nextNumber() {
    static std::atomic<std::int64_t> last = 0;
    return last++;
}

} // namespace

std::vector<std::string> changedKeys(const Dictionary& before, const Dictionary& after) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : after) {
        const Value* was = before.find(key);
        if (!was || !meansTheSame(*was, value)) keys.push_back(key);
    }
    for (const auto& [key, value] : before)
        if (!after.contains(key)) keys.push_back(key);
    return keys;
}

/// How the feed hears the tweak while it is visible. The feed's thread.
class SettingsFeed::Hearing {
  public:
    Hearing(const Pace& pace, std::int64_t number, std::function<void()> told)
        : pace_(pace), port_(number, std::move(told)) {}

    [[nodiscard]] const Dictionary& settings() const { return settings_; }
    [[nodiscard]] std::int64_t revision() const { return revision_; }
    [[nodiscard]] bool tweakAnswers() const { return manner_ != Manner::none; }
    /// False between a subscription that fails and the question that follows.
    [[nodiscard]] bool isSettled() const { return next_ == Next::subscribe || manner_ == Manner::asked; }
    /// Whether it has heard something since it was asked this.
    [[nodiscard]] bool takeNews() { return std::exchange(hasNews_, false); }

    /// Readable when something has changed about the tweak's ports.
    [[nodiscard]] int changes() const { return watch_.descriptor(); }
    void noticeChanges() {
        watch_.forgetChanges();
        renewal_ = Clock::now() + kMoment;
        if (!isSettled()) return; // it asks first
        next_ = Next::subscribe;
        due_ = std::min(due_, renewal_);
    }
    /// When it has to proceed without having been woken.
    [[nodiscard]] Clock::time_point due() const { return due_; }

    /// Takes what has been told, and sends one message if that is due.
    void proceed() {
        if (manner_ == Manner::followed) takeTold();
        if (Clock::now() < due_) return;
        if (next_ == Next::subscribe)
            subscribe();
        else
            askForSettings();
    }

  private:
    enum class Manner : unsigned char { none, followed, asked };
    enum class Next : unsigned char { subscribe, ask };

    void takeTold() {
        if (const auto told = port_.take()) {
            for (const auto& [key, value] : told->settings)
                settings_.set(key, value);
            revision_ = told->revision;
            hasNews_ = true;
        }
        if (!port_.isOverrun()) return;
        next_ = Next::subscribe;
        due_ = Clock::now();
    }

    void subscribe() {
        if (!watch_.look()) return lose();
        renewal_ = Clock::now() + pace_.following;
        if (port_.isOpen() && follow()) {
            due_ = renewal_;
            takeTold();
        } else {
            port_.end();
            answer_.reset();
            next_ = Next::ask; // at once, but as another message: the feed may have to end in between
        }
    }

    [[nodiscard]] bool follow() {
        port_.beginAnew(); // first, so that what changes while the answer is on its way is not lost
        const Dictionary asked = messageWith(Dictionary{{kPortEntry, port_.name()}});
        const auto reply = ask(kFollowSettings, NSKeyedArchiver::archivedDataWithRootObject(asked));
        const Value answer = reply ? NSKeyedUnarchiver::unarchiveObjectWithData(*reply) : Value();
        const auto revision = answer[kRevisionEntry].integer();
        const Value settings = answer[kSettingsEntry];
        if (!revision || !settings.dictionary()) return false;
        port_.skip(*revision);
        hear(Manner::followed, *settings.dictionary(), *revision);
        return true;
    }

    void askForSettings() {
        auto answer = ask(kRequestTweakSettings, std::nullopt);
        if (!answer) return lose();
        if (answer != answer_) {
            const Value settings = NSKeyedUnarchiver::unarchiveObjectWithData(*answer);
            if (!settings.dictionary()) return lose();
            hear(Manner::asked, *settings.dictionary(), 0);
            answer_ = std::move(answer);
        }
        due_ = Clock::now() + pace_.asking;
        next_ = due_ < renewal_ ? Next::ask : Next::subscribe;
        due_ = std::min(due_, renewal_);
    }

    void hear(Manner manner, const Dictionary& settings, std::int64_t revision) {
        manner_ = manner;
        settings_ = settings;
        revision_ = revision;
        hasNews_ = true;
    }

    void lose() {
        port_.end();
        answer_.reset();
        hear(Manner::none, {}, 0);
        next_ = Next::subscribe;
        due_ = Clock::now() + pace_.missing;
    }

    Pace pace_;
    FollowerPort port_; ///< before the watch, which its folder would be news to
    platform::PortWatch watch_{std::vector{portName(kRequestTweakSettings)}}; ///< which every tweak has
    Manner manner_ = Manner::none;
    Dictionary settings_;
    std::int64_t revision_ = 0;
    bool hasNews_ = false;
    std::optional<Data> answer_; ///< when asked, the last one
    Next next_ = Next::subscribe;
    Clock::time_point due_ = Clock::now();
    Clock::time_point renewal_; ///< of the subscription; of a tweak that is asked, when it is tried again
};

SettingsFeed::SettingsFeed(Listener listener, bool visible, Pace pace)
    : listener_(std::move(listener)), pace_(pace), wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), visible_(visible),
      thread_([this] { run(); }) {
}

SettingsFeed::~SettingsFeed() {
    ended_ = true;
    wake();
    thread_.join();
}

void SettingsFeed::setVisible(bool visible) {
    if (visible_.exchange(visible) != visible) wake();
}

void SettingsFeed::run() {
    const std::int64_t number = nextNumber();
    std::optional<Hearing> hearing;
    while (!ended_) {
        if (!visible_) {
            hearing.reset();
        } else {
            if (!hearing) hearing.emplace(pace_, number, [this] { wake(); });
            hearing->proceed();
            if (hearing->isSettled() && hearing->takeNews()) handOn(*hearing);
        }
        wait(hearing ? &*hearing : nullptr);
    }
}

void SettingsFeed::wait(Hearing* hearing) {
    std::array<pollfd, 2> awaited{{{wake_.number(), POLLIN, 0}, {hearing ? hearing->changes() : -1, POLLIN, 0}}};
    using std::chrono::milliseconds;
    // Without a descriptor to wake it, it looks at the flags once a second.
    auto limit = wake_ ? milliseconds(-1) : milliseconds(1000);
    if (hearing) {
        const auto due = std::max(std::chrono::ceil<milliseconds>(hearing->due() - Clock::now()), milliseconds(0));
        limit = wake_ ? due : std::min(due, limit);
    }
    if (::poll(awaited.data(), awaited.size(), static_cast<int>(limit.count())) <= 0) return;
    std::uint64_t calls = 0;
    [[maybe_unused]] const auto taken = ::read(wake_.number(), &calls, sizeof calls);
    if (hearing && awaited[1].revents != 0) hearing->noticeChanges();
}

void SettingsFeed::handOn(const Hearing& hearing) {
    auto changed = changedKeys(heard_.settings, hearing.settings());
    if (hasHeard_ && changed.empty() && heard_.tweakAnswers == hearing.tweakAnswers()) return;
    hasHeard_ = true;
    heard_ = Heard{hearing.settings(), hearing.tweakAnswers(), hearing.revision(), std::move(changed)};
    listener_(heard_);
}

void SettingsFeed::wake() const {
    const std::uint64_t once = 1;
    [[maybe_unused]] const auto given = ::write(wake_.number(), &once, sizeof once);
}

} // namespace lumora

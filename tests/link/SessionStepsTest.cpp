#include "link/Notify.h"
#include "link/SettingsSession.h"

#include "platform/foundation/NSKeyedArchiver.h"
#include "tests/support/Deadline.h"
#include "tests/support/Waiting.h"

#include <chrono>
#include <ctime>
#include <future>
#include <gtest/gtest.h>
#include <memory>

using namespace lumora;
using namespace platform;
using namespace tests;
using namespace std::chrono_literals;

// This program has a notify() of its own, so that a test says at which step of the session a reply lands, and how late.

namespace {

struct Message {
    std::string name;
    Value object;
    ReplyBlock reply;
};

/// Gets each message at the very moment at which it is handed in.
std::function<void(const Message&)> whenSent; // NOLINT(cert-err58-cpp)

} // namespace

void lumora::notify(const std::string& name, const Value& object, ReplyBlock reply) {
    whenSent({name, object, std::move(reply)});
}

namespace {

using Reply = std::optional<Data>;

Reply replyWith(const Value& settings) {
    return NSKeyedArchiver::archivedDataWithRootObject(settings);
}

/// Everything that a reply may be that holds no settings.
std::vector<Reply> emptyReplies() {
    const std::string text = "no archive";
    return {std::nullopt, Data(), Data(text.begin(), text.end()), replyWith(nullptr)};
}

struct SessionSteps : testing::Test {
    SettingsSession session;

    ~SessionSteps() override { whenSent = nullptr; }

    /// Starts it, the reply landing while the request is being sent.
    void startWith(const Reply& reply) {
        whenSent = [&reply](const Message& message) { message.reply(reply); };
        session.start();
    }
    /// Starts it while it holds settings, and gives the block that the reply is for.
    ReplyBlock startHolding() {
        ReplyBlock held;
        whenSent = [&held](const Message& message) { held = message.reply; };
        session.start();
        return held;
    }
    /// Starts it on a thread that stands for the main thread, because it blocks. The request has been sent.
    std::future<bool> startBlocking(ReplyBlock& held) {
        const auto sent = std::make_shared<std::promise<void>>(); // the session's thread may be in it for longer
        whenSent = [&held, sent](const Message& message) {
            held = message.reply;
            sent->set_value();
        };
        auto creation = std::async(std::launch::async, [this] { return session.start(); });
        sent->get_future().wait();
        return creation;
    }
    /// The one thing about time: what must not happen is given a chance to.
    static bool isBlocked(std::future<bool>& creation, std::chrono::milliseconds atLeast) {
        return creation.wait_for(atLeast) == std::future_status::timeout;
    }

    const Deadline deadline{"a session that starts"};
};

} // namespace

TEST_F(SessionSteps, ReplacesItsLockBeforeItAsks) {
    startWith(replyWith(Dictionary{{"kSleepTime", 30}})); // there is no lock to take for the reply otherwise
    EXPECT_EQ(session.value("kSleepTime"), 30);
}

TEST_F(SessionSteps, KeepsAChangeBeforeItIsSent) {
    startWith(replyWith(Dictionary{{"kSleepTime", 30}}));
    Value kept;
    whenSent = [&](const Message& /*update*/) { kept = session.value("kSleepTime"); };
    session.setValue(45, "kSleepTime");
    EXPECT_EQ(kept, 45);
}

TEST_F(SessionSteps, BlocksItsFirstStartUntilAReplyHoweverLate) {
    ReplyBlock reply;
    const std::clock_t before = std::clock();
    auto creation = startBlocking(reply);
    EXPECT_TRUE(isBlocked(creation, 5s));
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 4) << "it sleeps, and does not look again and again";
    reply(replyWith(Dictionary{{"kSleepTime", 30}}));
    EXPECT_TRUE(creation.get());
    EXPECT_EQ(session.value("kSleepTime"), 30);
}

TEST_F(SessionSteps, WakesAndWaitsAgainOnAReplyThatHoldsNothing) {
    for (const auto& empty : emptyReplies()) {
        startWith(replyWith(Dictionary{{"kSleepTime", 30}}));
        const auto late = startHolding();
        startHolding()(std::nullopt);
        ReplyBlock own;
        auto creation = startBlocking(own);
        own(empty);
        EXPECT_TRUE(isBlocked(creation, 100ms));
        EXPECT_TRUE(session.settings().isNil());
        late(replyWith(Dictionary{{"kSleepTime", 45}}));
        EXPECT_TRUE(creation.get());
        EXPECT_EQ(session.value("kSleepTime"), 45);
    }
}

TEST_F(SessionSteps, WaitsWhenAReplyEmptiesTheSlotBeforeItIsLookedAt) {
    startWith(replyWith(Dictionary{{"kSleepTime", 30}}));
    const auto late = startHolding();
    whenSent = [](const Message& request) { request.reply(std::nullopt); };
    auto creation = std::async(std::launch::async, [this] { return session.start(); });
    EXPECT_TRUE(isBlocked(creation, 100ms));
    late(replyWith(Dictionary{{"kSleepTime", 45}}));
    EXPECT_TRUE(creation.get());
}

TEST_F(SessionSteps, ReadsNilAndStillSendsAfterAReplyThatEmptiedTheSlot) {
    for (const auto& empty : emptyReplies()) {
        startWith(replyWith(Dictionary{{"kSleepTime", 30}}));
        startHolding()(empty);
        EXPECT_TRUE(session.settings().isNil());
        EXPECT_TRUE(session.value("kSleepTime").isNil());
        std::vector<Value> sent;
        whenSent = [&sent](const Message& update) { sent.push_back(update.object); };
        session.setValue(45, "kSleepTime");
        EXPECT_EQ(sent, std::vector<Value>({Dictionary{{"key", "kSleepTime"}, {"object", 45}}}));
        EXPECT_TRUE(session.value("kSleepTime").isNil()) << "there is nothing to keep it in";
    }
}

TEST_F(SessionSteps, WakesAStartThatReplacedTheLockWhileAnOlderReplyWasUnarchived) {
    const Reply slow = replyWith(List(300'000, Value(1)));
    for (int round = 0; round < 5; ++round) {
        startWith(replyWith(Dictionary{{"kSleepTime", 30}}));
        const auto older = startHolding();
        startHolding()(std::nullopt);
        std::promise<void> landing;
        const auto worker = std::async(std::launch::async, [&] {
            landing.set_value();
            older(slow);
        });
        landing.get_future().wait();
        ReplyBlock unanswered;
        EXPECT_TRUE(startBlocking(unanswered).get()) << "woken by the older reply alone";
    }
}

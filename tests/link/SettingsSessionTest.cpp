#include "link/SettingsSession.h"

#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/messaging/Dispatch.h"
#include "tests/link/ScriptedTweak.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/RawSocket.h"
#include "tests/support/Waiting.h"

#include <chrono>
#include <ctime>
#include <future>
#include <gtest/gtest.h>

using namespace lumora;
using namespace platform;
using namespace tests;
using namespace std::chrono_literals;

namespace {

/// The creation of a page, on a thread that stands for the main thread because it may block for good.
std::future<bool> startOn(SettingsSession& session) {
    return std::async(std::launch::async, [&session] { return session.start(); });
}

bool isDone(std::future<bool>& creation) {
    return creation.wait_for(kLongEnough) == std::future_status::ready;
}
/// The one thing about time: what must not happen is given a chance to.
bool isBlocked(std::future<bool>& creation, std::chrono::milliseconds atLeast) {
    return creation.wait_for(atLeast) == std::future_status::timeout;
}

void waitUntilRepliesLanded() {
    ASSERT_TRUE(dispatch_wait_until_idle(kLongEnough));
}

} // namespace

TEST(SettingsSession, HoldsTheTweaksSettingsWhenItHasStarted) {
    const PortsFolder folder;
    ScriptedTweak tweak(Dictionary{{"kTweakEnabled", true}, {"kSleepTime", 30}});
    SettingsSession session;
    EXPECT_TRUE(session.start());
    EXPECT_EQ(session.value("kTweakEnabled"), true);
    EXPECT_EQ(session.value("kSleepTime"), 30);
    EXPECT_EQ(tweak.requests(1), std::vector<std::optional<Data>>{std::nullopt}) << "one request, without a body";
    waitUntilRepliesLanded();
}

TEST(SettingsSession, ReadsNilForWhatTheTweakDidNotSend) {
    const PortsFolder folder;
    const ScriptedTweak tweak(Dictionary{{"kTweakEnabled", true}});
    SettingsSession session;
    EXPECT_TRUE(session.value("kTweakEnabled").isNil()) << "nothing before the first reply";
    session.start();
    EXPECT_TRUE(session.value("kSleepTime").isNil());
    waitUntilRepliesLanded();
}

TEST(SettingsSession, StartsAgainAtOnceWithWhatItHoldsAndItsChanges) {
    const PortsFolder folder;
    ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}, {"kTweakEnabled", true}});
    SettingsSession session;
    session.start();
    session.setValue(45, "kSleepTime");

    std::promise<void> release;
    tweak.answerWith([&release] {
        release.get_future().wait();
        return std::nullopt;
    });
    EXPECT_TRUE(session.start()) << "although the tweak has not answered";
    EXPECT_EQ(tweak.requests(2).size(), 2U) << "it asks all the same";
    EXPECT_EQ(session.settings(), (Dictionary{{"kSleepTime", 45}, {"kTweakEnabled", true}}));
    release.set_value();
    waitUntilRepliesLanded();
}

TEST(SettingsSession, LetsALateReplyReplaceEverything) {
    const PortsFolder folder;
    ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}, {"gone", 1}});
    SettingsSession session;
    session.start();
    session.setValue(45, "kSleepTime");
    waitUntilRepliesLanded();
    tweak.answerWith(Dictionary{{"kSleepTime", 60}});
    session.start();
    waitUntilRepliesLanded();
    EXPECT_EQ(session.settings(), (Dictionary{{"kSleepTime", 60}}));
}

TEST(SettingsSession, SendsExactlyOneUpdateForAChange) {
    const PortsFolder folder;
    ScriptedTweak tweak(Dictionary{});
    SettingsSession session;
    session.start();
    session.setValue(true, "kTweakEnabled");
    waitUntilRepliesLanded();

    const Value change = Dictionary{{"key", "kTweakEnabled"}, {"object", true}};
    const auto updates = tweak.updates(1);
    ASSERT_EQ(updates.size(), 1U);
    ASSERT_TRUE(updates[0]);
    EXPECT_EQ(NSKeyedUnarchiver::unarchiveObjectWithData(*updates[0]), (Dictionary{{"object", change}}));
    EXPECT_EQ(updates[0], NSKeyedArchiver::archivedDataWithRootObject(Dictionary{{"object", change}}));
    EXPECT_EQ(session.value("kTweakEnabled"), true);
}

TEST(SettingsSession, KeepsAChangeThatTheTweakNeverGot) {
    const PortsFolder folder;
    SettingsSession session;
    {
        const ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}});
        session.start();
        waitUntilRepliesLanded();
    }
    session.setValue(45, "kSleepTime");
    waitUntilRepliesLanded();
    EXPECT_EQ(session.value("kSleepTime"), 45);
}

TEST(SettingsSession, LeavesOtherSessionsAloneUntilTheirNextReply) {
    const PortsFolder folder;
    ScriptedTweak tweak(Dictionary{{"kDateViewDisabled", false}});
    SettingsSession one;
    SettingsSession other;
    one.start();
    other.start();
    one.setValue(true, "kDateViewDisabled");
    EXPECT_EQ(one.value("kDateViewDisabled"), true);
    EXPECT_EQ(other.value("kDateViewDisabled"), false);
    tweak.answerWith(Dictionary{{"kDateViewDisabled", true}});
    other.start();
    waitUntilRepliesLanded();
    EXPECT_EQ(other.value("kDateViewDisabled"), true);
}

TEST(SettingsSession, BlocksItsFirstStartForGoodWhenTheTweakNeverAnswers) {
    const PortsFolder folder;
    SettingsSession session;
    std::future<bool> creation;
    {
        const auto silent = RawSocket::listeningAt(folder.socket("com.nevo.lumora/requestTweakSettings"));
        const std::clock_t before = std::clock();
        creation = startOn(session);
        EXPECT_TRUE(isBlocked(creation, 5s));
        EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 4) << "it sleeps, and does not look again and again";
    }
    waitUntilRepliesLanded();

    ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}});
    EXPECT_TRUE(isBlocked(creation, 1s)) << "the tweak came too late: nobody asks it";
    EXPECT_EQ(tweak.requests(0).size(), 0U);

    session.start(); // only another start asks again, and frees the test's thread
    EXPECT_TRUE(isDone(creation));
    EXPECT_EQ(tweak.requests(1).size(), 1U);
    waitUntilRepliesLanded();
}

TEST(SettingsSession, StartsWhenTheReplyComesAfterAWhile) {
    const PortsFolder folder;
    ScriptedTweak tweak;
    std::promise<void> release;
    const auto answer = NSKeyedArchiver::archivedDataWithRootObject(Dictionary{{"kSleepTime", 30}});
    tweak.answerWith([&] {
        release.get_future().wait();
        return answer;
    });
    SettingsSession session;
    auto creation = startOn(session);
    EXPECT_TRUE(isBlocked(creation, 800ms));
    release.set_value();
    EXPECT_TRUE(isDone(creation));
    EXPECT_EQ(session.value("kSleepTime"), 30);
    waitUntilRepliesLanded();
}

TEST(SettingsSession, WakesAndWaitsAgainOnAReplyThatHoldsNothing) {
    for (const auto& empty : {std::optional<Data>(), std::optional(Data()), std::optional(bytes("no archive")),
                              NSKeyedArchiver::archivedDataWithRootObject(nullptr)}) {
        const PortsFolder folder;
        ScriptedTweak tweak([&empty] { return empty; });
        SettingsSession session;
        auto creation = startOn(session);
        EXPECT_EQ(tweak.requests(1).size(), 1U);
        waitUntilRepliesLanded();
        EXPECT_TRUE(isBlocked(creation, 100ms));
        EXPECT_TRUE(session.settings().isNil());

        tweak.answerWith(Dictionary{{"kSleepTime", 30}});
        session.start();
        EXPECT_TRUE(isDone(creation)) << "both starts end with the reply to the second";
        waitUntilRepliesLanded();
    }
}

TEST(SettingsSession, ReadsNilAndStillSendsAfterAReplyThatEmptiedTheSlot) {
    const PortsFolder folder;
    ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}});
    SettingsSession session;
    session.start();
    waitUntilRepliesLanded();
    tweak.answerWith([] { return std::nullopt; });
    session.start();
    waitUntilRepliesLanded();

    EXPECT_TRUE(session.settings().isNil());
    EXPECT_TRUE(session.value("kSleepTime").isNil());
    session.setValue(45, "kSleepTime");
    EXPECT_TRUE(session.value("kSleepTime").isNil()) << "there is nothing to keep it in";
    EXPECT_EQ(tweak.updates(1).size(), 1U);
    waitUntilRepliesLanded();
}

TEST(SettingsSession, ReadsNilAndStillSendsWithSettingsThatAreNoDictionary) {
    const PortsFolder folder;
    ScriptedTweak tweak(Value("surprise"));
    SettingsSession session;
    EXPECT_TRUE(session.start()) << "the slot is not empty";
    EXPECT_TRUE(session.value("kSleepTime").isNil());
    session.setValue(45, "kSleepTime");
    EXPECT_TRUE(session.value("kSleepTime").isNil());
    EXPECT_EQ(session.settings(), "surprise");
    EXPECT_EQ(tweak.updates(1).size(), 1U);
    waitUntilRepliesLanded();
}

TEST(SettingsSession, LosesNoWakeUpWhenItsLockIsReplacedMeanwhile) {
    const PortsFolder folder;
    ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}});
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        SettingsSession session;
        auto first = startOn(session);
        auto second = startOn(session);
        ASSERT_TRUE(isDone(first));
        ASSERT_TRUE(isDone(second));
        waitUntilRepliesLanded();
    }
}

TEST(SettingsSession, KeepsAChangeWhileRepliesLand) {
    const PortsFolder folder;
    ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}});
    SettingsSession session;
    session.start();
    for (int i = 0; i < 100; ++i) {
        session.start();
        session.setValue(i, "kSleepTime");
        const auto value = session.value("kSleepTime");
        EXPECT_TRUE(value == i || value == 30) << "the change, or a reply that landed after it";
    }
    waitUntilRepliesLanded();
    EXPECT_EQ(tweak.updates(100).size(), 100U);
}

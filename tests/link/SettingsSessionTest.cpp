#include "link/SettingsSession.h"

#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/messaging/Dispatch.h"
#include "tests/link/ScriptedTweak.h"
#include "tests/support/Deadline.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/Waiting.h"

#include <future>
#include <gtest/gtest.h>

using namespace lumora;
using namespace platform;
using namespace tests;

namespace {

/// On real sockets. What happens between two steps of a session is in SessionStepsTest.cpp.
struct SettingsSessionTest : testing::Test {
    static void waitUntilRepliesLanded() { ASSERT_TRUE(dispatch_wait_until_idle(kLongEnough)) << "replies that land"; }
    void TearDown() override { waitUntilRepliesLanded(); }

    const PortsFolder folder;
    SettingsSession session;
    const Deadline deadline{"the settings of a session that starts"};
};

} // namespace

TEST_F(SettingsSessionTest, HoldsTheTweaksSettingsWhenItHasStarted) {
    ScriptedTweak tweak(Dictionary{{"kTweakEnabled", true}, {"kSleepTime", 30}});
    EXPECT_TRUE(session.start());
    EXPECT_EQ(session.value("kTweakEnabled"), true);
    EXPECT_EQ(session.value("kSleepTime"), 30);
    EXPECT_EQ(tweak.requests(1), std::vector<std::optional<Data>>{std::nullopt}) << "one request, without a body";
}

TEST_F(SettingsSessionTest, ReadsNilForWhatTheTweakDidNotSend) {
    const ScriptedTweak tweak(Dictionary{{"kTweakEnabled", true}});
    EXPECT_TRUE(session.value("kTweakEnabled").isNil()) << "nothing before the first reply";
    session.start();
    EXPECT_TRUE(session.value("kSleepTime").isNil());
}

TEST_F(SettingsSessionTest, StartsAgainAtOnceWithWhatItHoldsAndItsChanges) {
    ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}, {"kTweakEnabled", true}});
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
    waitUntilRepliesLanded(); // before what the answer looks at is gone
}

TEST_F(SettingsSessionTest, LetsALateReplyReplaceEverything) {
    ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}, {"gone", 1}});
    session.start();
    session.setValue(45, "kSleepTime");
    waitUntilRepliesLanded();
    tweak.answerWith(Dictionary{{"kSleepTime", 60}});
    session.start();
    waitUntilRepliesLanded();
    EXPECT_EQ(session.settings(), (Dictionary{{"kSleepTime", 60}}));
}

TEST_F(SettingsSessionTest, SendsExactlyOneUpdateForAChange) {
    ScriptedTweak tweak(Dictionary{});
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

TEST_F(SettingsSessionTest, KeepsAChangeThatTheTweakNeverGot) {
    {
        const ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}});
        session.start();
    }
    session.setValue(45, "kSleepTime");
    waitUntilRepliesLanded();
    EXPECT_EQ(session.value("kSleepTime"), 45);
}

TEST_F(SettingsSessionTest, LeavesOtherSessionsAloneUntilTheirNextReply) {
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

TEST_F(SettingsSessionTest, ReadsNilAndStillSendsWithSettingsThatAreNoDictionary) {
    ScriptedTweak tweak(Value("surprise"));
    EXPECT_TRUE(session.start()) << "the slot is not empty";
    EXPECT_TRUE(session.value("kSleepTime").isNil());
    session.setValue(45, "kSleepTime");
    EXPECT_TRUE(session.value("kSleepTime").isNil());
    EXPECT_EQ(session.settings(), "surprise");
    EXPECT_EQ(tweak.updates(1).size(), 1U);
}

TEST_F(SettingsSessionTest, KeepsAChangeWhileRepliesLand) {
    ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}});
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

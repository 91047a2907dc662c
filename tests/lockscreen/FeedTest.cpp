#include "tests/lockscreen/FeedTest.h"

#include "tests/link/ScriptedTweak.h"
#include "tweak/Defaults.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cmath>
#include <sys/types.h>
#include <utility>

using namespace tests;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// How often a thread of this process has waited for something.
std::string waitsOf(pid_t thread) {
    const std::string status = readFile("/proc/self/task/" + std::to_string(thread) + "/status");
    const auto place = status.find("voluntary_ctxt_switches");
    return place == std::string::npos ? "" : status.substr(place, status.find('\n', place) - place);
}

} // namespace

TEST_F(FeedTest, CountsNoValueAsChangedThatIsNoNumberStill) {
    const double nan = std::nan("");
    EXPECT_THAT(changedKeys({{"a", nan}, {"b", nan}}, {{"a", nan}, {"b", 1}}), testing::ElementsAre("b"));
}

TEST_F(FeedTest, HandsOnTheSettingsAndThenEachChange) {
    const auto tweak = startTweak();
    const Ear ear;
    ASSERT_TRUE(ear.comesToHearATweak());
    EXPECT_EQ(ear.heard().settings.size(), knownSettings().size());
    EXPECT_EQ(ear.heard().changed.size(), knownSettings().size());
    ASSERT_EQ(change("kSleepTime", 30), "");
    ASSERT_TRUE(ear.comesToHear(30));
    EXPECT_THAT(ear.heard().changed, ElementsAre("kSleepTime"));
    EXPECT_EQ(ear.heard().revision, 1);
    ASSERT_EQ(change("kSleepTime", 30), "");
    ASSERT_EQ(change("com.example.list", platform::List{1, "a"}), "");
    ASSERT_TRUE(ear.comesToHear(platform::List{1, "a"}, "com.example.list"));
    EXPECT_EQ(ear.heard().revision, 3);
    EXPECT_EQ(ear.calls(), 3U) << "what is set to the value that it has is no change";
}

TEST_F(FeedTest, EndsWithTheLastValueOfTenThousandChanges) {
    const auto tweak = startTweak();
    const Ear ear({kNever, kNever, kNever});
    ASSERT_TRUE(ear.comesToHearATweak());
    for (int i = 1; i <= 10'000; ++i)
        ASSERT_EQ(change(i % 2 == 0 ? "com.example.even" : "com.example.odd", i), "");
    EXPECT_TRUE(ear.comesToHear(10'000, "com.example.even"));
    EXPECT_TRUE(ear.comesToHear(9'999, "com.example.odd"));
    EXPECT_EQ(ear.heard().revision, 10'000);
}

TEST_F(FeedTest, HandsOnTheLatestAloneToASlowListener) {
    const auto tweak = startTweak();
    Ear ear({kNever, kNever, kNever});
    ASSERT_TRUE(ear.comesToHearATweak());
    ear.holdUp();
    for (int i = 1; i <= 1'000; ++i)
        ASSERT_EQ(change(i % 2 == 0 ? "com.example.even" : "com.example.odd", i), "");
    ear.goOn();
    EXPECT_TRUE(ear.comesToHear(1'000, "com.example.even"));
    EXPECT_TRUE(ear.comesToHear(999, "com.example.odd"));
    EXPECT_LE(ear.calls(), 20U) << "the first, the one that was held up, what waited for its end, and latecomers";
}

TEST_F(FeedTest, NoticesThatATweakIsKilledAndThatAnotherStarts) {
    auto tweak = startTweak();
    const Ear ear({kNever, kNever, kNever}); // so that it cannot be by looking again
    ASSERT_TRUE(ear.comesToHearATweak());
    for (int round = 1; round <= 3; ++round) {
        ASSERT_EQ(change("kSleepTime", 30 + round), "");
        ASSERT_TRUE(ear.comesToHear(30 + round));
        tweak->kill();
        ASSERT_TRUE(ear.comesToHearATweak(false));
        EXPECT_THAT(ear.heard().settings, IsEmpty());
        tweak = startTweak();
        ASSERT_TRUE(ear.comesToHear(30 + round));
        EXPECT_EQ(ear.heard().revision, round) << "which goes on from the history";
    }
}

TEST_F(FeedTest, WaitsForATweakAndSaysSo) {
    const Ear ear({kNever, kNever, kNever});
    ASSERT_TRUE(ear.comesToHearATweak(false));
    EXPECT_EQ(ear.calls(), 1U);
    EXPECT_THAT(ear.heard().changed, IsEmpty());
    const auto tweak = startTweak();
    EXPECT_TRUE(ear.comesToHearATweak());
}

TEST_F(FeedTest, NoticesATweakThatBeganAnewUnseenWhenItSubscribesAgain) {
    const ScriptedTweak tweak(Dictionary{});
    std::atomic<std::int64_t> revision = 500;
    const ScriptedFollowing following([&](auto&) {
        return ScriptedFollowing::settings(revision, {{"kSleepTime", revision.load()}});
    });
    const Ear ear({10ms, kNever, kNever});
    ASSERT_TRUE(ear.comesToHear(500));
    revision = 2;
    ASSERT_TRUE(ear.comesToHear(2));
    EXPECT_EQ(ear.heard().revision, 2);
}

TEST_F(FeedTest, TakesWhatIsToldBeforeTheAnswerHasCome) {
    const ScriptedTweak tweak(Dictionary{});
    const ScriptedFollowing following([&](const std::string& follower) {
        tell(follower, 5, {{"early", "old"}});
        tell(follower, 7, {{"late", "new"}});
        return ScriptedFollowing::settings(6, {{"early", "new"}, {"late", "old"}});
    });
    const Ear ear({kNever, kNever, kNever});
    ASSERT_TRUE(ear.comesToHear("new", "late"));
    EXPECT_EQ(ear.heard().revision, 7);
}

TEST_F(FeedTest, LeavesOutWhatTheAnswerHasAlready) {
    const ScriptedTweak tweak(Dictionary{});
    std::promise<std::string> follower;
    const ScriptedFollowing following([&](const std::string& name) {
        tell(name, 5, {{"a", "old"}});
        follower.set_value(name);
        return ScriptedFollowing::settings(6, {{"a", "new"}});
    });
    const Ear ear({kNever, kNever, kNever});
    const std::string name = awaited(follower.get_future(), "the follower");
    ASSERT_TRUE(ear.comesToHear("new", "a"));
    tell(name, 6, {{"a", "old"}});
    tell(name, 7, {{"b", 1}});
    ASSERT_TRUE(ear.comesToHear(1, "b"));
    EXPECT_EQ(ear.heard().settings["a"], Value("new"));
}

TEST_F(FeedTest, AsksATweakThatCannotBeFollowedAgainAndAgain) {
    ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}});
    const Ear ear({kNever, 1ms, kNever});
    ASSERT_TRUE(ear.comesToHear(30));
    EXPECT_EQ(ear.heard().revision, 0);
    EXPECT_GE(tweak.requests(20).size(), 20U);
    EXPECT_EQ(ear.calls(), 1U) << "nothing is new in the same answers";
    tweak.answerWith(Dictionary{{"kSleepTime", 31}, {"kTweakEnabled", true}});
    ASSERT_TRUE(ear.comesToHear(31));
    EXPECT_THAT(ear.heard().changed, ElementsAre("kSleepTime", "kTweakEnabled"));
    tweak.answerWith(Dictionary{{"kSleepTime", 31}});
    EXPECT_TRUE(ear.comesToHear(nullptr, "kTweakEnabled"));
    EXPECT_THAT(ear.heard().changed, ElementsAre("kTweakEnabled"));
}

TEST_F(FeedTest, AsksATweakThatRefusesToBeFollowedOrAnswersWithSomethingElse) {
    ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}});
    for (const auto& answer : {std::optional<Data>(), std::optional(Data{1, 2, 3}),
                               NSKeyedArchiver::archivedDataWithRootObject(Dictionary{{"kSleepTime", 31}}),
                               NSKeyedArchiver::archivedDataWithRootObject(
                                   Dictionary{{kRevisionEntry, "1"}, {kSettingsEntry, Dictionary{}}})}) {
        const ScriptedFollowing following([&](auto&) { return answer; });
        const Ear ear;
        EXPECT_TRUE(ear.comesToHear(30));
    }
}

TEST_F(FeedTest, FollowsATweakOnceItCanBeFollowed) {
    ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}});
    const Ear ear({kNever, kNever, kNever});
    ASSERT_TRUE(ear.comesToHear(30));
    const ScriptedFollowing following([](auto&) { return ScriptedFollowing::settings(9, {{"kSleepTime", 31}}); });
    ASSERT_TRUE(ear.comesToHear(31));
    EXPECT_EQ(ear.heard().revision, 9);
}

TEST_F(FeedTest, TakesAnAnswerWithoutSettingsForNone) {
    ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}});
    const Ear ear({kNever, 1ms, 1ms});
    ASSERT_TRUE(ear.comesToHear(30));
    for (const auto& answer : {std::optional<Data>(), std::optional(Data{1, 2, 3}),
                               NSKeyedArchiver::archivedDataWithRootObject(platform::List{1})}) {
        tweak.answerWith([answer] { return answer; });
        ASSERT_TRUE(ear.comesToHearATweak(false));
        EXPECT_THAT(ear.heard().settings, IsEmpty());
        tweak.answerWith(Dictionary{{"kSleepTime", 30}});
        ASSERT_TRUE(ear.comesToHear(30));
    }
}

TEST_F(FeedTest, KeepsUpWithATweakInAnotherLanguage) {
    const std::string modules = "PYTHONPATH=" LUMORA_SOURCE "/tests";
    Program tweak({"/usr/bin/env", modules, "PYTHONDONTWRITEBYTECODE=1", "python3", "-m", "harness.tweak", "--settings",
                   sandbox.path() / "settings.json"});
    ASSERT_EQ(tweak.readLine(), "tweak.py: ready") << tweak.errors();
    const Ear ear;
    ASSERT_TRUE(ear.comesToHearATweak());
    EXPECT_THAT(ear.heard().settings, IsEmpty());
    ASSERT_EQ(change("kSleepTime", 30), "");
    EXPECT_TRUE(ear.comesToHear(30));
    tweak.kill();
    EXPECT_TRUE(ear.comesToHearATweak(false));
}

TEST_F(FeedTest, NeitherWakesNorAsksWhileItIsHidden) {
    ScriptedTweak tweak(Dictionary{{"kSleepTime", 30}});
    Ear ear({1ms, 1ms, 1ms});
    ASSERT_TRUE(ear.comesToHear(30));
    ear.setVisible(false);
    ASSERT_TRUE(comesToBeWithoutFollowers());
    tweak.answerWith(Dictionary{{"kSleepTime", 31}});
    const auto asked = tweak.requests(0).size();
    // It falls asleep behind its port.
    std::string waits;
    ASSERT_TRUE(eventually([&] { return std::exchange(waits, waitsOf(ear.thread())) == waitsOf(ear.thread()); }));
    const auto calls = ear.calls();
    for (int i = 0; i < 200; ++i)
        askForSettings();
    EXPECT_EQ(tweak.requests(0).size(), asked + 200) << "which this test has asked for";
    EXPECT_EQ(waitsOf(ear.thread()), waits);
    EXPECT_EQ(ear.calls(), calls);
    ear.setVisible(true);
    EXPECT_TRUE(ear.comesToHear(31));
}

TEST_F(FeedTest, CatchesUpWhenItIsShownAgain) {
    const auto tweak = startTweak();
    Ear ear({kNever, kNever, kNever}, false);
    for (int round = 0; round < 20; ++round) { // more often than a tweak has followers
        ear.setVisible(false);
        ASSERT_TRUE(comesToBeWithoutFollowers());
        if (round % 5 == 0) {
            ASSERT_EQ(change("kSleepTime", 30 + round), "");
        }
        ear.setVisible(true);
        ASSERT_TRUE(ear.comesToHear(30 + round - round % 5));
        EXPECT_GT(ear.heard().revision, 0) << "it does not only ask";
    }
    ASSERT_EQ(change("kSleepTime", 99), "");
    EXPECT_TRUE(ear.comesToHear(99)) << "and it is still told";
}

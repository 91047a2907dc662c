#include "tests/lockscreen/FeedTest.h"

#include "lockscreen/FollowerPort.h"
#include "tests/link/ScriptedTweak.h"
#include "tests/support/Deadline.h"
#include "tests/support/NoThreads.h"
#include "tests/support/RawSocket.h"

#include <gmock/gmock.h>

#include <atomic>
#include <csignal>

using namespace tests;
using testing::IsEmpty;

TEST_F(FeedTest, IgnoresWhatIsNoMessageOfATweak) {
    const ScriptedTweak tweak(Dictionary{});
    std::promise<std::string> follower;
    const ScriptedFollowing following([&](const std::string& name) {
        follower.set_value(name);
        return ScriptedFollowing::settings(6, {{"a", 1}});
    });
    const Ear ear({kNever, kNever, kNever});
    const std::string name = awaited(follower.get_future(), "the follower");
    ASSERT_TRUE(ear.comesToHear(1, "a"));
    const auto object = [](const Value& value) {
        return NSKeyedArchiver::archivedDataWithRootObject(messageWith(value));
    };
    tell(name, std::nullopt);
    tell(name, Data{});
    tell(name, Data(100'000, 'x'));
    tell(name, object(nullptr));
    tell(name, object("text"));
    tell(name, object(platform::List{1}));
    tell(name, object(Dictionary{{kRevisionEntry, 7}}));
    tell(name, object(Dictionary{{kRevisionEntry, 7}, {kSettingsEntry, platform::List{"a"}}}));
    tell(name, object(Dictionary{{kRevisionEntry, 7.0}, {kSettingsEntry, Dictionary{{"a", 2}}}}));
    tell(name, object(Dictionary{{kSettingsEntry, Dictionary{{"a", 2}}}}));
    tell(name, object(revisionOf(5, {{"a", 2}})));
    tell(name, object(revisionOf(7, {{"a", 2}})), kMessageId + 1);
    tell(name, NSKeyedArchiver::archivedDataWithRootObject(revisionOf(7, {{"a", 2}})));
    tell(name, 7, {{"b", 1}});
    ASSERT_TRUE(ear.comesToHear(1, "b"));
    EXPECT_EQ(ear.heard().settings, (Dictionary{{"a", 1}, {"b", 1}}));
    EXPECT_EQ(ear.calls(), 2U);
}

TEST_F(FeedTest, AsksForAllSettingsAgainWhenLiesPileUp) {
    const ScriptedTweak tweak(Dictionary{});
    std::promise<std::string> follower;
    std::atomic<int> subscriptions = 0;
    const ScriptedFollowing following([&](const std::string& name) {
        if (++subscriptions == 1) follower.set_value(name);
        return ScriptedFollowing::settings(6, {{"a", 1}});
    });
    const Ear ear({kNever, kNever, kNever});
    const std::string name = awaited(follower.get_future(), "the follower");
    ASSERT_TRUE(ear.comesToHear(1, "a"));
    constexpr std::size_t large = 1U << 20U;
    for (std::size_t told = 0; told < FollowerPort::kMostTold; told += large)
        tell(name, static_cast<std::int64_t>(1'000 + told), {{"lie " + std::to_string(told), std::string(large, 'x')}});
    EXPECT_TRUE(eventually([&] { return subscriptions == 2; }));
    EXPECT_TRUE(eventually([&] { return ear.heard().settings == Dictionary{{"a", 1}}; }));
    tell(name, 7, {{"a", 2}});
    EXPECT_TRUE(ear.comesToHear(2, "a"));
}

TEST_F(FeedTest, IsWithoutAPortWhileNoThreadCanBeStarted) {
    const NoThreads none;
    FollowerPort port(1, [] {});
    EXPECT_FALSE(port.isOpen());
    port.beginAnew();
    EXPECT_FALSE(port.take());
}

TEST_F(FeedTest, EndsAndLeavesNothingBehind) {
    const auto tweak = startTweak();
    const auto threads = threadCount();
    const auto descriptors = descriptorCount();
    Ear ear;
    Ear other;
    ASSERT_TRUE(ear.comesToHearATweak());
    ASSERT_TRUE(other.comesToHearATweak());
    EXPECT_EQ(followers().size(), 4U) << "two sockets with their lock files";
    ear.end();
    ASSERT_EQ(change("kSleepTime", 30), "");
    EXPECT_TRUE(other.comesToHear(30));
    other.end();
    EXPECT_THAT(followers(), IsEmpty());
    EXPECT_EQ(threadCount(), threads);
    EXPECT_EQ(descriptorCount(), descriptors);
}

TEST_F(FeedTest, EndsWhileASilentTweakKeepsItWaiting) {
    const auto folder = sandbox.ports() / "com.nevo.lumora";
    const auto requests = RawSocket::listeningAt(folder / kRequestTweakSettings);
    const auto follows = RawSocket::listeningAt(folder / kFollowSettings);
    std::filesystem::permissions(sandbox.ports(), std::filesystem::perms::owner_all);
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    const Deadline deadline("the end of a feed");
    Ear ear;
    const RawSocket looked = follows.accept(); // the subscription is under way
    ear.end();
    EXPECT_EQ(ear.calls(), 0U);
}

TEST_F(FeedTest, IsToldWhateverAnotherProcessThatFollowsDoes) {
    const auto tweak = startTweak();
    const auto alone = tweak->threads();
    const Ear ear({kNever, kNever, kNever});
    ASSERT_TRUE(ear.comesToHearATweak());
    Program other({LUMORACTL, "watch"});
    ASSERT_TRUE(eventually([&] { return tweak->threads() == alone + 2; })) << "one for each that is told";
    other.signal(SIGSTOP); // it never answers
    for (int i = 1; i <= 100; ++i)
        ASSERT_EQ(change("kSleepTime", 30 + i), "");
    EXPECT_TRUE(ear.comesToHear(130));
    other.kill();
    ASSERT_EQ(change("kSleepTime", 29), "");
    EXPECT_TRUE(ear.comesToHear(29));
    EXPECT_TRUE(eventually([&] { return tweak->threads() == alone + 1; })) << "the killed one is told no more";
}

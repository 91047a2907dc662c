#include "tests/support/NoThreads.h"
#include "tests/support/RawSocket.h"
#include "tests/support/ServedPort.h"
#include "tests/support/Waiting.h"
#include "tests/tweak/Messages.h"
#include "tests/tweak/Sandbox.h"

#include "tweak/Followers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <mutex>
#include <vector>

using namespace lumora;
using namespace tests;
using platform::Dictionary;
using platform::NSKeyedUnarchiver;
using platform::Value;

namespace {

std::string portOf(int number) {
    return "followers/" + std::to_string(::getpid()) + "-" + std::to_string(number);
}

/// A follower that keeps what it is told, and may be held up in the midst of its first message.
class Listener {
  public:
    explicit Listener(int number, bool heldUp = false)
        : heldUp_(heldUp),
          port_(lumora::portName(portOf(number)), [this](auto&, auto, const auto& body) { return take(body); }) {}

    [[nodiscard]] Dictionary settings() const {
        const std::lock_guard held(mutex_);
        return settings_;
    }
    [[nodiscard]] std::vector<std::int64_t> revisions() const {
        const std::lock_guard held(mutex_);
        return revisions_;
    }
    void goOn() { gate_.set_value(); }

  private:
    std::optional<platform::Data> take(const std::optional<platform::Data>& body) {
        const Value told = NSKeyedUnarchiver::unarchiveObjectWithData(*body)[kObjectEntry];
        std::unique_lock held(mutex_);
        revisions_.push_back(told[kRevisionEntry].integer().value_or(-1));
        const Value values = told[kSettingsEntry];
        for (const auto& [key, value] : *values.dictionary())
            settings_.set(key, value);
        held.unlock();
        if (std::exchange(heldUp_, false)) awaited(gate_.get_future(), "the gate");
        return std::nullopt;
    }

    mutable std::mutex mutex_;
    Dictionary settings_;
    std::vector<std::int64_t> revisions_;
    std::promise<void> gate_;
    bool heldUp_;
    ServedPort port_;
};

class FollowersTest : public testing::Test {
  protected:
    Sandbox sandbox;
};

} // namespace

TEST_F(FollowersTest, AreAllToldTheLastValueOfEachKeyInTheOrderOfTheRevisions) {
    const Listener first(1);
    const Listener second(2);
    Followers followers;
    ASSERT_TRUE(followers.add(portOf(1)));
    ASSERT_TRUE(followers.add(portOf(2)));
    for (int i = 1; i <= 1000; ++i)
        followers.changed(i, i % 2 == 0 ? "even" : "odd", i);
    for (const Listener* listener : {&first, &second}) {
        EXPECT_TRUE(eventually([&] { return listener->settings() == Dictionary{{"odd", 999}, {"even", 1000}}; }));
        const auto revisions = listener->revisions();
        EXPECT_TRUE(std::ranges::is_sorted(revisions));
        EXPECT_EQ(revisions.back(), 1000);
    }
}

TEST_F(FollowersTest, HoldUpNeitherTheTweakNorEachOther) {
    Listener stuck(1, true);
    const Listener other(2);
    Followers followers;
    ASSERT_TRUE(followers.add(portOf(1)));
    ASSERT_TRUE(followers.add(portOf(2)));
    followers.changed(1, "a", 1);
    EXPECT_TRUE(eventually([&] { return !stuck.revisions().empty(); }));
    for (int i = 2; i <= 10'000; ++i)
        followers.changed(i, "a", i);
    EXPECT_TRUE(eventually([&] { return other.settings()["a"] == Value(10'000); }));
    stuck.goOn();
    EXPECT_TRUE(eventually([&] { return stuck.settings()["a"] == Value(10'000); }));
    EXPECT_LE(stuck.revisions().size(), 4U) << "the first, which may have been given up and told again, and the last";
}

TEST_F(FollowersTest, AreForgottenOnceTheirPortIsGone) {
    Followers followers;
    ASSERT_TRUE(followers.add(portOf(1)));
    EXPECT_EQ(followers.count(), 1U);
    followers.changed(1, "a", 1);
    EXPECT_TRUE(eventually([&] { return followers.count() == 0; }));
    const Listener back(1);
    ASSERT_TRUE(followers.add(portOf(1)));
    followers.changed(2, "a", 2);
    EXPECT_TRUE(eventually([&] { return back.settings()["a"] == Value(2); }));
}

TEST_F(FollowersTest, AreNotForgottenForWhatFailedBeforeTheyAskedAgain) {
    const auto listener = RawSocket::listeningAt(sandbox.ports() / lumora::portName(portOf(1)));
    Followers followers;
    ASSERT_TRUE(followers.add(portOf(1)));
    followers.changed(1, "a", 1);
    for (int round = 0; round < 2 * Followers::kTries; ++round) {
        const RawSocket told = listener.accept();
        ASSERT_FALSE(told.receive(1).empty());
        ASSERT_TRUE(followers.add(portOf(1)));
    }
    EXPECT_EQ(followers.count(), 1U);
    for (int round = 0; round < Followers::kTries; ++round)
        ASSERT_FALSE(listener.accept().receive(1).empty());
    EXPECT_TRUE(eventually([&] { return followers.count() == 0; }));
}

TEST_F(FollowersTest, AreSixteenAtMost) {
    std::vector<std::unique_ptr<Listener>> listeners;
    Followers followers;
    for (int i = 0; i < 16; ++i) {
        listeners.push_back(std::make_unique<Listener>(i));
        EXPECT_TRUE(followers.add(portOf(i)));
    }
    EXPECT_TRUE(followers.add(portOf(3))) << "which follows already";
    EXPECT_EQ(followers.add(portOf(16)).error(), "16 follow already");
    listeners.pop_back();
    EXPECT_TRUE(followers.add(portOf(16))) << "in place of one that has gone, of which no change has told";
    EXPECT_EQ(followers.count(), 16U);
}

TEST_F(FollowersTest, AreRefusedWhileNoThreadCanBeStarted) {
    Followers followers;
    {
        const NoThreads none;
        EXPECT_EQ(followers.add(portOf(1)).error(), "no thread can be started: Resource temporarily unavailable");
    }
    EXPECT_EQ(followers.count(), 0U);
    EXPECT_TRUE(followers.add(portOf(1)));
}

TEST(FollowersPort, IsOneOfTheProcessThatAsks) {
    EXPECT_TRUE(isFollowersPort("followers/12-0", 12));
    for (const char* other : {"followers/13-0", "followers/12-", "followers/12-x", "followers/12-0/../updateSettings",
                              "updateSettings", "", "followers/12"})
        EXPECT_FALSE(isFollowersPort(other, 12)) << other;
}

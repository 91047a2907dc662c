#include "link/Notify.h"

#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/messaging/CFRunLoop.h"
#include "platform/messaging/Dispatch.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/RawSocket.h"
#include "tests/support/ServedPort.h"
#include "tests/support/Waiting.h"

#include <atomic>
#include <chrono>
#include <future>
#include <gtest/gtest.h>
#include <set>
#include <thread>

using namespace lumora;
using namespace platform;
using namespace tests;
using namespace std::chrono_literals;

namespace {

void waitUntilIdle() {
    ASSERT_TRUE(dispatch_wait_until_idle(kLongEnough));
}

struct Notify : testing::Test {
    const PortsFolder folder;

    void TearDown() override { waitUntilIdle(); }
    [[nodiscard]] RawSocket listen(const std::string& name, int backlog = 16) const {
        return RawSocket::listeningAt(folder.socket("com.nevo.lumora/" + name), backlog);
    }
};
using Port = Notify;

/// What one run of a reply block got.
struct Reply {
    std::optional<Data> body;
    std::thread::id thread;
};

/// Sends a message and waits for its reply block.
Reply replyTo(const std::string& name, const Value& object) {
    std::promise<Reply> promise;
    auto reply = promise.get_future();
    notify(name, object, [&promise](const auto& body) { promise.set_value({body, std::this_thread::get_id()}); });
    return awaited(std::move(reply), "the reply to " + name);
}

/// A message whose exchange ends with a failure; true when its reply block never ran.
bool failsInSilence(const std::string& name) {
    std::atomic<int> calls = 0;
    notify(name, nullptr, [&calls](const auto&) { ++calls; });
    return dispatch_wait_until_idle(kLongEnough) && calls == 0;
}

/// Whether such a message is given up once a second has passed. A busy machine may take longer, and is asked again.
bool failsAfterASecond(const std::string& name) {
    for (int round = 0; round < 10; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        if (!failsInSilence(name)) return false;
        const auto taken = std::chrono::steady_clock::now() - begin;
        if (taken < 1200ms) return taken > 950ms;
    }
    return false;
}

} // namespace

TEST_F(Notify, SendsNoBodyForANilObjectToThePrefixDirectlyFollowedByTheName) {
    const auto listener = RawSocket::listeningAt(folder.path() / "com.nevo.lumora" / "updateSettings");
    notify("updateSettings", nullptr, nullptr);
    const auto client = listener.accept();
    EXPECT_EQ(client.receive(16), frameWithoutBody(0)) << "message id 0, body length -1";
    client.send(frameWithoutBody());
    EXPECT_TRUE(client.isClosedByPeer()) << "nothing came behind the header";
}

TEST_F(Notify, WrapsTheObjectAndArchivesItWithMessageIdZero) {
    const auto listener = listen("message");
    const Value object = Dictionary{{"text", "ü"}, {"list", List{1, true, 0.5}}};
    const auto expected =
        frameWith(NSKeyedArchiver::archivedDataWithRootObject(Dictionary{{"object", object}}).value());
    notify("message", object, nullptr);
    const auto client = listener.accept();
    EXPECT_EQ(client.receive(expected.size()), expected);
    client.send(frameWithoutBody());
}

TEST_F(Notify, HandsTheReplyOverAsItCameOnAWorkerThread) {
    const ServedPort port("com.nevo.lumora/message", [](auto&, auto, const auto&) { return bytes("no archive"); });
    const auto reply = replyTo("message", 5);
    EXPECT_EQ(reply.body, bytes("no archive"));
    EXPECT_NE(reply.thread, std::this_thread::get_id());
}

TEST_F(Notify, HandsOverNothingWhenTheAnswerHasNoBody) {
    const ServedPort port("com.nevo.lumora/message", [](auto&, auto, const auto&) { return std::nullopt; });
    EXPECT_EQ(replyTo("message", "x").body, std::nullopt);
}

TEST_F(Notify, WaitsForTheReplyAlsoWithoutAReplyBlock) {
    const auto listener = listen("message");
    notify("message", nullptr, nullptr);
    const auto client = listener.accept();
    EXPECT_EQ(client.receive(16).size(), 16U);
    EXPECT_FALSE(dispatch_wait_until_idle(100ms)) << "the worker waits for the reply";
    client.send(frameWith(bytes("discarded")));
    EXPECT_TRUE(client.isClosedByPeer()) << "closed only once the reply has been taken";
}

TEST_F(Notify, NeverRunsTheReplyBlockWhenThereIsNoReceiver) {
    EXPECT_TRUE(failsInSilence("nobody"));
}

TEST_F(Notify, GivesUpInSilenceAfterASecondWithoutAReply) {
    const auto listener = listen("silent");
    EXPECT_TRUE(failsAfterASecond("silent"));
}

TEST_F(Notify, GivesUpInSilenceAfterASecondBeforeAFullBacklog) {
    const auto listener = listen("full", 0);
    const auto waiting = RawSocket::connectedTo(folder.socket("com.nevo.lumora/full"));
    EXPECT_TRUE(failsAfterASecond("full"));
}

TEST_F(Notify, NeverRunsTheReplyBlockWhenTheReplyIsCutOff) {
    const auto listener = listen("cut");
    std::thread receiver([&listener] {
        const auto client = listener.accept();
        EXPECT_EQ(client.receive(16).size(), 16U);
        const auto reply = frameWith(bytes("whole"));
        client.send(std::span(reply).first(20));
    });
    EXPECT_TRUE(failsInSilence("cut"));
    receiver.join();
}

TEST_F(Notify, DropsAnObjectThatNoArchiveCanHold) {
    std::atomic<int> requests = 0;
    const ServedPort port("com.nevo.lumora/message", [&requests](auto&, auto, const auto&) {
        ++requests;
        return std::nullopt;
    });
    Value deep;
    for (int i = 0; i < 1000; ++i)
        deep = List{deep};
    notify("message", deep, nullptr);
    waitUntilIdle();
    EXPECT_EQ(requests, 0);
}

TEST_F(Notify, LetsOtherMessagesPassOneThatIsStuck) {
    const auto listener = listen("silent");
    const ServedPort port("com.nevo.lumora/message", [](auto&, auto, const auto&) { return std::nullopt; });
    std::atomic<int> calls = 0;
    for (int i = 0; i < 200; ++i)
        notify("silent", nullptr, [&calls](const auto&) { ++calls; });
    EXPECT_EQ(replyTo("message", nullptr).body, std::nullopt);
    waitUntilIdle();
    EXPECT_EQ(calls, 0);
}

TEST_F(Notify, RunsEachReplyBlockOnce) {
    constexpr std::size_t kMessages = 500;
    std::multiset<std::int64_t> received;
    const ServedPort port("com.nevo.lumora/message", [&received](auto&, auto, const auto& body) {
        received.insert(*NSKeyedUnarchiver::unarchiveObjectWithData(*body)["object"].integer());
        return std::nullopt;
    });
    std::vector<std::atomic<std::size_t>> calls(kMessages);
    // One that takes more than a second is dropped, as it has to be, and is sent once more.
    for (int round = 0; round < 10; ++round) {
        for (std::size_t i = 0; i < kMessages; ++i)
            if (calls[i] == 0) notify("message", static_cast<int>(i), [&calls, i](const auto&) { ++calls[i]; });
        waitUntilIdle();
    }
    for (std::size_t i = 0; i < kMessages; ++i) {
        EXPECT_GE(calls[i], 1U) << i;
        EXPECT_LE(calls[i], received.count(static_cast<std::int64_t>(i))) << i;
    }
}

TEST_F(Port, ServesItsNameOnAWorkerUntilItsRunLoopStops) {
    std::atomic<bool> leave = false;
    port("service", [&leave](auto&, auto, const auto& body) {
        if (leave) CFRunLoopStop(CFRunLoopGetCurrent());
        return body;
    });
    const auto path = folder.socket("com.nevo.lumora/service");
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(path); }));
    const auto send = [] {
        return CFMessagePortSendRequest(*CFMessagePortCreateRemote("com.nevo.lumora/service"), 0, std::nullopt, 10, 10,
                                        nullptr);
    };
    ASSERT_TRUE(eventually([&] { return send() == kCFMessagePortSuccess; }));
    leave = true;
    EXPECT_EQ(send(), kCFMessagePortSuccess);
    waitUntilIdle();
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Port, GivesUpInSilenceWhenTheNameIsTaken) {
    const ServedPort first("com.nevo.lumora/service", [](auto&, auto, const auto&) { return bytes("first"); });
    port("service", [](auto&, auto, const auto&) { return bytes("second"); });
    waitUntilIdle();
    EXPECT_EQ(replyTo("service", nullptr).body, bytes("first"));
}

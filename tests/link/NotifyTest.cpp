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

void waitUntilIdle() {
    ASSERT_TRUE(dispatch_wait_until_idle(kLongEnough));
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

TEST(Notify, SendsToThePrefixDirectlyFollowedByTheName) {
    const PortsFolder folder;
    const auto listener = RawSocket::listeningAt(folder.path() / "com.nevo.lumora" / "updateSettings");
    notify("updateSettings", nullptr, nullptr);
    const auto client = listener.accept();
    EXPECT_EQ(client.receive(16).size(), 16U);
    client.send(frameWithoutBody());
    waitUntilIdle();
}

TEST(Notify, SendsNoBodyForANilObject) {
    const PortsFolder folder;
    const auto listener = RawSocket::listeningAt(folder.socket("com.nevo.lumora/message"));
    notify("message", nullptr, nullptr);
    const auto client = listener.accept();
    EXPECT_EQ(client.receive(16), frameWithoutBody(0)) << "message id 0, body length -1";
    client.send(frameWithoutBody());
    EXPECT_TRUE(client.isClosedByPeer()) << "nothing came behind the header";
    waitUntilIdle();
}

TEST(Notify, WrapsTheObjectAndArchivesItWithMessageIdZero) {
    const PortsFolder folder;
    const auto listener = RawSocket::listeningAt(folder.socket("com.nevo.lumora/message"));
    const Value object = Dictionary{{"text", "ü"}, {"list", List{1, true, 0.5}}};
    const auto archive = NSKeyedArchiver::archivedDataWithRootObject(Dictionary{{"object", object}});
    ASSERT_TRUE(archive);
    notify("message", object, nullptr);
    const auto client = listener.accept();
    const auto expected = frameWith(*archive, 0);
    EXPECT_EQ(client.receive(expected.size()), expected);
    client.send(frameWithoutBody());
    waitUntilIdle();
}

TEST(Notify, HandsTheReplyOverAsItCameOnAWorkerThread) {
    const PortsFolder folder;
    const ServedPort port("com.nevo.lumora/message", [](auto&, auto, const auto&) { return bytes("no archive"); });
    const auto reply = replyTo("message", 5);
    EXPECT_EQ(reply.body, bytes("no archive"));
    EXPECT_NE(reply.thread, std::this_thread::get_id());
}

TEST(Notify, HandsOverNothingWhenTheAnswerHasNoBody) {
    const PortsFolder folder;
    const ServedPort port("com.nevo.lumora/message", [](auto&, auto, const auto&) { return std::nullopt; });
    EXPECT_EQ(replyTo("message", "x").body, std::nullopt);
}

TEST(Notify, WaitsForTheReplyAlsoWithoutAReplyBlock) {
    const PortsFolder folder;
    const auto listener = RawSocket::listeningAt(folder.socket("com.nevo.lumora/message"));
    notify("message", nullptr, nullptr);
    const auto client = listener.accept();
    EXPECT_EQ(client.receive(16).size(), 16U);
    EXPECT_FALSE(dispatch_wait_until_idle(std::chrono::milliseconds(100))) << "the worker waits for the reply";
    client.send(frameWith(bytes("discarded")));
    EXPECT_TRUE(client.isClosedByPeer()) << "closed only once the reply has been taken";
    waitUntilIdle();
}

TEST(Notify, NeverRunsTheReplyBlockWhenThereIsNoReceiver) {
    const PortsFolder folder;
    EXPECT_TRUE(failsInSilence("nobody"));
}

TEST(Notify, NeverRunsTheReplyBlockWhenTheReceiverIsSilent) {
    const PortsFolder folder;
    const auto listener = RawSocket::listeningAt(folder.socket("com.nevo.lumora/silent"));
    EXPECT_TRUE(failsInSilence("silent"));
}

TEST(Notify, NeverRunsTheReplyBlockWhenTheBacklogStaysFull) {
    const PortsFolder folder;
    const auto listener = RawSocket::listeningAt(folder.socket("com.nevo.lumora/full"), 0);
    const auto waiting = RawSocket::connectedTo(folder.socket("com.nevo.lumora/full"));
    EXPECT_TRUE(failsInSilence("full"));
}

TEST(Notify, WaitsASecondForAReply) {
    const PortsFolder folder;
    const auto listener = RawSocket::listeningAt(folder.socket("com.nevo.lumora/silent"));
    EXPECT_TRUE(failsAfterASecond("silent"));
}

TEST(Notify, WaitsASecondForAPlaceInAFullBacklog) {
    const PortsFolder folder;
    const auto listener = RawSocket::listeningAt(folder.socket("com.nevo.lumora/full"), 0);
    const auto waiting = RawSocket::connectedTo(folder.socket("com.nevo.lumora/full"));
    EXPECT_TRUE(failsAfterASecond("full"));
}

TEST(Notify, NeverRunsTheReplyBlockWhenTheReplyIsCutOff) {
    const PortsFolder folder;
    const auto listener = RawSocket::listeningAt(folder.socket("com.nevo.lumora/cut"));
    std::thread receiver([&listener] {
        const auto client = listener.accept();
        EXPECT_EQ(client.receive(16).size(), 16U);
        const auto reply = frameWith(bytes("whole"));
        client.send(std::span(reply).first(20));
    });
    EXPECT_TRUE(failsInSilence("cut"));
    receiver.join();
}

TEST(Notify, DropsAnObjectThatNoArchiveCanHold) {
    const PortsFolder folder;
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

TEST(Notify, LetsOtherMessagesPassOneThatIsStuck) {
    const PortsFolder folder;
    const auto listener = RawSocket::listeningAt(folder.socket("com.nevo.lumora/silent"));
    const ServedPort port("com.nevo.lumora/message", [](auto&, auto, const auto&) { return std::nullopt; });
    std::atomic<int> calls = 0;
    for (int i = 0; i < 200; ++i)
        notify("silent", nullptr, [&calls](const auto&) { ++calls; });
    EXPECT_EQ(replyTo("message", nullptr).body, std::nullopt);
    waitUntilIdle();
    EXPECT_EQ(calls, 0);
}

TEST(Notify, RunsEachReplyBlockOnce) {
    constexpr std::size_t kMessages = 500;
    const PortsFolder folder;
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

TEST(Port, ServesItsNameOnAWorkerUntilItsRunLoopStops) {
    const PortsFolder folder;
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

TEST(Port, GivesUpInSilenceWhenTheNameIsTaken) {
    const PortsFolder folder;
    const ServedPort first("com.nevo.lumora/service", [](auto&, auto, const auto&) { return bytes("first"); });
    port("service", [](auto&, auto, const auto&) { return bytes("second"); });
    waitUntilIdle();
    EXPECT_EQ(replyTo("service", nullptr).body, bytes("first"));
}

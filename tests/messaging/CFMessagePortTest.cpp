#include "platform/messaging/CFMessagePort.h"
#include "platform/messaging/Dispatch.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/ServedPort.h"
#include "tests/support/Waiting.h"

#include <array>
#include <atomic>
#include <gtest/gtest.h>

using namespace platform;
using namespace tests;

namespace {

struct MessagePort : testing::Test {
    const PortsFolder folder;
};

std::optional<Data> echo(CFMessagePort& /*port*/, std::int32_t /*id*/, const std::optional<Data>& body) {
    return body;
}

CFMessagePortResult send(const std::string& name, const std::optional<Data>& body, std::optional<Data>* reply) {
    return CFMessagePortSendRequest(*CFMessagePortCreateRemote(name), 0, body, 10, 10, reply);
}

} // namespace

TEST_F(MessagePort, CarriesARequestAndItsReply) {
    const ServedPort port("com.example/echo", echo);
    std::optional<Data> reply;
    EXPECT_EQ(send("com.example/echo", Data{1, 2, 3}, &reply), kCFMessagePortSuccess);
    EXPECT_EQ(reply, (Data{1, 2, 3}));
}

TEST_F(MessagePort, TellsNoBodyFromAnEmptyOneBothWays) {
    const ServedPort port("echo", echo);
    std::optional<Data> reply = Data{9};
    EXPECT_EQ(send("echo", std::nullopt, &reply), kCFMessagePortSuccess);
    EXPECT_EQ(reply, std::nullopt);
    EXPECT_EQ(send("echo", Data(), &reply), kCFMessagePortSuccess);
    EXPECT_EQ(reply, Data());
}

TEST_F(MessagePort, HandsTheMessageIdToTheCallout) {
    std::atomic<std::int32_t> seen = 0;
    const ServedPort port("ids", [&seen](auto&, auto id, const auto&) {
        seen = id;
        return std::nullopt;
    });
    for (const std::int32_t id : {1, -2, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(CFMessagePortSendRequest(*CFMessagePortCreateRemote("ids"), id, std::nullopt, 10, 10, nullptr), 0);
        EXPECT_EQ(seen, id);
    }
}

TEST_F(MessagePort, CarriesLargeBodiesBothWays) {
    const ServedPort port("echo", echo);
    Data body(20 << 20);
    for (std::size_t i = 0; i < body.size(); ++i)
        body[i] = static_cast<std::uint8_t>(i * 31 >> 3);
    std::optional<Data> reply;
    EXPECT_EQ(send("echo", body, &reply), kCFMessagePortSuccess);
    EXPECT_TRUE(reply == body);
}

TEST_F(MessagePort, SendsNoBodyThatIsTooLarge) {
    std::atomic<int> requests = 0;
    const ServedPort port("count", [&requests](auto&, auto, const auto&) {
        ++requests;
        return std::nullopt;
    });
    EXPECT_EQ(send("count", Data(kMaximumMessageBody + 1), nullptr), kCFMessagePortTransportError);
    EXPECT_EQ(requests, 0);
}

TEST_F(MessagePort, ClosesOnACalloutWhoseReplyIsTooLarge) {
    const ServedPort port("large", [](auto&, auto, const auto&) { return Data(kMaximumMessageBody + 1); });
    EXPECT_EQ(send("large", std::nullopt, nullptr), kCFMessagePortBecameInvalidError);
}

TEST_F(MessagePort, IsInvalidWithoutAReceiverAndKeepsTheReplyUntouched) {
    std::optional<Data> reply = Data{7};
    EXPECT_EQ(send("nobody", std::nullopt, &reply), kCFMessagePortIsInvalid);
    EXPECT_EQ(send("com.example/nobody", std::nullopt, &reply), kCFMessagePortIsInvalid);
    EXPECT_EQ(reply, Data{7});
}

TEST_F(MessagePort, RefusesNamesThatMakeNoPath) {
    const std::array<std::string, 10> names = {
        "", "/", "/absolute", "a//b", "a/", ".", "..", "a/../b", std::string("a\0b", 3), std::string(200, 'x')};
    for (const auto& name : names) {
        SCOPED_TRACE(name);
        EXPECT_EQ(CFMessagePortCreateLocal(name, echo), nullptr);
        ASSERT_NE(CFMessagePortCreateRemote(name), nullptr);
        EXPECT_EQ(send(name, std::nullopt, nullptr), kCFMessagePortIsInvalid);
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(MessagePort, HasNoRunLoopSourceUnlessItIsLocal) {
    EXPECT_EQ(CFMessagePortCreateRunLoopSource(nullptr), nullptr);
    EXPECT_EQ(CFMessagePortCreateRunLoopSource(CFMessagePortCreateRemote("far")), nullptr);
}

TEST_F(MessagePort, FindsTheFolderAnewAtEachUse) {
    EXPECT_EQ(portsFolder(), folder.path());
    {
        const PortsFolder second;
        EXPECT_EQ(portsFolder(), second.path());
    }
    EXPECT_EQ(portsFolder(), folder.path());
}

TEST_F(MessagePort, LosesAndDoublesNothingInABurst) {
    constexpr std::size_t kMessages = 10'000;
    const auto threads = threadCount();
    const auto descriptors = descriptorCount();

    std::vector<int> received(kMessages);
    std::vector<CFMessagePortResult> results(kMessages);
    {
        // Only the port's own thread touches what was received, and each message's worker its own result.
        const ServedPort port("burst", [&received](auto&, auto id, const auto& body) {
            ++received.at(static_cast<std::size_t>(id));
            return body;
        });
        for (std::size_t i = 0; i < kMessages; ++i) {
            dispatch_async(dispatch_get_global_queue(0, 0), [i, &results] {
                std::optional<Data> reply;
                const Data body = {static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i >> 8)};
                const auto id = static_cast<std::int32_t>(i);
                results[i] = CFMessagePortSendRequest(*CFMessagePortCreateRemote("burst"), id, body, 1, 1, &reply);
                EXPECT_TRUE(results[i] != kCFMessagePortSuccess || reply == body);
            });
        }
        ASSERT_TRUE(dispatch_wait_until_idle(kLongEnough));
    }

    std::size_t failures = 0;
    for (std::size_t i = 0; i < kMessages; ++i) {
        if (results[i] == kCFMessagePortSuccess) {
            EXPECT_EQ(received[i], 1) << "message " << i;
        } else {
            EXPECT_LE(received[i], 1) << "message " << i << " failed with " << results[i];
            ++failures;
        }
    }
    RecordProperty("failures", static_cast<int>(failures));
    EXPECT_LT(failures, kMessages / 10);
    EXPECT_TRUE(eventually([&] { return threadCount() <= threads + 1; })) << "one worker may stay";
    EXPECT_EQ(descriptorCount(), descriptors);
}

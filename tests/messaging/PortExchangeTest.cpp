// The sending side, against receivers that misbehave in every way a byte stream allows.

#include "platform/foundation/FileDescriptor.h"
#include "platform/messaging/CFMessagePort.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/RawSocket.h"
#include "tests/support/Waiting.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>

using namespace platform;
using namespace tests;

namespace {

constexpr double kLong = 60;
constexpr double kShort = 0.2;

struct PortSender : testing::Test {
    const PortsFolder folder;
    const std::filesystem::path socket = folder.socket("port");
};

/// A receiver whose every connection is handled by a function of the test.
class RawReceiver {
  public:
    RawReceiver(const std::filesystem::path& path, std::function<void(RawSocket&)> handle)
        : listener_(RawSocket::listeningAt(path)), thread_([this, handle = std::move(handle)] {
              auto client = listener_.accept();
              handle(client);
          }) {}
    ~RawReceiver() { thread_.join(); }
    RawReceiver(const RawReceiver&) = delete;
    RawReceiver& operator=(const RawReceiver&) = delete;

  private:
    RawSocket listener_;
    std::thread thread_;
};

CFMessagePortResult send(double sendTimeout, double receiveTimeout, std::optional<Data>* reply = nullptr,
                         const std::optional<Data>& body = std::nullopt) {
    return CFMessagePortSendRequest(*CFMessagePortCreateRemote("port"), 0, body, sendTimeout, receiveTimeout, reply);
}

} // namespace

TEST_F(PortSender, PutsTheDocumentedBytesOnTheWire) {
    const RawReceiver receiver(socket, [](RawSocket& client) {
        EXPECT_EQ(client.receive(16 + 3),
                  (Data{'L', 'M', 'P', '1', 0xfe, 0xff, 0xff, 0xff, 3, 0, 0, 0, 0, 0, 0, 0, 'a', 'b', 'c'}));
        client.send(frameWithoutBody());
    });
    EXPECT_EQ(CFMessagePortSendRequest(*CFMessagePortCreateRemote("port"), -2, bytes("abc"), kLong, kLong, nullptr),
              kCFMessagePortSuccess);
}

TEST_F(PortSender, SendsAHeaderAloneWithoutABody) {
    const RawReceiver receiver(socket, [](RawSocket& client) {
        EXPECT_EQ(client.receive(16), (Data{'L', 'M', 'P', '1', 0, 0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 255}));
        client.send(frameWithoutBody());
        EXPECT_TRUE(client.isClosedByPeer()) << "nothing comes behind the header";
    });
    EXPECT_EQ(send(kLong, kLong), kCFMessagePortSuccess);
}

TEST_F(PortSender, TimesOutReceivingFromASilentReceiver) {
    const auto listener = RawSocket::listeningAt(socket); // never accepts
    EXPECT_EQ(send(kLong, kShort), kCFMessagePortReceiveTimeout);
}

TEST_F(PortSender, TimesOutReceivingHalfAReply) {
    std::promise<void> timedOut;
    const RawReceiver receiver(socket, [&timedOut](RawSocket& client) {
        auto reply = frameWith(bytes("never whole"));
        reply.pop_back();
        client.send(reply);
        awaited(timedOut.get_future(), "the time-out");
    });
    EXPECT_EQ(send(kLong, kShort), kCFMessagePortReceiveTimeout);
    timedOut.set_value();
}

TEST_F(PortSender, TimesOutReceivingAReplyThatDrips) {
    std::atomic<bool> closed = false;
    const RawReceiver receiver(socket, [&closed](RawSocket& client) {
        // A byte every few milliseconds: no single wait is long, the whole would take minutes.
        const auto reply = frameWith(Data(1 << 16, 'x'));
        for (std::size_t i = 0; i < reply.size() && client.send(std::span(reply).subspan(i, 1)); ++i) {
            pollfd gone{client.number(), POLLRDHUP, 0};
            if (::poll(&gone, 1, 5) > 0) break;
        }
        closed = true;
    });
    EXPECT_EQ(send(kLong, kShort), kCFMessagePortReceiveTimeout);
    EXPECT_TRUE(eventually([&closed] { return closed.load(); })) << "the connection goes with the time-out";
}

TEST_F(PortSender, TimesOutReceivingAReplyThatNeverPauses) {
    const RawReceiver receiver(socket, [](RawSocket& client) {
        client.send(frameBytes(0, kMaximumMessageBody));
        for (const Data byte(1, 'x'); client.send(byte);) {
        }
    });
    EXPECT_EQ(send(kLong, kShort), kCFMessagePortReceiveTimeout);
}

TEST_F(PortSender, TakesAReplyThatDripsInTime) {
    const RawReceiver receiver(socket, [](RawSocket& client) {
        // Closing with the request unread would reset the connection and take the reply with it.
        EXPECT_EQ(client.receive(16).size(), 16U);
        for (const auto byte : frameWith(bytes("drop by drop")))
            client.send({&byte, 1});
    });
    std::optional<Data> reply;
    EXPECT_EQ(send(kLong, kLong, &reply), kCFMessagePortSuccess);
    EXPECT_EQ(reply, bytes("drop by drop"));
}

TEST_F(PortSender, TimesOutSendingMoreThanTheReceiverReads) {
    const auto listener = RawSocket::listeningAt(socket); // never accepts
    EXPECT_EQ(send(kShort, kLong, nullptr, Data(32 << 20)), kCFMessagePortSendTimeout);
}

TEST_F(PortSender, TimesOutSendingToAFullBacklog) {
    const auto listener = RawSocket::listeningAt(socket, 0);
    const auto waiting = RawSocket::connectedTo(socket);
    EXPECT_EQ(send(kShort, kLong), kCFMessagePortSendTimeout);
    EXPECT_EQ(send(0, kLong), kCFMessagePortSendTimeout);
}

TEST_F(PortSender, QueuesAtAFullBacklogUntilThereIsAPlace) {
    const auto listener = RawSocket::listeningAt(socket, 0);
    const auto before = RawSocket::connectedTo(socket);
    auto result = std::async(std::launch::async, [] { return send(kLong, kLong); });
    // The sender is either about to queue or in the queue; both must end well once the place is free.
    const auto first = listener.accept();
    const auto second = listener.accept();
    EXPECT_EQ(second.receive(16).size(), 16U);
    second.send(frameWithoutBody());
    EXPECT_EQ(result.get(), kCFMessagePortSuccess);
}

TEST_F(PortSender, BecomesInvalidWhenTheReceiverClosesAtAnyByteOfTheReply) {
    const auto reply = frameWith(bytes("cut me"));
    for (std::size_t cut = 0; cut < reply.size(); ++cut) {
        SCOPED_TRACE(cut);
        const PortsFolder own;
        const RawReceiver receiver(own.socket("port"), [&](RawSocket& client) {
            EXPECT_EQ(client.receive(16).size(), 16U);
            client.send(std::span(reply).first(cut));
        });
        std::optional<Data> untouched;
        EXPECT_EQ(send(kLong, kLong, &untouched), kCFMessagePortBecameInvalidError);
        EXPECT_EQ(untouched, std::nullopt);
    }
}

TEST_F(PortSender, BecomesInvalidWhenTheReceiverClosesUnread) {
    const RawReceiver receiver(socket, [](RawSocket&) {});
    EXPECT_EQ(send(kLong, kLong, nullptr, Data(8 << 20)), kCFMessagePortBecameInvalidError);
}

TEST_F(PortSender, RefusesAReplyThatIsNoFrame) {
    for (const auto& reply :
         {frameBytes(0, -1, {}, "HTTP"), frameBytes(0, -2), frameBytes(0, kMaximumMessageBody + 1)}) {
        const PortsFolder own;
        const RawReceiver receiver(own.socket("port"), [&reply](RawSocket& client) {
            client.send(reply);
            EXPECT_FALSE(client.receive(17).empty());
        });
        EXPECT_EQ(send(kLong, kLong), kCFMessagePortTransportError);
    }
}

TEST_F(PortSender, IsInvalidAtADeadSocketOrNoSocketAtAll) {
    RawSocket::leaveDeadSocketAt(socket);
    EXPECT_EQ(send(kLong, kLong), kCFMessagePortIsInvalid);
    std::filesystem::remove(socket);
    std::filesystem::create_directory(socket);
    EXPECT_EQ(send(kLong, kLong), kCFMessagePortIsInvalid);
}

TEST_F(PortSender, SurvivesHavingNoDescriptorLeft) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the check of virtual tables needs a pipe of its own to look at memory";
#endif
    const auto listener = RawSocket::listeningAt(socket);
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit none{0, limit.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    const auto result = send(kLong, kLong);
    ::setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(result, kCFMessagePortTransportError);
}

TEST_F(PortSender, RefusesAReceiverOfAnotherUser) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can make a process of another user";
    auto listener = RawSocket::listeningAt(socket);
    const platform::Pipe ready;
    ASSERT_TRUE(ready);
    const auto child = ::fork();
    if (child == 0) {
        // The kernel shows the other end the process that called listen() last.
        const bool listening = ::setuid(65534) == 0 && ::listen(listener.number(), 1) == 0;
        if (!listening || ::write(ready.writing.number(), "!", 1) != 1) ::_exit(1);
        const RawSocket client(::accept(listener.number(), nullptr, nullptr));
        ::_exit(client.receive(1).empty() ? 0 : 2); // 2: it was told something
    }
    char mark = 0;
    ASSERT_EQ(::read(ready.reading.number(), &mark, 1), 1);
    EXPECT_EQ(send(kLong, kLong, nullptr, bytes("secret")), kCFMessagePortTransportError);
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0) << "no byte of the request reached the other user";
}

// The serving side, against clients that misbehave in every way a byte stream allows.

#include "platform/messaging/CFMessagePort.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/RawSocket.h"
#include "tests/support/ServedPort.h"
#include "tests/support/Waiting.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <gtest/gtest.h>
#include <semaphore>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <vector>

using namespace platform;
using namespace tests;

namespace {

/// A port that answers with the request's own body and counts the requests.
class EchoPort : public testing::Test {
  protected:
    [[nodiscard]] RawSocket connect() const { return RawSocket::connectedTo(folder_.socket("echo")); }
    /// Whether a frame comes back as it is sent.
    static bool echoes(const RawSocket& client, const Data& frame) {
        client.send(frame);
        return client.receive(frame.size()) == frame;
    }

    PortsFolder folder_;
    std::atomic<int> requests_ = 0;
    ServedPort port_{"echo", [this](auto&, auto, const auto& body) {
                         ++requests_;
                         return body;
                     }};
};

} // namespace

TEST_F(EchoPort, AnswersWithTheDocumentedBytes) {
    const auto client = connect();
    client.send(frameWith(bytes("abc"), 5));
    EXPECT_EQ(client.receive(16 + 3), (Data{'L', 'M', 'P', '1', 0, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 'a', 'b', 'c'}));
    client.send(frameWithoutBody(5));
    EXPECT_EQ(client.receive(16), (Data{'L', 'M', 'P', '1', 0, 0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 255}));
}

TEST_F(EchoPort, CarriesSeveralExchangesOnAConnection) {
    const auto client = connect();
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(echoes(client, frameWith(Data(static_cast<std::size_t>(i), 'x')))) << i;
    EXPECT_EQ(requests_, 100);
}

TEST_F(EchoPort, AnswersRequestsThatArriveTogetherInTheirOrder) {
    Data stream;
    for (std::uint8_t i = 0; i < 200; ++i)
        std::ranges::copy(frameWith(Data(i, i)), std::back_inserter(stream));
    const auto client = connect();
    client.send(stream);
    EXPECT_EQ(client.receive(stream.size()), stream);
}

TEST_F(EchoPort, AnswersAClientThatHasFinishedSending) {
    const auto client = connect();
    const auto frame = frameWith(Data(1 << 20, 'x'));
    std::thread sender([&] {
        client.send(frame);
        client.finishSending();
    });
    EXPECT_EQ(client.receive(frame.size() + 1), frame);
    sender.join();
}

TEST_F(EchoPort, ClosesOnWhatIsNoFrame) {
    for (const auto& garbage : {frameBytes(0, -1, {}, "HTTP"), frameBytes(0, -2), frameBytes(0, INT64_MIN),
                                frameBytes(0, kMaximumMessageBody + 1)}) {
        const auto client = connect();
        client.send(garbage);
        EXPECT_TRUE(client.isClosedByPeer());
    }
    EXPECT_EQ(requests_, 0);
}

TEST_F(EchoPort, AnswersWhatCameBeforeTheGarbage) {
    const auto client = connect();
    const auto good = frameWith(bytes("good"));
    auto stream = good;
    std::ranges::copy(frameBytes(0, -7), std::back_inserter(stream));
    client.send(stream);
    EXPECT_EQ(client.receive(good.size()), good);
    EXPECT_TRUE(client.isClosedByPeer());
}

TEST_F(EchoPort, NeverCallsOutForAnUnfinishedRequest) {
    const auto frame = frameWith(bytes("cut me"));
    for (std::size_t cut = 0; cut < frame.size(); ++cut) {
        const auto client = connect();
        client.send(std::span(frame).first(cut));
        client.finishSending();
        EXPECT_TRUE(client.isClosedByPeer());
    }
    EXPECT_EQ(requests_, 0);
}

TEST_F(EchoPort, ServesOthersWhileClientsAreSilentSlowOrDoNotRead) {
    std::vector<RawSocket> silent;
    for (int i = 0; i < 50; ++i)
        silent.push_back(connect());

    const auto slow = connect();
    const auto frame = frameWith(bytes("slowly"));
    slow.send(std::span(frame).first(20));

    // Sends requests until both directions are full, and reads none of the replies.
    const auto deaf = connect();
    const timeval brief{0, 100'000};
    ::setsockopt(deaf.number(), SOL_SOCKET, SO_SNDTIMEO, &brief, sizeof brief);
    const auto large = frameWith(Data(1 << 16, 'x'));
    while (deaf.send(large)) {
    }

    EXPECT_TRUE(echoes(connect(), frame));

    slow.send(std::span(frame).subspan(20));
    EXPECT_EQ(slow.receive(frame.size()), frame) << "the slow one gets its answer, too";
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(deaf.receive(large.size()), large) << "and so does the one that now reads";
}

TEST_F(EchoPort, AcceptsAllThatArePendingInOneRound) {
    constexpr int kBusy = 200; // more than are served in one round
    constexpr int kNew = 100;
    std::binary_semaphore allHaveCome(0);
    std::atomic<std::ptrdiff_t> acceptedWithTheFirst = 0;
    const ServedPort port("crowded", [&](auto&, std::int32_t id, const auto&) {
        if (id == 1) allHaveCome.try_acquire_for(kLongEnough);
        if (id == 2 && acceptedWithTheFirst == 0) acceptedWithTheFirst = descriptorCount();
        return std::nullopt;
    });
    const auto path = folder_.socket("crowded");
    const auto connected = [&] { return RawSocket::connectedTo(path); };
    std::vector<RawSocket> busy;
    for (int i = 0; i < kBusy; ++i) {
        busy.push_back(connected());
        busy.back().send(frameWithoutBody());
        ASSERT_EQ(busy.back().receive(16), frameWithoutBody());
    }

    busy.front().send(frameWithoutBody(1));
    for (const auto& client : busy)
        client.send(frameWithoutBody());
    std::vector<RawSocket> fresh;
    for (int i = 0; i < kNew; ++i) {
        fresh.push_back(connected());
        fresh.back().send(frameWithoutBody(2));
    }
    const auto pending = descriptorCount();
    allHaveCome.release();
    for (const auto& client : fresh)
        EXPECT_EQ(client.receive(16), frameWithoutBody());
    EXPECT_EQ(acceptedWithTheFirst, pending + kNew);
}

TEST_F(EchoPort, LosesNothingToAClientThatReadsLate) {
    // More replies than fit in the socket; the requests behind the blocked one must wait their turn.
    Data stream;
    for (int i = 0; i < 400; ++i)
        std::ranges::copy(frameWith(Data(5000, static_cast<std::uint8_t>(i))), std::back_inserter(stream));
    const auto client = connect();
    std::thread sender([&] { EXPECT_TRUE(client.send(stream)); });
    EXPECT_TRUE(eventually([&] { return requests_ > 20; })) << "replies pile up before the first one is read";
    EXPECT_EQ(client.receive(stream.size()), stream);
    sender.join();
    EXPECT_EQ(requests_, 400);
}

TEST_F(EchoPort, GivesUpTheConnectionsOfClientsThatLeave) {
    const auto descriptors = descriptorCount();
    for (int i = 0; i < 100; ++i) {
        const auto client = connect();
        client.send(frameWith(bytes("and gone")));
    }
    EXPECT_TRUE(eventually([&] { return descriptorCount() == descriptors; }));
}

// A process that is started while a connection is open has it for a moment.
TEST_F(EchoPort, ForgetsAConnectionOfWhichAnotherProcessHasADescriptor) {
    const auto descriptors = descriptorCount();
    const auto client = connect();
    const auto frame = frameWith(bytes("still here"));
    ASSERT_TRUE(echoes(client, frame));
    const pid_t holder = ::fork();
    if (holder == 0) {
        ::alarm(60);
        while (true)
            ::pause();
    }
    client.send(bytes("no frame at all, and long enough to show that"));
    EXPECT_TRUE(eventually([&] { return descriptorCount() == descriptors + 1; })) << "the client's is left";
    client.send(bytes("more"));
    for (int i = 0; i < 10; ++i)
        EXPECT_TRUE(echoes(connect(), frame));
    ::kill(holder, SIGKILL);
    ::waitpid(holder, nullptr, 0);
    EXPECT_EQ(requests_, 11);
}

TEST_F(EchoPort, ServesAgainOnceThereAreDescriptorsAgain) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the check of virtual tables needs a pipe of its own to look at memory";
#endif
    const auto served = connect();
    const auto frame = frameWith(bytes("now"));
    ASSERT_TRUE(echoes(served, frame));

    RawSocket patient;
    std::vector<RawSocket> hoard;
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit few{static_cast<rlim_t>(patient.number()) + 8, limit.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &few);
    for (int copy = ::dup(patient.number()); copy >= 0; copy = ::dup(patient.number()))
        hoard.emplace_back(copy);

    patient.connect(folder_.socket("echo"));
    patient.send(frame);
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(echoes(served, frame)) << "connections that stand are served meanwhile";
    std::uint8_t byte = 0;
    EXPECT_EQ(::recv(patient.number(), &byte, 1, MSG_DONTWAIT), -1) << "there was no descriptor to accept it with";

    hoard.clear();
    EXPECT_EQ(patient.receive(frame.size()), frame);
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

TEST_F(EchoPort, CallsOutOneAtATime) {
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    const ServedPort port("single", [&](auto&, auto, const auto&) {
        most = std::max(most.load(), ++inside);
        std::this_thread::yield();
        --inside;
        return std::nullopt;
    });
    std::vector<std::thread> clients;
    for (int i = 0; i < 8; ++i) {
        clients.emplace_back([&] {
            for (int n = 0; n < 50; ++n)
                EXPECT_EQ(
                    CFMessagePortSendRequest(*CFMessagePortCreateRemote("single"), 0, std::nullopt, 60, 60, nullptr),
                    0);
        });
    }
    for (auto& client : clients)
        client.join();
    EXPECT_EQ(most, 1);
}

TEST_F(EchoPort, RefusesAClientOfAnotherUser) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can make a process of another user";
    // Lets the other user through to the socket, where only the port itself can refuse it.
    ::chmod(folder_.path().c_str(), 0755);
    ::chmod(folder_.socket("echo").c_str(), 0666);
    const auto child = ::fork();
    if (child == 0) {
        if (::setuid(65534) != 0) ::_exit(1);
        try {
            const auto client = connect();
            client.send(frameWith(bytes("let me in")));
            ::_exit(client.isClosedByPeer() ? 0 : 2);
        } catch (const std::exception&) {
            ::_exit(3);
        }
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(requests_, 0);
}

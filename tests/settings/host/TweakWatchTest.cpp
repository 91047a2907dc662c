#include "settings/host/TweakWatch.h"

#include "link/Messages.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/RawSocket.h"
#include "tests/support/ServedPort.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <poll.h>

#include <memory>

namespace {

using tests::RawSocket;
using tests::ServedPort;

class TweakWatchTest : public testing::Test {
  protected:
    static std::unique_ptr<ServedPort> serve(const char* message) {
        return std::make_unique<ServedPort>(lumora::portName(message), [](auto&, auto, auto&) { return std::nullopt; });
    }
    /// Whether something has changed, or does so soon.
    [[nodiscard]] bool isTold() const {
        pollfd changes{watch.descriptor(), POLLIN, 0};
        return ::poll(&changes, 1, 30'000) == 1;
    }

    tests::PortsFolder ports;
    settings::TweakWatch watch;
};

TEST_F(TweakWatchTest, FindsATweakThatServesBothPorts) {
    EXPECT_FALSE(watch.look());
    const auto changes = serve(lumora::kUpdateSettings);
    EXPECT_FALSE(watch.look());
    auto requests = serve(lumora::kRequestTweakSettings);
    EXPECT_TRUE(watch.look());
    requests.reset();
    EXPECT_FALSE(watch.look());
}

TEST_F(TweakWatchTest, TellsOfATweakThatComesAndGoes) {
    std::filesystem::remove(ports.path());
    EXPECT_FALSE(watch.look()) << "not even the folder is there";
    for (int round = 0; round < 2; ++round) {
        auto changes = serve(lumora::kUpdateSettings);
        auto requests = serve(lumora::kRequestTweakSettings);
        EXPECT_TRUE(isTold());
        watch.forgetChanges();
        EXPECT_TRUE(watch.look());
        changes.reset();
        requests.reset();
        EXPECT_TRUE(isTold());
        watch.forgetChanges();
        EXPECT_FALSE(watch.look());
        std::filesystem::remove_all(ports.path());
        EXPECT_TRUE(isTold()) << "another folder is watched when this one goes";
        watch.forgetChanges();
        EXPECT_FALSE(watch.look());
    }
}

TEST_F(TweakWatchTest, TakesADeadSocketForNoTweak) {
    for (const char* message : {lumora::kUpdateSettings, lumora::kRequestTweakSettings})
        RawSocket::leaveDeadSocketAt(ports.socket(lumora::portName(message)));
    EXPECT_FALSE(watch.look());
}

TEST_F(TweakWatchTest, TakesAFullQueueForASignOfLife) {
    const RawSocket changes = RawSocket::listeningAt(ports.socket(lumora::portName(lumora::kUpdateSettings)), 0);
    const RawSocket requests = RawSocket::listeningAt(ports.socket(lumora::portName(lumora::kRequestTweakSettings)), 0);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(watch.look());
}

TEST_F(TweakWatchTest, SendsNothing) {
    const RawSocket changes = RawSocket::listeningAt(ports.socket(lumora::portName(lumora::kUpdateSettings)));
    const RawSocket requests = RawSocket::listeningAt(ports.socket(lumora::portName(lumora::kRequestTweakSettings)));
    EXPECT_TRUE(watch.look());
    EXPECT_TRUE(changes.accept().isClosedByPeer());
    EXPECT_TRUE(requests.accept().isClosedByPeer());
}

} // namespace

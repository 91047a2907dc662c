#include "platform/messaging/CFRunLoop.h"
#include "platform/messaging/CFMessagePort.h"
#include "tests/support/Deadline.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/ServedPort.h"

#include <gtest/gtest.h>
#include <optional>

using namespace platform;
using namespace tests;

TEST(CFRunLoop, IsOnePerThread) {
    const auto mine = CFRunLoopGetCurrent();
    EXPECT_EQ(mine, CFRunLoopGetCurrent());
    CFRunLoopRef other;
    std::thread([&other] { other = CFRunLoopGetCurrent(); }).join();
    EXPECT_NE(mine, other);
}

TEST(CFRunLoop, ReturnsAtOnceWithoutSources) {
    CFRunLoopAddSource(CFRunLoopGetCurrent(), nullptr);
    CFRunLoopRun();
}

TEST(CFRunLoop, ReturnsAtOnceWhenItWasStoppedBefore) {
    const PortsFolder folder;
    const auto port = CFMessagePortCreateLocal("early", [](auto&, auto, const auto&) { return std::nullopt; });
    CFRunLoopAddSource(CFRunLoopGetCurrent(), CFMessagePortCreateRunLoopSource(port));
    CFRunLoopStop(CFRunLoopGetCurrent());
    CFRunLoopRun();
}

TEST(CFRunLoop, LetsGoOfItsPortsWhenItIsStopped) {
    const PortsFolder folder;
    {
        const ServedPort port("brief", [](auto&, auto, const auto&) { return std::nullopt; });
        ASSERT_TRUE(std::filesystem::exists(folder.socket("brief")));
    }
    EXPECT_FALSE(std::filesystem::exists(folder.socket("brief")));
}

TEST(CFRunLoop, ServesSeveralPorts) {
    const Deadline deadline("the run loop of two ports");
    const PortsFolder folder;
    std::promise<CFRunLoopRef> ready;
    std::thread server([&ready] {
        for (const auto* name : {"one", "two"}) {
            const auto port = CFMessagePortCreateLocal(
                name, [name](auto&, auto, const auto&) -> std::optional<Data> { return Data(name, name + 3); });
            CFRunLoopAddSource(CFRunLoopGetCurrent(), CFMessagePortCreateRunLoopSource(port));
        }
        ready.set_value(CFRunLoopGetCurrent());
        CFRunLoopRun();
    });
    const auto loop = awaited(ready.get_future(), "the run loop");
    for (const std::string name : {"one", "two"}) {
        std::optional<Data> reply;
        EXPECT_EQ(CFMessagePortSendRequest(*CFMessagePortCreateRemote(name), 0, std::nullopt, 10, 10, &reply), 0);
        EXPECT_EQ(reply, Data(name.begin(), name.end()));
    }
    CFRunLoopStop(loop);
    server.join();
}

TEST(CFRunLoop, CanBeStoppedFromACallout) {
    const Deadline deadline("the run loop that a callout stops");
    const PortsFolder folder;
    std::thread server([port = CFMessagePortCreateLocal("last", [](auto&, auto, const auto& body) {
                            CFRunLoopStop(CFRunLoopGetCurrent());
                            return body;
                        })] {
        CFRunLoopAddSource(CFRunLoopGetCurrent(), CFMessagePortCreateRunLoopSource(port));
        CFRunLoopRun();
    });
    std::optional<Data> reply;
    EXPECT_EQ(CFMessagePortSendRequest(*CFMessagePortCreateRemote("last"), 0, Data{1}, 10, 10, &reply), 0);
    EXPECT_EQ(reply, Data{1}) << "the request that stopped the loop is answered all the same";
    server.join();
}

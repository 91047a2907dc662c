#include "settings/app/Shell.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <future>

namespace {

using namespace settings;

bool comesTrue(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

TEST(Shell, WaitsForOneThingAndNotForAllThatQueues) {
    int argumentCount = 1;
    char name[] = "shell";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(argumentCount, arguments);
    static auto& shell = *new Shell; // never destroyed, as its main thread is not
    std::promise<void> first;
    std::promise<void> second;
    shell.post([&first](Navigation&) { first.get_future().wait(); });
    shell.post([&second](Navigation&) { second.get_future().wait(); });
    EXPECT_FALSE(shell.waiting());
    EXPECT_TRUE(comesTrue([] { return shell.waiting(); }));
    first.set_value();
    EXPECT_TRUE(comesTrue([] { return !shell.waiting(); })) << "the main thread goes on";
    EXPECT_TRUE(comesTrue([] { return shell.waiting(); })) << "and stands still again";
    second.set_value();
    EXPECT_TRUE(comesTrue([] { return !shell.waiting(); }));
}

} // namespace

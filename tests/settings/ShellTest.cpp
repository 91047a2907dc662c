#include "settings/app/Shell.h"

#include "tests/support/Waiting.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <future>
#include <stdexcept>

namespace {

using namespace settings;

bool comesTrue(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + tests::kLongEnough;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

class ShellTest : public ::testing::Test {
  protected:
    static Shell& made() {
        static auto& shell = *new Shell; // never destroyed, as its main thread is not
        return shell;
    }

    int argumentCount = 1;
    char name[6] = "shell";
    char* arguments[2] = {name, nullptr};
    const QCoreApplication application{argumentCount, arguments};
    Shell& shell = made();
};

TEST_F(ShellTest, WaitsForOneThingAndNotForAllThatQueues) {
    std::promise<void> first;
    std::promise<void> second;
    shell.post([&first](Navigation&) { tests::awaited(first.get_future(), "the end of the first thing"); });
    shell.post([&second](Navigation&) { tests::awaited(second.get_future(), "the end of the second thing"); });
    EXPECT_FALSE(shell.waiting());
    EXPECT_TRUE(comesTrue([this] { return shell.waiting(); }));
    first.set_value();
    EXPECT_TRUE(comesTrue([this] { return !shell.waiting(); })) << "the main thread goes on";
    EXPECT_TRUE(comesTrue([this] { return shell.waiting(); })) << "and stands still again";
    second.set_value();
    EXPECT_TRUE(comesTrue([this] { return !shell.waiting(); }));
}

TEST_F(ShellTest, GoesOnBehindAPageThatThrows) {
    bool isDone = false;
    shell.post([](Navigation&) { throw std::runtime_error("no more"); }, [&isDone] { isDone = true; });
    EXPECT_TRUE(comesTrue([&isDone] { return isDone; }));
    EXPECT_FALSE(shell.waiting());
}

} // namespace

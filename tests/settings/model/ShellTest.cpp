#include "settings/model/Shell.h"

#include "platform/foundation/NSCondition.h"
#include "platform/preferences/PSListController.h"
#include "tests/support/Deadline.h"

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

TEST_F(ShellTest, WaitsForOneThingAtATimeNotForTheWholeQueue) {
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

TEST_F(ShellTest, SaysWhyThereIsNoFirstPage) {
    static auto& failing = *new Shell;
    std::string told;
    failing.launch({"/nowhere", "", {390, 800}}, [&told](const std::string& why) { told = why; });
    EXPECT_TRUE(comesTrue([&told] { return !told.empty(); }));
    EXPECT_TRUE(failing.waiting());
    EXPECT_TRUE(failing.lost());
    EXPECT_EQ(failing.waitingHeadline(), "Settings cannot open");
    EXPECT_EQ(failing.waitingText(), "There is no settings bundle at /nowhere");
    EXPECT_EQ(told, "there is no settings bundle at /nowhere");
}

class SlowPage : public platform::PSListController {
  public:
    static inline std::promise<void> worked;
    static inline platform::NSCondition answer;
    static inline bool isAnswered = false;

    bool init() override {
        tests::awaited(worked.get_future(), "the end of the page's work");
        answer.lock();
        while (!isAnswered)
            answer.wait();
        answer.unlock();
        return false;
    }
};
PLATFORM_CLASS(SlowPage)

TEST_F(ShellTest, TellsAPageThatWorksFromOneThatWaitsForTheTweakAndGivesUpTheLatterAlone) {
    SlowPage::worked = {};
    SlowPage::isAnswered = false;
    const tests::Deadline deadline("the end of the opening of a page");
    shell.post([](Navigation& navigation) { navigation.open(platform::NSClassFromString("SlowPage"), "Slow"); });
    EXPECT_TRUE(comesTrue([this] { return shell.waiting(); }));
    EXPECT_EQ(shell.waitingHeadline(), "Waiting for Slow");
    EXPECT_EQ(shell.waitingText(), "");
    SlowPage::worked.set_value();
    EXPECT_TRUE(comesTrue([this] { return shell.waitingHeadline() == "Waiting for Lumora"; }));
    EXPECT_FALSE(shell.lost()) << "the tweak has only just been asked";
    EXPECT_TRUE(comesTrue([this] { return shell.lost(); }));
    EXPECT_EQ(shell.waitingHeadline(), "Lumora does not answer");
    SlowPage::answer.lock();
    SlowPage::isAnswered = true;
    SlowPage::answer.signal();
    SlowPage::answer.unlock();
    EXPECT_TRUE(comesTrue([this] { return !shell.waiting(); }));
}

} // namespace

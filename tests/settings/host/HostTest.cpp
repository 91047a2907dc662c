#include "settings/host/Host.h"

#include "link/Messages.h"
#include "link/Notify.h"
#include "platform/foundation/NSCondition.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "tests/support/Deadline.h"
#include "tests/support/DeviceFolder.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/ServedPort.h"
#include "tests/support/Waiting.h"

#include <functional>
#include <future>
#include <mutex>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace settings;

/// The host of this test program: there can be only one, and it is never destroyed.
struct Recorded {
    static Recorded& shared() {
        static auto& recorded = *new Recorded;
        return recorded;
    }

    Result<void> launch(Launch launch) {
        std::promise<Result<void>> promised;
        host.launch(std::move(launch), [&](Result<void> result) { promised.set_value(std::move(result)); });
        return tests::awaited(promised.get_future(), "the end of a launch");
    }
    StackSnapshot last() {
        const std::lock_guard held(mutex);
        return shown;
    }

    std::mutex mutex;
    StackSnapshot shown;
    Host host{[this](StackSnapshot stack) {
        const std::lock_guard held(mutex);
        shown = std::move(stack);
    }};
};

const std::filesystem::path kBundle =
    std::filesystem::path(LUMORA_TEST_ROOT) / "Library/PreferenceBundles/Lumora.bundle";

TEST(Host, TellsAPageThatWaitsForAnAnswerFromOneThatTakesItsTime) {
    const std::string itself = R"(the page "Slow", which is not ready yet)";
    EXPECT_EQ(whatBlocks("Slow"), itself);
    NSCondition answered;
    bool isAnswered = false;
    std::thread page([&] {
        answered.lock();
        while (!isAnswered)
            answered.wait();
        answered.unlock();
    });
    EXPECT_TRUE(
        tests::eventually([] { return whatBlocks("Slow") == R"(the tweak to answer "requestTweakSettings")"; }));
    answered.lock();
    isAnswered = true;
    answered.signal();
    answered.unlock();
    const tests::Deadline deadline("the end of a wait for an answer that has come");
    page.join();
    EXPECT_EQ(whatBlocks("Slow"), itself);
}

TEST(Host, SaysThatThereIsNoBundle) {
    const auto launched = Recorded::shared().launch({"/nowhere/Lumora.bundle", "", {390, 760}});
    ASSERT_FALSE(launched);
    EXPECT_EQ(launched.error(), "there is no settings bundle at /nowhere/Lumora.bundle");
}

TEST(Host, SaysThatABundleIsBroken) {
    const tests::PortsFolder folder;
    const auto broken = folder.path() / "Broken.bundle";
    std::filesystem::create_directory(broken);
    const auto launched = Recorded::shared().launch({broken, "", {390, 760}});
    ASSERT_FALSE(launched);
    EXPECT_NE(launched.error().find("cannot be loaded"), std::string::npos) << launched.error();
}

TEST(Host, SaysThatThereIsNoSuchPageClass) {
    const auto launched = Recorded::shared().launch({kBundle, "NoSuchPage", {390, 760}});
    ASSERT_FALSE(launched);
    EXPECT_EQ(launched.error(), "there is no page class NoSuchPage");
}

/// Holds a test in a process in which no page was opened and no icon drawn before.
void expectInANewProcess(const std::function<void()>& test) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            test();
            _exit(testing::Test::HasFailure() ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

TEST(HostDeathTest, StaysOutOfTheWayWhileAPageBlocksAndOpensItWhenTheAnswerComes) {
    expectInANewProcess([] {
        const tests::PortsFolder ports;
        std::promise<void> answer;
        const auto allowed = answer.get_future().share();
        const tests::ServedPort tweak(
            lumora::portName(lumora::kRequestTweakSettings), [allowed](auto&, auto, const auto&) {
                allowed.wait_for(tests::kLongEnough);
                return NSKeyedArchiver::archivedDataWithRootObject(Dictionary{{"kTweakEnabled", true}});
            });
        ASSERT_TRUE(tweak.isOpen());
        auto& recorded = Recorded::shared();
        std::promise<Result<void>> opened;
        recorded.host.launch({kBundle, "", {390, 760}},
                             [&](Result<void> result) { opened.set_value(std::move(result)); });
        EXPECT_TRUE(tests::eventually([&] { return recorded.last().opening.has_value(); }));
        EXPECT_EQ(recorded.last().opening->className, "LumoraPreferences");
        EXPECT_EQ(recorded.last().opening->title, "Lumora");
        EXPECT_TRUE(recorded.last().pages.empty());

        answer.set_value();
        const Result<void> result = tests::awaited(opened.get_future(), "the page");
        ASSERT_TRUE(result) << result.error();
        ASSERT_EQ(recorded.last().pages.size(), 1u);
        const PageSnapshot& page = *recorded.last().pages[0];
        EXPECT_EQ(page.title, "Lumora");
        ASSERT_EQ(page.rows.size(), 15u);
        EXPECT_EQ(page.rows[1].value, Value(true));

        recorded.host.finish(std::chrono::seconds(5));
    });
}

/// A drawing of a few hundred bytes that takes hours.
constexpr const char* kDear =
    R"svg(<svg xmlns="http://www.w3.org/2000/svg" width="100" height="100"><filter id="f">
<feTurbulence baseFrequency="0.05" numOctaves="1000000"/></filter><rect width="100" height="100" filter="url(#f)"/></svg>)svg";
constexpr const char* kCheap = R"svg(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"/>)svg";

TEST(HostDeathTest, ShowsRowsBeforeAllTheirIconsAreDrawnAndEachIconWhenItIs) {
    expectInANewProcess([] {
        const tests::PortsFolder ports;
        const tests::DeviceFolder device;
        const std::filesystem::path library = "/Library/MobileSubstrate/DynamicLibraries/AppList.dylib";
        device.install(LUMORA_TEST_ROOT + library.string(), library);
        for (const auto& [name, picture] : {std::pair<std::string, const char*>("dear", kDear), {"cheap", kCheap}}) {
            device.write(picture, "/" + name + ".svg");
            device.write("[Desktop Entry]\nType=Application\nExec=true\nName=" + name +
                             "\nIcon=" + device.path().string() + "/" + name + ".svg\n",
                         "/usr/share/applications/" + name + ".desktop");
        }
        const tests::ServedPort tweak(lumora::portName(lumora::kRequestTweakSettings), [](auto&, auto, const auto&) {
            return NSKeyedArchiver::archivedDataWithRootObject(Dictionary{{"kAppsEnabled", List{"dear", "cheap"}}});
        });
        ASSERT_TRUE(tweak.isOpen());
        auto& recorded = Recorded::shared();
        const auto launched = recorded.launch({kBundle, "AppsListController", {390, 760}});
        ASSERT_TRUE(launched) << launched.error();
        const auto cells = [&] { return recorded.last().pages.at(0)->table->cells; };
        const auto atFirst = cells();
        ASSERT_FALSE(atFirst.contains({0, 2}));
        EXPECT_EQ(atFirst.at({0, 0}).title, "dear");
        EXPECT_EQ(atFirst.at({0, 1}).title, "cheap");
        EXPECT_EQ(atFirst.at({0, 1}).image, nullptr) << "the row has waited for the one before it";
        EXPECT_TRUE(tests::eventually([&] { return cells().at({0, 1}).image != nullptr; })) << "no icon comes";
        EXPECT_EQ(cells().at({0, 0}).image, nullptr);
        EXPECT_EQ(cells().at({0, 1}).image->size(), (CGSize{29, 29}));
    });
}

} // namespace

#include "link/Messages.h"
#include "tests/search/IndexMaking.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/ServedPort.h"

#include <atomic>
#include <fstream>
#include <gmock/gmock.h>
#include <thread>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

struct IndexChild : testing::Test, tests::IndexMaking {
    /// A program that stands in for ours and is a shell script.
    search::IndexOrder orderOf(const std::string& script) const {
        search::IndexOrder order;
        order.program = plugins.root() / "program";
        std::ofstream(order.program) << "#!/bin/sh\n" << script << "\n";
        fs::permissions(order.program, fs::perms::owner_all);
        return order;
    }
};

TEST_F(IndexChild, TellsTheTweakNothing) {
    const tests::PortsFolder ports;
    std::atomic<int> messages = 0;
    const auto count = [&messages](auto&, auto, const auto&) {
        ++messages;
        return std::optional<platform::Data>();
    };
    const tests::ServedPort asked(lumora::portName(lumora::kRequestTweakSettings), count);
    const tests::ServedPort changed(lumora::portName(lumora::kUpdateSettings), count);
    const tests::ServedPort followed(lumora::portName(lumora::kFollowSettings), count);
    ASSERT_TRUE(asked.isOpen() && changed.isOpen() && followed.isOpen());
    plugins.add("change.bundle", "HostilePage");
    const search::MadeIndex made = this->made();
    EXPECT_TRUE(has(made.index, "Switch of change"));
    EXPECT_EQ(messages, 0);
}

TEST_F(IndexChild, LeavesNothingBehind) {
    const tests::KeptEnvironment kept;
    const fs::path temporary = plugins.root() / "tmp";
    fs::create_directory(temporary);
    ::setenv("TMPDIR", temporary.c_str(), 1);
    plugins.add("crash.bundle", "HostilePage");
    EXPECT_FALSE(made().missing.empty());
    EXPECT_TRUE(fs::is_empty(temporary));
}

TEST_F(IndexChild, TellsWhatIsKnownAsItComes) {
    std::vector<std::size_t> sizes;
    const auto made =
        search::makeIndex(order(), [&](const search::Index& known) { sizes.push_back(known.entries().size()); });
    ASSERT_TRUE(made) << made.error();
    EXPECT_TRUE(std::ranges::is_sorted(sizes));
    ASSERT_FALSE(sizes.empty());
    EXPECT_EQ(sizes.back(), made.value().index.entries().size());
}

TEST_F(IndexChild, EndsWhenItIsStopped) {
    std::stop_source stop;
    std::thread stopping([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        stop.request_stop();
    });
    const auto made = search::makeIndex(orderOf("echo 'begin  First'; sleep 100"), {}, stop.get_token());
    stopping.join();
    ASSERT_FALSE(made);
    EXPECT_EQ(made.error(), "it was stopped");
}

TEST_F(IndexChild, SaysWhyThereIsNone) {
    search::IndexOrder missing;
    missing.program = plugins.root() / "no-such-program";
    EXPECT_THAT(search::makeIndex(missing).error(), HasSubstr("no-such-program"));
    EXPECT_THAT(search::makeIndex(orderOf("echo broken >&2; exit 3")).error(),
                testing::AllOf(HasSubstr("exit status 3"), HasSubstr("broken")));
    EXPECT_FALSE(search::makeIndex(orderOf("echo nonsense")));
    EXPECT_FALSE(search::makeIndex(orderOf("echo 'page {}'")));
}

TEST_F(IndexChild, TakesNoMoreThanItWants) {
    search::IndexOrder order = orderOf("echo 'begin  First'; yes 'missing A page: it is not there'");
    order.mostBytes = 100'000;
    const auto made = search::makeIndex(order);
    EXPECT_FALSE(made);
}

TEST_F(IndexChild, GoesOnBehindAPageWithoutRepeatingWhatItIsToldOf) {
    const auto made = this->made(orderOf(R"(
        root='{"way": "", "page": "Root", "title": "Root", "entries": []}'
        third='{"way": "3", "page": "Third", "title": "Third", "entries": [{"kind": "row", "title": "Late"}]}'
        case "$*" in
        *--index-behind=2.1*) printf 'begin  Root\nbegin 3 Third\npage %s\nend\n' "$third" ;;
        *) printf 'begin  Root\npage %s\nbegin 2.1 Second\n' "$root"; kill -9 $$ ;;
        esac)"));
    EXPECT_TRUE(has(made.index, "Late"));
    EXPECT_THAT(made.missing, ElementsAre("Second: it crashes: Killed"));
}

TEST_F(IndexChild, KeepsWhatIsWhole) {
    search::IndexOrder order = this->order();
    ASSERT_TRUE(search::makeAndKeepIndex(order));
    order.forPage = std::chrono::seconds(2);
    const search::Sources sources = sourcesOf(order);
    auto kept = search::readIndex(indexFile(sources), stampOf(sources));
    ASSERT_TRUE(kept);
    EXPECT_TRUE(kept->current);
    plugins.add("hang.bundle", "HostilePage");
    ASSERT_TRUE(search::makeAndKeepIndex(order));
    kept = search::readIndex(indexFile(sources), stampOf(sources));
    ASSERT_TRUE(kept);
    EXPECT_FALSE(kept->current);
    EXPECT_TRUE(has(kept->index, "hang"));
}

} // namespace

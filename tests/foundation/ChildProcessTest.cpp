#include "platform/foundation/ChildProcess.h"

#include "tests/support/Waiting.h"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using platform::ChildProcess;
using platform::FileDescriptor;
using namespace std::chrono_literals;
using Heard = ChildProcess::Heard;

std::unique_ptr<ChildProcess> shell(const std::string& script, const platform::ChildLimits& limits = {}) {
    auto child = ChildProcess::start({"/bin/sh", "-c", script}, limits);
    if (!child) throw std::runtime_error(child.error());
    return std::move(child).value();
}

ChildProcess::Patience generous(const ChildProcess& child) {
    return child.patience(tests::kLongEnough, tests::kLongEnough);
}

/// All that a child says until it ends or closes its output.
std::string everything(ChildProcess& child) {
    std::string said;
    const auto patience = generous(child);
    while (child.receive(said, 1 << 20, patience) == Heard::something) {
    }
    return said;
}

Heard heard(ChildProcess& child, const ChildProcess::Patience& patience) {
    std::string said;
    return child.receive(said, 100, patience);
}

TEST(ChildProcess, AnswersWhatItIsAsked) {
    const auto child = shell("while read -r line; do echo \"<$line>\"; done");
    for (const std::string question : {"one", "two"}) {
        std::string answer;
        ASSERT_TRUE(child->send(question + "\n", generous(*child)));
        while (answer.find('\n') == std::string::npos)
            ASSERT_EQ(child->receive(answer, 100, generous(*child)), Heard::something) << "no answer to " << question;
        EXPECT_EQ(answer, "<" + question + ">\n");
    }
}

TEST(ChildProcess, HasNothingOfThisProcessButItsThreeEnds) {
    const FileDescriptor open(::open("/dev/null", O_RDONLY)); // on purpose without O_CLOEXEC
    const std::string script = "n=3; while [ $n -le " + std::to_string(open.number()) +
                               " ]; do [ -e /proc/$$/fd/$n ] && echo $n; n=$((n+1)); done; echo all";
    EXPECT_EQ(everything(*shell(script)), "all\n");
}

TEST(ChildProcess, GivesBackEveryDescriptor) {
    everything(*shell("true"));
    const auto before = tests::descriptorCount();
    everything(*shell("true"));
    EXPECT_FALSE(ChildProcess::start({"/nowhere/program"}, {}));
    EXPECT_EQ(tests::descriptorCount(), before);
}

TEST(ChildProcess, SaysWhyItDoesNotStart) {
    const auto child = ChildProcess::start({"/nowhere/program"}, {});
    ASSERT_FALSE(child);
    EXPECT_EQ(child.error(), "/nowhere/program does not start: No such file or directory");
}

TEST(ChildProcess, TellsHowItEndedAndWhatItPrinted) {
    const auto child = shell("echo well; echo oh >&2; exit 3");
    EXPECT_EQ(everything(*child), "well\n");
    ASSERT_TRUE(tests::eventually([&] { // it may close its output before it ends
        siginfo_t facts{};
        return ::waitid(P_PID, id_t(child->id()), &facts, WEXITED | WNOHANG | WNOWAIT) == 0 && facts.si_pid != 0;
    })) << "it does not end";
    EXPECT_EQ(WEXITSTATUS(child->end()), 3);
    EXPECT_EQ(WEXITSTATUS(child->end()), 3) << "the second time";
    EXPECT_EQ(child->printed(), "oh\n");
}

TEST(ChildProcess, IsGivenUpByTheClock) {
    const auto child = shell("read -r nothing");
    EXPECT_EQ(heard(*child, child->patience(20ms, tests::kLongEnough)), Heard::tooLate);
}

TEST(ChildProcess, IsGivenUpWhenItHasUsedItsProcessorTime) {
    const auto child = shell("while :; do :; done");
    EXPECT_EQ(heard(*child, child->patience(tests::kLongEnough, 50ms)), Heard::tooCostly);
    EXPECT_GE(child->processorTime(), 50ms);
}

TEST(ChildProcess, IsGivenUpForItsProcessorTimeThoughItPrintsAllTheWhile) {
    const auto child = shell("while :; do echo oh >&2; done");
    EXPECT_EQ(heard(*child, child->patience(10s, 50ms)), Heard::tooCostly);
}

TEST(ChildProcess, TakesNoMoreThanItMayOfProcessorAndDescriptors) {
    const auto busy = shell("while :; do :; done", {.processor = 1s});
    EXPECT_EQ(everything(*busy), "");
    EXPECT_EQ(WTERMSIG(busy->end()), SIGXCPU);
    EXPECT_EQ(everything(*shell("ulimit -n; ulimit -c", {.descriptors = 40})), "40\n0\n");
}

TEST(ChildProcess, SurvivesOneThatReadsNothingMore) {
    const auto child = shell("exec <&-; echo ready; read -r nothing");
    ASSERT_EQ(heard(*child, generous(*child)), Heard::something);
    EXPECT_FALSE(child->send(std::string(1 << 20, 'x'), generous(*child)));
}

TEST(ChildProcess, EndsWithWhatItStarted) {
    char name[] = "/tmp/lumora-child-XXXXXX";
    const FileDescriptor file(::mkstemp(name));
    ASSERT_TRUE(file);
    {
        const auto child = shell("exec 9<\"" + std::string(name) + "\"; flock 9; sleep 1000 & echo locked; wait");
        ASSERT_EQ(heard(*child, generous(*child)), Heard::something);
        ASSERT_NE(::flock(file.number(), LOCK_EX | LOCK_NB), 0);
    }
    EXPECT_TRUE(tests::eventually([&file] { return ::flock(file.number(), LOCK_EX | LOCK_NB) == 0; }));
    ::unlink(name);
}

TEST(ChildProcess, DiesWithItsParent) {
    const platform::Pipe pipe;
    ASSERT_TRUE(pipe);
    const pid_t parent = ::fork();
    if (parent == 0) {
        const auto child = shell("read -r nothing");
        const pid_t id = child->id();
        std::ignore = ::write(pipe.writing.number(), &id, sizeof id);
        ::raise(SIGKILL);
    }
    pid_t child = 0;
    ASSERT_EQ(::read(pipe.reading.number(), &child, sizeof child), ssize_t(sizeof child));
    ::waitpid(parent, nullptr, 0);
    // The process that takes orphans in may take a while to bury this one.
    EXPECT_TRUE(tests::eventually([child] {
        std::ifstream state("/proc/" + std::to_string(child) + "/stat");
        std::string text;
        return !std::getline(state, text) || text.find(") Z ") != std::string::npos;
    })) << "the child lives on";
}

} // namespace

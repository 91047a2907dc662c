#include "platform/foundation/FileDescriptor.h"
#include "tests/mail/MailTest.h"

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

using namespace tests;

TEST_F(MailTest, CannotBeSentWithoutAnyProgram) {
    EXPECT_FALSE(canSend());
    ::setenv("LUMORA_SENDMAIL", (home.path() / "bin/missing").c_str(), 1);
    EXPECT_FALSE(canSend());
}

TEST_F(MailTest, CanBeSentWithSendmailInThePath) {
    ::unsetenv("LUMORA_SENDMAIL");
    home.addRecorder("sendmail");
    EXPECT_TRUE(canSend());
    expectSent();
    EXPECT_THAT(home.argumentsOf("sendmail"), ElementsAre("-i", "--", "support@nevo.example"));
}

TEST_F(MailTest, IsSentToAllItsRecipientsAsItWasEdited) {
    useRecorder();
    ::setenv("EMAIL", "me@home.example", 1);
    send({"A <a@b.example>, -f@c.example", "Grüße\nBcc: x@y.example", "Text"});
    const auto told = delegate->only();
    EXPECT_EQ(told.result, MFMailComposeResultSent);
    EXPECT_EQ(told.error, "");
    EXPECT_EQ(told.thread, mainThread);
    EXPECT_THAT(home.argumentsOf("mta"), ElementsAre("-i", "--", "a@b.example", "-f@c.example"));
    const std::string message = home.inputOf("mta");
    EXPECT_THAT(message, HasSubstr("\nFrom: me@home.example\n"));
    EXPECT_THAT(message, testing::StartsWith("Date: "));
    EXPECT_THAT(message, HasSubstr("\nMessage-Id: <"));
    EXPECT_THAT(message, Not(HasSubstr("\nBcc:")));
    EXPECT_THAT(home.filesIn(home.drafts()), IsEmpty()) << "what is sent is no draft any more";
}

TEST_F(MailTest, IsKeptWhenSendingFails) {
    useSendmail("cat > /dev/null; echo 'no route' >&2; exit 75");
    expectKept("ended with 75: no route");
    EXPECT_EQ(home.filesIn(home.drafts()).front(), composer->draft());
}

TEST_F(MailTest, IsKeptWhenTheProgramEndsWithoutReading) {
    attach(std::string(20 << 20, 'x'), "log");
    useSendmail("exit 1");
    expectKept("ended with 1");
    EXPECT_GT(onlyDraft().size(), 20U << 20);
}

TEST_F(MailTest, IsKeptWhenTheProgramIsKilled) {
    useSendmail("kill -9 $$");
    expectKept("signal 9");
}

TEST_F(MailTest, IsKeptWhenTheProgramIsGoneByThen) {
    useSendmail("exit 0");
    EXPECT_TRUE(canSend());
    std::filesystem::remove(home.path() / "bin/mta");
    expectKept("no program");
}

TEST_F(MailTest, IsSentOnceHoweverOftenItIsAskedForMeanwhile) {
    const std::string gate = makeGate();
    useSendmail("echo once >> " + (home.path() / "calls").string() + "; cat > /dev/null; read go < " + gate);
    send();
    send();
    onMain([this] {
        EXPECT_TRUE(composer->isWorking()) << "the main thread is free while the program takes its time";
        composer->saveDraft({});
        composer->cancel();
    });
    std::ofstream(gate) << "go\n";
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
    send();
    onMain([this] { composer->cancel(); });
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
    EXPECT_EQ(home.contentsOf(home.path() / "calls"), "once\n");
}

TEST_F(MailTest, IsSentByAProgramThatGoesOnInTheBackgroundWithItsStandardError) {
    const std::string gate = makeGate();
    useSendmail("cat > /dev/null; (read go < " + gate + ") & exit 0");
    expectSent();
    std::ofstream(gate) << "go\n";
}

TEST_F(MailTest, TakesNoHeaderFromNamesTypesOrTheEnvironment) {
    useRecorder();
    ::setenv("EMAIL", "nobody", 1);
    attach("x", "log", "text/plain\nBcc: x@y.example");
    attach("x", "log\r\nBcc: x@y.example\r\n\r\n");
    expectSent();
    EXPECT_THAT(home.inputOf("mta"), Not(HasSubstr("\nBcc:")));
    EXPECT_THAT(home.inputOf("mta"), Not(HasSubstr("From: nobody\n")));
}

TEST_F(MailTest, IsKeptWhenSendingTakesTooLongAndNothingOfItGoesOn) {
    const std::string gate = makeGate();
    const FileDescriptor reading(::open(gate.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    ASSERT_TRUE(reading);
    useSendmail("exec 3> " + gate + "\nsleep 1000 &\necho both >&3\ncat > /dev/null\nwait");
    onMain([this] { composer->setSendingTime(std::chrono::seconds(2)); });
    expectKept("did not end in time");
    // Both hold the pipe open as long as they live.
    std::string heard;
    EXPECT_TRUE(eventually([&] {
        char some[16];
        const ssize_t count = ::read(reading.number(), some, sizeof some);
        if (count > 0) heard.append(some, static_cast<std::size_t>(count));
        return count == 0;
    }));
    EXPECT_EQ(heard, "both\n");
}

TEST_F(MailTest, GivesItsProgramNoFilesOfThisProcess) {
    const FileDescriptor open(::fcntl(STDOUT_FILENO, F_DUPFD, 77)); // without FD_CLOEXEC
    ASSERT_GE(open.number(), 77);
    useSendmail("cat > /dev/null; [ ! -e /proc/$$/fd/" + std::to_string(open.number()) + " ]");
    expectSent();
}

class MailDeathTest : public MailTest {
  protected:
    /// Sends where processes have no descriptors, which this one never has again.
    void sendWithoutProcessDescriptors() {
        const sock_filter steps[] = {
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_pidfd_open, 0, 1),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        };
        const sock_fprog filter{std::size(steps), const_cast<sock_filter*>(steps)};
        ASSERT_EQ(::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
        ASSERT_EQ(::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &filter), 0);
        ASSERT_LT(::syscall(SYS_pidfd_open, ::getpid(), 0), 0);
        useRecorder();
        expectSent();
        EXPECT_THAT(home.inputOf("mta"), HasSubstr("Body"));
    }
};

TEST_F(MailDeathTest, IsSentWhereProcessesHaveNoDescriptors) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process of its own, which never gets back what it gives up here
    EXPECT_EXIT(
        {
            sendWithoutProcessDescriptors();
            _exit(HasFailure() ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(MailTest, StaysToBeEditedWhereNoThreadCanBeMade) {
    useSendmail("exit 0");
    pthread_attr_t usual;
    ASSERT_EQ(::pthread_getattr_default_np(&usual), 0);
    pthread_attr_t huge = usual;
    ASSERT_EQ(::pthread_attr_setstacksize(&huge, SIZE_MAX / 4 * 3), 0);
    ASSERT_EQ(::pthread_setattr_default_np(&huge), 0);
    send();
    EXPECT_THAT(problem(), HasSubstr("Nothing can be done now"));
    ASSERT_EQ(::pthread_setattr_default_np(&usual), 0);
    expectSent();
}

TEST_F(MailTest, LoadsWhatWritesItsMessageOnTheMainThread) {
    EXPECT_THAT(home.contentsOf("/proc/self/maps"), HasSubstr("liblumora-desktop.so")) << "before any worker needs it";
}

} // namespace

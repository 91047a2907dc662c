#include "platform/foundation/FileDescriptor.h"
#include "platform/mail/MFMailComposeViewController.h"
#include "platform/messaging/Dispatch.h"
#include "tests/support/Home.h"
#include "tests/support/MailedFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <future>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <map>
#include <mutex>
#include <pthread.h>
#include <sys/inotify.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace platform;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

/// Runs something on the main thread and waits for it.
void onMain(const std::function<void()>& work) {
    static const bool started = (std::thread([] { dispatch_main(); }).detach(), true);
    ASSERT_TRUE(started);
    std::promise<void> done;
    dispatch_async(dispatch_get_main_queue(), [&] {
        work();
        done.set_value();
    });
    tests::awaited(done.get_future(), "the turn of the main thread");
}

/// Keeps each result that it is told, and on which thread.
class Delegate final : public MFMailComposeViewControllerDelegate {
  public:
    struct Told {
        MFMailComposeResult result;
        std::string error; ///< empty for none
        std::thread::id thread;
    };
    void mailComposeController(MFMailComposeViewController& /*controller*/, MFMailComposeResult result,
                               const NSError* error) override {
        const std::lock_guard lock(mutex_);
        told_.push_back({result, error ? error->localizedDescription : "", std::this_thread::get_id()});
        changed_.notify_all();
    }
    /// The first result, once there is one, and it is the only one when the main thread has nothing left to do.
    Told only() {
        {
            std::unique_lock lock(mutex_);
            changed_.wait_for(lock, tests::kLongEnough, [this] { return !told_.empty(); });
        }
        EXPECT_TRUE(dispatch_wait_until_idle(tests::kLongEnough));
        onMain([] {});
        const std::lock_guard lock(mutex_);
        EXPECT_THAT(told_, SizeIs(1));
        return told_.empty() ? Told{MFMailComposeResultCancelled, "never told", {}} : told_.front();
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Told> told_;
};

class MailTest : public ::testing::Test {
  protected:
    MailTest() {
        onMain([this] {
            mainThread = std::this_thread::get_id();
            composer = make<MFMailComposeViewController>();
            composer->setMailComposeDelegate(delegate);
            composer->setToRecipients({"support@nevo.example"});
            composer->setSubject("Subject");
            composer->setMessageBody("Body", false);
        });
    }
    ~MailTest() override {
        onMain([this] { composer = nullptr; });
    }
    void useSendmail(const std::string& script) {
        ::setenv("LUMORA_SENDMAIL", home.addProgram("mta", script).c_str(), 1);
    }
    void attach(const std::string& bytes, const std::string& name, const std::string& mimeType = "text/plain") {
        onMain(
            [&] { composer->addAttachmentData(tests::mailedFile(home.path() / "attached", bytes), mimeType, name); });
    }
    void send(const MailText& text = {"support@nevo.example", "Subject", "Body"}) {
        onMain([&] { composer->send(text); });
    }
    /// Waits for the message to be edited again.
    std::string problem() {
        std::string why;
        EXPECT_TRUE(tests::eventually([&] {
            onMain([&] { why = composer->isWorking() ? "" : composer->problem(); });
            return !why.empty();
        }));
        return why;
    }
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
        ::setenv("LUMORA_SENDMAIL", home.addRecorder("mta").c_str(), 1);
        send();
        EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
        EXPECT_THAT(home.inputOf("mta"), HasSubstr("Body"));
    }
    /// In bytes.
    static std::size_t peakMemory() {
        const std::string facts = tests::Home::contentsOf("/proc/self/status");
        return std::stoul(facts.substr(facts.find("VmHWM:") + 6)) * 1024;
    }
    static bool canSend() {
        bool can = false;
        onMain([&] { can = MFMailComposeViewController::canSendMail(); });
        return can;
    }
    std::string onlyDraft() const {
        const auto drafts = tests::Home::filesIn(home.drafts());
        EXPECT_THAT(drafts, SizeIs(1));
        return drafts.empty() ? "" : tests::Home::contentsOf(drafts.front());
    }

    tests::Home home;
    std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>();
    std::shared_ptr<MFMailComposeViewController> composer;
    std::thread::id mainThread;
};

// -- whether there is a way --

TEST_F(MailTest, CannotBeSentWithoutAnyProgram) {
    EXPECT_FALSE(canSend());
    ::setenv("LUMORA_SENDMAIL", (home.path() / "bin/missing").c_str(), 1);
    EXPECT_FALSE(canSend());
}

TEST_F(MailTest, CanBeSentWithSendmailInThePath) {
    ::unsetenv("LUMORA_SENDMAIL");
    home.addRecorder("sendmail");
    EXPECT_TRUE(canSend());
    send();
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
    EXPECT_THAT(home.argumentsOf("sendmail"), ElementsAre("-i", "--", "support@nevo.example"));
}

TEST_F(MailTest, CanBeHandedToAKnownMailProgramThatIsRegistered) {
    home.addRecorder("thunderbird");
    EXPECT_FALSE(canSend());
    home.registerFor("mailto", "thunderbird.desktop", "thunderbird %u");
    EXPECT_TRUE(tests::eventually(canSend)) << "what is registered later is noticed";
}

TEST_F(MailTest, CanBeHandedToAKnownProgramWhosePathIsQuoted) {
    std::filesystem::create_directory(home.path() / "bin/my mail");
    home.addRecorder("my mail/thunderbird");
    home.registerFor("mailto", "thunderbird.desktop",
                     '"' + (home.path() / "bin/my mail/thunderbird").string() + "\" %u");
    EXPECT_TRUE(canSend());
}

TEST_F(MailTest, CannotBeHandedToAProgramThatIsNotKnownToTakeAttachments) {
    home.addRecorder("other");
    home.registerFor("mailto", "other.desktop", "other %u");
    EXPECT_FALSE(canSend());
}

TEST_F(MailTest, CannotBeHandedToAKnownProgramInsideAnother) {
    home.addRecorder("sandbox");
    home.registerFor("mailto", "thunderbird.desktop", "sandbox run thunderbird %u");
    EXPECT_FALSE(canSend());
}

// -- sendmail --

TEST_F(MailTest, IsSentToAllItsRecipientsAsItWasEdited) {
    ::setenv("LUMORA_SENDMAIL", home.addRecorder("mta").c_str(), 1);
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
    send();
    const auto told = delegate->only();
    EXPECT_EQ(told.result, MFMailComposeResultFailed);
    EXPECT_THAT(told.error, HasSubstr("ended with 75: no route"));
    EXPECT_THAT(onlyDraft(), HasSubstr("Subject: Subject\n"));
    EXPECT_EQ(home.filesIn(home.drafts()).front(), composer->draft());
}

TEST_F(MailTest, IsKeptWhenTheProgramEndsWithoutReading) {
    attach(std::string(20 << 20, 'x'), "log");
    useSendmail("exit 1");
    send();
    EXPECT_EQ(delegate->only().result, MFMailComposeResultFailed);
    EXPECT_GT(onlyDraft().size(), 20U << 20);
}

TEST_F(MailTest, IsKeptWhenTheProgramIsKilled) {
    useSendmail("kill -9 $$");
    send();
    EXPECT_THAT(delegate->only().error, HasSubstr("signal 9"));
    EXPECT_THAT(onlyDraft(), HasSubstr("Body"));
}

TEST_F(MailTest, IsKeptWhenTheProgramIsGoneByThen) {
    useSendmail("exit 0");
    EXPECT_TRUE(canSend());
    std::filesystem::remove(home.path() / "bin/mta");
    send();
    const auto told = delegate->only();
    EXPECT_EQ(told.result, MFMailComposeResultFailed);
    EXPECT_THAT(told.error, HasSubstr("no program"));
    EXPECT_THAT(onlyDraft(), HasSubstr("Body"));
}

TEST_F(MailTest, IsSentOnceHoweverOftenItIsAskedForMeanwhile) {
    const std::string gate = (home.path() / "gate").string();
    ASSERT_EQ(::mkfifo(gate.c_str(), 0600), 0);
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
    const std::string gate = (home.path() / "gate").string();
    ASSERT_EQ(::mkfifo(gate.c_str(), 0600), 0);
    useSendmail("cat > /dev/null; (read go < " + gate + ") & exit 0");
    send();
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
    std::ofstream(gate) << "go\n";
}

TEST_F(MailTest, StaysToBeEditedWithoutAnAddress) {
    useSendmail("exit 0");
    send({" , ", "Subject", "Body"});
    EXPECT_THAT(problem(), HasSubstr("no address"));
    send({"a@b.example", "Subject", "Body"});
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
}

TEST_F(MailTest, StaysToBeEditedWhenItCannotBeKept) {
    useSendmail("exit 0");
    std::ofstream(home.path() / "data/lumora") << "in the way";
    send();
    EXPECT_THAT(problem(), HasSubstr("cannot make the folder"));
    std::filesystem::remove(home.path() / "data/lumora");
    send();
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
}

TEST_F(MailTest, SaysWhyNoFolderForItCanBeMade) {
    ASSERT_EQ(::chmod(home.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod((home.path() / "data").c_str(), 0555), 0);
    const bool isRoot = ::geteuid() == 0;
    if (isRoot && ::seteuid(65534) != 0) GTEST_SKIP() << "nothing is closed to root, who cannot be anybody else here";
    onMain([this] { composer->saveDraft({"a@b.example", "Later", "Not yet"}); });
    EXPECT_THAT(problem(), AllOf(HasSubstr("cannot make the folder"), HasSubstr("Permission denied")));
    if (isRoot) {
        ASSERT_EQ(::seteuid(0), 0);
    }
    ASSERT_EQ(::chmod((home.path() / "data").c_str(), 0755), 0);
}

TEST_F(MailTest, IsSentToNobodyWhenAnyRecipientIsNotUnderstood) {
    ::setenv("LUMORA_SENDMAIL", home.addRecorder("mta").c_str(), 1);
    const std::map<std::string, std::string> lists = {
        {"a@b.example, and bob", "and bob"},
        {"a@b.example, bob", "bob"},
        {"a@b@c.example", "a@b@c.example"},
        {"a@b.example c@d.example", "a@b.example c@d.example"},
        {"friends: a@b.example, c@d.example;", "friends: a@b.example"},
        {"a@b.example, <c@d.example", "<c@d.example"},
        {"jürgen@b.example", "jürgen@b.example"},
        {"a@", "a@"},
        {"a@[127.0.0.1] (home)", "a@[127.0.0.1] (home)"},
        {"\"a@b\" <c@[127.0.0.1] (home)>", "\"a@b\" <c@[127.0.0.1] (home)>"},
        {"\"a\\\" <c@[127.0.0.1] (home)", "\"a\\\" <c@[127.0.0.1] (home)"},
    };
    for (const auto& [list, part] : lists) {
        send({list, "Subject", "Body"});
        EXPECT_EQ(problem(), "“" + part + "” is no address.");
    }
    EXPECT_THAT(home.filesIn(home.drafts()), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(home.path() / "mta.input"));
    send();
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
}

TEST_F(MailTest, IsSentToAllRecipientsHoweverTheyAreSeparated) {
    ::setenv("LUMORA_SENDMAIL", home.addRecorder("mta").c_str(), 1);
    send({"a@b.example; \"Doe; J, \\\"\" <c@d.example>,, Jürgen <e@f.example> ;", "Subject", "Body"});
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
    EXPECT_THAT(home.argumentsOf("mta"), ElementsAre("-i", "--", "a@b.example", "c@d.example", "e@f.example"));
    for (const char* address : {"a@b.example", "<c@d.example>", "<e@f.example>"})
        EXPECT_THAT(home.inputOf("mta"), HasSubstr(address));
}

TEST_F(MailTest, IsSentToARecipientWhateverStandsInTheQuotesOfTheName) {
    ::setenv("LUMORA_SENDMAIL", home.addRecorder("mta").c_str(), 1);
    send({"\"a@b [x] (y)\" <c@d.example>, \"\\\"a@[b] (c)\" <e@f.example>", "Subject", "Body"});
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
    EXPECT_THAT(home.argumentsOf("mta"), ElementsAre("-i", "--", "c@d.example", "e@f.example"));
}

TEST_F(MailTest, TakesNoHeaderFromNamesTypesOrTheEnvironment) {
    ::setenv("LUMORA_SENDMAIL", home.addRecorder("mta").c_str(), 1);
    ::setenv("EMAIL", "nobody", 1);
    attach("x", "log", "text/plain\nBcc: x@y.example");
    attach("x", "log\r\nBcc: x@y.example\r\n\r\n");
    send();
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
    EXPECT_THAT(home.inputOf("mta"), Not(HasSubstr("\nBcc:")));
    EXPECT_THAT(home.inputOf("mta"), Not(HasSubstr("From: nobody\n")));
}

TEST_F(MailTest, IsKeptWhenSendingTakesTooLongAndNothingOfItGoesOn) {
    const std::string gate = (home.path() / "gate").string();
    ASSERT_EQ(::mkfifo(gate.c_str(), 0600), 0);
    const platform::FileDescriptor reading(::open(gate.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    ASSERT_TRUE(reading);
    useSendmail("exec 3> " + gate + "\nsleep 1000 &\necho both >&3\ncat > /dev/null\nwait");
    onMain([this] { composer->setSendingTime(std::chrono::seconds(2)); });
    send();
    const auto told = delegate->only();
    EXPECT_EQ(told.result, MFMailComposeResultFailed);
    EXPECT_THAT(told.error, HasSubstr("did not end in time"));
    EXPECT_THAT(onlyDraft(), HasSubstr("Body"));
    // Both hold the pipe open as long as they live.
    std::string heard;
    EXPECT_TRUE(tests::eventually([&] {
        char some[16];
        const ssize_t count = ::read(reading.number(), some, sizeof some);
        if (count > 0) heard.append(some, static_cast<std::size_t>(count));
        return count == 0;
    }));
    EXPECT_EQ(heard, "both\n");
}

TEST_F(MailTest, GivesItsProgramNoFilesOfThisProcess) {
    const platform::FileDescriptor open(::fcntl(STDOUT_FILENO, F_DUPFD, 77)); // without FD_CLOEXEC
    ASSERT_GE(open.number(), 77);
    useSendmail("cat > /dev/null; [ ! -e /proc/$$/fd/" + std::to_string(open.number()) + " ]");
    send();
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
}

using MailDeathTest = MailTest;

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
    ASSERT_EQ(::pthread_attr_setstacksize(&huge, std::size_t{1} << 47U), 0);
    ASSERT_EQ(::pthread_setattr_default_np(&huge), 0);
    send();
    EXPECT_THAT(problem(), HasSubstr("Nothing can be done now"));
    ASSERT_EQ(::pthread_setattr_default_np(&usual), 0);
    send();
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
}

TEST_F(MailTest, LoadsWhatWritesItsMessageOnTheMainThread) {
    EXPECT_THAT(home.contentsOf("/proc/self/maps"), HasSubstr("liblumora-desktop.so")) << "before any worker needs it";
}

// -- drafts and the way out --

TEST_F(MailTest, KeepsRecipientsInADraftAsTheyWereTyped) {
    onMain([this] { composer->saveDraft({"a@b.example, and bob", "Later", "Not yet"}); });
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSaved);
    EXPECT_THAT(onlyDraft(), HasSubstr("To: a@b.example, and bob\n"));
}

TEST_F(MailTest, LeavesNothingWhereADraftCannotBeWritten) {
    attach(std::string(100'000, 'x'), "log");
    rlimit usual{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &usual), 0);
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit little{4096, usual.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &little), 0);
    onMain([this] { composer->saveDraft({"a@b.example", "Later", "Not yet"}); });
    EXPECT_THAT(problem(), HasSubstr("cannot write a draft"));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &usual), 0);
    EXPECT_THAT(home.filesIn(home.drafts()), IsEmpty());
}

TEST_F(MailTest, IsWrittenWithoutHoldingWhatIsAttachedInMemory) {
    constexpr std::size_t kSize = 100'000'000;
    onMain([this] {
        const std::filesystem::path file = home.path() / "large";
        std::ofstream{file};
        std::filesystem::resize_file(file, kSize);
        composer->addAttachmentData(RegularFile::copyOf(file), "text/plain", "log");
    });
    std::ofstream("/proc/self/clear_refs") << "5\n"; // forgets the peak
    const std::size_t before = peakMemory();
    onMain([this] { composer->saveDraft({"a@b.example", "Later", "Not yet"}); });
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSaved);
    EXPECT_LT(peakMemory(), before + kSize / 4);
    EXPECT_GT(std::filesystem::file_size(composer->draft()), kSize * 4 / 3);
}

TEST_F(MailTest, ShowsNoDraftBeforeItIsWhole) {
    std::filesystem::create_directories(home.drafts());
    const platform::FileDescriptor watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    ASSERT_GE(::inotify_add_watch(watch.number(), home.drafts().c_str(), IN_CREATE | IN_MOVED_TO), 0);
    onMain([this] { composer->saveDraft({"a@b.example", "Later", "Not yet"}); });
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSaved);
    alignas(inotify_event) char events[4096];
    const ssize_t count = ::read(watch.number(), events, sizeof events);
    std::vector<std::string> shown;
    for (ssize_t at = 0; at < count;) {
        const auto* event = reinterpret_cast<const inotify_event*>(events + at);
        if (event->name[0] != '.') shown.push_back((event->mask & IN_MOVED_TO) != 0 ? "whole" : "empty");
        at += static_cast<ssize_t>(sizeof *event + event->len);
    }
    EXPECT_THAT(shown, ElementsAre("whole"));
}

TEST_F(MailTest, IsCancelledWithoutATrace) {
    onMain([this] {
        composer->cancel();
        composer->cancel();
    });
    const auto told = delegate->only();
    EXPECT_EQ(told.result, MFMailComposeResultCancelled);
    EXPECT_EQ(told.thread, mainThread);
    EXPECT_THAT(home.filesIn(home.drafts()), IsEmpty());
}

TEST_F(MailTest, IsSavedAsADraftThatItsUserAloneCanRead) {
    attach("attached", "log");
    onMain([this] { composer->saveDraft({"support@nevo.example", "Later", "Not yet"}); });
    const auto told = delegate->only();
    EXPECT_EQ(told.result, MFMailComposeResultSaved);
    EXPECT_EQ(told.error, "");
    EXPECT_THAT(onlyDraft(), HasSubstr("Subject: Later\n"));
    EXPECT_THAT(onlyDraft(), HasSubstr("filename=log"));
    const auto permissions = [](const std::filesystem::path& path) {
        return static_cast<unsigned>(std::filesystem::status(path).permissions());
    };
    EXPECT_EQ(permissions(home.drafts()), 0700U);
    EXPECT_EQ(permissions(composer->draft()), 0600U);
    EXPECT_EQ(composer->draft().extension(), ".eml");
}

TEST_F(MailTest, KeepsEveryDraftInAFileOfItsOwn) {
    for (int i = 0; i < 5; ++i) {
        onMain([&] {
            composer = make<MFMailComposeViewController>();
            delegate = std::make_shared<Delegate>();
            composer->setMailComposeDelegate(delegate);
            composer->saveDraft({"a@b.example", "S" + std::to_string(i), ""});
        });
        EXPECT_EQ(delegate->only().result, MFMailComposeResultSaved);
    }
    EXPECT_THAT(home.filesIn(home.drafts()), SizeIs(5));
}

TEST_F(MailTest, KeepsDraftsInTheHomeWhereNoOtherPlaceIsNamed) {
    ::unsetenv("XDG_DATA_HOME");
    onMain([this] { composer->saveDraft({}); });
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSaved);
    EXPECT_EQ(composer->draft().parent_path(), home.path() / ".local/share/lumora/drafts");
}

TEST_F(MailTest, EndsWithoutADelegate) {
    onMain([this] { delegate = nullptr; });
    onMain([this] {
        composer->cancel();
        EXPECT_TRUE(composer->isOver());
    });
}

// -- mail programs --

class MailProgramTest : public MailTest {
  protected:
    void use(const std::string& program, const std::string& desktopId) {
        home.addRecorder(program);
        home.registerFor("mailto", desktopId, program + " %u");
        attach(std::string("one\0two", 7), "log");
        attach("three", "dpkgl.log");
    }
    /// Where the files are that the program was handed, after a look at them.
    std::string folder() {
        const auto made = home.filesIn(home.path() / "tmp");
        EXPECT_THAT(made, SizeIs(1));
        if (made.empty()) return {};
        struct stat facts {};
        EXPECT_EQ(::stat(made.front().c_str(), &facts), 0);
        EXPECT_EQ(facts.st_mode & 0777U, 0700U);
        EXPECT_EQ(home.contentsOf(made.front() / "1/log"), std::string("one\0two", 7));
        EXPECT_EQ(home.contentsOf(made.front() / "2/dpkgl.log"), "three");
        return made.front();
    }
    void handOver() {
        send({"a@b.example", "What's, it?", "1 & 2\n\"3\""});
        EXPECT_EQ(delegate->only().result, MFMailComposeResultSaved) << "somebody else sends it, or does not";
        EXPECT_THAT(onlyDraft(), HasSubstr("To: a@b.example\n")) << "nobody knows what becomes of it there";
    }
    static std::string replaced(std::string text, const std::string& what, const std::string& by) {
        for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
            text.replace(at, what.size(), by);
        return text;
    }
    std::string address = "mailto:a@b.example?subject=What%27s%2C%20it%3F&body=1%20%26%202%0A%223%22";
};

TEST_F(MailProgramTest, ThunderbirdTakesAListWithEverythingEncoded) {
    use("thunderbird", "thunderbird.desktop");
    handOver();
    const std::string arguments = "format=2,to=a%40b.example,subject=What%27s%2C%20it%3F,body=1%20%26%202%0A%223%22,"
                                  "attachment=file%3A%2F%2FDIR%2F1%2Flog%2Cfile%3A%2F%2FDIR%2F2%2Fdpkgl.log";
    EXPECT_THAT(home.argumentsOf("thunderbird"),
                ElementsAre("-compose", replaced(arguments, "DIR", replaced(folder(), "/", "%2F"))));
}

TEST_F(MailProgramTest, EvolutionTakesAnAddressWithTheFilesInIt) {
    use("evolution", "org.gnome.Evolution.desktop");
    handOver();
    const std::string files = replaced(folder(), "/", "%2F");
    EXPECT_THAT(home.argumentsOf("evolution"),
                ElementsAre(address + "&attach=" + files + "%2F1%2Flog&attach=" + files + "%2F2%2Fdpkgl.log"));
}

TEST_F(MailProgramTest, KMailTakesOptions) {
    use("kmail", "org.kde.kmail2.desktop");
    handOver();
    const std::string files = "file://" + folder();
    EXPECT_THAT(home.argumentsOf("kmail"),
                ElementsAre("--composer", "--subject", "What's, it?", "--body", "1 & 2\n\"3\"", "--attach",
                            files + "/1/log", "--attach", files + "/2/dpkgl.log", "--", "a@b.example"));
}

TEST_F(MailProgramTest, ClawsMailTakesAnAddressAndFiles) {
    use("claws-mail", "claws-mail.desktop");
    handOver();
    const std::string files = folder();
    EXPECT_THAT(home.argumentsOf("claws-mail"),
                ElementsAre("--compose", address, "--attach", files + "/1/log", files + "/2/dpkgl.log"));
}

TEST_F(MailProgramTest, SylpheedTakesAnAddressAndFiles) {
    use("sylpheed", "sylpheed.desktop");
    handOver();
    const std::string files = folder();
    EXPECT_THAT(home.argumentsOf("sylpheed"),
                ElementsAre("--compose", address, "--attach", files + "/1/log", files + "/2/dpkgl.log"));
}

TEST_F(MailProgramTest, IsNotCalledWhereMailCanBeSent) {
    use("thunderbird", "thunderbird.desktop");
    useSendmail("cat > /dev/null");
    send();
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
    EXPECT_THAT(home.filesIn(home.path() / "tmp"), IsEmpty());
}

TEST_F(MailProgramTest, LosesNothingWhenItDoesNotStart) {
    use("thunderbird", "thunderbird.desktop");
    std::ofstream(home.path() / "bin/thunderbird", std::ios::trunc) << "no program";
    send();
    EXPECT_EQ(delegate->only().result, MFMailComposeResultFailed);
    EXPECT_THAT(onlyDraft(), HasSubstr("Subject: Subject\n"));
    EXPECT_THAT(home.filesIn(home.path() / "tmp"), IsEmpty()) << "nor is anything left that nobody will read";
}

TEST_F(MailProgramTest, KeepsWhatAProgramWasHandedThatFailsAtOnce) {
    home.addProgram("thunderbird", "exit 1");
    home.registerFor("mailto", "thunderbird.desktop", "thunderbird %u");
    send();
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSaved);
    EXPECT_THAT(onlyDraft(), HasSubstr("Subject: Subject\n"));
    EXPECT_EQ(home.filesIn(home.drafts()).front(), composer->draft());
}

TEST_F(MailProgramTest, IsHandedFilesOfOneNameAndNoneOutsideOfTheirFolder) {
    use("sylpheed", "sylpheed.desktop");
    attach("again", "log");
    attach("out", "../../../../out");
    attach("up", "..");
    send({"A <a@b.example>; c@d.example", "Subject", "Body"});
    EXPECT_EQ(delegate->only().result, MFMailComposeResultSaved);
    const std::string files = folder();
    EXPECT_THAT(home.argumentsOf("sylpheed"),
                ElementsAre("--compose", "mailto:a@b.example,c@d.example?subject=Subject&body=Body", "--attach",
                            files + "/1/log", files + "/2/dpkgl.log", files + "/3/log", files + "/4/out",
                            files + "/5/attachment"));
    EXPECT_EQ(home.contentsOf(files + "/3/log"), "again");
    EXPECT_EQ(home.contentsOf(files + "/4/out"), "out");
}

} // namespace

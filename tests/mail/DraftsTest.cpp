#include "platform/foundation/FileDescriptor.h"
#include "tests/mail/MailTest.h"
#include "tests/support/FullDisk.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace tests;

/// In bytes.
std::size_t peakMemory() {
    const std::string facts = Home::contentsOf("/proc/self/status");
    return std::stoul(facts.substr(facts.find("VmHWM:") + 6)) * 1024;
}

TEST_F(MailTest, SaysWhyNoFolderForItCanBeMade) {
    ASSERT_EQ(::chmod(home.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod((home.path() / "data").c_str(), 0555), 0);
    const bool isRoot = ::geteuid() == 0;
    if (isRoot && ::seteuid(65534) != 0) GTEST_SKIP() << "nothing is closed to root, who cannot be anybody else here";
    save();
    EXPECT_THAT(problem(), AllOf(HasSubstr("cannot make the folder"), HasSubstr("Permission denied")));
    if (isRoot) {
        ASSERT_EQ(::seteuid(0), 0);
    }
    ASSERT_EQ(::chmod((home.path() / "data").c_str(), 0755), 0);
}

TEST_F(MailTest, StaysToBeEditedWhenItCannotBeKept) {
    useSendmail("exit 0");
    std::ofstream(home.path() / "data/lumora") << "in the way";
    send();
    EXPECT_THAT(problem(), HasSubstr("cannot make the folder"));
    std::filesystem::remove(home.path() / "data/lumora");
    expectSent();
}

TEST_F(MailTest, LeavesNothingWhereADraftCannotBeWritten) {
    attach(std::string(100'000, 'x'), "log");
    const FullDisk full(4096);
    save();
    EXPECT_THAT(problem(), HasSubstr("cannot write a draft"));
    EXPECT_THAT(home.filesIn(home.drafts()), IsEmpty());
}

TEST_F(MailTest, IsWrittenWithoutHoldingWhatIsAttachedInMemory) {
    constexpr std::size_t kSize = 100'000'000;
    onMain([this] {
        const std::filesystem::path file = home.path() / "large";
        std::ofstream(file) << "x";
        std::filesystem::resize_file(file, kSize);
        composer->addAttachmentData(RegularFile::copyOf(file), "text/plain", "log");
    });
    std::ofstream("/proc/self/clear_refs") << "5\n"; // forgets the peak
    const std::size_t before = peakMemory();
    expectSaved();
    EXPECT_LT(peakMemory(), before + kSize / 4);
    EXPECT_GT(std::filesystem::file_size(composer->draft()), kSize * 4 / 3);
}

TEST_F(MailTest, ShowsNoDraftBeforeItIsWhole) {
    std::filesystem::create_directories(home.drafts());
    const FileDescriptor watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    ASSERT_GE(::inotify_add_watch(watch.number(), home.drafts().c_str(), IN_CREATE | IN_MOVED_TO), 0);
    expectSaved();
    alignas(inotify_event) char events[4096];
    const ssize_t count = ::read(watch.number(), events, sizeof events);
    std::vector<std::string> shown;
    for (ssize_t at = 0; at < count;) {
        const auto* event = static_cast<const inotify_event*>(static_cast<const void*>(events + at));
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
    save();
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
        onMain([this] {
            composer = make<MFMailComposeViewController>();
            delegate = std::make_shared<Delegate>();
            composer->setMailComposeDelegate(delegate);
        });
        expectSaved();
    }
    EXPECT_THAT(home.filesIn(home.drafts()), SizeIs(5));
}

TEST_F(MailTest, KeepsDraftsInTheHomeWhereNoOtherPlaceIsNamed) {
    ::unsetenv("XDG_DATA_HOME");
    expectSaved({});
    EXPECT_EQ(composer->draft().parent_path(), home.path() / ".local/share/lumora/drafts");
}

TEST_F(MailTest, EndsWithoutADelegate) {
    onMain([this] {
        delegate = nullptr;
        composer->cancel();
        EXPECT_TRUE(composer->isOver());
    });
}

} // namespace

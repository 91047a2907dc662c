#include "pages/LumoraPreferences.h"
#include "pages/ProblemReport.h"
#include "platform/services/UIDevice.h"
#include "tests/pages/OpenPage.h"
#include "tests/support/Allocations.h"
#include "tests/support/DeviceFolder.h"
#include "tests/support/FullDisk.h"
#include "tests/support/Home.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <thread>
#include <unistd.h>

namespace {

using lumora::LumoraPreferences;
using lumora::ProblemReport;
using platform::MFMailComposeViewController;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

TEST(ProblemReport, NamesTheDeviceAndItsSystemInTheSubject) {
    EXPECT_EQ(ProblemReport("iPhone6,1", "7.0.4").subject(), "Lumora -- iPhone6,1(7.0.4)");
}

TEST(ProblemReport, HasABodyToFillInWithoutALineAtItsEnd) {
    EXPECT_EQ(ProblemReport("iPhone6,1", "7.0.4").body(), "Application: Lumora\n"
                                                          "Device: iPhone6,1\n"
                                                          "Firmware: 7.0.4\n"
                                                          "\n"
                                                          "Comments:\n"
                                                          "Please describe in detail what's wrong\n"
                                                          "\n"
                                                          "Reproduce:\n"
                                                          "How can I reproduce this issue?");
}

TEST(ProblemReport, IsOfThisDevice) {
    utsname names{};
    ASSERT_EQ(uname(&names), 0);
    EXPECT_EQ(ProblemReport::ofThisDevice().subject(), "Lumora -- " + std::string(names.machine) + "(" +
                                                           platform::UIDevice::currentDevice().systemVersion() + ")");
}

class ContactTest : public ::testing::Test {
  protected:
    ContactTest() : page(tests::openPage<LumoraPreferences>()) {
        std::filesystem::create_directory(copies);
        ::setenv("TMPDIR", copies.c_str(), 1);
        ::setenv("LUMORA_SENDMAIL", home.addRecorder("mta").c_str(), 1);
    }
    void tap(std::size_t row) { page->specifiers()->at(row)->performAction(); }
    void tapMail() { tap(14); }
    std::shared_ptr<MFMailComposeViewController> composer() {
        return std::dynamic_pointer_cast<MFMailComposeViewController>(page->presentedViewController());
    }
    /// Name and bytes of each.
    std::vector<std::pair<std::string, std::string>> attachments() {
        std::vector<std::pair<std::string, std::string>> all;
        if (!composer()) return {{"nothing is presented", ""}};
        for (const auto& attachment : composer()->message().attachments) {
            EXPECT_EQ(attachment.mimeType, "text/plain");
            std::string bytes(static_cast<std::size_t>(attachment.data->size()), '\0');
            EXPECT_TRUE(attachment.data->read(0, bytes.data(), bytes.size()));
            all.emplace_back(attachment.fileName, std::move(bytes));
        }
        return all;
    }
    /// The attachments of a new report.
    std::vector<std::pair<std::string, std::string>> attached() {
        tapMail();
        auto all = attachments();
        if (composer()) composer()->cancel();
        return all;
    }
    static constexpr const char* kLog = "/var/mobile/nevo_lumora_log";
    static constexpr const char* kOther = "/tmp/dpkgl.log";
    [[nodiscard]] std::filesystem::path log() const { return device.path() / "var/mobile/nevo_lumora_log"; }
    [[nodiscard]] std::filesystem::path other() const { return device.path() / "tmp/dpkgl.log"; }

    tests::RecordingTweak& tweak = tests::RecordingTweak::shared(); // first: its ports stay when the home goes
    tests::Home home;
    tests::DeviceFolder device;
    std::filesystem::path copies = home.path() / "copies";
    std::shared_ptr<LumoraPreferences> page;
};

TEST_F(ContactTest, OpensTheMakersProfile) {
    home.addRecorder("social");
    home.registerFor("twitter", "social.desktop", "social %u");
    tap(13);
    EXPECT_THAT(home.argumentsOf("social"), ElementsAre("twitter://user?screen_name=nevo_lumora"));
}

TEST_F(ContactTest, OpensNothingWhereNoApplicationTakesProfiles) {
    testing::internal::CaptureStderr();
    tap(13);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(page->presentedViewController(), nullptr);
}

TEST_F(ContactTest, PresentsAReportToTheMaker) {
    tapMail();
    ASSERT_NE(composer(), nullptr);
    const auto& message = composer()->message();
    const auto report = ProblemReport::ofThisDevice();
    EXPECT_EQ(message.text.to, "support@nevo.example");
    EXPECT_EQ(message.text.subject, report.subject());
    EXPECT_EQ(message.text.body, report.body());
    EXPECT_FALSE(message.isHTML);
}

TEST_F(ContactTest, PresentsNothingWhereNoMailCanBeSent) {
    ::setenv("LUMORA_SENDMAIL", "", 1);
    testing::internal::CaptureStderr();
    tapMail();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(page->presentedViewController(), nullptr);
}

TEST_F(ContactTest, AttachesThoseDiagnosticFilesThatAreThereInOrder) {
    EXPECT_THAT(attached(), IsEmpty());
    const std::string bytes("\0\xff", 2);
    device.write(bytes, kOther);
    EXPECT_THAT(attached(), ElementsAre(Pair("dpkgl.log", bytes)));
    device.write("", kLog);
    EXPECT_THAT(attached(), ElementsAre(Pair("log", ""), Pair("dpkgl.log", bytes)));
    device.write("one", kLog);
    EXPECT_THAT(attached(), ElementsAre(Pair("log", "one"), Pair("dpkgl.log", bytes)));
}

TEST_F(ContactTest, SkipsWhatOnlyStandsWhereAFileShouldBe) {
    testing::internal::CaptureStderr();
    std::filesystem::create_directories(log());
    std::filesystem::create_directories(other().parent_path());
    ASSERT_EQ(::mkfifo(other().c_str(), 0600), 0);
    EXPECT_THAT(attached(), IsEmpty()) << "a folder and a pipe";
    std::filesystem::remove(log());
    std::filesystem::remove(other());
    std::filesystem::create_symlink(other(), log());
    std::filesystem::create_symlink(log(), other());
    EXPECT_THAT(attached(), IsEmpty()) << "links in a circle";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ContactTest, SkipsAFileThatCannotBeRead) {
    device.write("secret", kLog);
    device.write("two", kOther);
    ASSERT_EQ(::chmod(log().c_str(), 0), 0);
    for (const auto& folder : {device.path(), home.path()})
        ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    ASSERT_EQ(::chmod((home.path() / "bin/mta").c_str(), 0755), 0);
    ASSERT_EQ(::chmod(copies.c_str(), 01777), 0);
    const bool isRoot = ::geteuid() == 0;
    if (isRoot && ::seteuid(65534) != 0) GTEST_SKIP() << "nothing is closed to root, who cannot be anybody else here";
    tapMail();
    if (isRoot) {
        ASSERT_EQ(::seteuid(0), 0);
    }
    EXPECT_THAT(attachments(), ElementsAre(Pair("dpkgl.log", "two")));
}

TEST_F(ContactTest, AttachesALogThatNoMessageWouldHoldWithoutHoldingItInMemory) {
    device.write("", kLog);
    std::filesystem::resize_file(log(), 100'000'000);
    const Allocations before = Allocations::now();
    tapMail();
    EXPECT_LE((Allocations::now() - before).bytes, 1'000'000U);
    ASSERT_THAT(composer()->message().attachments, SizeIs(1));
    EXPECT_EQ(composer()->message().attachments.front().data->size(), 100'000'000U);
}

TEST_F(ContactTest, SkipsALogForWhoseCopyThereIsNoRoom) {
    device.write("", kLog);
    device.write(std::string(100'000, 'x'), kOther);
    const auto room = std::filesystem::space(home.path()).available;
    std::filesystem::resize_file(log(), room + (1U << 30U)); // sparse
    static volatile std::sig_atomic_t stopped;
    stopped = 0;
    const tests::FullDisk full(50'000);
    std::signal(SIGXFSZ, [](int) { stopped = stopped + 1; });
    testing::internal::CaptureStderr();
    tapMail();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(attachments(), IsEmpty());
    EXPECT_EQ(stopped, 1) << "a copy that is larger than the disk is not even begun";
    EXPECT_THAT(tests::Home::filesIn(copies), IsEmpty());
}

TEST_F(ContactTest, AttachesWhatStoodThereAtTheTap) {
    device.write("before", kLog);
    device.write("before", kOther);
    tapMail();
    device.write("", kLog);
    std::filesystem::remove(other());
    EXPECT_THAT(attachments(), ElementsAre(Pair("log", "before"), Pair("dpkgl.log", "before")));
    EXPECT_THAT(tests::Home::filesIn(copies), IsEmpty()) << "the copies have no names";
}

TEST_F(ContactTest, AttachesSomeBeginningOfALogThatGrowsAndShrinksMeanwhile) {
    const std::string whole(1'000'000, 'x');
    device.write(whole, kLog);
    std::atomic<bool> over = false;
    std::thread writer([&] {
        while (!over) {
            std::filesystem::resize_file(log(), 3);
            device.write(whole, kLog);
        }
    });
    for (int i = 0; i < 100; ++i) {
        const auto logs = attached();
        EXPECT_THAT(logs, SizeIs(1));
        for (const auto& [name, bytes] : logs)
            // Where a file is cut while it is read, the system may give zeros for what has gone.
            EXPECT_TRUE(bytes.size() <= whole.size() &&
                        bytes.find_first_not_of(std::string{'x', '\0'}) == std::string::npos);
    }
    over = true;
    writer.join();
}

TEST_F(ContactTest, BuildsAnotherReportForEachTap) {
    tapMail();
    const auto first = composer();
    first->cancel();
    EXPECT_EQ(page->presentedViewController(), nullptr);
    tapMail();
    EXPECT_NE(composer(), nullptr);
    EXPECT_NE(composer(), first);
}

TEST_F(ContactTest, DismissesTheReportHoweverItEnded) {
    const platform::NSError error{"why"};
    for (const int result : {0, 1, 2, 3}) {
        tapMail();
        ASSERT_NE(composer(), nullptr);
        testing::internal::CaptureStderr();
        page->mailComposeController(*composer(), static_cast<platform::MFMailComposeResult>(result),
                                    result == 3 ? &error : nullptr);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(page->presentedViewController(), nullptr);
    }
}

} // namespace

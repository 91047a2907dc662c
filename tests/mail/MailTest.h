#pragma once

#include "platform/mail/MFMailComposeViewController.h"
#include "platform/messaging/Dispatch.h"
#include "tests/support/Home.h"
#include "tests/support/MailedFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <future>
#include <mutex>
#include <sys/stat.h>
#include <thread>

namespace tests {

using namespace platform;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// Runs something on the main thread and waits for it.
inline void onMain(const std::function<void()>& work) {
    static const bool started = (std::thread([] { dispatch_main(); }).detach(), true);
    ASSERT_TRUE(started);
    std::promise<void> done;
    dispatch_async(dispatch_get_main_queue(), [&] {
        work();
        done.set_value();
    });
    awaited(done.get_future(), "the turn of the main thread");
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
            changed_.wait_for(lock, kLongEnough, [this] { return !told_.empty(); });
        }
        EXPECT_TRUE(dispatch_wait_until_idle(kLongEnough));
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

/// A message that is being composed, in a home of its own.
class MailTest : public testing::Test {
  protected:
    static inline const MailText kText{"support@nevo.example", "Subject", "Body"};
    static inline const MailText kDraft{"a@b.example", "Later", "Not yet"};

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
    /// Has messages given to the recorder "mta".
    void useRecorder() { ::setenv("LUMORA_SENDMAIL", home.addRecorder("mta").c_str(), 1); }
    void attach(const std::string& bytes, const std::string& name, const std::string& mimeType = "text/plain") {
        onMain([&] { composer->addAttachmentData(mailedFile(home.path() / "attached", bytes), mimeType, name); });
    }
    void send(const MailText& text = kText) {
        onMain([&] { composer->send(text); });
    }
    void save(const MailText& text = kDraft) {
        onMain([&] { composer->saveDraft(text); });
    }
    void expectSent(const MailText& text = kText) {
        send(text);
        EXPECT_EQ(delegate->only().result, MFMailComposeResultSent);
    }
    /// Sending fails for that reason; the message is kept as a draft, and edited again.
    void expectKept(const std::string& why) {
        send();
        EXPECT_THAT(problem(), HasSubstr(why));
        EXPECT_THAT(onlyDraft(), AllOf(HasSubstr("Subject: Subject\n"), HasSubstr("Body")));
    }
    void expectSaved(const MailText& text = kDraft) {
        save(text);
        EXPECT_EQ(delegate->only().result, MFMailComposeResultSaved);
    }
    /// A pipe for a program to wait at.
    [[nodiscard]] std::string makeGate() const {
        const std::string path = home.path() / "gate";
        EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
        return path;
    }
    /// Waits for the message to be edited again.
    std::string problem() {
        std::string why;
        EXPECT_TRUE(eventually([&] {
            onMain([&] { why = composer->isWorking() ? "" : composer->problem(); });
            return !why.empty();
        }));
        return why;
    }
    static bool canSend() {
        bool can = false;
        onMain([&] { can = MFMailComposeViewController::canSendMail(); });
        return can;
    }
    std::string onlyDraft() const {
        const auto drafts = Home::filesIn(home.drafts());
        EXPECT_THAT(drafts, SizeIs(1));
        return drafts.empty() ? "" : Home::contentsOf(drafts.front());
    }

    Home home;
    std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>();
    std::shared_ptr<MFMailComposeViewController> composer;
    std::thread::id mainThread;
};

} // namespace tests

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
#include <thread>

namespace tests {

/// Runs something on the main thread and waits for it.
inline void onMain(const std::function<void()>& work) {
    static const bool started = (std::thread([] { platform::dispatch_main(); }).detach(), true);
    ASSERT_TRUE(started);
    std::promise<void> done;
    platform::dispatch_async(platform::dispatch_get_main_queue(), [&] {
        work();
        done.set_value();
    });
    awaited(done.get_future(), "the turn of the main thread");
}

/// Keeps each result that it is told, and on which thread.
class Delegate final : public platform::MFMailComposeViewControllerDelegate {
  public:
    struct Told {
        platform::MFMailComposeResult result;
        std::string error; ///< empty for none
        std::thread::id thread;
    };
    void mailComposeController(platform::MFMailComposeViewController& /*controller*/,
                               platform::MFMailComposeResult result, const platform::NSError* error) override {
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
        EXPECT_TRUE(platform::dispatch_wait_until_idle(kLongEnough));
        onMain([] {});
        const std::lock_guard lock(mutex_);
        EXPECT_THAT(told_, ::testing::SizeIs(1));
        return told_.empty() ? Told{platform::MFMailComposeResultCancelled, "never told", {}} : told_.front();
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Told> told_;
};

/// A message that is being composed, in a home of its own.
class MailTest : public ::testing::Test {
  protected:
    MailTest() {
        onMain([this] {
            mainThread = std::this_thread::get_id();
            composer = platform::make<platform::MFMailComposeViewController>();
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
        onMain([&] { composer->addAttachmentData(mailedFile(home.path() / "attached", bytes), mimeType, name); });
    }
    void send(const platform::MailText& text = {"support@nevo.example", "Subject", "Body"}) {
        onMain([&] { composer->send(text); });
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
        onMain([&] { can = platform::MFMailComposeViewController::canSendMail(); });
        return can;
    }
    std::string onlyDraft() const {
        const auto drafts = Home::filesIn(home.drafts());
        EXPECT_THAT(drafts, ::testing::SizeIs(1));
        return drafts.empty() ? "" : Home::contentsOf(drafts.front());
    }

    Home home;
    std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>();
    std::shared_ptr<platform::MFMailComposeViewController> composer;
    std::thread::id mainThread;
};

} // namespace tests

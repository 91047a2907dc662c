#pragma once

#include "platform/mail/MFMailComposeViewControllerDelegate.h"
#include "platform/mail/MailMessage.h"
#include "platform/ui/UIViewController.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

/// A message that the user completes and then sends, keeps or throws away.
///
///     auto composer = make<MFMailComposeViewController>();
///     composer->setToRecipients({"support@nevo.example"});
///     page->presentViewController(composer, true, nullptr);
///
/// Nothing is lost: a message that cannot be sent is kept as a draft and stays open for another try, and so does one that
/// cannot be kept. The delegate hears once, at the end. Main thread; a worker sends and keeps, and its result arrives on the main thread.
class PLATFORM_EXPORT MFMailComposeViewController final : public UIViewController {
  public:
    /// Whether there is a way to send mail, or a mail program that takes it.
    [[nodiscard]] static bool canSendMail();

    bool init();

    void setMailComposeDelegate(std::weak_ptr<MFMailComposeViewControllerDelegate> delegate) {
        delegate_ = std::move(delegate);
    }
    void setToRecipients(const std::vector<std::string>& addresses);
    void setSubject(std::string subject) { message_.text.subject = std::move(subject); }
    void setMessageBody(std::string body, bool isHTML) {
        message_.text.body = std::move(body);
        message_.isHTML = isHTML;
    }
    /// The bytes are read when the message is kept or sent, so they should be a copy that stays as it is.
    void addAttachmentData(std::shared_ptr<const RegularFile> data, std::string mimeType, std::string fileName);

    // What follows is for the window.
    [[nodiscard]] std::uint64_t id() const { return id_; } ///< tells composers apart
    [[nodiscard]] const MailMessage& message() const { return message_; }
    [[nodiscard]] bool isWorking() const { return state_ == State::working; } ///< being sent or kept
    [[nodiscard]] bool isOver() const { return state_ == State::over; }
    /// Why the last try has failed; empty when it has not.
    [[nodiscard]] const std::string& problem() const { return problem_; }
    /// The file of the draft, if the message is kept as one.
    [[nodiscard]] const std::filesystem::path& draft() const { return draft_; }
    /// Called after each change of the above.
    void setObserver(std::function<void()> changed) { changed_ = std::move(changed); }
    /// How long sendmail may take before it is ended.
    void setSendingTime(std::chrono::milliseconds atMost) { sendingTime_ = atMost; }

    // What the user does, with the text as edited. Does nothing while the composer is working or over.
    void send(MailText text) { work(std::move(text), sent); }
    void saveDraft(MailText text) { work(std::move(text), kept); }
    void cancel();
    /// The user has left: keeps the message as a draft, now, or later if it is being sent and that fails. If it cannot
    /// be kept either, composing has failed.
    void leave(MailText text);

  private:
    enum class State : unsigned char { editing, working, over };
    struct Outcome;
    using Job = Outcome (*)(const MailMessage& message, std::chrono::milliseconds atMost);
    void work(MailText text, Job job);
    void take(const Outcome& outcome, Job job);
    void finish(MFMailComposeResult result);
    /// Removes the draft of an earlier try.
    void replaceDraft(const std::filesystem::path& draft);
    static Outcome kept(const MailMessage& message, std::chrono::milliseconds atMost);
    static Outcome sent(const MailMessage& message, std::chrono::milliseconds atMost);
    static Outcome done(Job job, const MailMessage& message, std::chrono::milliseconds atMost);

    std::uint64_t id_ = 0;
    std::weak_ptr<MFMailComposeViewControllerDelegate> delegate_;
    MailMessage message_;
    State state_ = State::editing;
    bool left_ = false;
    std::chrono::milliseconds sendingTime_ = std::chrono::minutes(2);
    std::string problem_;
    std::filesystem::path draft_;
    std::function<void()> changed_;
};

} // namespace platform

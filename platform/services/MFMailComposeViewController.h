#pragma once

#include "platform/services/MailMessage.h"
#include "platform/ui/UIViewController.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

/// How composing ended; the platform's numbers.
enum MFMailComposeResult : int {
    MFMailComposeResultCancelled = 0,
    MFMailComposeResultSaved = 1, ///< kept as a draft, or handed to the user's own mail program
    MFMailComposeResultSent = 2,
    MFMailComposeResultFailed = 3,
};

/// Why something failed, fit to show to a person.
struct NSError {
    std::string localizedDescription;
};

class MFMailComposeViewController;

/// Who is told that composing has ended, once. Main thread.
class MFMailComposeViewControllerDelegate {
  public:
    /// The error is null unless the result is a failure.
    virtual void mailComposeController(MFMailComposeViewController& controller, MFMailComposeResult result,
                                       const NSError* error) = 0;

  protected:
    ~MFMailComposeViewControllerDelegate() = default;
};

/// A message that its user completes, and then sends, keeps or throws away.
///
///     auto composer = make<MFMailComposeViewController>();
///     composer->setToRecipients({"support@nevo.example"});
///     page->presentViewController(composer, true, nullptr);
///
/// Nothing is lost: what cannot be sent is kept as a draft, and what cannot even be kept stays to be edited. Main
/// thread; the work is done elsewhere, and what it brought is told here.
class PLATFORM_EXPORT MFMailComposeViewController final : public UIViewController {
  public:
    /// Whether there is a way to send mail, or a mail program to hand it to.
    [[nodiscard]] static bool canSendMail();

    bool init();

    void setMailComposeDelegate(std::weak_ptr<MFMailComposeViewControllerDelegate> delegate);
    void setToRecipients(const std::vector<std::string>& addresses);
    void setSubject(std::string subject) { message_.text.subject = std::move(subject); }
    void setMessageBody(std::string body, bool isHTML);
    void addAttachmentData(Data data, std::string mimeType, std::string fileName);

    // What whoever shows the composer needs.
    [[nodiscard]] std::uint64_t id() const { return id_; } ///< tells composers apart
    [[nodiscard]] const MailMessage& message() const { return message_; }
    [[nodiscard]] bool isWorking() const { return state_ == State::working; } ///< being sent or kept
    [[nodiscard]] bool isOver() const { return state_ == State::over; }
    /// Why the last try did not end it, or how it failed; empty when it did not.
    [[nodiscard]] const std::string& problem() const { return problem_; }
    /// Where it is kept as a draft, if it is.
    [[nodiscard]] const std::filesystem::path& draft() const { return draft_; }
    /// Called after each change of the above.
    void setObserver(std::function<void()> changed) { changed_ = std::move(changed); }

    // What its user does, with the text as it has been edited; nothing while it is working or over.
    void send(MailText text);
    void saveDraft(MailText text);
    void cancel();

  private:
    enum class State : unsigned char { editing, working, over };
    struct Outcome;
    void work(MailText text, Outcome (*job)(const MailMessage&));
    void take(const Outcome& outcome);
    void finish(MFMailComposeResult result);
    static Outcome kept(const MailMessage& message);
    static Outcome sent(const MailMessage& message);

    std::uint64_t id_ = 0;
    std::weak_ptr<MFMailComposeViewControllerDelegate> delegate_;
    MailMessage message_;
    State state_ = State::editing;
    std::string problem_;
    std::filesystem::path draft_;
    std::function<void()> changed_;
};

} // namespace platform

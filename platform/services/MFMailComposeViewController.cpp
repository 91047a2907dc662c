#include "platform/services/MFMailComposeViewController.h"

#include "platform/messaging/Dispatch.h"
#include "platform/services/DesktopServices.h"
#include "platform/services/MailDrafts.h"
#include "platform/services/MailPrograms.h"
#include "platform/services/Sendmail.h"

#include <optional>
#include <thread>
#include <utility>

namespace platform {

/// What came of the work: without a result the message is edited on.
struct MFMailComposeViewController::Outcome {
    std::optional<MFMailComposeResult> result{};
    std::string problem{};
    std::filesystem::path draft{};
};

bool MFMailComposeViewController::canSendMail() {
    return sendmailProgram() || mailProgram();
}

bool MFMailComposeViewController::init() {
    static std::uint64_t last = 0;
    id_ = ++last;
    return true;
}

void MFMailComposeViewController::setMailComposeDelegate(std::weak_ptr<MFMailComposeViewControllerDelegate> delegate) {
    delegate_ = std::move(delegate);
}

void MFMailComposeViewController::setToRecipients(const std::vector<std::string>& addresses) {
    message_.text.to.clear();
    for (const std::string& address : addresses)
        message_.text.to += (message_.text.to.empty() ? "" : ", ") + address;
}

void MFMailComposeViewController::setMessageBody(std::string body, bool isHTML) {
    message_.text.body = std::move(body);
    message_.isHTML = isHTML;
}

void MFMailComposeViewController::addAttachmentData(Data data, std::string mimeType, std::string fileName) {
    message_.attachments.push_back(
        {std::make_shared<const Data>(std::move(data)), std::move(mimeType), std::move(fileName)});
}

void MFMailComposeViewController::send(MailText text) {
    work(std::move(text), sent);
}

void MFMailComposeViewController::saveDraft(MailText text) {
    work(std::move(text), kept);
}

void MFMailComposeViewController::cancel() {
    if (state_ == State::editing) finish(MFMailComposeResultCancelled);
}

MFMailComposeViewController::Outcome MFMailComposeViewController::kept(const MailMessage& message) {
    const Result<std::filesystem::path> draft = keepDraft(message);
    if (!draft) return {.problem = draft.error()};
    return {.result = MFMailComposeResultSaved, .draft = draft.value()};
}

/// Kept before anything is tried, so that nothing is lost whatever becomes of the programs and of this process.
MFMailComposeViewController::Outcome MFMailComposeViewController::sent(const MailMessage& message) {
    DesktopServices* desktop = desktopServices();
    const std::vector<std::string> recipients =
        desktop ? desktop->addressesIn(message.text.to) : std::vector<std::string>();
    if (recipients.empty()) return {.problem = "There is no address to send it to."};
    Outcome outcome = kept(message);
    if (!outcome.result) return outcome;

    Result<bool> done = Result<bool>::failure("there is no program to send mail with");
    if (const auto program = sendmailProgram()) {
        done = sendWith(*program, recipients, outcome.draft);
        outcome.result = MFMailComposeResultSent;
    } else if (const auto own = mailProgram()) {
        done = openIn(*own, message);
    }
    if (!done) return {MFMailComposeResultFailed, done.error(), outcome.draft};
    std::error_code ignored; // a draft too many is better than none
    std::filesystem::remove(outcome.draft, ignored);
    outcome.draft.clear();
    return outcome;
}

void MFMailComposeViewController::work(MailText text, Outcome (*job)(const MailMessage&)) {
    if (state_ != State::editing) return;
    message_.text = std::move(text);
    state_ = State::working;
    problem_.clear();
    auto self = std::static_pointer_cast<MFMailComposeViewController>(shared_from_this());
    // The queue's own threads have small stacks, which is not enough for other people's libraries.
    dispatch_async(dispatch_get_global_queue(0, 0), [self, message = message_, job] {
        Outcome outcome;
        std::thread([&] { outcome = job(message); }).join();
        dispatch_async(dispatch_get_main_queue(), [self, outcome] { self->take(outcome); });
    });
    if (changed_) changed_();
}

void MFMailComposeViewController::take(const Outcome& outcome) {
    problem_ = outcome.problem;
    draft_ = outcome.draft;
    if (outcome.result) return finish(*outcome.result);
    state_ = State::editing;
    if (changed_) changed_();
}

void MFMailComposeViewController::finish(MFMailComposeResult result) {
    const auto self = shared_from_this(); // the delegate dismisses it
    state_ = State::over;
    const NSError error{problem_};
    if (const auto delegate = delegate_.lock())
        delegate->mailComposeController(*this, result, result == MFMailComposeResultFailed ? &error : nullptr);
    if (changed_) changed_();
}

} // namespace platform

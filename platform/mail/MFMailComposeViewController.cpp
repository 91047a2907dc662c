#include "platform/mail/MFMailComposeViewController.h"

#include "platform/mail/MailDrafts.h"
#include "platform/mail/MailPrograms.h"
#include "platform/mail/Program.h"
#include "platform/messaging/Dispatch.h"
#include "platform/services/DesktopLibrary.h"

#include <cstdlib>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace platform {

/// What came of the work; without a result, editing goes on.
struct MFMailComposeViewController::Outcome {
    std::optional<MFMailComposeResult> result{};
    std::string problem{};
    std::filesystem::path draft{};
};

namespace {

/// `$LUMORA_SENDMAIL` where that is set, and none when it is empty; else sendmail in `$PATH`, /usr/sbin or /usr/lib.
std::optional<std::filesystem::path> sendmailProgram() {
    if (const char* named = std::getenv("LUMORA_SENDMAIL")) return programNamed(named);
    for (const char* name : {"sendmail", "/usr/sbin/sendmail", "/usr/lib/sendmail"})
        if (auto program = programNamed(name)) return program;
    return std::nullopt;
}

} // namespace

bool MFMailComposeViewController::canSendMail() {
    return sendmailProgram() || mailProgram();
}

bool MFMailComposeViewController::init() {
    static std::uint64_t last = 0;
    id_ = ++last;
    (void)desktopLibrary(); // loaded here, on the main thread; what asks for it later are workers
    return true;
}

void MFMailComposeViewController::setToRecipients(const std::vector<std::string>& addresses) {
    message_.text.to.clear();
    for (const std::string& address : addresses)
        message_.text.to += (message_.text.to.empty() ? "" : ", ") + address;
}

void MFMailComposeViewController::addAttachmentData(std::shared_ptr<const RegularFile> data, std::string mimeType,
                                                    std::string fileName) {
    message_.attachments.push_back({std::move(data), std::move(mimeType), std::move(fileName)});
}

void MFMailComposeViewController::cancel() {
    if (state_ != State::editing) return;
    problem_.clear();
    replaceDraft({});
    finish(MFMailComposeResultCancelled);
}

void MFMailComposeViewController::replaceDraft(const std::filesystem::path& draft) {
    const std::filesystem::path before = std::exchange(draft_, draft);
    std::error_code ignored; // one draft too many does no harm
    if (!before.empty() && before != draft) std::filesystem::remove(before, ignored);
}

void MFMailComposeViewController::leave(MailText text) {
    left_ = true;
    saveDraft(std::move(text));
}

MFMailComposeViewController::Outcome MFMailComposeViewController::kept(const MailMessage& message,
                                                                       std::chrono::milliseconds /*atMost*/) {
    const Result<std::filesystem::path> draft = keepDraft(message);
    if (!draft) return {.problem = draft.error()};
    return {.result = MFMailComposeResultSaved, .draft = draft.value()};
}

/// Keeps the message before it tries to send it, so that nothing is lost whatever becomes of the programs and of this
/// process.
MFMailComposeViewController::Outcome MFMailComposeViewController::sent(const MailMessage& message,
                                                                       std::chrono::milliseconds atMost) {
    DesktopLibrary* desktop = desktopLibrary();
    if (!desktop) return {.problem = "The library that writes messages is missing."};
    const Result<std::vector<std::string>> recipients = desktop->addressesIn(message.text.to);
    if (!recipients) return {.problem = recipients.error()};
    if (recipients.value().empty()) return {.problem = "There is no address to send it to."};
    Outcome outcome = kept(message, atMost);
    if (!outcome.result) return outcome;

    if (const auto program = sendmailProgram()) {
        // The program reads the file itself, so even a message that is being sent when this process ends is sent whole.
        std::vector<std::string> command{program->string(), "-i", "--"};
        command.insert(command.end(), recipients.value().begin(), recipients.value().end());
        const Result<void> sent = runProgram(command, outcome.draft, atMost);
        if (!sent) return {MFMailComposeResultFailed, sent.error(), outcome.draft};
        std::error_code ignored; // one draft too many does no harm
        std::filesystem::remove(outcome.draft, ignored);
        return {.result = MFMailComposeResultSent};
    }
    const auto own = mailProgram();
    const Result<void> opened = own ? openIn(*own, message, recipients.value())
                                    : Result<void>::failure("there is no program to send mail with");
    // The draft stays: the mail program does not say whether its user sends the message.
    return opened ? outcome : Outcome{MFMailComposeResultFailed, opened.error(), outcome.draft};
}

/// On a thread of its own: the queue's threads have small stacks, too small for other people's libraries.
MFMailComposeViewController::Outcome MFMailComposeViewController::done(Job job, const MailMessage& message,
                                                                       std::chrono::milliseconds atMost) {
    Outcome outcome;
    std::thread thread;
    try {
        thread = std::thread([&] { outcome = job(message, atMost); });
    } catch (const std::system_error& failed) {
        return {.problem = std::string("Nothing can be done now: ") + failed.what()};
    }
    thread.join();
    return outcome;
}

void MFMailComposeViewController::work(MailText text, Job job) {
    if (state_ != State::editing) return;
    message_.text = std::move(text);
    state_ = State::working;
    problem_.clear();
    auto self = std::static_pointer_cast<MFMailComposeViewController>(shared_from_this());
    dispatch_async(dispatch_get_global_queue(0, 0), [self, message = message_, job, atMost = sendingTime_] {
        const Outcome outcome = done(job, message, atMost);
        dispatch_async(dispatch_get_main_queue(), [self, outcome, job] { self->take(outcome, job); });
    });
    if (changed_) changed_();
}

void MFMailComposeViewController::take(const Outcome& outcome, Job job) {
    problem_ = outcome.problem;
    if (outcome.result) replaceDraft(outcome.draft);
    const bool isOver = outcome.result && (left_ || *outcome.result != MFMailComposeResultFailed);
    if (isOver) return finish(*outcome.result);
    if (left_ && job == kept) return finish(MFMailComposeResultFailed);
    state_ = State::editing;
    if (left_) return saveDraft(message_.text);
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

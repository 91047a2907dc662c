#include "settings/host/ComposerSnapshotOf.h"

#include "platform/foundation/Unicode.h"

#include <iostream>

namespace settings {

using platform::MFMailComposeViewController;

std::shared_ptr<MFMailComposeViewController> composerOf(const platform::PSListController& page) {
    return std::dynamic_pointer_cast<MFMailComposeViewController>(page.presentedViewController());
}

std::shared_ptr<const ComposerSnapshot> composerSnapshotOf(const platform::PSListController& page) {
    const auto composer = composerOf(page);
    if (!composer) return nullptr;
    ComposerSnapshot shown{composer->id(), composer->message().text, {}, composer->isWorking(), composer->problem()};
    for (const platform::MailAttachment& attachment : composer->message().attachments)
        shown.attachments.push_back({attachment.fileName, attachment.data->size()});
    return std::make_shared<const ComposerSnapshot>(std::move(shown));
}

void report(const MFMailComposeViewController& composer) {
    if (!composer.isOver()) return; // whoever edits it reads on the sheet why
    const char* lost = composer.draft().empty() ? "neither sent nor kept" : "not sent";
    if (!composer.problem().empty())
        std::cerr << "lumora-settings: the message was " << lost << ": " << platform::printable(composer.problem())
                  << std::endl;
    if (!composer.draft().empty())
        std::cerr << "lumora-settings: the message is kept as a draft, " << composer.draft().string() << std::endl;
}

} // namespace settings

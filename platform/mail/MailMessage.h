#pragma once

#include "platform/foundation/RegularFile.h"

#include <memory>
#include <string>
#include <vector>

namespace platform {

/// What a person edits of a message; all of it UTF-8.
struct MailText {
    std::string to; ///< addresses with commas or semicolons between them
    std::string subject;
    std::string body;
    friend bool operator==(const MailText&, const MailText&) = default;
};

/// A file that goes with a message. Its bytes are never changed, so copies of a message share them; one of these at a
/// time is written.
struct MailAttachment {
    std::shared_ptr<const RegularFile> data;
    std::string mimeType; ///< "text/plain"
    std::string fileName; ///< without folders
};

/// A message as it is composed, not yet in the form in which it travels.
struct MailMessage {
    MailText text;
    bool isHTML = false;
    std::vector<MailAttachment> attachments;
};

} // namespace platform

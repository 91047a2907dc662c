#pragma once

#include "platform/foundation/RegularFile.h"

#include <memory>
#include <string>
#include <vector>

namespace platform {

/// The parts of a message that a person edits, in UTF-8.
struct MailText {
    std::string to; ///< addresses, separated by commas or semicolons
    std::string subject;
    std::string body;
    friend bool operator==(const MailText&, const MailText&) = default;
};

/// A file that goes with a message. Its bytes never change, so copies of a message share them, and are written one
/// after the other.
struct MailAttachment {
    std::shared_ptr<const RegularFile> data;
    std::string mimeType; ///< "text/plain"
    std::string fileName; ///< without folders
};

/// A message as it is composed, before it gets the form in which it travels.
struct MailMessage {
    MailText text;
    bool isHTML = false;
    std::vector<MailAttachment> attachments;
};

} // namespace platform

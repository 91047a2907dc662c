#pragma once

#include "platform/foundation/Result.h"
#include "platform/mail/MailMessage.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// A mail program whose command line is known to take a whole message, attachments included.
struct MailProgram {
    using Files = std::vector<std::filesystem::path>;
    std::filesystem::path file; ///< what is executed
    std::vector<std::string> (*options)(const MailText& text, const Files& attachments);
};

/// The user's own mail program, if it is the registered one for "mailto" and a known one. Any thread.
[[nodiscard]] std::optional<MailProgram> mailProgram();

/// Opens the message, to these addresses, in the program for its user to send. The attachments are files in a private
/// temporary folder, which stays unless this fails: the program reads them when the user sends, and nobody knows when
/// that is. Any thread.
[[nodiscard]] Result<void> openIn(const MailProgram& program, const MailMessage& message,
                                  const std::vector<std::string>& recipients);

} // namespace platform

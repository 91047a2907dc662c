#pragma once

#include "platform/foundation/Result.h"
#include "platform/mail/MailMessage.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// A mail program with a known command line, which takes a whole message with its attachments.
struct MailProgram {
    using Files = std::vector<std::filesystem::path>;
    std::filesystem::path file; ///< what is executed
    std::vector<std::string> (*options)(const MailText& text, const Files& attachments);
};

/// The program registered for "mailto", if it is such a mail program. Any thread.
[[nodiscard]] std::optional<MailProgram> mailProgram();

/// Opens the message, to these addresses, in the program, from which the user sends it. The attachments are files in a
/// private temporary folder. It stays unless this fails, since the program reads them at an unknown time, when the user
/// sends. Any thread.
[[nodiscard]] Result<void> openIn(const MailProgram& program, const MailMessage& message,
                                  const std::vector<std::string>& recipients);

} // namespace platform

#pragma once

#include "platform/mail/Program.h"

namespace platform {

/// The system's way to send mail, as every mail transport offers it: `sendmail -i -- RECIPIENT…`.
///
///     if (const auto program = sendmailProgram()) sendWith(*program, {"a@b.example"}, draft, std::chrono::minutes(2));
///
/// Any thread.

/// `$LUMORA_SENDMAIL` where that is set, and none when it is empty; else sendmail in `$PATH`, /usr/sbin or /usr/lib.
[[nodiscard]] std::optional<std::filesystem::path> sendmailProgram();

/// Sends the message in a file. It is the file itself that the program reads, so neither its size nor a program that
/// ends without reading matters, and were this process to end, the message would still be sent whole. Blocks until
/// the program ends, or has had the time that it may take and is ended.
[[nodiscard]] Result<void> sendWith(const std::filesystem::path& program, const std::vector<std::string>& recipients,
                                    const std::filesystem::path& message, std::chrono::milliseconds atMost);

} // namespace platform

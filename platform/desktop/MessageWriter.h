#pragma once

#include "platform/foundation/Result.h"
#include "platform/mail/MailMessage.h"

#include <string>
#include <vector>

namespace platform {

/// The bare addresses in a list such as "A <a@b.example>, c@d.example", separated by commas or semicolons. Leaves none
/// out: fails for a part that is no address, for groups, and for addresses beyond ASCII. Any thread.
[[nodiscard]] Result<std::vector<std::string>> mailAddressesIn(const std::string& list);

/// Writes a message to an open file in the form in which it travels. Encodes text and attachments, which may hold any
/// bytes and lines of any length. A recipient that is no address, as in a draft, stays as typed. Any thread.
[[nodiscard]] Result<void> writeMailMessage(const MailMessage& message, int file);

} // namespace platform

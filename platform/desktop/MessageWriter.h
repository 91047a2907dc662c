#pragma once

#include "platform/foundation/Result.h"
#include "platform/mail/MailMessage.h"

#include <string>
#include <vector>

namespace platform {

/// The bare addresses in a list such as "A <a@b.example>, c@d.example", with commas or semicolons between them. None is
/// left out: a part that is not understood makes it fail, and so do groups and addresses beyond ASCII. Any thread.
[[nodiscard]] Result<std::vector<std::string>> mailAddressesIn(const std::string& list);

/// Writes a message to an open file in the form in which it travels. Text and attachments may hold any bytes and lines
/// of any length: both are encoded. What is no address among the recipients, as in a draft, stays as it was typed. Any
/// thread.
[[nodiscard]] Result<void> writeMailMessage(const MailMessage& message, int file);

} // namespace platform

#pragma once

#include "platform/foundation/Result.h"
#include "platform/services/MailMessage.h"

#include <string>
#include <vector>

namespace platform {

/// The bare addresses in a list such as "A <a@b.example>, c@d.example". Any thread.
[[nodiscard]] std::vector<std::string> mailAddressesIn(const std::string& list);

/// Writes a message to an open file in the form in which it travels. Text and attachments may hold any bytes and lines
/// of any length: both are encoded. Any thread.
[[nodiscard]] Result<bool> writeMailMessage(const MailMessage& message, int file);

} // namespace platform

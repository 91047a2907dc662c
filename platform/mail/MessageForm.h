#pragma once

#include "platform/foundation/Result.h"
#include "platform/mail/MailMessage.h"

#include <string>
#include <vector>

namespace platform {

/// The form in which messages travel.
///
///     if (MessageForm* form = messageForm()) form->write(message, file);
///
/// Any thread.
class MessageForm {
  public:
    MessageForm() = default;
    MessageForm(const MessageForm&) = delete;
    MessageForm& operator=(const MessageForm&) = delete;
    virtual ~MessageForm() = default;

    /// The bare addresses in a list such as "A <a@b.example>, c@d.example"; fails when any part of it is none.
    [[nodiscard]] virtual Result<std::vector<std::string>> addressesIn(const std::string& list) = 0;
    /// Writes a message to an open file, with "\n" at the ends of lines.
    [[nodiscard]] virtual Result<void> write(const MailMessage& message, int file) = 0;
};

/// Null without the desktop's library. The first call is on the main thread.
[[nodiscard]] MessageForm* messageForm();

} // namespace platform

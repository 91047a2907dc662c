#pragma once

#include "platform/foundation/Result.h"
#include "platform/mail/MailMessage.h"

#include <filesystem>

namespace platform {

/// Keeps a message as a file of its own in `$XDG_DATA_HOME/lumora/drafts`, else in `~/.local/share/lumora/drafts`,
/// readable by its user alone, and tells where. The draft is whole or not there, and replaces no other. Any thread;
/// takes as long as the disk does.
[[nodiscard]] Result<std::filesystem::path> keepDraft(const MailMessage& message);

} // namespace platform

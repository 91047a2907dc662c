#pragma once

#include "platform/foundation/Result.h"
#include "platform/mail/MailMessage.h"

#include <filesystem>

namespace platform {

/// Where drafts are kept: `$XDG_DATA_HOME/lumora/drafts`, else `~/.local/share/lumora/drafts`. Empty for a user without
/// a home folder.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path draftsFolder();

/// Keeps a message as a file of its own in that folder, readable by its user alone, and tells where. It is whole or not
/// there, and no other is overwritten. Any thread; takes as long as the disk does.
[[nodiscard]] PLATFORM_EXPORT Result<std::filesystem::path> keepDraft(const MailMessage& message);

} // namespace platform

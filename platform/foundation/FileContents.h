#pragma once

#include "platform/Export.h"
#include "platform/foundation/Value.h"

#include <filesystem>
#include <optional>
#include <string>

namespace platform {

/// The bytes of a plain file; nothing when it is missing, cannot be read, or is no plain file. Any thread.
[[nodiscard]] PLATFORM_EXPORT std::optional<Data> dataWithContentsOfFile(const std::filesystem::path& path);

/// The text of a plain file in UTF-8; nothing when it cannot be read or is something else. Any thread.
[[nodiscard]] PLATFORM_EXPORT std::optional<std::string> stringWithContentsOfFile(const std::filesystem::path& path);

} // namespace platform

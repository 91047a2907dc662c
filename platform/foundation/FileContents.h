#pragma once

#include "platform/Export.h"
#include "platform/foundation/Value.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace platform {

/// The most that a file may hold to be read whole, in bytes: as much as a message between processes.
inline constexpr std::uint64_t kLargestFileContents = 64ULL << 20U;

/// The bytes of a plain file; nothing when it is missing, cannot be read, is no plain file, or is larger than that.
/// Any thread.
[[nodiscard]] PLATFORM_EXPORT std::optional<Data> dataWithContentsOfFile(const std::filesystem::path& path);

/// The text of a plain file in UTF-8; nothing when it cannot be read as above or is something else. Any thread.
[[nodiscard]] PLATFORM_EXPORT std::optional<std::string> stringWithContentsOfFile(const std::filesystem::path& path);

} // namespace platform

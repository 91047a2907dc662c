#pragma once

#include "platform/Export.h"
#include "platform/foundation/Value.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace platform {

/// The size in bytes up to which a file is read whole: that of the largest message between processes.
inline constexpr std::uint64_t kLargestFileContents = 64ULL << 20U;

/// The bytes of a plain file; nothing when it is missing, unreadable, larger than that, or anything but a plain file.
/// Any thread.
[[nodiscard]] PLATFORM_EXPORT std::optional<Data> dataWithContentsOfFile(const std::filesystem::path& path);

/// The same for a text; nothing, too, when it is not UTF-8. Any thread.
[[nodiscard]] PLATFORM_EXPORT std::optional<std::string> stringWithContentsOfFile(const std::filesystem::path& path);

} // namespace platform

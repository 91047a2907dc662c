#pragma once

#include "platform/foundation/Result.h"
#include "search/Index.h"

#include <filesystem>
#include <optional>

namespace lumora {

/// The user's index of all pages; it is made anew if it is out of date, and what it lacks then is complained of. An empty
/// root is the program's own.
[[nodiscard]] platform::Result<search::Index> currentIndex(const std::filesystem::path& root);

/// The one of the last time for the present device root, out of date or not. Nothing if there is none.
[[nodiscard]] std::optional<search::Index> keptIndex();

} // namespace lumora

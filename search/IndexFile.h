#pragma once

#include "platform/foundation/Result.h"
#include "search/Index.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace search {

/// What an index is made from.
struct Sources {
    std::filesystem::path bundle;  ///< the settings bundle
    std::filesystem::path program; ///< that makes the index
};

/// Tells the states of the sources apart: the bundle, the program, each plug-in, the application-list library, the
/// folders of applications and fonts, language and version. Reads no file's contents. Any thread, while no thread
/// changes the environment.
[[nodiscard]] std::string stampOf(const Sources& sources);

/// An index from the disk.
struct KeptIndex {
    Index index;
    bool current = false; ///< the sources are as they were when it was made
};

/// Where the user's index of these sources is kept: `$XDG_CACHE_HOME/lumora/index-…`, a name for each device root,
/// bundle, program and language. Empty for a user without a home. Any thread, while no thread changes the environment.
[[nodiscard]] std::filesystem::path indexFile(const Sources& sources);

/// The index in a file; nothing if there is none, or if it is damaged, too large, written by another version, or not the
/// user's own. Any thread.
[[nodiscard]] std::optional<KeptIndex> readIndex(const std::filesystem::path& file, std::string_view stamp);

/// Replaces the file as a whole, for the user alone, and makes its folder, in which the latest four indexes stay. Any
/// thread.
[[nodiscard]] platform::Result<void> writeIndex(const std::filesystem::path& file, const Index& index,
                                                std::string_view stamp);

} // namespace search

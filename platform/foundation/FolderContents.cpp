#include "platform/foundation/FolderContents.h"

#include <algorithm>

namespace platform {

namespace fs = std::filesystem;

std::vector<fs::path> contentsOfDirectoryAtPath(const fs::path& folder, std::error_code& failed) {
    std::vector<fs::path> paths;
    for (fs::directory_iterator entry(folder, failed), end; !failed && entry != end; entry.increment(failed))
        paths.push_back(entry->path());
    // All begin with the same folder, so this is the order of the names.
    std::ranges::sort(paths, {}, &fs::path::native);
    return paths;
}

} // namespace platform

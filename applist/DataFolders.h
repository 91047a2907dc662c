#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace applist {

/// Where applications and their icons lie, the user's own first.
struct DataFolders {
    std::vector<std::filesystem::path> applications;
    std::vector<std::filesystem::path> icons;
    std::vector<std::filesystem::path> pixmaps;

    /// Those of the desktop, and those of the device with this root, which may be empty.
    [[nodiscard]] static DataFolders ofDesktopAndDevice(const std::filesystem::path& root);
};

/// The root of the device on which the library is installed, from the library's own path; empty when it lies elsewhere.
[[nodiscard]] std::filesystem::path deviceRootOfLibrary(const std::filesystem::path& library);

} // namespace applist

#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace applist {

/// The folders of desktop entries and their icons, the user's own first.
struct DataFolders {
    std::vector<std::filesystem::path> applications;
    std::vector<std::filesystem::path> icons;
    std::vector<std::filesystem::path> pixmaps;

    /// The folders of the desktop, then those of the device with this root; an empty root stands for no device.
    [[nodiscard]] static DataFolders ofDesktopAndDevice(const std::filesystem::path& root);
};

/// The root of the device on which the library is installed, by the library's own path; empty if it lies elsewhere.
[[nodiscard]] std::filesystem::path deviceRootOfLibrary(const std::filesystem::path& library);

} // namespace applist

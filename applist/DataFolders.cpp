#include "applist/DataFolders.h"

#include <algorithm>
#include <glib.h>

namespace applist {

namespace fs = std::filesystem;

DataFolders DataFolders::ofDesktopAndDevice(const fs::path& root) {
    std::vector<fs::path> data{g_get_user_data_dir()};
    for (const char* const* folder = g_get_system_data_dirs(); *folder; ++folder)
        data.emplace_back(*folder);
    if (!root.empty()) data.push_back(root / "usr/share");

    DataFolders folders;
    folders.icons.push_back(fs::path(g_get_home_dir()) / ".icons");
    for (const fs::path& folder : data) {
        const fs::path applications = (folder / "applications").lexically_normal();
        if (std::ranges::find(folders.applications, applications) != folders.applications.end()) continue;
        folders.applications.push_back(applications);
        folders.icons.push_back(folder / "icons");
        folders.pixmaps.push_back(folder / "pixmaps");
    }
    return folders;
}

fs::path deviceRootOfLibrary(const fs::path& library) {
    std::error_code failed;
    fs::path folder = fs::absolute(library, failed).lexically_normal().parent_path();
    for (const char* name : {"DynamicLibraries", "MobileSubstrate", "Library"}) {
        if (folder.filename() != name) return {};
        folder = folder.parent_path();
    }
    return folder;
}

} // namespace applist

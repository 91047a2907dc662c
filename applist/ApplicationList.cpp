#include "applist/ApplicationList.h"

#include "applist/QuietLog.h"

#include <cmath>

namespace applist {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostKnownIcons = 1 << 15;
constexpr int kLargestScale = 8;
constexpr double kMostPixels = 1024;

} // namespace

ApplicationList::ApplicationList(DataFolders folders, std::string iconTheme)
    : entries_(std::move(folders.applications)),
      theme_(std::move(folders.icons), std::move(folders.pixmaps), std::move(iconTheme)) {
}

void ApplicationList::refresh() {
    const QuietLog quiet;
    const bool entriesChanged = entries_.refresh();
    const bool iconsChanged = theme_.refresh();
    if (entriesChanged || iconsChanged || icons_.size() > kMostKnownIcons) icons_.clear();
    fresh_ = true;
}

std::vector<std::pair<std::string, std::string>> ApplicationList::applications() {
    refresh();
    return entries_.shown();
}

fs::path ApplicationList::iconFile(double size, double scale, const std::string& identifier) {
    const double side = size * scale;
    if (!(size > 0 && scale > 0 && scale <= kLargestScale && side >= 1 && side <= kMostPixels)) return {};
    if (!fresh_) refresh();
    const DesktopEntry* entry = entries_.find(identifier);
    if (!entry || !entry->icon) return {};

    const Wanted wanted{identifier, int(std::lround(size)), int(std::ceil(scale))};
    IconFile& known = icons_[wanted];
    if (!known.looked || (!known.file.empty() && known.stamp != stampOf(known.file))) {
        const QuietLog quiet;
        ++iconsLookedFor_;
        known = {true, fileOf(entry->icon.get(), wanted.size, wanted.scale), {}};
        known.stamp = stampOf(known.file);
    }
    return known.stamp && known.stamp->regular ? known.file : fs::path(); // reading a pipe would never end
}

fs::path ApplicationList::fileOf(GIcon* icon, int size, int scale) const {
    if (G_IS_FILE_ICON(icon)) {
        const GLibPointer<char> path(g_file_get_path(g_file_icon_get_file(G_FILE_ICON(icon))));
        return path ? fs::path(path.get()) : fs::path();
    }
    if (!G_IS_THEMED_ICON(icon)) return {};
    for (const char* const* name = g_themed_icon_get_names(G_THEMED_ICON(icon)); *name; ++name)
        if (fs::path file = theme_.find(*name, size, scale); !file.empty()) return file;
    return {};
}

} // namespace applist

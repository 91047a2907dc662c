#include "applist/ApplicationList.h"

#include "applist/Picture.h"
#include "applist/QuietLog.h"

#include <cmath>

namespace applist {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kIconBudget = 4 << 20; // some hundreds of icons as lists show them
constexpr std::int64_t kLargestIcon = 16 << 20;
constexpr int kLargestScale = 8;
constexpr double kMostPixels = 1024;

} // namespace

ApplicationList::ApplicationList(DataFolders folders, std::string iconTheme)
    : entries_(std::move(folders.applications)),
      theme_(std::move(folders.icons), std::move(folders.pixmaps), std::move(iconTheme)), icons_(kIconBudget) {
}

void ApplicationList::refresh() {
    const QuietLog quiet;
    const bool entriesChanged = entries_.refresh();
    const bool iconsChanged = theme_.refresh();
    if (entriesChanged || iconsChanged) icons_.clear();
    fresh_ = true;
}

std::vector<std::pair<std::string, std::string>> ApplicationList::applications() {
    refresh();
    return entries_.shown();
}

std::vector<std::uint8_t> ApplicationList::icon(double size, double scale, const std::string& identifier) {
    const double side = size * scale;
    if (!(size > 0 && scale > 0 && scale <= kLargestScale && side >= 1 && side <= kMostPixels)) return {};
    if (!fresh_) refresh();
    const DesktopEntry* entry = entries_.find(identifier);
    if (!entry || !entry->icon) return {};

    const int pixels = int(std::lround(side));
    const int wholeScale = int(std::ceil(scale));
    const IconCache::Key key{identifier, pixels, wholeScale};
    const DrawnIcon* known = icons_.find(key);
    if (known && (known->file.empty() || known->stamp == stampOf(known->file))) return known->png;

    const QuietLog quiet;
    DrawnIcon drawn;
    drawn.file = fileOf(entry->icon.get(), int(std::lround(size)), wholeScale);
    drawn.stamp = stampOfFile(drawn.file, kLargestIcon);
    if (drawn.stamp) {
        ++iconsDrawn_;
        drawn.png = drawPicture(drawn.file, pixels);
    }
    icons_.put(key, drawn);
    return std::move(drawn.png);
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

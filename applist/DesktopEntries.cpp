#include "applist/DesktopEntries.h"

#include <algorithm>
#include <gio/gdesktopappinfo.h>
#include <string_view>
#include <utility>

namespace applist {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kLargestFile = 1 << 20;
constexpr std::string_view kEnding = ".desktop";

DesktopEntry read(const fs::path& file, const FileStamp& stamp) {
    DesktopEntry entry{file, stamp, false, false, {}, nullptr};
    const GObjectPointer<GDesktopAppInfo> info(g_desktop_app_info_new_from_filename(file.c_str()));
    if (!info) return entry;
    // Without this GIO would make up a name.
    const GLibPointer<char> name(g_desktop_app_info_get_string(info.get(), "Name"));
    if (!name || !*name) return entry;
    entry.readable = true;
    GAppInfo* application = G_APP_INFO(info.get());
    entry.shown = g_app_info_should_show(application) && !g_desktop_app_info_get_is_hidden(info.get());
    entry.name = g_app_info_get_display_name(application);
    if (GIcon* icon = g_app_info_get_icon(application)) entry.icon.reset(G_ICON(g_object_ref(icon)));
    return entry;
}

} // namespace

DesktopEntries::DesktopEntries(std::vector<fs::path> folders) : folders_(std::move(folders)) {
}

bool DesktopEntries::refresh() {
    changed_ = false;
    Entries entries;
    for (const fs::path& folder : folders_)
        look(folder, entries);
    entries_ = std::move(entries);
    return changed_;
}

void DesktopEntries::look(const fs::path& folder, Entries& entries) {
    std::error_code failed;
    fs::recursive_directory_iterator at(folder, fs::directory_options::skip_permission_denied, failed);
    for (; !failed && at != fs::recursive_directory_iterator(); at.increment(failed)) {
        const fs::path& file = at->path();
        std::string identifier = file.lexically_relative(folder).string();
        if (!identifier.ends_with(kEnding) || !g_utf8_validate(identifier.c_str(), -1, nullptr)) continue;
        identifier.resize(identifier.size() - kEnding.size());
        std::replace(identifier.begin(), identifier.end(), '/', '-');
        if (identifier.empty() || entries.contains(identifier)) continue;
        if (const auto stamp = stampOfFile(file, kLargestFile))
            entries.emplace(identifier, entryOf(identifier, file, *stamp));
    }
}

DesktopEntry DesktopEntries::entryOf(const std::string& identifier, const fs::path& file, const FileStamp& stamp) {
    const auto known = entries_.find(identifier);
    // One that could not be read is tried again: its program may have been installed after it.
    if (known != entries_.end() && known->second.readable && known->second.file == file && known->second.stamp == stamp)
        return std::move(known->second);
    ++filesRead_;
    DesktopEntry entry = read(file, stamp);
    changed_ = changed_ || entry.readable;
    return entry;
}

std::vector<std::pair<std::string, std::string>> DesktopEntries::shown() const {
    std::vector<std::pair<std::string, std::string>> applications;
    for (const auto& [identifier, entry] : entries_)
        if (entry.shown) applications.emplace_back(identifier, entry.name);
    return applications;
}

const DesktopEntry* DesktopEntries::find(const std::string& identifier) const {
    const auto found = entries_.find(identifier);
    return found != entries_.end() && found->second.shown ? &found->second : nullptr;
}

} // namespace applist

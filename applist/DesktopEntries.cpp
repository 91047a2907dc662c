#include "applist/DesktopEntries.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

namespace applist {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kLargestFile = 1 << 20;
constexpr std::string_view kEnding = ".desktop";
constexpr std::size_t kDeepest = 64;       ///< folders in folders
constexpr int kMostWays = 8;               ///< to one folder, by links
constexpr std::size_t kMostFolders = 8192; ///< in one of the folders, with all that links lead to
constexpr std::size_t kMostEntries = 1 << 17;

std::optional<FolderNumber> numberOf(const fs::path& folder) {
    const std::optional<FileStamp> stamp = stampOf(folder);
    return stamp ? std::optional(FolderNumber(stamp->device, stamp->inode)) : std::nullopt;
}

/// The folders on the path of a folder, without the folder itself.
std::vector<FolderNumber> foldersAround(const fs::path& folder) {
    std::vector<FolderNumber> around;
    for (fs::path inner = folder; inner.has_relative_path(); inner = inner.parent_path())
        if (const auto number = numberOf(inner.parent_path())) around.push_back(*number);
    return around;
}

} // namespace

DesktopEntries::DesktopEntries(std::vector<fs::path> folders) : folders_(std::move(folders)) {
}

bool DesktopEntries::refresh() {
    changed_ = false;
    Entries entries;
    for (const fs::path& folder : folders_) {
        Walk walk;
        look({folder, {}, foldersAround(folder)}, walk, entries);
        for (; !walk.links.empty(); walk.links.pop_front())
            look(walk.links.front(), walk, entries);
    }
    entries_ = std::move(entries);
    return changed_;
}

void DesktopEntries::look(const Place& place, Walk& walk, Entries& entries) {
    const std::optional<FolderNumber> number = numberOf(place.folder);
    if (!number || place.around.size() >= kDeepest || walk.folders >= kMostFolders) return;
    if (std::ranges::find(place.around, *number) != place.around.end()) return; // it leads back
    if (++walk.ways[*number] > kMostWays) return;
    ++walk.folders;

    // Entries come before folders, and folders before links to folders, each in the order of their names: which of two
    // entries with one identifier counts is then the same on every disk.
    std::set<std::string> files;
    std::set<std::string> folders;
    std::set<std::string> links;
    std::error_code failed; // a folder that is missing or cannot be read has no entries
    for (fs::directory_iterator at(place.folder, failed), end; !failed && at != end; at.increment(failed)) {
        std::string name = at->path().filename().string();
        std::error_code unknown;
        if (name.ends_with(kEnding))
            files.insert(std::move(name));
        else if (at->is_directory(unknown))
            (at->is_symlink(unknown) ? links : folders).insert(std::move(name));
    }
    for (const std::string& name : files)
        take(place.folder / name, place.prefix + name, entries);
    std::vector<FolderNumber> around = place.around;
    around.push_back(*number);
    for (const std::string& name : folders)
        look({place.folder / name, place.prefix + name + "-", around}, walk, entries);
    for (const std::string& name : links)
        walk.links.push_back({place.folder / name, place.prefix + name + "-", around});
}

void DesktopEntries::take(const fs::path& file, std::string identifier, Entries& entries) {
    if (entries.size() >= kMostEntries || !g_utf8_validate(identifier.c_str(), -1, nullptr)) return;
    identifier.resize(identifier.size() - kEnding.size());
    if (identifier.empty() || entries.contains(identifier)) return;
    if (const auto stamp = stampOfFile(file, kLargestFile))
        entries.emplace(identifier, entryOf(identifier, file, *stamp));
}

DesktopEntry DesktopEntries::entryOf(const std::string& identifier, const fs::path& file, const FileStamp& stamp) {
    const auto known = entries_.find(identifier);
    // An entry that could not be used is read again: its program may have been installed after it.
    if (known != entries_.end() && known->second.readable && known->second.file == file &&
        known->second.stamp == stamp && known->second.hasPrograms())
        return std::move(known->second);
    ++filesRead_;
    DesktopEntry entry = readDesktopEntry(file, stamp);
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

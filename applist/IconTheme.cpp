#include "applist/IconTheme.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace applist {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kLargestIndex = 1 << 20;
/// More than any theme inherits from; each is looked for among the files, and compared with all before it.
constexpr std::size_t kMostThemes = 64;
constexpr const char* kThemeGroup = "Icon Theme";
constexpr std::array<const char*, 3> kEndings{".png", ".svg", ".xpm"};

/// True for a file name, false for a path that leads elsewhere.
bool isName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

GLibPointer<GKeyFile> readIndex(const fs::path& file) {
    if (!stampOfFile(file, kLargestIndex)) return nullptr;
    GLibPointer<GKeyFile> index(g_key_file_new());
    return g_key_file_load_from_file(index.get(), file.c_str(), G_KEY_FILE_NONE, nullptr) ? std::move(index) : nullptr;
}

std::vector<std::string> listOf(GKeyFile* index, const char* key) {
    std::vector<std::string> texts;
    const GLibPointer<char> joined(g_key_file_get_string(index, kThemeGroup, key, nullptr));
    std::string_view rest = joined ? joined.get() : "";
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(','), rest.size());
        if (end > 0) texts.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return texts;
}

int numberOf(GKeyFile* index, const std::string& group, const char* key, int otherwise) {
    constexpr int largest = 4096; // of an icon's side in pixels; keeps sums and products small
    GError* failed = nullptr;
    const int number = g_key_file_get_integer(index, group.c_str(), key, &failed);
    if (!failed) return std::clamp(number, 0, largest);
    g_error_free(failed);
    return otherwise;
}

fs::path fileIn(const fs::path& folder, const std::string& icon) {
    for (const char* ending : kEndings) {
        std::error_code failed;
        fs::path file = folder / (icon + ending);
        if (fs::is_regular_file(file, failed)) return file;
    }
    return {};
}

} // namespace

IconTheme::IconTheme(std::vector<fs::path> folders, std::vector<fs::path> pixmaps, std::string name)
    : folders_(std::move(folders)), pixmaps_(std::move(pixmaps)), name_(std::move(name)) {
}

bool IconTheme::refresh() {
    if (!chain_.empty() && stamps() == stamps_) return false;
    chain_.clear();
    add(name_);
    add("hicolor");
    stamps_ = stamps();
    return true;
}

void IconTheme::add(const std::string& name) {
    if (!isName(name) || std::ranges::find(chain_, name, &Theme::name) != chain_.end()) return;
    const std::size_t place = chain_.size();
    chain_.push_back({name, {}});
    for (const fs::path& folder : folders_) {
        const GLibPointer<GKeyFile> index = readIndex(folder / name / "index.theme");
        if (!index) continue;
        chain_[place].folders = foldersOf(name, index.get());
        for (const std::string& parent : listOf(index.get(), "Inherits"))
            if (parent != "hicolor" && chain_.size() < kMostThemes) add(parent); // "hicolor" is the last of every chain
        return;
    }
}

std::vector<IconTheme::Folder> IconTheme::foldersOf(const std::string& theme, GKeyFile* index) const {
    std::vector<std::string> names = listOf(index, "Directories");
    for (std::string& name : listOf(index, "ScaledDirectories"))
        names.push_back(std::move(name));

    std::vector<Folder> folders;
    for (const std::string& name : names) {
        Folder folder;
        for (const fs::path& place : folders_) {
            std::error_code failed;
            fs::path path = place / theme / name;
            if (fs::is_directory(path, failed)) folder.paths.push_back(std::move(path));
        }
        folder.size = numberOf(index, name, "Size", 0);
        if (folder.paths.empty() || folder.size == 0) continue;
        folder.scale = std::max(1, numberOf(index, name, "Scale", 1));
        const GLibPointer<char> kind(g_key_file_get_string(index, name.c_str(), "Type", nullptr));
        const std::string_view kindName = kind ? kind.get() : "";
        folder.kind = kindName == "Fixed" ? Kind::Fixed : kindName == "Scalable" ? Kind::Scalable : Kind::Threshold;
        const int threshold = folder.kind == Kind::Threshold ? numberOf(index, name, "Threshold", 2) : 0;
        folder.smallest = folder.size - threshold;
        folder.largest = folder.size + threshold;
        if (folder.kind == Kind::Scalable) {
            folder.smallest = numberOf(index, name, "MinSize", folder.size);
            folder.largest = numberOf(index, name, "MaxSize", folder.size);
        }
        folders.push_back(std::move(folder));
    }
    return folders;
}

int IconTheme::Folder::distance(int wantedSize, int wantedScale) const {
    if (wantedScale == scale && wantedSize >= smallest && wantedSize <= largest) return 0;
    const int wanted = wantedSize * wantedScale;
    if (wanted < smallest * scale) return 1 + smallest * scale - wanted;
    if (wanted > largest * scale) return 1 + wanted - largest * scale;
    return 1;
}

fs::path IconTheme::find(const std::string& icon, int size, int scale) const {
    if (!isName(icon)) return {};
    for (const Theme& theme : chain_) {
        std::vector<std::pair<int, const Folder*>> nearest;
        nearest.reserve(theme.folders.size());
        for (const Folder& folder : theme.folders)
            nearest.emplace_back(folder.distance(size, scale), &folder);
        std::ranges::stable_sort(nearest, {}, &std::pair<int, const Folder*>::first);
        for (const auto& [distance, folder] : nearest)
            for (const fs::path& path : folder->paths)
                if (fs::path file = fileIn(path, icon); !file.empty()) return file;
    }
    for (const std::vector<fs::path>* places : {&folders_, &pixmaps_})
        for (const fs::path& place : *places)
            if (fs::path file = fileIn(place, icon); !file.empty()) return file;
    return {};
}

std::vector<std::optional<FileStamp>> IconTheme::stamps() const {
    std::vector<std::optional<FileStamp>> found;
    for (const std::vector<fs::path>* places : {&folders_, &pixmaps_})
        for (const fs::path& place : *places)
            found.push_back(stampOf(place));
    for (const Theme& theme : chain_) {
        for (const fs::path& folder : folders_) {
            // By the rules, installing an icon touches the theme's folder.
            found.push_back(stampOf(folder / theme.name));
            found.push_back(stampOf(folder / theme.name / "index.theme"));
        }
    }
    return found;
}

} // namespace applist

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

/// Notes where the program of an entry is, as GIO has found it.
void addProgram(DesktopEntry& entry, const char* name) {
    if (!name || !*name) return;
    const GLibPointer<char> found(g_find_program_in_path(name));
    entry.programs.emplace_back(found ? found.get() : name);
}

/// The same for the first word of a command line. GIO itself tells of one that is quoted only its part up to a space.
void addProgramOfCommand(DesktopEntry& entry, const char* line) {
    gchar** words = nullptr;
    if (!line || !g_shell_parse_argv(line, nullptr, &words, nullptr)) return;
    addProgram(entry, words[0]);
    g_strfreev(words);
}

bool hasPrograms(const DesktopEntry& entry) {
    return std::all_of(entry.programs.begin(), entry.programs.end(),
                       [](const fs::path& program) { return g_file_test(program.c_str(), G_FILE_TEST_IS_EXECUTABLE); });
}

/// True for a link to one of the folders on its own path, in which looking would have no end.
bool leadsBack(const fs::path& link) {
    std::error_code failed;
    for (fs::path folder = link.parent_path(); folder.has_relative_path(); folder = folder.parent_path())
        if (fs::equivalent(folder, link, failed)) return true;
    return fs::equivalent("/", link, failed);
}

DesktopEntry read(const fs::path& file, const FileStamp& stamp) {
    DesktopEntry entry{file, stamp, false, {}, false, {}, nullptr};
    const GObjectPointer<GDesktopAppInfo> info(g_desktop_app_info_new_from_filename(file.c_str()));
    if (!info) return entry;
    // Without this GIO would make up a name.
    const GLibPointer<char> name(g_desktop_app_info_get_string(info.get(), "Name"));
    if (!name || !*name) return entry;
    entry.readable = true;
    GAppInfo* application = G_APP_INFO(info.get());
    const GLibPointer<char> tried(g_desktop_app_info_get_string(info.get(), "TryExec"));
    addProgram(entry, tried.get());
    addProgramOfCommand(entry, g_app_info_get_commandline(application));
    entry.shown = g_app_info_should_show(application) && !g_desktop_app_info_get_is_hidden(info.get());
    // Each may well be there and empty, but for the last.
    for (const char* known : {g_app_info_get_display_name(application), g_app_info_get_name(application),
                              static_cast<const char*>(name.get())})
        if (entry.name.empty()) entry.name = known;
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
        look(folder, {}, entries);
    entries_ = std::move(entries);
    return changed_;
}

void DesktopEntries::look(const fs::path& folder, const std::string& prefix, Entries& entries) {
    std::error_code failed; // a folder that is missing or cannot be read has no entries
    for (fs::directory_iterator at(folder, failed), end; !failed && at != end; at.increment(failed)) {
        const fs::path& file = at->path();
        std::string identifier = prefix + file.filename().string();
        std::error_code unknown;
        if (!identifier.ends_with(kEnding)) {
            if (at->is_directory(unknown) && !(at->is_symlink(unknown) && leadsBack(file)))
                look(file, identifier + "-", entries);
            continue;
        }
        if (!g_utf8_validate(identifier.c_str(), -1, nullptr)) continue;
        identifier.resize(identifier.size() - kEnding.size());
        if (identifier.empty() || entries.contains(identifier)) continue;
        if (const auto stamp = stampOfFile(file, kLargestFile))
            entries.emplace(identifier, entryOf(identifier, file, *stamp));
    }
}

DesktopEntry DesktopEntries::entryOf(const std::string& identifier, const fs::path& file, const FileStamp& stamp) {
    const auto known = entries_.find(identifier);
    // One that could not be read is tried again: its program may have been installed after it.
    if (known != entries_.end() && known->second.readable && known->second.file == file &&
        known->second.stamp == stamp && hasPrograms(known->second))
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

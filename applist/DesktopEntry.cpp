#include "applist/DesktopEntry.h"

#include <algorithm>
#include <gio/gio.h>
#include <string_view>

namespace applist {
namespace {

namespace fs = std::filesystem;

/// The group of a desktop entry that tells of its application.
class Facts {
  public:
    explicit Facts(const fs::path& file) : file_(g_key_file_new()) {
        const bool read = g_key_file_load_from_file(file_.get(), file.c_str(), G_KEY_FILE_NONE, nullptr);
        const GLibPointer<char> first(read ? g_key_file_get_start_group(file_.get()) : nullptr);
        isEntry_ = first && first.get() == std::string_view(G_KEY_FILE_DESKTOP_GROUP);
    }

    [[nodiscard]] bool ofApplication() const { return isEntry_ && text("Type") == "Application"; }
    /// Empty if the key is missing or holds no text.
    [[nodiscard]] std::string text(const char* key) const {
        return owned(g_key_file_get_string(file_.get(), G_KEY_FILE_DESKTOP_GROUP, key, nullptr));
    }
    [[nodiscard]] std::string textOfUser(const char* key) const {
        return owned(g_key_file_get_locale_string(file_.get(), G_KEY_FILE_DESKTOP_GROUP, key, nullptr, nullptr));
    }
    [[nodiscard]] bool flag(const char* key) const {
        return g_key_file_get_boolean(file_.get(), G_KEY_FILE_DESKTOP_GROUP, key, nullptr) != FALSE;
    }
    /// Null if the key is missing.
    [[nodiscard]] GLibPointer<char*> list(const char* key) const {
        return GLibPointer<char*>(
            g_key_file_get_string_list(file_.get(), G_KEY_FILE_DESKTOP_GROUP, key, nullptr, nullptr));
    }

  private:
    static std::string owned(char* text) {
        const GLibPointer<char> freed(text);
        return text ? text : "";
    }

    GLibPointer<GKeyFile> file_;
    bool isEntry_ = false;
};

/// Notes where a program of the entry is; false if it is not installed. A path of several parts begins at the folder in
/// which the entry runs it.
bool addProgram(DesktopEntry& entry, const std::string& name, const std::string& folder) {
    const bool isPath = name.find('/') != std::string::npos;
    const fs::path asked = isPath ? fs::path(folder) / name : fs::path(name);
    const GLibPointer<char> found(g_find_program_in_path(asked.c_str()));
    if (found) entry.programs.emplace_back(found.get());
    return found != nullptr;
}

/// The same for all that the entry runs; true if it runs nothing.
bool addPrograms(DesktopEntry& entry, const Facts& facts) {
    const std::string folder = facts.text("Path");
    const std::string tried = facts.text("TryExec");
    if (!tried.empty() && !addProgram(entry, tried, folder)) return false;
    const std::string command = facts.text("Exec");
    if (command.empty()) return true;
    char** words = nullptr;
    if (!g_shell_parse_argv(command.c_str(), nullptr, &words, nullptr)) return false;
    const GLibPointer<char*> owned(words);
    return addProgram(entry, words[0], folder);
}

bool contains(const GLibPointer<char*>& list, const char* text) {
    return list && g_strv_contains(list.get(), text);
}

/// Whether the application is to be shown on the user's desktop.
bool isForThisDesktop(const Facts& facts) {
    const GLibPointer<char*> only = facts.list("OnlyShowIn");
    const GLibPointer<char*> never = facts.list("NotShowIn");
    const char* desktops = g_getenv("XDG_CURRENT_DESKTOP");
    const GLibPointer<char*> names(g_strsplit(desktops ? desktops : "", ":", 0));
    for (char** name = names.get(); *name; ++name) {
        if (contains(only, *name)) return true;
        if (contains(never, *name)) return false;
    }
    return !only;
}

GObjectPointer<GIcon> iconNamed(std::string name) {
    if (name.empty()) return nullptr;
    if (fs::path(name).is_absolute()) {
        const GObjectPointer<GFile> file(g_file_new_for_path(name.c_str()));
        return GObjectPointer<GIcon>(g_file_icon_new(file.get()));
    }
    for (const std::string_view mistaken : {".png", ".xpm", ".svg"})
        if (name.ends_with(mistaken)) {
            name.resize(name.size() - mistaken.size());
            break;
        }
    return GObjectPointer<GIcon>(g_themed_icon_new(name.c_str()));
}

} // namespace

bool DesktopEntry::hasPrograms() const {
    return std::ranges::all_of(
        programs, [](const fs::path& program) { return g_file_test(program.c_str(), G_FILE_TEST_IS_EXECUTABLE); });
}

DesktopEntry readDesktopEntry(const fs::path& file, const FileStamp& stamp) {
    DesktopEntry entry{file, stamp, false, {}, false, {}, nullptr};
    const Facts facts(file);
    if (!facts.ofApplication() || facts.text("Name").empty() || !addPrograms(entry, facts)) return entry;
    entry.readable = true;
    entry.shown = !facts.flag("NoDisplay") && !facts.flag("Hidden") && isForThisDesktop(facts);
    for (const std::string& known :
         {facts.textOfUser("X-GNOME-FullName"), facts.textOfUser("Name"), facts.text("Name")})
        if (entry.name.empty()) entry.name = known;
    entry.icon = iconNamed(facts.textOfUser("Icon"));
    return entry;
}

} // namespace applist

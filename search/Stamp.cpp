#include "search/IndexFile.h"

#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/UserFolder.h"
#include "search/Checksum.h"

#include <array>
#include <cstdlib>
#include <initializer_list>
#include <sstream>
#include <sys/stat.h>
#include <system_error>

namespace search {
namespace {

namespace fs = std::filesystem;

/// How deep folders of applications and fonts are looked into, and how many there are at most: what lies further away
/// is seen by the next index.
constexpr int kDeepest = 4;
constexpr std::size_t kMostFolders = 2000;

/// Collects the states of files.
class States {
  public:
    void addName(const fs::path& path) { text_ << path.native() << '\0'; }
    void add(const fs::path& path) {
        addName(path);
        struct stat facts {};
        if (::stat(path.c_str(), &facts) != 0) return;
        text_ << std::hex << facts.st_dev << ':' << facts.st_ino << ':' << facts.st_size;
        for (const timespec& time : {facts.st_mtim, facts.st_ctim})
            text_ << ':' << time.tv_sec << '.' << time.tv_nsec;
    }
    /// A folder, and all that is right in it.
    void addContents(const fs::path& folder) {
        add(folder);
        std::error_code failed;
        for (const auto& each : std::vector(fs::directory_iterator(folder, failed), fs::directory_iterator()))
            add(each.path());
    }
    /// A folder, and the folders in it: a folder's own state changes when a file comes or goes.
    void addFolders(const fs::path& folder) {
        add(folder);
        std::error_code failed;
        fs::recursive_directory_iterator each(folder, fs::directory_options::skip_permission_denied, failed);
        for (std::size_t count = 0; !failed && each != fs::recursive_directory_iterator(); each.increment(failed)) {
            if (each.depth() >= kDeepest) each.disable_recursion_pending();
            std::error_code unknown;
            if (!each->is_directory(unknown)) continue;
            add(each->path());
            if (++count == kMostFolders) break;
        }
    }
    /// What of it changes the texts of pages.
    void addEnvironment() {
        for (const char* name : {"LC_ALL", "LC_MESSAGES", "LC_COLLATE", "LANG", "LANGUAGE", "XDG_CURRENT_DESKTOP",
                                 "FONTCONFIG_FILE", "FONTCONFIG_PATH"}) {
            const char* value = std::getenv(name);
            text_ << name << '=' << (value ? value : "") << '\0';
        }
    }
    [[nodiscard]] std::string checksum() const { return checksumOf(text_.str()); }

  private:
    std::ostringstream text_;
};

/// The folders of the desktop's data, the user's own first.
std::vector<fs::path> dataFolders() {
    std::vector<fs::path> folders{platform::userFolder("XDG_DATA_HOME", ".local/share"),
                                  platform::devicePath("/usr/share")};
    const char* named = std::getenv("XDG_DATA_DIRS");
    std::istringstream list(named && *named ? named : "/usr/local/share:/usr/share");
    for (std::string folder; std::getline(list, folder, ':');)
        folders.emplace_back(folder);
    return folders;
}

} // namespace

fs::path indexFile(const Sources& sources) {
    const fs::path folder = platform::userFolder("XDG_CACHE_HOME", ".cache");
    if (!folder.is_absolute()) return {};
    States states;
    states.addEnvironment();
    for (const fs::path& source : {platform::devicePath("/"), sources.bundle, sources.program})
        states.addName(source);
    return folder / "lumora" / ("index-" + states.checksum());
}

std::string stampOf(const Sources& sources) {
    States states;
    states.addEnvironment();
    states.add(sources.program);
    states.addContents(sources.bundle);
    const fs::path plugins = platform::devicePath("/Library/Nevo/Lumora/Plugins");
    states.add(plugins);
    std::error_code failed;
    for (const auto& plugin : std::vector(fs::directory_iterator(plugins, failed), fs::directory_iterator()))
        states.addContents(plugin.path());
    states.addContents(platform::devicePath("/Library/MobileSubstrate/DynamicLibraries"));
    for (const fs::path& folder : dataFolders()) {
        states.addFolders(folder / "applications");
        states.addFolders(folder / "fonts");
    }
    states.addFolders(platform::userFolder("HOME", "") / ".fonts");
    states.addContents(platform::userFolder("XDG_CONFIG_HOME", ".config") / "fontconfig");
    for (const char* configuration : {"/etc/fonts", "/etc/fonts/conf.d"})
        states.add(configuration);
    return states.checksum();
}

} // namespace search

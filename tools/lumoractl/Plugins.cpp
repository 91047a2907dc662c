#include "tools/lumoractl/Plugins.h"

#include "lists/PluginDiscovery.h"
#include "platform/foundation/FolderContents.h"
#include "platform/foundation/Unicode.h"
#include "tools/lumoractl/PluginProbe.h"

#include <algorithm>
#include <vector>

using platform::List;
using platform::Result;
using platform::Value;
namespace fs = std::filesystem;

namespace lumora {
namespace {

std::string textOf(const Value& entry, const char* key) {
    const Value value = entry[key];
    return value.text() ? platform::printable(*value.text()) : std::string();
}

std::string described(const Value& plugin) {
    if (plugin["skipped"].text()) return "skipped: " + textOf(plugin, "skipped");
    const std::string page =
        plugin["settings"] == Value(true) ? "settings page" : "no settings page: " + textOf(plugin, "why");
    return textOf(plugin, "name") + ", " + textOf(plugin, "identifier") + ", for " + textOf(plugin, "appID") + ", " +
           page;
}

} // namespace

Result<List> probePlugins(const fs::path& path, std::chrono::milliseconds limit) {
    const fs::path folder = path.empty() ? pluginFolder() : path.has_filename() ? path : path.parent_path();
    if (isPluginPath(folder)) return List{probePlugin(folder, limit)};
    std::error_code failed;
    const std::vector<fs::path> entries = platform::contentsOfDirectoryAtPath(folder, failed);
    if (failed && !(path.empty() && failed == std::errc::no_such_file_or_directory))
        return Result<List>::failure("cannot read " + folder.string() + ": " + failed.message());
    List plugins;
    for (const fs::path& entry : entries)
        plugins.emplace_back(probePlugin(entry, limit));
    return plugins;
}

std::string pluginTable(const List& plugins) {
    std::size_t widest = 0;
    for (const Value& plugin : plugins)
        widest = std::max(widest, textOf(plugin, "entry").size());
    std::string table;
    for (const Value& plugin : plugins) {
        const std::string entry = textOf(plugin, "entry");
        table += entry + std::string(widest - entry.size() + 2, ' ') + described(plugin) + "\n";
        if (plugin["prints"].text())
            table += std::string(widest + 2, ' ') + "prints: " + textOf(plugin, "prints") + "\n";
    }
    return table;
}

bool allUsable(const List& plugins) {
    return std::none_of(plugins.begin(), plugins.end(), [](const Value& plugin) { return plugin["skipped"].text(); });
}

} // namespace lumora

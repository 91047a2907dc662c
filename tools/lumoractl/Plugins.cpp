#include "tools/lumoractl/Plugins.h"

#include "lists/PluginDiscovery.h"
#include "platform/foundation/FolderContents.h"
#include "platform/foundation/LoadProbe.h"
#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <iterator>
#include <vector>

using platform::Dictionary;
using platform::List;
using platform::Probed;
using platform::Result;
using platform::Value;
namespace fs = std::filesystem;

namespace lumora {
namespace {

std::string textOf(const Value& entry, const char* key) {
    const Value value = entry[key];
    return value.text() ? platform::printable(*value.text()) : std::string();
}

/// The beginning of a text, with a question mark for each byte that is not plain print.
std::string plain(const std::string& printed) {
    constexpr std::size_t mostShown = 200;
    std::string text = printed.substr(0, mostShown);
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return text;
}

/// A text of a probe or of the file system, whole if it is one.
std::string whole(const std::string& text) {
    return platform::isUtf8(text) ? text : plain(text);
}

/// What the probe has found out about an entry of the folder.
Dictionary toldOf(const fs::path& entry, const Probed* probed) {
    Dictionary told{{"entry", whole(entry.filename().string())}};
    if (!probed) {
        told.set("skipped", R"(not a bundle: its extension is not "bundle")");
    } else {
        for (const auto& [key, value] : probed->told)
            told.set(key, value);
        if (probed->verdict != Probed::Verdict::safe) told.set("skipped", whole(probed->why));
        if (const std::string text = plain(probed->printed); !text.empty()) told.set("prints", text);
    }
    return told;
}

List probeEntries(const std::vector<fs::path>& entries, std::chrono::milliseconds limit, int stop) {
    std::vector<fs::path> bundles;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(bundles), isPluginPath);
    const platform::ProbeLimits limits{limit, std::min(limit, platform::ProbeLimits().processor), stop};
    const auto probed = platform::probe(platform::ForeignCode::plugin, bundles, platform::ProbeReport::answers, limits);
    List told;
    auto next = probed.begin();
    for (const fs::path& entry : entries)
        told.emplace_back(toldOf(entry, isPluginPath(entry) ? &*next++ : nullptr));
    return told;
}

std::string described(const Value& plugin) {
    if (plugin["skipped"].text()) return "skipped: " + textOf(plugin, "skipped");
    const std::string page =
        plugin["settings"] == Value(true) ? "settings page" : "no settings page: " + textOf(plugin, "why");
    return textOf(plugin, "name") + ", " + textOf(plugin, "identifier") + ", for " + textOf(plugin, "appID") + ", " +
           page;
}

} // namespace

Result<List> probePlugins(const fs::path& path, std::chrono::milliseconds limit, int stop) {
    const fs::path folder = path.empty() ? pluginFolder() : path.has_filename() ? path : path.parent_path();
    if (isPluginPath(folder)) return probeEntries({folder}, limit, stop);
    std::error_code failed;
    const std::vector<fs::path> entries = platform::contentsOfDirectoryAtPath(folder, failed);
    if (failed && !(path.empty() && failed == std::errc::no_such_file_or_directory))
        return Result<List>::failure("cannot read " + folder.string() + ": " + failed.message());
    return probeEntries(entries, limit, stop);
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

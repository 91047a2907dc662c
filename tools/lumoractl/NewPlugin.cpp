#include "tools/lumoractl/NewPlugin.h"

#include "tools/lumoractl/Streams.h"

#include "platform/foundation/FileContents.h"
#include "platform/foundation/FolderContents.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace lumora {

using platform::Data;
using platform::Result;
namespace fs = std::filesystem;

namespace {

/// What stands in the template for those of the plug-in.
constexpr const char* kName = "MyView";
constexpr const char* kTitle = "My View";
constexpr const char* kIdentifier = "com.example.myview";

bool isLower(char c) {
    return c >= 'a' && c <= 'z';
}
bool isUpper(char c) {
    return c >= 'A' && c <= 'Z';
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

fs::path templateFolder() {
    std::error_code failed;
    const fs::path program = fs::read_symlink("/proc/self/exe", failed);
    return (program.parent_path() / LUMORA_TEMPLATE).lexically_normal();
}

/// What people read: "Next Bus" for NextBus and Next_Bus.
std::string titleOf(const std::string& name) {
    std::string title;
    for (const char c : name) {
        if (isUpper(c) && !title.empty() && (isLower(title.back()) || isDigit(title.back()))) title += ' ';
        title += c == '_' ? ' ' : c;
    }
    return title;
}

using Replacements = std::array<std::pair<std::string, std::string>, 3>;

std::string replaced(const std::string& text, const Replacements& replacements) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const auto found = std::ranges::find_if(
            replacements, [&](const auto& one) { return text.compare(at, one.first.size(), one.first) == 0; });
        if (found == replacements.end()) {
            result += text[at++];
        } else {
            result += found->second;
            at += found->first.size();
        }
    }
    return result;
}

} // namespace

std::string isPluginName(const std::string& text) {
    const bool named = !text.empty() && isUpper(text.front()) && std::ranges::all_of(text, [](char c) {
        return isLower(c) || isUpper(c) || isDigit(c) || c == '_';
    });
    return named ? "" : "a name has letters, digits and underscores, a capital first, as NextBus";
}

bool isReverseDomain(std::string_view text) {
    const auto isPart = [](std::string_view part) {
        return !part.empty() && part.front() != '-' && part.front() != '_' && std::ranges::all_of(part, [](char c) {
            return isLower(c) || isUpper(c) || isDigit(c) || c == '-' || c == '_';
        });
    };
    const std::size_t last = text.rfind('.');
    if (last == std::string_view::npos || isDigit(text.front())) return false;
    while (isPart(text.substr(0, text.find('.'))) && text.find('.') != std::string_view::npos)
        text.remove_prefix(text.find('.') + 1);
    return text.find('.') == std::string_view::npos && isPart(text);
}

Result<std::vector<std::string>> makePlugin(const NewPlugin& wanted) {
    using Made = Result<std::vector<std::string>>;
    const fs::path source = templateFolder();
    std::error_code failed;
    const std::vector<fs::path> files = platform::contentsOfDirectoryAtPath(source, failed);
    if (failed || files.empty())
        return Made::failure("the plug-in kit is not installed with lumoractl: there is no template at " +
                             source.string());
    const Replacements replacements{
        {{kIdentifier, wanted.identifier}, {kTitle, titleOf(wanted.name)}, {kName, wanted.name}}};
    if (fs::exists(wanted.folder, failed) && !fs::is_empty(wanted.folder, failed))
        return Made::failure(wanted.folder.string() + (fs::is_directory(wanted.folder, failed)
                                                           ? " is not empty: give another one with --folder"
                                                           : " is no folder: give another one with --folder"));
    fs::create_directories(wanted.folder, failed);
    if (failed) return Made::failure("cannot make " + wanted.folder.string() + ": " + failed.message());
    std::vector<std::string> names;
    for (const fs::path& file : files) {
        const std::optional<Data> bytes = platform::dataWithContentsOfFile(file);
        if (!bytes) return Made::failure("cannot read " + file.string());
        const std::string text = replaced({bytes->begin(), bytes->end()}, replacements);
        names.push_back(replaced(file.filename().string(), replacements));
        if (const auto written = writeAll((wanted.folder / names.back()).string(), text.data(), text.size()); !written)
            return Made::failure(written.error());
    }
    return names;
}

} // namespace lumora

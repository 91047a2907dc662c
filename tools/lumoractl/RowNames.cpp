#include "tools/lumoractl/RowNames.h"

#include "tools/lumoractl/PageIndex.h"
#include "tools/lumoractl/Streams.h"
#include "tweak/Defaults.h"
#include "json/Json.h"

#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <utility>

using platform::Dictionary;
using platform::Value;

namespace lumora {
namespace {

constexpr const char* kNextTitle = " \u203A ";
constexpr std::size_t kMostShown = 120; // characters of a value

std::string shownJson(const std::optional<Value>& value, std::string_view unset) {
    if (!value) return std::string(unset);
    const auto json = writeJson(*value, JsonLayout::line);
    if (!json) return std::string(kindName(value->kind()));
    std::string_view rest = json.value();
    std::string shown;
    for (std::size_t characters = 0; !rest.empty() && characters < kMostShown; ++characters)
        platform::appendCharacter(shown, platform::takeCharacter(rest));
    return rest.empty() ? shown : shown + "\u2026";
}

} // namespace

RowNames::RowNames(const std::optional<search::Index>& index) {
    if (!index) return;
    for (const search::Entry& entry : index->entries()) {
        if (entry.key.empty() || entry.kind != search::Kind::row || rows_.contains(entry.key)) continue;
        Row row{entry.title, {}};
        for (const std::size_t page : index->wayTo(entry.page))
            if (index->pages()[page].from) row.path.emplace_back(index->pages()[page].title);
        rows_.emplace(entry.key, std::move(row));
    }
}

std::string RowNames::nameOf(const std::string& key) const {
    const auto row = rows_.find(key);
    if (row == rows_.end()) return platform::printable(key);
    std::string name;
    for (const Value& title : row->second.path)
        name += std::string(title.text() ? *title.text() : std::string_view()) + kNextTitle;
    return platform::printable(name + row->second.title + " (" + key + ")");
}

std::string RowNames::lineOf(const profiles::Difference& difference, std::string_view unset) const {
    return nameOf(difference.key) + ": " + shownJson(difference.before, unset) + " \u2192 " +
           shownJson(difference.after, unset);
}

Dictionary RowNames::documentOf(const profiles::Difference& difference) const {
    Dictionary document{{"key", difference.key}};
    if (const auto row = rows_.find(difference.key); row != rows_.end()) {
        document.set("title", row->second.title);
        document.set("path", row->second.path);
    }
    if (difference.before) document.set("old", *difference.before);
    if (difference.after) document.set("new", *difference.after);
    return document;
}

profiles::Secrets secretsFor(const Dictionary& settings, const std::filesystem::path& root) {
    const auto isForeign = [](const auto& entry) { return findSetting(entry.first) == nullptr; };
    if (std::ranges::none_of(settings, isForeign)) return {};
    const auto index = currentIndex(root);
    if (!index) {
        complain(index.error());
        return profiles::Secrets::ofUnknownPages();
    }
    profiles::Keys hidden;
    profiles::Keys shown;
    for (const search::Entry& entry : index.value().entries())
        if (!entry.key.empty()) (entry.secure ? hidden : shown).insert(entry.key);
    return {std::move(hidden), std::move(shown)};
}

} // namespace lumora

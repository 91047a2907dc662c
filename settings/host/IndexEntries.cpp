#include "settings/host/IndexEntries.h"

#include "platform/foundation/Unicode.h"
#include "platform/preferences/PSSpecifier.h"
#include "search/Words.h"

#include <array>
#include <limits>
#include <string_view>
#include <utility>

namespace settings {

using search::Entry;
using search::Kind;

namespace {

/// What the tables of the bundle's own pages list.
constexpr std::array<std::pair<std::string_view, Kind>, 4> kListedOn{{{"PluginsListViewController", Kind::appView},
                                                                      {"AppsListController", Kind::application},
                                                                      {"AUAppsListController", Kind::application},
                                                                      {"FontViewController", Kind::font}}};

Kind listedOn(const std::string& pageClass) {
    for (const auto& [page, kind] : kListedOn)
        if (page == pageClass) return kind;
    return Kind::other;
}

/// What an index takes of a text of a page, in bytes.
constexpr std::size_t kMostOfText = 4096;

/// A text of a page as an index can have it: UTF-8, and not too long. Most are so already.
void tidy(std::string& text) {
    if (text.size() <= kMostOfText && platform::isUtf8(text)) return;
    std::string tidied;
    for (std::string_view rest = text; !rest.empty() && tidied.size() + 4 <= kMostOfText;)
        platform::appendCharacter(tidied, platform::takeCharacter(rest));
    text = std::move(tidied);
}

/// A value of an option as an index can have it: any other one is equal to none that is stored.
platform::Value tidied(const platform::Value& value) {
    const std::string_view* text = value.text();
    const bool isPlain = value.isNil() || value.isNumber() || value.kind() == platform::Value::Kind::boolean;
    if (isPlain || (text && text->size() <= kMostOfText && platform::isUtf8(*text))) return value;
    return std::numeric_limits<double>::quiet_NaN();
}

void tidy(Entry& entry) {
    for (std::string* text :
         {&entry.title, &entry.name, &entry.identifier, &entry.key, &entry.header, &entry.footer, &entry.placeholder})
        tidy(*text);
    for (auto* titles : {&entry.options, &entry.shortTitles})
        for (std::string& title : *titles)
            tidy(title);
    for (platform::Value& value : entry.values)
        value = tidied(value);
}

bool isGroup(const RowSnapshot& row) {
    return row.cell == platform::PSGroupCell;
}

/// Whether the row shows a setting.
bool hasKey(const RowSnapshot& row) {
    switch (row.cell) {
    case platform::PSLinkListCell:
    case platform::PSSliderCell:
    case platform::PSSwitchCell:
    case platform::PSEditTextCell:
    case platform::PSSecureEditTextCell:
        return true;
    default:
        return false;
    }
}

/// Goes along the rows of a page and keeps in mind in which group it is.
class EntriesOfRows {
  public:
    EntriesOfRows(const PageSnapshot& page, const RowSnapshot* opener) : page_(page), opener_(opener) {}

    std::vector<Entry> all() {
        const std::vector<RowSnapshot>& rows = page_.rows;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (isGroup(rows[i])) group_ = &rows[i];
            if (isGroup(rows[i]) ? !hasRows(i) : !isTitleOfSlider(i)) add(i);
        }
        return std::move(entries_);
    }

  private:
    [[nodiscard]] bool hasRows(std::size_t group) const {
        return group + 1 < page_.rows.size() && !isGroup(page_.rows[group + 1]);
    }
    [[nodiscard]] bool isTitleOfSlider(std::size_t at) const {
        const std::vector<RowSnapshot>& rows = page_.rows;
        return rows[at].cell == platform::PSStaticTextCell && at + 1 < rows.size() &&
               rows[at + 1].cell == platform::PSSliderCell && rows[at + 1].name.empty();
    }

    void add(std::size_t at) {
        const RowSnapshot& row = page_.rows[at];
        Entry entry;
        entry.row = at;
        entry.cell = row.cell;
        entry.title = row.name;
        if (group_) {
            entry.header = group_->name;
            entry.footer = group_->footerText;
        }
        if (isGroup(row)) {
            entry.kind = Kind::note;
            std::string& title = entry.header.empty() ? entry.footer : entry.header;
            if (title.empty()) return; // a gap
            entry.title = std::exchange(title, {});
        } else {
            describe(entry, row, at);
        }
        entries_.push_back(std::move(entry));
    }

    void describe(Entry& entry, const RowSnapshot& row, std::size_t at) const {
        if (row.cell == platform::PSListItemCell) entry.kind = Kind::option;
        if (at > 0 && isTitleOfSlider(at - 1)) entry.title = page_.rows[at - 1].name;
        if (entry.title.empty()) entry.title = row.placeholder;
        if (entry.title != row.name) entry.name = row.name;
        if (entry.placeholder = row.placeholder; entry.placeholder == entry.title) entry.placeholder.clear();
        entry.identifier = row.identifier;
        if (entry.kind == Kind::option && opener_)
            entry.key = opener_->identifier;
        else if (hasKey(row))
            entry.key = row.identifier;
        entry.secure = row.cell == platform::PSSecureEditTextCell;
        entry.options = row.titles;
        if (row.cell == platform::PSLinkListCell) {
            entry.shortTitles = row.shortTitles;
            entry.values = row.values;
        } else if (row.cell == platform::PSSliderCell) {
            entry.minimum = row.min;
            entry.maximum = row.max;
            entry.showsNumber = row.showValue.value_or(false);
        }
        if (entry.kind == Kind::row) entry.words = search::furtherWords(entry.key.empty() ? row.detail : entry.key);
    }

    const PageSnapshot& page_;
    const RowSnapshot* opener_;
    const RowSnapshot* group_ = nullptr; ///< in which the row is
    std::vector<Entry> entries_;
};

std::vector<Entry> entriesOf(const TableSnapshot& table, const std::string& pageClass) {
    std::vector<Entry> entries;
    const auto& sections = table.layout.sections();
    for (const auto& [path, cell] : table.cells) {
        Entry entry;
        entry.kind = listedOn(pageClass);
        entry.section = path.section;
        entry.row = static_cast<std::size_t>(path.row);
        entry.title = cell.title.empty() ? cell.identifier : cell.title;
        entry.identifier = cell.identifier;
        // The sections of lists that are put in order tell what is chosen just now, which another search would not find.
        const bool isOrder = entry.kind == Kind::appView || entry.kind == Kind::application;
        if (!isOrder && static_cast<std::size_t>(path.section) < sections.size()) {
            entry.header = sections[static_cast<std::size_t>(path.section)].header;
            entry.footer = sections[static_cast<std::size_t>(path.section)].footer;
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

} // namespace

search::PageLine pageLineOf(const PageSnapshot& page, search::Way way, const RowSnapshot* opener) {
    search::PageLine line{std::move(way), {page.className, page.title, std::nullopt, 0, {}, {}}, {}};
    if (opener) {
        line.page.rowIdentifier = opener->identifier;
        line.page.rowName = opener->name;
    }
    for (std::string* text : {&line.page.title, &line.page.rowIdentifier, &line.page.rowName})
        tidy(*text);
    line.entries = page.table ? entriesOf(*page.table, page.className) : EntriesOfRows(page, opener).all();
    for (Entry& entry : line.entries)
        tidy(entry);
    return line;
}

} // namespace settings

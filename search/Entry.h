#pragma once

#include "platform/foundation/Value.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace search {

/// What a search can find. The order is that of entries which fit a query equally well.
enum class Kind : unsigned char {
    row,         ///< of a page of rows: a switch, a field, a link, a button, a slider …
    option,      ///< of an option list, on the page that lists them
    appView,     ///< a plug-in in the list of App Views
    application, ///< in a list of applications
    font,        ///< in the list of fonts
    other,       ///< in any other table that a page hosts
    note,        ///< the text of a group without rows; its place is that of the group
};

/// "row", "option" and so on. Any thread.
[[nodiscard]] std::string_view nameOf(Kind kind);

/// A page, and how to come to it from the page before.
struct Page {
    std::string pageClass;
    std::string title;               ///< as the navigation bar shows it
    std::optional<std::size_t> from; ///< the position in the index of the page before; nothing for the first page
    // The row of the page before which opens this one. When that page has changed since, identifier or name tell more
    // than the position.
    std::size_t row = 0;
    std::string rowIdentifier;
    std::string rowName;
    friend bool operator==(const Page&, const Page&) = default;
};

/// One thing to find. All texts are UTF-8; what an entry does not have is empty.
struct Entry {
    Kind kind = Kind::row;
    std::size_t page = 0; ///< the position of its page in the index
    int section = -1;     ///< in the table that the page hosts; -1 on a page of rows
    std::size_t row = 0;  ///< the position on the page, groups counted; in a table, in the section
    int cell = -1;        ///< platform::PSCellType; -1 in a table
    std::string title;    ///< of a slider, the static text above it; of a field without a name, its placeholder
    std::string name{};   ///< of the row itself, where the title comes from elsewhere
    std::string identifier{};
    std::string key{};                  ///< of the setting that the row shows
    bool secure = false;                ///< the setting's value is not to be shown
    std::string header{};               ///< of its group or section
    std::string footer{};               ///< the same
    std::string placeholder{};          ///< of a field
    std::vector<std::string> options{}; ///< the titles of an option list
    // What the row shows of the setting's value depends on these, as platform::PSSpecifier has them.
    std::vector<std::string> shortTitles{};
    std::vector<platform::Value> values{};
    std::optional<double> minimum{};
    std::optional<double> maximum{};
    bool showsNumber = false; ///< a slider, beside itself
    /// Of a list of what is chosen elsewhere: the keys of lists, one of which has the identifier while there is the row.
    std::vector<std::string> chosenBy{};
    std::vector<std::string> words{}; ///< further words for the same thing, see furtherWords()
    friend bool operator==(const Entry&, const Entry&) = default;
};

} // namespace search

#pragma once

#include "platform/ui/NSIndexPath.h"

#include "settings/host/Snapshot.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace settings {

/// A row as it was once known. It is still that row where its position, identifier and title agree; on a page that has
/// changed, it is the row that has both texts, else the one that has the identifier, else the one that has the title.
struct KnownRow {
    std::size_t position = 0;
    std::string identifier{}; ///< empty for none
    std::string title{};      ///< what a person reads: a slider has the static text above it, a field its placeholder
    friend bool operator==(const KnownRow&, const KnownRow&) = default;
};

/// A row of a page as it is known later.
[[nodiscard]] KnownRow knownRow(const std::vector<RowSnapshot>& rows, std::size_t position);

/// A link on the way to a row, and the class of the page behind it.
struct KnownLink {
    KnownRow row;
    std::string pageClass;
    friend bool operator==(const KnownLink&, const KnownLink&) = default;
};

/// A row to go to: the links from the first page on, and then a row of the last page. No row for the page itself.
struct Landing {
    std::vector<KnownLink> way{};
    std::optional<KnownRow> row{};
    int section = -1; ///< of the page's table, in which the row's position is; -1 where that is not known
    friend bool operator==(const Landing&, const Landing&) = default;
};

/// Where a landing has led.
struct Landed {
    std::uint64_t page = 0;           ///< the page on top; 0 when none is open
    std::optional<std::size_t> row{}; ///< its row; of a page with a table, the row's place over all sections
    bool gone = false;                ///< a page of the way or the row is no longer there
    friend bool operator==(const Landed&, const Landed&) = default;
};

} // namespace settings

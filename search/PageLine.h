#pragma once

#include "platform/foundation/Result.h"
#include "search/Index.h"

#include <compare>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace search {

/// How a page is come to from the first one: for each page on the way, the position of the row that opens the next. Ways
/// are in the order of a walk that goes into each page before it goes on behind the row that opens it.
struct Way {
    std::vector<std::size_t> rows;

    /// "4.1", empty for the first page.
    [[nodiscard]] std::string text() const;
    [[nodiscard]] static std::optional<Way> of(std::string_view text);
    /// Whether the way leads to that page, or over it.
    [[nodiscard]] bool leadsOver(const Way& page) const;
    friend auto operator<=>(const Way&, const Way&) = default;
};

/// A page as a line of an index: as `lumora-settings --index` prints it, and as the file has it.
struct PageLine {
    Way way;
    Page page;                    ///< `from` and `row` follow from the way
    std::vector<Entry> entries{}; ///< their `page` does not count
};

/// Without a line's end. Fails for a text that is not UTF-8. Any thread, as all of these.
[[nodiscard]] platform::Result<std::string> writePageLine(const PageLine& line);

/// Fails for anything but a line that writePageLine() writes.
[[nodiscard]] platform::Result<PageLine> readPageLine(std::string_view line);

/// The index of all pages, which are put in the order of their ways; those whose way is cut off are left out.
[[nodiscard]] Index indexOf(std::vector<PageLine> lines);

/// The lines of an index.
[[nodiscard]] std::vector<PageLine> linesOf(const Index& index);

} // namespace search

#pragma once

#include "platform/Export.h"
#include "platform/ui/NSIndexPath.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace platform {

/// Where in the view a row comes to stand; none is wherever the least scrolling brings all of it into view.
enum UITableViewScrollPosition : int {
    UITableViewScrollPositionNone = 0,
    UITableViewScrollPositionTop = 1,
    UITableViewScrollPositionMiddle = 2,
    UITableViewScrollPositionBottom = 3
};

/// A row of a table is to be seen. Done once for each serial number.
struct TableScrollRequest {
    std::uint64_t serial = 0; ///< 0 for no request yet
    NSIndexPath row;
    UITableViewScrollPosition position = UITableViewScrollPositionNone;
    bool animated = false;
};

/// One section of a table. Heights are in points; all rows of a section are equally high.
struct TableSection {
    std::string header; ///< empty for none
    std::string footer; ///< empty for none
    double headerHeight = 0;
    double footerHeight = 0;
    double rowHeight = 0;
    int rowCount = 0;
};

/// Where the parts of a table stand, in points from its top: each section's header, rows and footer, without gaps. A
/// place counts the rows of all sections from 0.
///
///     layout.moved({0, 4}, {1, 0}).rowTop({1, 0}); // where a row would stand after a move
///
/// Questions about a section or a row are about one that there is, unless they say otherwise. A value; any thread.
class PLATFORM_EXPORT TableLayout {
  public:
    /// The rows of one section from `first` up to, but not with, `end`.
    struct Rows {
        int first = 0;
        int end = 0;
        [[nodiscard]] bool contain(int row) const { return first <= row && row < end; }
        friend bool operator==(const Rows&, const Rows&) = default;
    };

    TableLayout() = default;
    explicit TableLayout(std::vector<TableSection> sections) : sections_(std::move(sections)) {}

    [[nodiscard]] const std::vector<TableSection>& sections() const { return sections_; }
    [[nodiscard]] int sectionCount() const { return static_cast<int>(sections_.size()); }
    [[nodiscard]] const TableSection& section(int number) const { return sections_[static_cast<std::size_t>(number)]; }
    [[nodiscard]] bool hasSection(int number) const { return number >= 0 && number < sectionCount(); }
    [[nodiscard]] bool hasRow(NSIndexPath path) const;
    /// As they were drawn.
    void setHeights(int section, double header, double footer);

    [[nodiscard]] double sectionTop(int section) const;
    [[nodiscard]] double footerTop(int section) const { return rowTop({section, this->section(section).rowCount}); }
    [[nodiscard]] double rowTop(NSIndexPath path) const;
    [[nodiscard]] double height() const { return sectionTop(sectionCount()); }
    /// The rows that show anything of themselves between two heights, for each section.
    [[nodiscard]] std::vector<Rows> rowsBetween(double top, double bottom) const;
    /// Where a view that is so high, and has its top there now, has it once the row stands in that position. It may be
    /// beyond the ends.
    [[nodiscard]] double scrolledTo(NSIndexPath path, UITableViewScrollPosition position, double top,
                                    double height) const;

    [[nodiscard]] int rowTotal() const { return placeOf({sectionCount(), 0}); }
    [[nodiscard]] int placeOf(NSIndexPath path) const;
    /// No row for a place that there is not.
    [[nodiscard]] NSIndexPath pathOf(int place) const;

    /// Whether there are such a row and, once it is taken out, such a place for it.
    [[nodiscard]] bool canMove(NSIndexPath from, NSIndexPath to) const;
    [[nodiscard]] TableLayout moved(NSIndexPath from, NSIndexPath to) const;
    /// Where a row goes that is dropped with its top edge at that height: the nearest place there is.
    [[nodiscard]] NSIndexPath nearest(NSIndexPath from, double top) const;
    /// Where a row goes by one step down (1) or up (-1), into the next section too; none at the very ends.
    [[nodiscard]] std::optional<NSIndexPath> step(NSIndexPath from, int by) const;

  private:
    [[nodiscard]] TableSection& at(int section) { return sections_[static_cast<std::size_t>(section)]; }

    std::vector<TableSection> sections_;
};

} // namespace platform

#pragma once

#include "platform/Export.h"
#include "platform/ui/NSIndexPath.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace platform {

/// Where in the view a row comes to stand; None: where the least scrolling brings all of it into view.
enum UITableViewScrollPosition : int {
    UITableViewScrollPositionNone = 0,
    UITableViewScrollPositionTop = 1,
    UITableViewScrollPositionMiddle = 2,
    UITableViewScrollPositionBottom = 3
};

/// A request to scroll a row of a table into view. Each serial number is followed once.
struct TableScrollRequest {
    std::uint64_t serial = 0; ///< 0 for no request yet
    NSIndexPath row;
    UITableViewScrollPosition position = UITableViewScrollPositionNone;
    bool animated = false;
};

/// One section of a table. Heights are in points; all of its rows have one height.
struct TableSection {
    std::string header; ///< empty for none
    std::string footer; ///< empty for none
    double headerHeight = 0;
    double footerHeight = 0;
    double rowHeight = 0;
    int rowCount = 0;
    double emptyHeight = 0; ///< what stands in place of rows while there are none
};

/// Where the parts of a table stand, in points from its top: each section's header, rows and footer, without gaps. A
/// place counts the rows of all sections from 0.
///
///     layout.moved({0, 4}, {1, 0}).rowTop({1, 0}); // where a row would stand after a move
///
/// Sections and rows that are given must exist, unless an operation says otherwise. A value; any thread.
class PLATFORM_EXPORT TableLayout {
  public:
    /// The rows of one section from `first` to the one before `end`.
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
    /// The heights as drawn.
    void setHeights(int section, double header, double footer);
    void setEmptyHeight(int section, double height) { at(section).emptyHeight = height; }

    [[nodiscard]] double sectionTop(int section) const;
    [[nodiscard]] double footerTop(int section) const {
        return sectionTop(section + 1) - this->section(section).footerHeight;
    }
    [[nodiscard]] double rowTop(NSIndexPath path) const;
    [[nodiscard]] double height() const { return sectionTop(sectionCount()); }
    /// How much of it stands in place of rows.
    [[nodiscard]] double emptyHeight() const;
    /// For each section, the rows of which at least a part lies between two heights.
    [[nodiscard]] std::vector<Rows> rowsBetween(double top, double bottom) const;
    /// The top of a view, now at `top` and of this height, once the row stands in that position. May lie beyond the
    /// table's ends.
    [[nodiscard]] double scrolledTo(NSIndexPath path, UITableViewScrollPosition position, double top,
                                    double height) const;

    [[nodiscard]] int rowTotal() const { return placeOf({sectionCount(), 0}); }
    [[nodiscard]] int placeOf(NSIndexPath path) const;
    /// A path for which hasRow() is false if there is no such place.
    [[nodiscard]] NSIndexPath pathOf(int place) const;

    /// Whether the row exists and, once it is taken out, the place too.
    [[nodiscard]] bool canMove(NSIndexPath from, NSIndexPath to) const;
    [[nodiscard]] TableLayout moved(NSIndexPath from, NSIndexPath to) const;
    /// The place nearest to a row that is dropped with its top edge at that height.
    [[nodiscard]] NSIndexPath nearest(NSIndexPath from, double top) const;
    /// Where a row goes by one step down (1) or up (-1), also into the next section; nothing at the very ends.
    [[nodiscard]] std::optional<NSIndexPath> step(NSIndexPath from, int by) const;
    /// Where a row goes when it crosses into the next section (1) or the one before (-1): to the end of it that is
    /// nearer; nothing where there is no such section.
    [[nodiscard]] std::optional<NSIndexPath> across(NSIndexPath from, int by) const;

  private:
    [[nodiscard]] TableSection& at(int section) { return sections_[static_cast<std::size_t>(section)]; }

    std::vector<TableSection> sections_;
};

} // namespace platform

#pragma once

#include "platform/ui/NSIndexPath.h"

#include <optional>
#include <vector>

namespace settings {

/// Where the parts of a table stand, in points from its top: each section's header, rows and footer, without gaps. A
/// place counts the rows of all sections from 0.
///
///     layout.moved({0, 4}, {1, 0}).rowTop({1, 0}); // where a row would stand after a move
///
/// A row of a move is taken out first; its destination counts without it. A value; any thread.
class TableLayout {
  public:
    struct Section {
        double headerHeight = 0;
        double footerHeight = 0;
        double rowHeight = 0;
        int rowCount = 0;
    };
    /// The rows of one section from `first` up to, but not with, `end`.
    struct Rows {
        int first = 0;
        int end = 0;
        friend bool operator==(const Rows&, const Rows&) = default;
    };

    TableLayout() = default;
    explicit TableLayout(std::vector<Section> sections) : sections_(std::move(sections)) {}

    [[nodiscard]] const std::vector<Section>& sections() const { return sections_; }
    [[nodiscard]] double sectionTop(int section) const;
    [[nodiscard]] double footerTop(int section) const;
    [[nodiscard]] double rowTop(platform::NSIndexPath path) const;
    [[nodiscard]] double height() const { return sectionTop(static_cast<int>(sections_.size())); }
    /// The rows that show anything of themselves between two heights, for each section.
    [[nodiscard]] std::vector<Rows> rowsBetween(double top, double bottom) const;

    [[nodiscard]] int rowTotal() const;
    [[nodiscard]] bool hasRow(platform::NSIndexPath path) const;
    [[nodiscard]] int placeOf(platform::NSIndexPath path) const;
    /// No row for a place that there is not.
    [[nodiscard]] platform::NSIndexPath pathOf(int place) const;

    [[nodiscard]] TableLayout moved(platform::NSIndexPath from, platform::NSIndexPath to) const;
    /// Where a row goes that is dropped with its top edge at that height: the nearest place there is.
    [[nodiscard]] platform::NSIndexPath nearest(platform::NSIndexPath from, double top) const;
    /// Where a row goes by one step down (1) or up (-1), into the next section too; none at the very ends.
    [[nodiscard]] std::optional<platform::NSIndexPath> step(platform::NSIndexPath from, int by) const;

  private:
    [[nodiscard]] const Section& at(int section) const { return sections_[static_cast<std::size_t>(section)]; }

    std::vector<Section> sections_;
};

} // namespace settings

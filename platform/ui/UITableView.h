#pragma once

#include "platform/ui/TableLayout.h"
#include "platform/ui/UITableViewCell.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

class UITableView;

/// What is in a table; only the table asks. By default there is one section without a header and a footer, and no row
/// can be moved. Main thread.
class PLATFORM_EXPORT UITableViewDataSource {
  public:
    virtual ~UITableViewDataSource();
    virtual int numberOfSectionsInTableView(UITableView& /*tableView*/) { return 1; }
    virtual int numberOfRowsInSection(UITableView& tableView, int section) = 0;
    /// Never null.
    virtual std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(UITableView& tableView, NSIndexPath path) = 0;
    virtual std::string titleForHeaderInSection(UITableView& /*tableView*/, int /*section*/) { return {}; }
    virtual std::string titleForFooterInSection(UITableView& /*tableView*/, int /*section*/) { return {}; }
    /// What the user knows a row by, without making a cell for it; empty for nothing that can be typed.
    virtual std::string nameOfRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) { return {}; }
    virtual bool canMoveRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) { return false; }
    /// The user has dropped a row; the new place counts without the row in its old one.
    virtual void moveRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*from*/, NSIndexPath /*to*/) {}
};

/// How a table shows its rows, and what a tap does. Main thread.
class PLATFORM_EXPORT UITableViewDelegate {
  public:
    virtual ~UITableViewDelegate();
    /// In points.
    virtual double heightForRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) { return 44; }
    /// The sign at the beginning of the row while the table is being edited. It is for show: no list deletes or inserts
    /// rows, so a tap on it does nothing.
    virtual UITableViewCellEditingStyle editingStyleForRowAtIndexPath(UITableView& /*tableView*/,
                                                                      NSIndexPath /*path*/) {
        return UITableViewCellEditingStyleNone;
    }
    /// Whether the row makes room for that sign while the table is being edited, even without a sign.
    virtual bool shouldIndentWhileEditingRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) {
        return true;
    }
    /// The user has tapped a row, which is selected now.
    virtual void didSelectRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) {}
};

enum UITableViewStyle : int { UITableViewStylePlain = 0, UITableViewStyleGrouped = 1 };

/// A scrolling column of rows in sections, with cells for the rows in view only.
///
///     tableView = make<UITableView>(frame, UITableViewStyleGrouped);
///     tableView->setDataSource(this);
///     tableView->setDelegate(this);
///     addSubview(tableView);
///
/// The table does not own its data source and delegate. The window tells it which part is in view, and how high headers
/// and footers came out in the font as drawn. All rows of a section have the height that the delegate gives for the
/// first, even in an empty section. Lengths are in points. Main thread.
class PLATFORM_EXPORT UITableView final : public UIView {
  public:
    using UIView::initWithFrame;
    bool initWithFrame(const CGRect& frame, UITableViewStyle style);

    [[nodiscard]] UITableViewStyle style() const { return style_; }
    /// After taking the source away, call reloadData().
    void setDataSource(UITableViewDataSource* dataSource) { dataSource_ = dataSource; }
    void setDelegate(UITableViewDelegate* delegate) { delegate_ = delegate; }
    [[nodiscard]] bool isEditing() const { return editing_; }
    void setEditing(bool editing) { editing_ = editing; }

    /// Asks the data source anew for everything.
    void reloadData();
    /// Loads the table the first time.
    void layoutSubviews() override;

    /// A cell with that identifier that has left the view, null when there is none.
    std::shared_ptr<UITableViewCell> dequeueReusableCellWithIdentifier(const std::string& identifier);
    /// The cell of a row in view, null for every other row.
    [[nodiscard]] std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(NSIndexPath path) const;

    /// The row that was tapped last; nothing once it is deselected.
    [[nodiscard]] std::optional<NSIndexPath> indexPathForSelectedRow() const { return selected_; }
    /// The row loses its marked ground, slowly if `animated`.
    void deselectRowAtIndexPath(NSIndexPath path, bool animated);
    /// Brings a row into view as far as scrolling allows, and makes the cells around it. Does nothing for a row that
    /// does not exist.
    void scrollToRowAtIndexPath(NSIndexPath path, UITableViewScrollPosition atScrollPosition, bool animated);

    [[nodiscard]] int numberOfSections() const { return layout_.sectionCount(); }
    [[nodiscard]] int numberOfRowsInSection(int section) const;
    /// In the table's own coordinates, which begin at the top of the first header. Empty for a row that does not exist.
    [[nodiscard]] CGRect rectForRowAtIndexPath(NSIndexPath path) const;
    [[nodiscard]] CGSize contentSize() const;

    // What follows is for the window.

    /// Tells tables apart; a number comes twice in a process only where a table has taken over from another.
    [[nodiscard]] std::uint64_t id() const { return id_; }
    /// To the window, this table is the former one from now on: it has its id and heights, shows the same part, and asks
    /// for no scrolling that the former one has asked for.
    void takeOver(const UITableView& former);

    [[nodiscard]] const TableLayout& layout() const { return layout_; }
    void setSectionHeights(int section, double header, double footer);
    /// The part for which there are cells, from `top` to `bottom`; the first and last row may reach beyond it.
    void setViewport(double top, double bottom);
    /// The rows in view, in order.
    [[nodiscard]] const std::map<NSIndexPath, std::shared_ptr<UITableViewCell>>& visibleCells() const { return cells_; }
    /// True while editing, when the data source says that the row can be moved.
    [[nodiscard]] bool canMoveRow(NSIndexPath path);
    /// What the delegate says while the table is being edited; otherwise the style without a sign.
    [[nodiscard]] UITableViewCellEditingStyle editingStyleOfRow(NSIndexPath path);
    /// True while editing, when the delegate says that the row is indented.
    [[nodiscard]] bool isRowIndented(NSIndexPath path);
    /// How the last row was deselected.
    [[nodiscard]] bool deselectsAnimated() const { return deselectsAnimated_; }
    /// The last request to scroll, which the window follows by the heights as drawn.
    [[nodiscard]] const TableScrollRequest& scrollRequest() const { return scrollRequest_; }
    /// The user has tapped a row: selects it and tells the delegate, unless the table is being edited or has no such
    /// row.
    void tapRow(NSIndexPath path);
    /// The user looks for a row by the beginning of its name, in any case and without accents: scrolls to the first such
    /// row after the one given, from the end on to the beginning. Does nothing where there is none.
    void seekRow(const std::string& beginning, NSIndexPath after);
    /// The user has dropped a row: tells the data source, and moves the cells along. Does nothing for a row that cannot
    /// be moved, or a place that does not exist.
    void dropRow(NSIndexPath from, NSIndexPath to);

  private:
    void makeCells();

    std::uint64_t id_ = newId();
    UITableViewStyle style_ = UITableViewStylePlain;
    UITableViewDataSource* dataSource_ = nullptr;
    UITableViewDelegate* delegate_ = nullptr;
    bool editing_ = false;
    bool loaded_ = false;
    TableLayout layout_;
    double top_ = 0;
    double bottom_ = 0;
    std::optional<NSIndexPath> selected_;
    bool deselectsAnimated_ = false;
    TableScrollRequest scrollRequest_;
    std::map<NSIndexPath, std::shared_ptr<UITableViewCell>> cells_;
    std::multimap<std::string, std::shared_ptr<UITableViewCell>> reusable_;
};

} // namespace platform

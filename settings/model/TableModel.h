#pragma once

#include "settings/host/Event.h"
#include "settings/host/Snapshot.h"
#include "settings/model/SectionModel.h"

#include <QList>
#include <QObject>
#include <QRectF>
#include <QtQml/qqmllist.h>
#include <QtQml/qqmlregistration.h>

#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace settings {

/// A page's table, as QML draws it: its sections, with the rows in view and a few around them. Lengths are in points.
/// GUI thread.
///
/// Rows are named by their place, counted over all sections. A moved row stays where the user's hand has put it: each
/// snapshot is taken up together with the moves that have not arrived yet. While a row is lifted, nothing is moved yet:
/// the other rows make room, and the lifted row's own place travels along as an empty gap.
///
/// A filter leaves out the rows that do not fit it, and places count those that are left. The page knows nothing of that,
/// but that all of its rows are to have cells: no row can be moved meanwhile.
class TableModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Tables come from snapshots")

    Q_PROPERTY(QRectF frame READ frame NOTIFY lookChanged)
    Q_PROPERTY(QQmlListProperty<settings::SectionModel> sections READ drawnSections NOTIFY sectionsChanged)
    Q_PROPERTY(double contentHeight READ contentHeight NOTIFY placed)
    Q_PROPERTY(int total READ total NOTIFY placed)
    Q_PROPERTY(int current READ current WRITE setCurrent NOTIFY currentChanged)
    Q_PROPERTY(bool grouped READ grouped NOTIFY lookChanged)
    Q_PROPERTY(bool selectable READ selectable NOTIFY lookChanged)
    Q_PROPERTY(int selected READ selected NOTIFY selectedChanged)
    Q_PROPERTY(bool deselectsAnimated READ deselectsAnimated NOTIFY lookChanged)
    Q_PROPERTY(int lifted READ lifted NOTIFY liftedChanged)
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(bool filterable READ filterable NOTIFY placed)
    Q_PROPERTY(int wholeTotal READ wholeTotal NOTIFY placed)

  public:
    /// Where a row may be moved to, but by hand: by one row, to an end of its section, into another section.
    enum Goal : std::uint8_t { Up, Down, Top, End, SectionAbove, SectionBelow };
    Q_ENUM(Goal)

    TableModel(SendEvent send, std::shared_ptr<const TableSnapshot> table, QObject* parent);

    [[nodiscard]] QRectF frame() const;
    [[nodiscard]] double contentHeight() const { return arrangement().height(); }
    [[nodiscard]] int total() const { return layout_.rowTotal(); }
    /// The row that has the keyboard focus while the table has it, -1 when there are no rows.
    [[nodiscard]] int current() const { return total() > 0 ? layout_.placeOf(current_) : -1; }
    void setCurrent(int place);
    /// Rows stand in boxes with round corners, away from the sides.
    [[nodiscard]] bool grouped() const { return shown_.grouped; }
    /// A tap on a row means something.
    [[nodiscard]] bool selectable() const { return shown_.selectable; }
    /// The row that was tapped, -1 for none: until the page has taken the tap, and then for as long as the page wants.
    [[nodiscard]] int selected() const;
    /// The row that was selected last fades.
    [[nodiscard]] bool deselectsAnimated() const { return shown_.deselectsAnimated; }
    /// The row in the user's hand, -1 for none.
    [[nodiscard]] int lifted() const { return lifted_ ? layout_.placeOf(*lifted_) : -1; }

    /// Leaves only the rows whose names have all of these words, whatever the case and accents of their letters. Empty,
    /// or of spaces, for all rows.
    [[nodiscard]] const QString& filter() const { return filter_; }
    void setFilter(const QString& filter);
    /// It has so many rows that somebody may want to.
    [[nodiscard]] bool filterable() const;
    /// Of rows, whether they are shown or not.
    [[nodiscard]] int wholeTotal() const { return shown_.layout.rowTotal(); }

    [[nodiscard]] std::uint64_t id() const { return shown_.id; }
    /// Takes up a newer snapshot of the same table.
    void read(std::shared_ptr<const TableSnapshot> table);

    /// Makes the rows of the part that is seen, which begins at `top` from the table's top.
    Q_INVOKABLE void show(double top, double height);
    /// 0 where there is no such row.
    Q_INVOKABLE [[nodiscard]] double topOf(int place) const;
    Q_INVOKABLE [[nodiscard]] double heightOf(int place) const;
    /// The first row of which a part lies beneath that height, -1 for none.
    Q_INVOKABLE [[nodiscard]] int rowBeneath(double top) const;

    /// Takes the user's tap on a row, which becomes the current one.
    Q_INVOKABLE void tap(int place);

    /// Whether the page wants to have a row scrolled into view and that has not been done.
    Q_INVOKABLE [[nodiscard]] bool isScrollAsked() const;
    /// The new top for a view of that height whose top is `top` now. May lie beyond the ends.
    Q_INVOKABLE [[nodiscard]] double askedTop(double top, double height) const;
    Q_INVOKABLE [[nodiscard]] bool isAskedAnimated() const { return shown_.scroll.animated; }
    /// To be called when it has been done: the row becomes the current one.
    Q_INVOKABLE void scrollDone();

    /// Has the page look for the next row after that one whose name begins so, and scroll to it.
    Q_INVOKABLE void seek(const QString& beginning, int after);

    /// False for a row that is there already, or that cannot be moved.
    Q_INVOKABLE [[nodiscard]] bool canMove(int place, settings::TableModel::Goal goal) const;
    /// The header of the section to which a move leads; empty where there is none.
    Q_INVOKABLE [[nodiscard]] QString headerOf(int place, settings::TableModel::Goal goal) const;
    /// Moves a row and makes it the current one; up and down lead across sections too. Does nothing for one that cannot
    /// be moved there.
    Q_INVOKABLE void move(int place, settings::TableModel::Goal goal);
    Q_INVOKABLE void lift(int place);
    /// Takes the lifted row's top edge there.
    Q_INVOKABLE void carry(double top);
    /// Moves the lifted row to the place nearest to where it is.
    Q_INVOKABLE void drop();
    /// Leaves the lifted row where it was.
    Q_INVOKABLE void putBack();

  signals:
    void lookChanged();
    void sectionsChanged();
    void placed();
    void currentChanged();
    void liftedChanged();
    void selectedChanged();
    void scrollAsked();
    void filterChanged();

  private:
    struct Move {
        platform::NSIndexPath from;
        platform::NSIndexPath to;
        CellSnapshot cell; ///< of the row
    };

    QQmlListProperty<SectionModel> drawnSections() { return {this, &sections_}; }
    [[nodiscard]] platform::TableLayout arrangement() const {
        return lifted_ ? layout_.moved(*lifted_, target_) : layout_;
    }
    [[nodiscard]] bool isMovable(platform::NSIndexPath path) const;
    [[nodiscard]] std::optional<platform::NSIndexPath> destination(int place, Goal goal) const;
    [[nodiscard]] bool isFiltered() const { return !passing_.empty(); }
    [[nodiscard]] platform::NSIndexPath onPage(platform::NSIndexPath drawn) const;
    [[nodiscard]] std::optional<platform::NSIndexPath> asDrawn(platform::NSIndexPath onPage) const;
    void passRows();
    void take();
    void apply(const Move& move);
    QList<SectionModel*> makeSections();
    [[nodiscard]] double margin() const;
    void measure();
    void place();
    void moveRow(platform::NSIndexPath from, platform::NSIndexPath to);
    void reportSoon();
    void report();

    SendEvent send_;
    std::shared_ptr<const TableSnapshot> latest_;
    QString filter_;
    std::vector<std::vector<int>> passing_; ///< the rows of each section that fit the filter; empty without one
    TableSnapshot shown_;                   ///< the snapshot that was taken up, with every move since
    platform::TableLayout layout_;          ///< the same by heights and room as drawn, without regard to a lifted row
    QList<SectionModel*> sections_;
    double top_ = 0;
    double height_ = 0;
    platform::NSIndexPath current_;
    std::optional<platform::NSIndexPath> lifted_;
    platform::NSIndexPath target_; ///< where the lifted row would go
    double liftedTop_ = 0;
    std::deque<Move> movesUnderWay_;
    std::deque<platform::NSIndexPath> tapsUnderWay_;
    std::uint64_t lastScroll_ = 0; ///< the last request that was done

    std::vector<platform::TableLayout::Rows> inView_;
    std::vector<platform::TableLayout::Rows> reportedRows_;
    std::vector<TableViewport::Heights> reportedHeights_;
    bool reportedWhole_ = false; ///< the last report asks for all cells
    bool reportDue_ = false;
};

} // namespace settings

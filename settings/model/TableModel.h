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

/// A page's table, as QML draws it: sections, of whose rows only those in view exist, and a few around them. GUI
/// thread.
///
/// Rows are named by their place, counted over all sections. A moved row stands where the user's hand has put it from
/// then on: a snapshot is taken up together with the moves that have not arrived yet. While a row is lifted nothing is
/// moved yet: the other rows only make room, and the lifted one's own place goes along as an empty gap.
class TableModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Tables come from snapshots")

    Q_PROPERTY(QRectF frame READ frame NOTIFY frameChanged)
    Q_PROPERTY(QQmlListProperty<settings::SectionModel> sections READ drawnSections NOTIFY sectionsChanged)
    Q_PROPERTY(double contentHeight READ contentHeight NOTIFY placed)
    Q_PROPERTY(int total READ total NOTIFY placed)
    Q_PROPERTY(int current READ current WRITE setCurrent NOTIFY currentChanged)
    Q_PROPERTY(bool grouped READ grouped NOTIFY groupedChanged)
    Q_PROPERTY(bool selectable READ selectable NOTIFY selectableChanged)
    Q_PROPERTY(int selected READ selected NOTIFY selectedChanged)
    Q_PROPERTY(bool deselectsAnimated READ deselectsAnimated NOTIFY deselectsAnimatedChanged)
    Q_PROPERTY(int lifted READ lifted NOTIFY liftedChanged)

  public:
    TableModel(SendEvent send, std::shared_ptr<const TableSnapshot> table, QObject* parent);

    [[nodiscard]] QRectF frame() const;
    [[nodiscard]] double contentHeight() const { return arrangement().height(); }
    [[nodiscard]] int total() const { return layout_.rowTotal(); }
    /// The row that has the keyboard focus when the table has it, -1 when there are no rows.
    [[nodiscard]] int current() const { return total() > 0 ? layout_.placeOf(current_) : -1; }
    void setCurrent(int place);
    /// Rows stand apart from the sides, in boxes with round corners.
    [[nodiscard]] bool grouped() const { return shown_.grouped; }
    /// A tap on a row means something.
    [[nodiscard]] bool selectable() const { return shown_.selectable; }
    /// The row that was tapped, -1 for none. It stays so until the page has taken the tap, and then for as long as the
    /// page wants.
    [[nodiscard]] int selected() const;
    /// The row that was selected last is to be seen fading.
    [[nodiscard]] bool deselectsAnimated() const { return shown_.deselectsAnimated; }
    /// The row in the user's hand, -1 for none.
    [[nodiscard]] int lifted() const { return lifted_ ? layout_.placeOf(*lifted_) : -1; }

    [[nodiscard]] std::uint64_t id() const { return shown_.id; }
    /// Takes up a newer snapshot of the same table.
    void read(std::shared_ptr<const TableSnapshot> table);

    /// The part that is seen, in points from the table's top.
    Q_INVOKABLE void show(double top, double height);
    Q_INVOKABLE [[nodiscard]] double topOf(int place) const;
    Q_INVOKABLE [[nodiscard]] double heightOf(int place) const;

    /// The user has tapped a row, which becomes the current one.
    Q_INVOKABLE void tap(int place);

    /// Whether the page wants a row to be seen, and that has not been done.
    Q_INVOKABLE [[nodiscard]] bool isScrollAsked() const;
    /// Where what is seen then has its top, of what is so high and has its top there now. It may be beyond the ends.
    Q_INVOKABLE [[nodiscard]] double askedTop(double top, double height) const;
    Q_INVOKABLE [[nodiscard]] bool isAskedAnimated() const { return shown_.scroll.animated; }
    /// It has been done: the row is the current one then.
    Q_INVOKABLE void scrollDone();

    /// Moves a row by one step down (1) or up (-1), over the border of a section too, and makes it the current one.
    /// Does nothing at the very ends, and with rows that cannot be moved.
    Q_INVOKABLE void step(int place, int by);
    Q_INVOKABLE void lift(int place);
    /// The lifted row's top edge is there now.
    Q_INVOKABLE void carry(double top);
    /// The lifted row goes to the place nearest to where it is.
    Q_INVOKABLE void drop();
    Q_INVOKABLE void putBack();

  signals:
    void frameChanged();
    void sectionsChanged();
    void placed();
    void currentChanged();
    void liftedChanged();
    void groupedChanged();
    void selectableChanged();
    void selectedChanged();
    void deselectsAnimatedChanged();
    void scrollAsked();

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
    void take();
    void apply(const Move& move);
    QList<SectionModel*> makeSections();
    [[nodiscard]] double margin() const;
    void measure();
    void place();
    void move(platform::NSIndexPath from, platform::NSIndexPath to);
    void reportSoon();
    void report();

    SendEvent send_;
    std::shared_ptr<const TableSnapshot> latest_;
    TableSnapshot shown_;          ///< the latest one when it was taken up, and every move since
    platform::TableLayout layout_; ///< the same by the heights as drawn, without regard to a lifted row
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
    bool reportDue_ = false;
};

} // namespace settings

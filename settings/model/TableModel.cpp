#include "settings/model/TableModel.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace settings {

using platform::NSIndexPath;

namespace {

constexpr int kRowsAround = 4; ///< beyond each end of what is seen, so that a slow scroll shows no empty rows

const CellSnapshot* cellAt(const SectionSnapshot& section, int row) {
    const int at = row - section.firstCell;
    return at >= 0 && at < static_cast<int>(section.cells.size()) ? &section.cells[std::size_t(at)] : nullptr;
}

/// No cell is without any name.
bool hasCome(const CellSnapshot& cell) {
    return !cell.title.empty() || !cell.identifier.empty();
}

void takeOut(SectionSnapshot& section, int row) {
    if (cellAt(section, row))
        section.cells.erase(section.cells.begin() + (row - section.firstCell));
    else if (row < section.firstCell)
        --section.firstCell;
    --section.rowCount;
}

/// Cells between the row and those that are known are empty until a snapshot brings them.
void putIn(SectionSnapshot& section, int row, const CellSnapshot& cell) {
    auto& cells = section.cells;
    if (cells.empty()) section.firstCell = row;
    if (row < section.firstCell) {
        cells.insert(cells.begin(), std::size_t(section.firstCell - row), CellSnapshot{});
        section.firstCell = row;
    }
    const auto at = std::size_t(row - section.firstCell);
    if (at > cells.size()) cells.resize(at);
    cells.insert(cells.begin() + std::ptrdiff_t(at), cell);
    ++section.rowCount;
}

} // namespace

TableModel::TableModel(SendEvent send, std::shared_ptr<const TableSnapshot> table, QObject* parent)
    : QObject(parent), send_(std::move(send)), latest_(std::move(table)), height_(latest_->frame.size.height) {
    take();
}

QRectF TableModel::frame() const {
    const platform::CGRect& frame = shown_.frame;
    return {frame.origin.x, frame.origin.y, frame.size.width, frame.size.height};
}

double TableModel::heightOf(int place) const {
    const NSIndexPath path = layout_.pathOf(place);
    return layout_.hasRow(path) ? layout_.sections()[std::size_t(path.section)].rowHeight : 0;
}

double TableModel::topOf(int place) const {
    const NSIndexPath path = layout_.pathOf(place);
    return layout_.hasRow(path) ? layout_.rowTop(path) : 0;
}

void TableModel::setCurrent(int place) {
    if (place == current() || place < 0 || place >= total()) return;
    current_ = layout_.pathOf(place);
    this->place();
    emit currentChanged();
}

void TableModel::read(std::shared_ptr<const TableSnapshot> table) {
    latest_ = std::move(table);
    // While a move is under way nobody can tell whether the snapshot was made before it or after.
    if (movesUnderWay_.empty()) take();
}

void TableModel::take() {
    const bool sameFrame = shown_.frame == latest_->frame;
    const bool sameStyle = shown_.grouped == latest_->grouped;
    const bool sameUse = shown_.selectable == latest_->selectable;
    const bool sameWay = shown_.deselectsAnimated == latest_->deselectsAnimated;
    const int selectedBefore = selected();
    // A row in the user's hand is held by an item that goes away with its section.
    if (latest_->sections.size() != shown_.sections.size()) putBack();
    shown_ = *latest_;
    for (const Move& move : movesUnderWay_)
        apply(move);
    const QList<SectionModel*> former = makeSections();
    measure();
    // Nobody is told before everything has its place.
    if (!sameFrame) emit frameChanged();
    if (!sameStyle) emit groupedChanged();
    if (!sameUse) emit selectableChanged();
    if (!sameWay) emit deselectsAnimatedChanged(); // first, because it is about how the selected row changes
    if (selected() != selectedBefore) emit selectedChanged();
    if (former != sections_) {
        emit sectionsChanged();
        for (SectionModel* old : former)
            old->deleteLater();
    }
    if (isScrollAsked()) emit scrollAsked();
}

/// What the main thread will do too, unless its rows are others by now.
void TableModel::apply(const Move& move) {
    auto& sections = shown_.sections;
    if (std::cmp_greater_equal(std::max(move.from.section, move.to.section), sections.size())) return;
    SectionSnapshot& source = sections[std::size_t(move.from.section)];
    SectionSnapshot& destination = sections[std::size_t(move.to.section)];
    const int rowsThere = destination.rowCount - (&source == &destination ? 1 : 0);
    if (move.from.row >= source.rowCount || move.to.row > rowsThere) return;
    takeOut(source, move.from.row);
    putIn(destination, move.to.row, move.cell);
}

/// Gives back those that there were before, which are the same ones as long as there are as many.
QList<SectionModel*> TableModel::makeSections() {
    if (std::cmp_equal(sections_.size(), shown_.sections.size())) {
        for (int i = 0; i < sections_.size(); ++i)
            sections_[i]->read(shown_.sections[std::size_t(i)]);
        return sections_;
    }
    QList<SectionModel*> former = std::exchange(sections_, {});
    for (const SectionSnapshot& section : shown_.sections) {
        sections_.push_back(new SectionModel(section, this));
        connect(sections_.back(), &SectionModel::measured, this, &TableModel::measure);
    }
    return former;
}

/// Lays everything out by what is shown and by the heights as they were drawn.
void TableModel::measure() {
    std::vector<TableLayout::Section> sections;
    for (int i = 0; i < sections_.size(); ++i) {
        const SectionSnapshot& section = shown_.sections[std::size_t(i)];
        sections.push_back(
            {sections_[i]->headerHeight(), sections_[i]->footerHeight(), section.rowHeight, section.rowCount});
    }
    const int before = current();
    layout_ = TableLayout(std::move(sections));
    if (lifted_ && !layout_.hasRow(*lifted_)) {
        lifted_.reset();
        emit liftedChanged();
    }
    if (lifted_) target_ = layout_.nearest(*lifted_, liftedTop_);
    if (total() == 0)
        current_ = {};
    else if (!layout_.hasRow(current_))
        current_ = layout_.pathOf(std::clamp(before, 0, total() - 1));
    place();
    if (current() != before) emit currentChanged();
}

void TableModel::show(double top, double height) {
    top_ = top;
    height_ = height;
    place();
}

/// How far beyond what is seen rows are made.
double TableModel::margin() const {
    double rowHeight = 0;
    for (const auto& section : layout_.sections())
        rowHeight = std::max(rowHeight, section.rowHeight);
    return kRowsAround * rowHeight;
}

/// Gives every section and every row in view its place. The current and the lifted row exist even out of view, because
/// the focus and the hand are on them.
void TableModel::place() {
    const TableLayout arranged = arrangement();
    inView_ = layout_.rowsBetween(top_ - margin(), top_ + height_ + margin());
    for (int i = 0; i < sections_.size(); ++i) {
        const TableLayout::Rows rows = inView_[std::size_t(i)];
        std::vector<int> wanted;
        for (int row = rows.first; row < rows.end; ++row)
            wanted.push_back(row);
        for (const auto& path : {std::optional(current_), lifted_})
            if (path && path->section == i && layout_.hasRow(*path)) wanted.push_back(path->row);
        std::sort(wanted.begin(), wanted.end());
        wanted.erase(std::unique(wanted.begin(), wanted.end()), wanted.end());

        std::vector<SectionModel::Row> shown;
        for (const int row : wanted) {
            const NSIndexPath path{i, row};
            const NSIndexPath there = lifted_ ? platform::afterMove(path, *lifted_, target_) : path;
            const int last = arranged.sections()[std::size_t(there.section)].rowCount - 1;
            const CellSnapshot* cell = cellAt(shown_.sections[std::size_t(i)], row);
            const SectionModel::Row* former = cell ? nullptr : sections_[i]->find(row);
            shown.push_back({row, layout_.placeOf(path), arranged.rowTop(there), there.row == 0, there.row == last,
                             cell     ? *cell
                             : former ? former->cell
                                      : CellSnapshot{}});
        }
        sections_[i]->show(std::move(shown));
        sections_[i]->put({arranged.sectionTop(i), arranged.footerTop(i), layout_.sections()[std::size_t(i)].rowHeight,
                           layout_.sections()[std::size_t(i)].rowCount});
    }
    emit placed();
    reportSoon();
}

void TableModel::tap(int place) {
    if (!selectable() || place < 0 || place >= total()) return;
    setCurrent(place);
    tapsUnderWay_.push_back(layout_.pathOf(place));
    emit selectedChanged();
    send_(TableRowTapped{tapsUnderWay_.back()}, [self = QPointer(this)] {
        TableModel* const table = self.data();
        if (!table) return;
        table->tapsUnderWay_.pop_front();
        emit table->selectedChanged();
    });
}

int TableModel::selected() const {
    const auto path = tapsUnderWay_.empty() ? shown_.selected : std::optional(tapsUnderWay_.back());
    return path && layout_.hasRow(*path) ? layout_.placeOf(*path) : -1;
}

bool TableModel::isScrollAsked() const {
    return shown_.scroll.serial != lastScroll_ && layout_.hasRow(shown_.scroll.row);
}

double TableModel::askedTop(double top, double height) const {
    if (!isScrollAsked()) return top;
    const NSIndexPath row = shown_.scroll.row;
    const double rowTop = layout_.rowTop(row);
    const double rowHeight = layout_.sections()[std::size_t(row.section)].rowHeight;
    switch (shown_.scroll.position) {
    case ScrollPosition::top:
        return rowTop;
    case ScrollPosition::middle:
        return rowTop + (rowHeight - height) / 2;
    case ScrollPosition::bottom:
        return rowTop + rowHeight - height;
    case ScrollPosition::none:
        break;
    }
    return std::min(std::max(top, rowTop + rowHeight - height), rowTop);
}

void TableModel::scrollDone() {
    if (!isScrollAsked()) return;
    lastScroll_ = shown_.scroll.serial;
    setCurrent(layout_.placeOf(shown_.scroll.row));
}

/// Whether a row may move whose cell has not come is for the main thread to say, which is asked of every move anyway.
bool TableModel::isMovable(NSIndexPath path) const {
    if (!layout_.hasRow(path)) return false;
    const SectionModel::Row* row = sections_[path.section]->find(path.row);
    return !row || !hasCome(row->cell) || row->cell.movable;
}

void TableModel::step(int place, int by) {
    if (lifted_ || place < 0 || place >= total()) return;
    const NSIndexPath from = layout_.pathOf(place);
    const auto to = layout_.step(from, by);
    if (to && isMovable(from)) move(from, *to);
}

void TableModel::lift(int place) {
    if (lifted_ || place < 0 || place >= total() || !isMovable(layout_.pathOf(place))) return;
    setCurrent(place);
    target_ = layout_.pathOf(place);
    lifted_ = target_;
    liftedTop_ = layout_.rowTop(target_);
    emit liftedChanged();
}

void TableModel::carry(double top) {
    if (!lifted_) return;
    liftedTop_ = top;
    const NSIndexPath target = layout_.nearest(*lifted_, top);
    if (std::exchange(target_, target) != target) place();
}

void TableModel::drop() {
    if (!lifted_) return;
    const NSIndexPath from = *lifted_;
    lifted_.reset();
    emit liftedChanged(); // first, because rows that stand where they should are not to move any more
    move(from, target_);
}

void TableModel::putBack() {
    if (!lifted_) return;
    lifted_.reset();
    emit liftedChanged();
    place();
}

void TableModel::move(NSIndexPath from, NSIndexPath to) {
    const SectionModel::Row* row = sections_[from.section]->find(from.row);
    movesUnderWay_.push_back({from, to, row ? row->cell : CellSnapshot{}});
    apply(movesUnderWay_.back());
    current_ = to;
    send_(RowMoved{from, to}, [self = QPointer(this)] {
        TableModel* const table = self.data();
        if (!table) return;
        table->movesUnderWay_.pop_front();
        table->take();
    });
    measure();
    emit currentChanged();
}

/// At most once each turn of the event loop, and after any move that has been handed on in it.
void TableModel::reportSoon() {
    if (std::exchange(reportDue_, true)) return;
    QMetaObject::invokeMethod(this, &TableModel::report, Qt::QueuedConnection);
}

void TableModel::report() {
    reportDue_ = false;
    std::vector<TableViewport::Heights> heights;
    for (const auto& section : layout_.sections())
        heights.push_back({section.headerHeight, section.footerHeight});
    if (inView_ == reportedRows_ && heights == reportedHeights_) return;
    reportedRows_ = inView_;
    reportedHeights_ = heights;
    send_(TableScrolled{{top_ - margin(), top_ + height_ + margin(), std::move(heights)}}, {});
}

} // namespace settings

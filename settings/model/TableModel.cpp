#include "settings/model/TableModel.h"

#include "platform/foundation/Unicode.h"
#include "platform/ui/Move.h"

#include <QPointer>

#include <algorithm>
#include <limits>
#include <set>
#include <tuple>
#include <utility>

namespace settings {

using platform::NSIndexPath;
using platform::TableLayout;

namespace {

constexpr int kRowsAround = 4; ///< beyond each end of what is seen, so that a slow scroll shows no empty rows

constexpr int kShortTable = 15; ///< rows that need no filter

/// The words of a filter, in the form of folded names.
std::vector<std::string> wordsOf(const QString& filter) {
    std::vector<std::string> words;
    for (const QString& word : filter.simplified().split(u' ', Qt::SkipEmptyParts))
        words.push_back(platform::folded(word.toStdString()));
    return words;
}

/// Every cell has one name or the other.
bool hasCome(const CellSnapshot& cell) {
    return !cell.title.empty() || !cell.identifier.empty();
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
    return layout_.hasRow(path) ? layout_.section(path.section).rowHeight : 0;
}

double TableModel::topOf(int place) const {
    const NSIndexPath path = layout_.pathOf(place);
    return layout_.hasRow(path) ? layout_.rowTop(path) : 0;
}

int TableModel::rowBeneath(double top) const {
    for (int i = 0; i < layout_.sectionCount(); ++i)
        if (const double end = layout_.footerTop(i); end > top && layout_.section(i).rowCount > 0)
            return layout_.placeOf({i, layout_.rowsBetween(top, end)[std::size_t(i)].first});
    return -1;
}

void TableModel::setCurrent(int place) {
    if (place == current() || place < 0 || place >= total()) return;
    current_ = layout_.pathOf(place);
    this->place();
    emit currentChanged();
}

void TableModel::read(std::shared_ptr<const TableSnapshot> table) {
    latest_ = std::move(table);
    // While a move is under way, the snapshot may have been made before it or after.
    if (movesUnderWay_.empty()) take();
}

bool TableModel::filterable() const {
    return wholeTotal() > kShortTable;
}

void TableModel::setFilter(const QString& filter) {
    if (filter == filter_) return;
    putBack();
    const NSIndexPath before = onPage(current_);
    filter_ = filter;
    passRows();
    current_ = asDrawn(before).value_or(NSIndexPath{});
    measure();
    emit filterChanged();
    emit currentChanged();
    emit selectedChanged();
}

/// The rows whose cells have come and fit the filter; the others follow with their cells.
void TableModel::passRows() {
    passing_.clear();
    const std::vector<std::string> words = wordsOf(filter_);
    if (words.empty()) return;
    passing_.resize(std::size_t(shown_.layout.sectionCount()));
    for (const auto& [path, cell] : shown_.cells) {
        const std::string name = platform::folded(cell.title.empty() ? cell.identifier : cell.title);
        const auto has = [&](const std::string& word) { return name.find(word) != std::string::npos; };
        if (shown_.layout.hasRow(path) && std::ranges::all_of(words, has))
            passing_[std::size_t(path.section)].push_back(path.row);
    }
}

/// The row of the page that stands there.
NSIndexPath TableModel::onPage(NSIndexPath drawn) const {
    if (!isFiltered()) return drawn;
    const bool exists = drawn.section >= 0 && drawn.section < int(passing_.size()) && drawn.row >= 0 &&
                        drawn.row < int(passing_[std::size_t(drawn.section)].size());
    return exists ? NSIndexPath{drawn.section, passing_[std::size_t(drawn.section)][std::size_t(drawn.row)]}
                  : NSIndexPath{drawn.section, -1};
}

/// Where a row of the page stands; nothing for one that is left out.
std::optional<NSIndexPath> TableModel::asDrawn(NSIndexPath onPage) const {
    if (!isFiltered()) return onPage;
    if (onPage.section < 0 || onPage.section >= int(passing_.size())) return std::nullopt;
    const std::vector<int>& rows = passing_[std::size_t(onPage.section)];
    const auto found = std::ranges::lower_bound(rows, onPage.row);
    if (found == rows.end() || *found != onPage.row) return std::nullopt;
    return NSIndexPath{onPage.section, int(found - rows.begin())};
}

void TableModel::take() {
    const auto look = [this] {
        return std::tuple(shown_.frame, shown_.grouped, shown_.selectable, shown_.deselectsAnimated);
    };
    const auto lookBefore = look();
    const int selectedBefore = selected();
    // The item of the row in the user's hand goes away with its section.
    if (latest_->layout.sectionCount() != shown_.layout.sectionCount()) putBack();
    shown_ = *latest_;
    for (const Move& move : movesUnderWay_)
        apply(move);
    passRows();
    const QList<SectionModel*> former = makeSections();
    measure();
    // Signals wait until everything has its place.
    if (look() != lookBefore) emit lookChanged(); // first, because it says how the selected row changes
    if (selected() != selectedBefore) emit selectedChanged();
    if (former != sections_) {
        emit sectionsChanged();
        for (SectionModel* old : former)
            old->deleteLater();
    }
    if (isScrollAsked()) emit scrollAsked();
}

/// Does what the main thread will do too, unless its rows are others by now.
void TableModel::apply(const Move& move) {
    if (!shown_.layout.canMove(move.from, move.to)) return;
    shown_.layout = shown_.layout.moved(move.from, move.to);
    shown_.cells = moved(std::move(shown_.cells), move.from, move.to);
    shown_.cells.insert_or_assign(move.to, move.cell);
}

/// Makes the sections anew if their number has changed. Returns the former ones, which may still be in use.
QList<SectionModel*> TableModel::makeSections() {
    if (sections_.size() == shown_.layout.sectionCount()) {
        for (int i = 0; i < sections_.size(); ++i)
            sections_[i]->read(shown_.layout.section(i));
        return sections_;
    }
    QList<SectionModel*> former = std::exchange(sections_, {});
    for (const auto& section : shown_.layout.sections()) {
        sections_.push_back(new SectionModel(section, this));
        connect(sections_.back(), &SectionModel::measured, this, &TableModel::measure);
    }
    return former;
}

/// Lays everything out by what is shown and by the heights as drawn. A section of an edited table without rows has room
/// for one, where the window says so; the page knows nothing of that room.
void TableModel::measure() {
    const int before = current();
    std::vector<platform::TableSection> sections = shown_.layout.sections();
    for (std::size_t i = 0; i < passing_.size(); ++i)
        sections[i].rowCount = int(passing_[i].size());
    layout_ = TableLayout(std::move(sections));
    for (int i = 0; i < sections_.size(); ++i) {
        layout_.setHeights(i, sections_[i]->headerHeight(), sections_[i]->footerHeight());
        if (!selectable() && !isFiltered()) layout_.setEmptyHeight(i, layout_.section(i).rowHeight);
    }
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

/// How far rows are made beyond what is seen.
double TableModel::margin() const {
    double rowHeight = 0;
    for (const auto& section : layout_.sections())
        rowHeight = std::max(rowHeight, section.rowHeight);
    return kRowsAround * rowHeight;
}

/// Gives every section and every row in view its place. The current and the lifted row exist out of view too, because
/// the focus and the hand are on them.
void TableModel::place() {
    const TableLayout arranged = arrangement();
    inView_ = layout_.rowsBetween(top_ - margin(), top_ + height_ + margin());
    for (int i = 0; i < sections_.size(); ++i) {
        const TableLayout::Rows rows = inView_[std::size_t(i)];
        std::set<int> wanted;
        for (int row = rows.first; row < rows.end; ++row)
            wanted.insert(row);
        for (const auto& path : {std::optional(current_), lifted_})
            if (path && path->section == i && layout_.hasRow(*path)) wanted.insert(path->row);

        std::vector<SectionModel::Row> shown;
        for (const int row : wanted) {
            const NSIndexPath path{i, row};
            const NSIndexPath there = lifted_ ? moved(path, *lifted_, target_) : path;
            const int last = arranged.section(there.section).rowCount - 1;
            const auto cell = shown_.cells.find(onPage(path));
            const SectionModel::Row* former = sections_[i]->find(row);
            shown.push_back({row, layout_.placeOf(path), arranged.rowTop(there), there.row == 0, there.row == last,
                             cell != shown_.cells.end() ? cell->second
                             : former                   ? former->cell
                                                        : CellSnapshot{}});
            if (isFiltered()) shown.back().cell.movable = false;
        }
        sections_[i]->show(std::move(shown));
        sections_[i]->put({arranged.sectionTop(i), arranged.footerTop(i), layout_.section(i).rowHeight,
                           layout_.section(i).rowCount, arranged.section(i).rowCount == 0});
    }
    emit placed();
    reportSoon();
}

void TableModel::tap(int place) {
    if (!selectable() || place < 0 || place >= total()) return;
    setCurrent(place);
    tapsUnderWay_.push_back(onPage(layout_.pathOf(place)));
    emit selectedChanged();
    send_(TableRowTapped{tapsUnderWay_.back()}, [self = QPointer(this)] {
        if (!self) return;
        self->tapsUnderWay_.pop_front();
        emit self->selectedChanged();
    });
}

int TableModel::selected() const {
    const auto path = tapsUnderWay_.empty() ? shown_.selected : std::optional(tapsUnderWay_.back());
    const auto drawn = path ? asDrawn(*path) : std::nullopt;
    return drawn && layout_.hasRow(*drawn) ? layout_.placeOf(*drawn) : -1;
}

bool TableModel::isScrollAsked() const {
    const auto row = asDrawn(shown_.scroll.row);
    return shown_.scroll.serial != lastScroll_ && row && layout_.hasRow(*row);
}

double TableModel::askedTop(double top, double height) const {
    if (!isScrollAsked()) return top;
    return layout_.scrolledTo(*asDrawn(shown_.scroll.row), shown_.scroll.position, top, height);
}

void TableModel::scrollDone() {
    if (!isScrollAsked()) return;
    lastScroll_ = shown_.scroll.serial;
    setCurrent(layout_.placeOf(*asDrawn(shown_.scroll.row)));
}

/// True for a row whose cell has not come: the main thread decides, as it is asked about every move anyway.
bool TableModel::isMovable(NSIndexPath path) const {
    if (!layout_.hasRow(path) || isFiltered()) return false;
    const SectionModel::Row* row = sections_[path.section]->find(path.row);
    return !row || !hasCome(row->cell) || row->cell.movable;
}

void TableModel::seek(const QString& beginning, int after) {
    if (after >= 0 && after < total() && !isFiltered())
        send_(TableRowSought{beginning.toStdString(), layout_.pathOf(after)}, {});
}

std::optional<NSIndexPath> TableModel::destination(int place, Goal goal) const {
    const NSIndexPath from = layout_.pathOf(place);
    if (place < 0 || !layout_.hasRow(from)) return std::nullopt;
    switch (goal) {
    case Up:
        return layout_.step(from, -1);
    case Down:
        return layout_.step(from, 1);
    case Top:
        return NSIndexPath{from.section, 0};
    case End:
        return NSIndexPath{from.section, layout_.section(from.section).rowCount - 1};
    case SectionAbove:
        return layout_.across(from, -1);
    case SectionBelow:
        return layout_.across(from, 1);
    }
    return std::nullopt;
}

bool TableModel::canMove(int place, Goal goal) const {
    const auto to = destination(place, goal);
    const NSIndexPath from = layout_.pathOf(place);
    return !lifted_ && to && *to != from && isMovable(from);
}

QString TableModel::headerOf(int place, Goal goal) const {
    const auto to = destination(place, goal);
    return to ? sections_[to->section]->header() : QString();
}

void TableModel::move(int place, Goal goal) {
    if (canMove(place, goal)) moveRow(layout_.pathOf(place), *destination(place, goal));
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
    emit liftedChanged(); // first, because rows that stand where they should must not move any more
    moveRow(from, target_);
}

void TableModel::putBack() {
    if (!lifted_) return;
    lifted_.reset();
    emit liftedChanged();
    place();
}

void TableModel::moveRow(NSIndexPath from, NSIndexPath to) {
    const SectionModel::Row* row = sections_[from.section]->find(from.row);
    movesUnderWay_.push_back({from, to, row ? row->cell : CellSnapshot{}});
    apply(movesUnderWay_.back());
    current_ = to;
    send_(RowMoved{from, to}, [self = QPointer(this)] {
        if (!self) return;
        self->movesUnderWay_.pop_front();
        self->take();
    });
    measure();
    emit currentChanged();
}

/// Reports at most once in each turn of the event loop, after any move that was handed on in it.
void TableModel::reportSoon() {
    if (std::exchange(reportDue_, true)) return;
    QMetaObject::invokeMethod(this, &TableModel::report, Qt::QueuedConnection);
}

void TableModel::report() {
    reportDue_ = false;
    std::vector<TableViewport::Heights> heights;
    for (const auto& section : layout_.sections())
        heights.push_back({section.headerHeight, section.footerHeight});
    const bool sameRows = isFiltered() ? reportedWhole_ : !reportedWhole_ && inView_ == reportedRows_;
    if (sameRows && heights == reportedHeights_) return;
    reportedWhole_ = isFiltered();
    reportedRows_ = inView_;
    reportedHeights_ = heights;
    if (reportedWhole_) { // a name is known by its cell alone
        constexpr double everywhere = std::numeric_limits<double>::infinity();
        return send_(TableScrolled{{0, everywhere, std::move(heights)}}, {});
    }
    // To the page, what is beneath an empty section stands higher.
    send_(TableScrolled{{top_ - margin() - layout_.emptyHeight(), top_ + height_ + margin(), std::move(heights)}}, {});
}

} // namespace settings

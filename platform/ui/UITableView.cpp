#include "platform/ui/UITableView.h"

#include "platform/foundation/Unicode.h"
#include "platform/ui/Move.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

// The heights of a header and a footer until the window has drawn them: a line of small text with its margins.
constexpr double kHeaderHeight = 50;
constexpr double kFooterHeight = 24;

} // namespace

UITableViewDataSource::~UITableViewDataSource() = default;
UITableViewDelegate::~UITableViewDelegate() = default;

bool UITableView::initWithFrame(const CGRect& frame, UITableViewStyle style) {
    style_ = style;
    bottom_ = frame.size.height;
    return UIView::initWithFrame(frame);
}

void UITableView::layoutSubviews() {
    if (!loaded_) reloadData();
}

void UITableView::reloadData() {
    loaded_ = true;
    selected_.reset();
    std::vector<TableSection> sections;
    const int count = dataSource_ ? dataSource_->numberOfSectionsInTableView(*this) : 0;
    for (int i = 0; i < count; ++i) {
        TableSection section;
        section.header = dataSource_->titleForHeaderInSection(*this, i);
        section.footer = dataSource_->titleForFooterInSection(*this, i);
        section.rowCount = dataSource_->numberOfRowsInSection(*this, i);
        section.rowHeight = delegate_ ? delegate_->heightForRowAtIndexPath(*this, {i, 0}) : 0;
        section.headerHeight = layout_.hasSection(i) ? layout_.section(i).headerHeight : kHeaderHeight;
        section.footerHeight = layout_.hasSection(i) ? layout_.section(i).footerHeight : kFooterHeight;
        sections.push_back(std::move(section));
    }
    layout_ = TableLayout(std::move(sections));
    for (auto& [path, cell] : std::exchange(cells_, {}))
        reusable_.emplace(cell->reuseIdentifier(), cell);
    makeCells();
}

std::shared_ptr<UITableViewCell> UITableView::dequeueReusableCellWithIdentifier(const std::string& identifier) {
    auto waiting = reusable_.extract(identifier);
    return waiting ? std::move(waiting.mapped()) : nullptr;
}

std::shared_ptr<UITableViewCell> UITableView::cellForRowAtIndexPath(NSIndexPath path) const {
    const auto found = cells_.find(path);
    return found == cells_.end() ? nullptr : found->second;
}

int UITableView::numberOfRowsInSection(int section) const {
    return layout_.hasSection(section) ? layout_.section(section).rowCount : 0;
}

CGRect UITableView::rectForRowAtIndexPath(NSIndexPath path) const {
    if (!layout_.hasRow(path)) return {};
    return CGRectMake(0, layout_.rowTop(path), frame().size.width, layout_.section(path.section).rowHeight);
}

CGSize UITableView::contentSize() const {
    return {frame().size.width, layout_.height()};
}

void UITableView::setSectionHeights(int section, double header, double footer) {
    if (layout_.hasSection(section)) layout_.setHeights(section, header, footer);
}

void UITableView::setViewport(double top, double bottom) {
    top_ = top;
    bottom_ = bottom;
    makeCells();
}

void UITableView::takeOver(const UITableView& former) {
    layoutIfNeeded();
    id_ = former.id_;
    scrollRequest_ = former.scrollRequest_;
    for (int i = 0; i < former.numberOfSections(); ++i)
        setSectionHeights(i, former.layout_.section(i).headerHeight, former.layout_.section(i).footerHeight);
    setViewport(former.top_, former.bottom_);
}

void UITableView::deselectRowAtIndexPath(NSIndexPath path, bool animated) {
    if (selected_ != path) return;
    selected_.reset();
    deselectsAnimated_ = animated;
}

void UITableView::scrollToRowAtIndexPath(NSIndexPath path, UITableViewScrollPosition atScrollPosition, bool animated) {
    layoutIfNeeded();
    if (!layout_.hasRow(path)) return;
    scrollRequest_ = {scrollRequest_.serial + 1, path, atScrollPosition, animated};
    if (!std::isfinite(bottom_)) return; // all rows have cells already
    const double height = frame().size.height;
    const double margin = std::max(0.0, (bottom_ - top_ - height) / 2); // the window asks for more than is seen
    const double wanted = layout_.scrolledTo(path, atScrollPosition, top_ + margin, height);
    const double top = std::clamp(wanted, 0.0, std::max(0.0, layout_.height() - height));
    setViewport(top - margin, top + height + margin);
}

bool UITableView::canMoveRow(NSIndexPath path) {
    return editing_ && dataSource_ && layout_.hasRow(path) && dataSource_->canMoveRowAtIndexPath(*this, path);
}

UITableViewCellEditingStyle UITableView::editingStyleOfRow(NSIndexPath path) {
    if (!editing_ || !delegate_ || !layout_.hasRow(path)) return UITableViewCellEditingStyleNone;
    return delegate_->editingStyleForRowAtIndexPath(*this, path);
}

bool UITableView::isRowIndented(NSIndexPath path) {
    return editing_ && delegate_ && layout_.hasRow(path) &&
           delegate_->shouldIndentWhileEditingRowAtIndexPath(*this, path);
}

void UITableView::tapRow(NSIndexPath path) {
    if (editing_ || !delegate_ || !layout_.hasRow(path)) return;
    selected_ = path;
    delegate_->didSelectRowAtIndexPath(*this, path);
}

void UITableView::seekRow(const std::string& beginning, NSIndexPath after) {
    layoutIfNeeded();
    const int total = layout_.rowTotal();
    const std::string sought = folded(beginning);
    if (!dataSource_ || !layout_.hasRow(after) || sought.empty()) return;
    for (int step = 1; step <= total; ++step) {
        const NSIndexPath path = layout_.pathOf((layout_.placeOf(after) + step) % total);
        if (!folded(dataSource_->nameOfRowAtIndexPath(*this, path)).starts_with(sought)) continue;
        scrollToRowAtIndexPath(path, UITableViewScrollPositionNone, false);
        return;
    }
}

void UITableView::dropRow(NSIndexPath from, NSIndexPath to) {
    if (!canMoveRow(from) || !layout_.canMove(from, to)) return;
    dataSource_->moveRowAtIndexPath(*this, from, to);
    layout_ = layout_.moved(from, to);
    cells_ = moved(std::move(cells_), from, to); // what they show has not changed
    makeCells();
}

/// Cells of rows that have left the view go to the reuse queue before those of rows that have come into it are made.
void UITableView::makeCells() {
    const std::vector<TableLayout::Rows> inView = layout_.rowsBetween(top_, bottom_);
    std::erase_if(cells_, [&](auto& shown) {
        const auto& [path, cell] = shown;
        if (inView[static_cast<std::size_t>(path.section)].contain(path.row)) return false;
        reusable_.emplace(cell->reuseIdentifier(), cell);
        return true;
    });
    for (NSIndexPath path; path.section < numberOfSections(); ++path.section) {
        const auto [first, end] = inView[static_cast<std::size_t>(path.section)];
        for (path.row = first; path.row < end; ++path.row)
            if (!cells_.contains(path)) cells_.emplace(path, dataSource_->cellForRowAtIndexPath(*this, path));
    }
}

} // namespace platform

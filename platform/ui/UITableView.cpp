#include "platform/ui/UITableView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

// What a header and a footer are taken to need until somebody has drawn them: a line of small text with its margins.
constexpr double kHeaderHeight = 50;
constexpr double kFooterHeight = 24;
constexpr double kRowHeight = 44;

double heightOf(const UITableView::Section& section) {
    return section.headerHeight + section.rowCount * section.rowHeight + section.footerHeight;
}

/// Where what is seen has its top once a row stands in that position.
double scrolledTo(UITableViewScrollPosition position, double top, double height, double rowTop, double rowBottom) {
    switch (position) {
    case UITableViewScrollPositionTop:
        return rowTop;
    case UITableViewScrollPositionMiddle:
        return (rowTop + rowBottom - height) / 2;
    case UITableViewScrollPositionBottom:
        return rowBottom - height;
    case UITableViewScrollPositionNone:
        break;
    }
    return std::min(std::max(top, rowBottom - height), rowTop);
}

} // namespace

UITableViewDataSource::~UITableViewDataSource() = default;
UITableViewDelegate::~UITableViewDelegate() = default;

int UITableViewDataSource::numberOfSectionsInTableView(UITableView& /*tableView*/) {
    return 1;
}

std::string UITableViewDataSource::titleForHeaderInSection(UITableView& /*tableView*/, int /*section*/) {
    return {};
}

std::string UITableViewDataSource::titleForFooterInSection(UITableView& /*tableView*/, int /*section*/) {
    return {};
}

bool UITableViewDataSource::canMoveRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) {
    return false;
}

void UITableViewDataSource::moveRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*from*/, NSIndexPath /*to*/) {
}

double UITableViewDelegate::heightForRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) {
    return kRowHeight;
}

UITableViewCellEditingStyle UITableViewDelegate::editingStyleForRowAtIndexPath(UITableView& /*tableView*/,
                                                                               NSIndexPath /*path*/) {
    return UITableViewCellEditingStyleNone;
}

bool UITableViewDelegate::shouldIndentWhileEditingRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) {
    return true;
}

void UITableViewDelegate::didSelectRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) {
}

std::uint64_t UITableView::nextId() {
    static std::uint64_t last = 0;
    return ++last;
}

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
    const std::vector<Section> before = std::exchange(sections_, {});
    const int count = dataSource_ ? dataSource_->numberOfSectionsInTableView(*this) : 0;
    for (int i = 0; i < count; ++i) {
        Section section;
        section.header = dataSource_->titleForHeaderInSection(*this, i);
        section.footer = dataSource_->titleForFooterInSection(*this, i);
        section.rowCount = dataSource_->numberOfRowsInSection(*this, i);
        section.rowHeight = delegate_ ? delegate_->heightForRowAtIndexPath(*this, {i, 0}) : 0;
        const auto at = static_cast<std::size_t>(i);
        section.headerHeight = at < before.size() ? before[at].headerHeight : kHeaderHeight;
        section.footerHeight = at < before.size() ? before[at].footerHeight : kFooterHeight;
        sections_.push_back(std::move(section));
    }
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

bool UITableView::hasRow(NSIndexPath path) const {
    return path.row >= 0 && path.row < numberOfRowsInSection(path.section);
}

int UITableView::numberOfRowsInSection(int section) const {
    return section >= 0 && section < numberOfSections() ? sections_[static_cast<std::size_t>(section)].rowCount : 0;
}

CGRect UITableView::rectForRowAtIndexPath(NSIndexPath path) const {
    if (!hasRow(path)) return {};
    double y = 0;
    for (int i = 0; i < path.section; ++i)
        y += heightOf(sections_[static_cast<std::size_t>(i)]);
    const Section& section = sections_[static_cast<std::size_t>(path.section)];
    return CGRectMake(0, y + section.headerHeight + path.row * section.rowHeight, frame().size.width,
                      section.rowHeight);
}

CGSize UITableView::contentSize() const {
    double height = 0;
    for (const Section& section : sections_)
        height += heightOf(section);
    return {frame().size.width, height};
}

void UITableView::setSectionHeights(int section, double header, double footer) {
    if (section < 0 || section >= numberOfSections()) return;
    Section& drawn = sections_[static_cast<std::size_t>(section)];
    drawn.headerHeight = header;
    drawn.footerHeight = footer;
}

void UITableView::setViewport(double top, double bottom) {
    top_ = top;
    bottom_ = bottom;
    makeCells();
}

void UITableView::deselectRowAtIndexPath(NSIndexPath path, bool animated) {
    if (selected_ != path) return;
    selected_.reset();
    deselectsAnimated_ = animated;
}

void UITableView::scrollToRowAtIndexPath(NSIndexPath path, UITableViewScrollPosition atScrollPosition, bool animated) {
    layoutIfNeeded();
    if (!hasRow(path)) return;
    scrollRequest_ = {scrollRequest_.serial + 1, path, atScrollPosition, animated};
    if (!std::isfinite(bottom_)) return; // there are cells for all rows already
    const CGRect row = rectForRowAtIndexPath(path);
    const double height = frame().size.height;
    const double margin = std::max(0.0, (bottom_ - top_ - height) / 2); // whoever draws asks for more than is seen
    const double wanted =
        scrolledTo(atScrollPosition, top_ + margin, height, row.origin.y, row.origin.y + row.size.height);
    const double top = std::clamp(wanted, 0.0, std::max(0.0, contentSize().height - height));
    setViewport(top - margin, top + height + margin);
}

bool UITableView::canMoveRow(NSIndexPath path) {
    return editing_ && dataSource_ && hasRow(path) && dataSource_->canMoveRowAtIndexPath(*this, path);
}

UITableViewCellEditingStyle UITableView::editingStyleOfRow(NSIndexPath path) {
    if (!editing_ || !delegate_ || !hasRow(path)) return UITableViewCellEditingStyleNone;
    return delegate_->editingStyleForRowAtIndexPath(*this, path);
}

bool UITableView::isRowIndented(NSIndexPath path) {
    return editing_ && delegate_ && hasRow(path) && delegate_->shouldIndentWhileEditingRowAtIndexPath(*this, path);
}

void UITableView::tapRow(NSIndexPath path) {
    if (editing_ || !delegate_ || !hasRow(path)) return;
    selected_ = path;
    delegate_->didSelectRowAtIndexPath(*this, path);
}

void UITableView::dropRow(NSIndexPath from, NSIndexPath to) {
    if (!canMoveRow(from) || to.section < 0 || to.section >= numberOfSections()) return;
    const int rowsThere = numberOfRowsInSection(to.section) - (from.section == to.section ? 1 : 0);
    if (to.row < 0 || to.row > rowsThere) return;
    dataSource_->moveRowAtIndexPath(*this, from, to);
    --sections_[static_cast<std::size_t>(from.section)].rowCount;
    ++sections_[static_cast<std::size_t>(to.section)].rowCount;
    moveCells(from, to);
    makeCells();
}

/// Each cell goes where its row went: what it shows has not changed.
void UITableView::moveCells(NSIndexPath from, NSIndexPath to) {
    for (auto& [path, cell] : std::exchange(cells_, {}))
        cells_.emplace(afterMove(path, from, to), std::move(cell));
}

/// Cells of rows that have left the view go to the reuse queue before those of rows that have come into it are made.
void UITableView::makeCells() {
    std::vector<NSIndexPath> inView;
    double y = 0;
    for (int i = 0; i < numberOfSections(); ++i) {
        const Section& section = sections_[static_cast<std::size_t>(i)];
        const double rows = y + section.headerHeight;
        y += heightOf(section);
        if (section.rowHeight <= 0) continue;
        const auto rowAt = [&](double edge) {
            return static_cast<int>(std::clamp(edge, 0.0, static_cast<double>(section.rowCount)));
        };
        const int first = rowAt(std::floor((top_ - rows) / section.rowHeight));
        const int end = rowAt(std::ceil((bottom_ - rows) / section.rowHeight));
        for (int row = first; row < end; ++row)
            inView.push_back({i, row});
    }
    std::erase_if(cells_, [&](auto& shown) {
        if (std::binary_search(inView.begin(), inView.end(), shown.first)) return false;
        reusable_.emplace(shown.second->reuseIdentifier(), shown.second);
        return true;
    });
    for (const NSIndexPath path : inView)
        if (!cells_.contains(path)) cells_.emplace(path, dataSource_->cellForRowAtIndexPath(*this, path));
}

} // namespace platform

#include "pickers/FontView.h"

#include "link/PreferenceKeys.h"
#include "platform/foundation/Collation.h"
#include "platform/ui/UIFont.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace lumora {

using namespace platform;

namespace {

constexpr const char* kDefault = "Default"; // stands for the system's own font
constexpr const char* kCell = "theCell";
constexpr double kRowHeight = 40.0;

} // namespace

FontView::FontView() : session_(sessionOf<FontView>()) {
}

bool FontView::initWithFrame(const CGRect& frame) {
    if (!UIView::initWithFrame(frame) || !session_.start()) return false;
    setupTableViewWithFrame(frame);
    return true;
}

std::vector<std::string> FontView::allFonts() {
    std::vector<std::string> fonts;
    for (const std::string& family : UIFont::familyNames())
        std::ranges::move(UIFont::fontNamesForFamilyName(family), std::back_inserter(fonts));
    const Collation& order = Collation::ofUser();
    std::ranges::stable_sort(
        fonts, [&](const auto& a, const auto& b) { return order.localizedCaseInsensitiveCompare(a, b) < 0; });
    fonts.insert(fonts.begin(), kDefault);
    return fonts;
}

void FontView::setupArrays() {
    fonts_ = allFonts();
    stored_ = session_.value(kLSDateFontName);
    selectedIndex_ = indexOf(stored_);
}

NSIndexPath FontView::indexOf(const Value& stored) const {
    // Even if a font has the name of the first row, the stored name means that row.
    if (!stored.text() || *stored.text() == kDefault) return {0, 0};
    const auto found = std::ranges::find(fonts_, *stored.text());
    return {0, found == fonts_.end() ? 0 : static_cast<int>(found - fonts_.begin())};
}

void FontView::setupTableViewWithFrame(const CGRect& frame) {
    setupArrays();
    tableView_ = make<UITableView>(frame, UITableViewStyleGrouped);
    tableView_->setDelegate(this);
    tableView_->setDataSource(this);
    tableView_->setEditing(false);
    tableView_->setAutoresizingMask(UIViewAutoresizingFlexibleWidth | UIViewAutoresizingFlexibleHeight);
    addSubview(tableView_);
    tableView_->scrollToRowAtIndexPath(selectedIndex_, UITableViewScrollPositionMiddle, false);
}

void FontView::savePreferences() {
    const auto row = static_cast<std::size_t>(selectedIndex_.row);
    if (row >= fonts_.size()) return;
    stored_ = fonts_[row];
    session_.setValue(stored_, kLSDateFontName);
}

std::string FontView::undoKey() const {
    return kLSDateFontName;
}

Undoable::State FontView::undoState() const {
    return {stored_, {}};
}

void FontView::restore(const State& state) {
    if (state.stored.isNil()) return;
    stored_ = state.stored;
    session_.setValue(stored_, kLSDateFontName);
    selectedIndex_ = indexOf(stored_);
    tableView_->reloadData();
    tableView_->scrollToRowAtIndexPath(selectedIndex_, UITableViewScrollPositionMiddle, false);
}

int FontView::numberOfSectionsInTableView(UITableView& /*tableView*/) {
    return 1;
}

int FontView::numberOfRowsInSection(UITableView& /*tableView*/, int /*section*/) {
    return static_cast<int>(fonts_.size());
}

double FontView::heightForRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) {
    return kRowHeight;
}

std::string FontView::titleForHeaderInSection(UITableView& /*tableView*/, int /*section*/) {
    return "Fonts";
}

std::string FontView::nameOfRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath path) {
    return fonts_.at(static_cast<std::size_t>(path.row));
}

std::shared_ptr<UITableViewCell> FontView::cellForRowAtIndexPath(UITableView& tableView, NSIndexPath path) {
    auto cell = tableView.dequeueReusableCellWithIdentifier(kCell);
    if (!cell) cell = make<UITableViewCell>(UITableViewCellStyleDefault, kCell);
    const std::string& name = fonts_.at(static_cast<std::size_t>(path.row));
    UILabel& label = cell->textLabel();
    label.setText(name);
    // Kept on purpose: the row "Default" leaves the label's font alone, so a reused cell shows it in the font of an
    // earlier row.
    if (name != kDefault) label.setFont(UIFont::fontWithName(name, label.font()->pointSize()));
    cell->setAccessoryType(path == selectedIndex_ ? UITableViewCellAccessoryCheckmark : UITableViewCellAccessoryNone);
    return cell;
}

void FontView::didSelectRowAtIndexPath(UITableView& tableView, NSIndexPath path) {
    const auto marked = tableView.cellForRowAtIndexPath(selectedIndex_);
    const auto tapped = tableView.cellForRowAtIndexPath(path);
    tableView.deselectRowAtIndexPath(path, true);
    // In this order, a tap on the marked row leaves its mark there.
    if (marked) marked->setAccessoryType(UITableViewCellAccessoryNone);
    if (tapped) tapped->setAccessoryType(UITableViewCellAccessoryCheckmark);
    selectedIndex_ = path;
    savePreferences();
}

} // namespace lumora

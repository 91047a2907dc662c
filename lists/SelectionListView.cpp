#include "lists/SelectionListView.h"

#include "platform/foundation/Collation.h"
#include "platform/ui/Move.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace lumora {

using namespace platform;

namespace {

enum Section : int { kEnabled = 0, kDisabled = 1 };

constexpr const char* kCell = "theCell";
constexpr double kRowHeight = 40.0;

std::string_view titleOf(const std::string& identifier, const Titles& titles) {
    const auto found = titles.find(identifier);
    return found == titles.end() ? std::string_view() : std::string_view(found->second);
}

/// What is sorted: views, so that texts are neither looked up nor copied at each comparison.
struct Row {
    std::string_view title;
    const std::string* identifier;
};

std::vector<std::string> sorted(std::vector<Row> rows) {
    const Collation& order = Collation::ofUser();
    // Comparing is what takes the time, and a merge sort compares least.
    std::stable_sort(rows.begin(), rows.end(), [&](const Row& a, const Row& b) {
        return order.localizedCaseInsensitiveCompare(a.title, b.title) < 0;
    });
    std::vector<std::string> identifiers;
    identifiers.reserve(rows.size());
    for (const Row& row : rows)
        identifiers.push_back(*row.identifier);
    return identifiers;
}

constexpr const char* kEnabledList = "enabled"; // in a state that can be restored
constexpr const char* kDisabledList = "disabled";

std::vector<std::string> textsOf(const Value& value) {
    std::vector<std::string> texts;
    if (const List* list = value.list()) {
        for (const Value& entry : *list)
            if (entry.text()) texts.emplace_back(*entry.text());
    }
    return texts;
}

/// Whether the identifiers of both are the same, in whatever order and section.
bool holdsTheSame(const Selection& a, const Selection& b) {
    const auto all = [](const Selection& selection) {
        std::vector<std::string> identifiers = selection.enabled;
        identifiers.insert(identifiers.end(), selection.disabled.begin(), selection.disabled.end());
        std::ranges::sort(identifiers);
        return identifiers;
    };
    return all(a) == all(b);
}

} // namespace

bool SelectionListView::initWithFrame(const CGRect& frame) {
    if (!UIView::initWithFrame(frame) || !session_.start()) return false;
    prepare();
    setupTableViewWithFrame(frame);
    return true;
}

void SelectionListView::setupTableViewWithFrame(const CGRect& frame) {
    selection_ = setupArrays();
    stored_ = session_.value(savedKey_);
    tableView_ = make<UITableView>(frame, UITableViewStyleGrouped);
    tableView_->setDelegate(this);
    tableView_->setDataSource(this);
    tableView_->setEditing(true);
    tableView_->setAutoresizingMask(tableMask());
    addSubview(tableView_);
}

void SelectionListView::savePreferences() {
    const auto& list = savedList();
    stored_ = List(list.begin(), list.end());
    session_.setValue(stored_, savedKey_);
}

Undoable::State SelectionListView::undoState() const {
    const List enabledNow(enabled().begin(), enabled().end());
    const List disabledNow(disabled().begin(), disabled().end());
    return {stored_, Dictionary{{kEnabledList, enabledNow}, {kDisabledList, disabledNow}}};
}

void SelectionListView::restore(const State& state) {
    if (state.stored.isNil()) return;
    stored_ = state.stored;
    session_.setValue(stored_, savedKey_);
    Selection former{textsOf(state.shown[kEnabledList]), textsOf(state.shown[kDisabledList])};
    selection_ = holdsTheSame(former, selection_) ? std::move(former) : setupArrays();
    tableView_->reloadData();
}

std::vector<std::string> SelectionListView::saved(const char* key) const {
    return textsOf(session_.value(key));
}

std::string SelectionListView::identifierAt(NSIndexPath path) const {
    const std::vector<std::string> none;
    const auto& list = path.section == kEnabled ? enabled() : path.section == kDisabled ? disabled() : none;
    return path.row >= 0 && std::cmp_less(path.row, list.size()) ? list[static_cast<std::size_t>(path.row)] : "";
}

std::vector<std::string>& SelectionListView::listIn(int section) {
    return section == kEnabled ? selection_.enabled : selection_.disabled;
}

int SelectionListView::numberOfSectionsInTableView(UITableView& /*tableView*/) {
    return 2;
}

int SelectionListView::numberOfRowsInSection(UITableView& /*tableView*/, int section) {
    if (section == kEnabled) return static_cast<int>(enabled().size());
    return section == kDisabled ? static_cast<int>(disabled().size()) : 0;
}

std::shared_ptr<UITableViewCell> SelectionListView::cellForRowAtIndexPath(UITableView& tableView, NSIndexPath path) {
    auto cell = tableView.dequeueReusableCellWithIdentifier(kCell);
    if (!cell) cell = make<UITableViewCell>(UITableViewCellStyleDefault, kCell);
    const std::string identifier = identifierAt(path);
    cell->textLabel().setText(std::string(titleOf(identifier, titles())));
    cell->detailTextLabel().setText(identifier);
    cell->detailTextLabel().setHidden(true);
    decorate(*cell, identifier);
    return cell;
}

std::string SelectionListView::titleForHeaderInSection(UITableView& /*tableView*/, int section) {
    if (section == kEnabled) return "Enabled";
    return section == kDisabled ? "Disabled" : "";
}

std::string SelectionListView::titleForFooterInSection(UITableView& /*tableView*/, int section) {
    return section == kEnabled ? " " : footer();
}

/// What is no longer installed has no title, and is known by its identifier.
std::string SelectionListView::nameOfRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath path) {
    const std::string identifier = identifierAt(path);
    const std::string_view title = titleOf(identifier, titles());
    return title.empty() ? identifier : std::string(title);
}

bool SelectionListView::canMoveRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) {
    return true;
}

void SelectionListView::moveRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath from, NSIndexPath to) {
    moveRow(listIn(from.section), from.row, listIn(to.section), to.row);
    savePreferences();
}

double SelectionListView::heightForRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) {
    return kRowHeight;
}

UITableViewCellEditingStyle SelectionListView::editingStyleForRowAtIndexPath(UITableView& /*tableView*/,
                                                                             NSIndexPath /*path*/) {
    return UITableViewCellEditingStyleNone;
}

bool SelectionListView::shouldIndentWhileEditingRowAtIndexPath(UITableView& /*tableView*/, NSIndexPath /*path*/) {
    return false;
}

std::vector<std::string> sortedByTitle(const std::vector<std::string>& identifiers, const Titles& titles) {
    std::vector<Row> rows;
    rows.reserve(identifiers.size());
    for (const std::string& identifier : identifiers)
        rows.push_back({titleOf(identifier, titles), &identifier});
    return sorted(std::move(rows));
}

std::vector<std::string> restSortedByTitle(const Titles& titles, const std::vector<std::string>& without) {
    std::unordered_set<const std::string*> gone; // by place, so that only these few are looked up
    for (const std::string& identifier : without)
        if (const auto found = titles.find(identifier); found != titles.end()) gone.insert(&found->first);
    std::vector<Row> rows;
    rows.reserve(titles.size());
    for (const auto& [identifier, title] : titles)
        if (!gone.contains(&identifier)) rows.push_back({title, &identifier});
    return sorted(std::move(rows));
}

} // namespace lumora

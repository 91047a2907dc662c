// How a navigation keeps what the user changes, and puts it back.
#include "platform/preferences/PSSpecifier.h"
#include "platform/ui/UIView.h"
#include "settings/host/Navigation.h"
#include "settings/host/SnapshotOf.h"

#include <algorithm>
#include <utility>

namespace settings {

using namespace platform;

namespace {

/// The first view in which a change can be taken back; null for none.
Undoable* undoableIn(UIView& view) {
    if (auto* undoable = dynamic_cast<Undoable*>(&view)) return undoable;
    for (const auto& subview : view.subviews())
        if (Undoable* undoable = undoableIn(*subview)) return undoable;
    return nullptr;
}

Undoable* undoableOf(const PSListController& page) {
    return page.hostsView() && page.view() ? undoableIn(*page.view()) : nullptr;
}

/// Where a page has the row that opened another, or one like it.
std::size_t positionOf(const PSSpecifier& opener, const std::vector<RowSnapshot>& rows) {
    const auto found = std::ranges::find_if(rows, [&](const RowSnapshot& row) {
        return row.name == opener.name() && row.identifier == opener.identifier() &&
               row.detail == opener.detail().name();
    });
    return static_cast<std::size_t>(found - rows.begin());
}

} // namespace

/// The change begins with the values as they are before the event.
void Navigation::expectChange(const OpenPage& page, const Event& event) {
    const bool touch = std::holds_alternative<Touched>(event);
    if (pending_ && touch && touches_.isTouched() && pending_->change.page == page.id) return;
    noteChange();
    if (const auto* changed = std::get_if<ValueChanged>(&event)) {
        const PSSpecifierRef row = rowAt(*page.controller, changed->row);
        if (row) expectChange(page, changed->row, changed->value, changed->resets);
    } else if (const auto* tap = std::get_if<RowTapped>(&event)) {
        // An option is a value of the row that opened the list, on the page before.
        const PSSpecifierRef tapped = rowAt(*page.controller, tap->row);
        const PSSpecifierRef& opener = page.controller->specifier();
        if (!tapped || tapped->cellType() != PSListItemCell || !opener || pages_.size() < 2) return;
        if (tap->row == 0 || tap->row > opener->values().size()) return;
        const OpenPage& before = pages_[pages_.size() - 2];
        expectChange(before, positionOf(*opener, before.snapshot->rows), opener->values()[tap->row - 1]);
        // Of two choices, the second one begins with the first.
        const auto& options = page.snapshot->rows;
        for (std::size_t i = 1; pending_ && i < options.size() && i <= opener->values().size(); ++i)
            if (options[i].marked) pending_->change.before.stored = opener->values()[i - 1];
    } else if (touch || std::holds_alternative<RowMoved>(event) || std::holds_alternative<TableRowTapped>(event)) {
        if (const Undoable* view = undoableOf(*page.controller)) expectViewChange(page, *view);
    }
}

void Navigation::expectViewChange(const OpenPage& page, const Undoable& view) {
    Change change = changeOn(page);
    change.identifier = view.undoKey();
    change.title = page.snapshot->title;
    change.before = view.undoState();
    pending_ = Pending{std::move(change), page.controller};
}

/// The user goes by the value that is shown; an answer of the tweak may have brought another one since.
void Navigation::expectChange(const OpenPage& page, std::size_t position, const Value& after, bool resets) {
    if (position >= page.snapshot->rows.size()) return;
    const RowSnapshot& row = page.snapshot->rows[position];
    Change change = changeOn(page);
    change.place.row = knownRow(page.snapshot->rows, position);
    change.identifier = row.identifier;
    change.title = change.place.row->title.empty() ? row.identifier : change.place.row->title;
    change.before.stored = row.value;
    change.after.stored = after;
    change.continues = row.cell == PSSliderCell && !resets;
    pending_ = Pending{std::move(change), page.controller};
}

/// Nothing yet of what it is; the way leads to that page.
Change Navigation::changeOn(const OpenPage& page) const {
    Change change;
    change.page = page.id;
    for (std::size_t i = 1; i < pages_.size() && pages_[i - 1].id != page.id; ++i) {
        const PSSpecifierRef& opener = pages_[i].controller->specifier();
        if (!opener) {
            change.hasWay = false;
            continue;
        }
        const std::size_t position = positionOf(*opener, pages_[i - 1].snapshot->rows);
        change.place.way.push_back({{position, opener->identifier(), opener->name()}, pages_[i].pageClass->name});
    }
    return change;
}

/// Keeps what has changed since it was expected, if anything.
void Navigation::noteChange() {
    if (!pending_) return;
    Pending pending = *std::exchange(pending_, std::nullopt);
    if (!pending.change.place.row) {
        const Undoable* view = undoableOf(*pending.controller);
        if (!view) return;
        pending.change.after = view->undoState();
        noteViewState(pending.change.page, pending.change.identifier, pending.change.after);
    }
    if (pending.change.after == pending.change.before) return;
    pending.change.made = std::chrono::steady_clock::now();
    undoStack_.add(std::move(pending.change));
    ++changes_;
}

Navigation::Undone Navigation::undo() {
    return step(true);
}

Navigation::Undone Navigation::redo() {
    return step(false);
}

/// One change, or all of its group.
Navigation::Undone Navigation::step(bool back) {
    noteChange();
    Undone last;
    for (std::uint64_t group = 0;;) {
        const Change* next = back ? undoStack_.nextUndo() : undoStack_.nextRedo();
        if (!next || (last.fate != Undone::Fate::nothing && (group == 0 || next->group != group))) break;
        const Change change = *next;
        group = change.group;
        try {
            last = change.settings.empty() ? restore(change, back ? change.before : change.after)
                                           : sendAgain(change, back);
        } catch (...) { // a page that fails would do so each time, and keep the other changes out of reach
            undoStack_.stepped(back, true);
            throw;
        }
        if (last.fate == Undone::Fate::refused) {
            undoStack_.steppedInPart(back, last.sent);
            break;
        }
        undoStack_.stepped(back, last.isOver());
    }
    publish();
    return last;
}

/// No message takes a value away, but one can set the default, which comes to the same.
Change::State Navigation::orDefault(const Change::State& state, const std::string& key) const {
    const Value* byDefault = state.stored.isNil() ? defaults_.find(key) : nullptr;
    return byDefault ? Change::State{*byDefault, {}} : state;
}

Navigation::Undone Navigation::restore(const Change& change, const Change::State& former) {
    using Fate = Undone::Fate;
    const Change::State state = orDefault(former, change.identifier);
    if (state.stored.isNil()) return {Fate::neverSet, change.title};
    const Landed where = returnTo(change);
    if (where.gone) return {Fate::gone, change.title, where};
    OpenPage& page = pages_.back();
    if (showsOptions(change)) {
        page.controller->specifier()->performSetter(state.stored);
        refreshOpener();
        refresh(page);
    } else if (change.place.row) {
        const PSSpecifierRef row = where.row ? rowAt(*page.controller, *where.row) : nullptr;
        if (!row || row->identifier() != change.identifier) return {Fate::gone, change.title, where};
        row->performSetter(state.stored);
        amend(page, [&](PageSnapshot& shown) { shown.rows[*where.row] = snapshotOf(*page.controller, *where.row); });
    } else {
        Undoable* view = undoableOf(*page.controller);
        if (!view || view->undoKey() != change.identifier) return {Fate::gone, change.title, where};
        view->restore(state);
        noteViewState(page.id, change.identifier, state);
        refresh(page);
    }
    return {Fate::done, change.title, where};
}

/// Brings the page to the top on which a change was made; for an option its list, while that is open.
Landed Navigation::returnTo(const Change& change) {
    if (pages_.empty() || pages_.back().controller->presentedViewController()) return {0, {}, true};
    if (showsOptions(change)) return {pages_.back().id, {}, false};
    const bool isOpen = std::ranges::any_of(pages_, [&](const OpenPage& page) { return page.id == change.page; });
    if (!isOpen && !change.hasWay) return {pages_.back().id, {}, true};
    if (!isOpen) return land(change.place);
    while (pages_.back().id != change.page)
        if (!goBack()) return {pages_.back().id, {}, true};
    return landOn(change.place);
}

bool Navigation::showsOptions(const Change& change) const {
    if (pages_.size() < 2 || pages_[pages_.size() - 2].id != change.page || !change.place.row) return false;
    const PSSpecifierRef& opener = pages_.back().controller->specifier();
    return opener && opener->cellType() == PSLinkListCell && opener->identifier() == change.identifier;
}

void Navigation::revert(std::uint64_t id, const std::vector<std::size_t>& rows, bool withView) {
    OpenPage* page = pageOnTop(id);
    if (!page || page->controller->presentedViewController()) return;
    noteChange();
    const std::uint64_t group = ++groups_;
    const auto asOne = [&] {
        pending_->change.group = group;
        pending_->change.title = page->snapshot->title;
    };
    for (const std::size_t position : rows) {
        const PSSpecifierRef row = rowAt(*page->controller, position);
        if (!row || !page->openedRows || position >= page->openedRows->size()) continue;
        const Value former = orDefault({(*page->openedRows)[position].value, {}}, row->identifier()).stored;
        if (former.isNil() || row->identifier() != (*page->openedRows)[position].identifier) continue;
        expectChange(*page, position, former);
        if (pending_) asOne();
        row->performSetter(former);
        noteChange();
    }
    Undoable* view = withView && page->openedState ? undoableOf(*page->controller) : nullptr;
    const Change::State former = view ? orDefault(*page->openedState, view->undoKey()) : Change::State();
    if (view && !former.stored.isNil()) {
        expectViewChange(*page, *view);
        asOne();
        view->restore(former);
        noteChange();
    }
    refresh(*page);
}

/// The page below a list of options shows the chosen one: beside it, and when it is seen again.
void Navigation::refreshOpener() {
    const PSSpecifierRef& opener = pages_.back().controller->specifier();
    if (!opener || pages_.size() < 2) return;
    OpenPage& below = pages_[pages_.size() - 2];
    const std::size_t position = positionOf(*opener, below.snapshot->rows);
    if (position >= below.snapshot->rows.size()) return;
    PageSnapshot shown = *below.snapshot;
    shown.rows[position] = snapshotOf(*below.controller, position);
    addDefaults(shown);
    below.snapshot = std::make_shared<const PageSnapshot>(std::move(shown));
}

/// The first look at a page is how it was opened.
void Navigation::compareWithOpening(OpenPage& page, PageSnapshot& shown) {
    if (!page.openedRows) {
        page.openedRows = std::make_shared<const std::vector<RowSnapshot>>(shown.rows);
        if (const Undoable* view = undoableOf(*page.controller)) page.openedState = view->undoState();
    }
    shown.openedRows = page.openedRows;
    shown.viewChange = page.viewChange;
}

void Navigation::setTweakGone(bool gone) {
    if (gone == beforeGone_.has_value()) return;
    if (gone) {
        beforeGone_ = BeforeGone{undoStack_, changes_};
        return;
    }
    undoStack_ = std::move(beforeGone_->stack);
    if (changes_ != beforeGone_->changes) ++changes_; // the last one is no longer what is offered
    beforeGone_.reset();
    publish();
}

void Navigation::setDefaults(Dictionary defaults) {
    defaults_ = std::move(defaults);
    for (OpenPage& page : pages_) {
        if (!page.snapshot) continue;
        PageSnapshot shown = *page.snapshot;
        addDefaults(shown);
        page.snapshot = std::make_shared<const PageSnapshot>(std::move(shown));
    }
    publish();
}

/// Of rows whose set operation takes a value; a passcode has none to go back to.
void Navigation::addDefaults(PageSnapshot& shown) const {
    for (RowSnapshot& row : shown.rows) {
        const bool has = row.cell == PSSwitchCell || row.cell == PSSliderCell || row.cell == PSLinkListCell ||
                         row.cell == PSEditTextCell;
        const Value* byDefault = has ? defaults_.find(row.identifier) : nullptr;
        row.byDefault = byDefault ? std::optional(*byDefault) : std::nullopt;
    }
}

/// A view's state is as long as its list, so it is not asked for at each look.
void Navigation::noteViewState(std::uint64_t id, const std::string& key, const Change::State& state) {
    const auto page = std::ranges::find(pages_, id, &OpenPage::id);
    if (page == pages_.end() || !page->openedState) return;
    page->viewChange.reset();
    if (state != *page->openedState) page->viewChange = {key, page->openedState->stored, state.stored};
    PageSnapshot shown = *page->snapshot;
    shown.viewChange = page->viewChange;
    page->snapshot = std::make_shared<const PageSnapshot>(std::move(shown));
}

} // namespace settings

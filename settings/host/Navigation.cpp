#include "settings/host/Navigation.h"

#include "platform/foundation/Unicode.h"
#include "settings/host/SnapshotOf.h"

#include <algorithm>
#include <iostream>
#include <utility>

namespace settings {

using namespace platform;

namespace {

bool isField(const PSSpecifier& row) {
    return row.cellType() == PSEditTextCell || row.cellType() == PSSecureEditTextCell;
}

/// An option is chosen in its list, but given its default here.
bool isEditable(const PSSpecifier& row, const ValueChanged& change) {
    return row.cellType() == PSSliderCell || row.cellType() == PSSwitchCell || isField(row) ||
           (row.cellType() == PSLinkListCell && change.resets);
}

/// A page hears nothing behind what it presents over itself, but for two things: which part of its table is shown, and
/// what was typed in a field, which hands it on as it loses the focus to what is presented.
bool hears(PSListController& page, const Event& event) {
    if (!page.presentedViewController() || std::holds_alternative<Composed>(event)) return true;
    const auto* change = std::get_if<ValueChanged>(&event);
    const PSSpecifierRef edited = change ? rowAt(page, change->row) : nullptr;
    return edited ? isField(*edited) : std::holds_alternative<TableScrolled>(event);
}

/// Says on standard error what the page keeps silent about: why a message was not sent, and where its draft is.
void report(const MFMailComposeViewController& composer) {
    if (!composer.isOver()) return; // the sheet still says why
    const char* lost = composer.draft().empty() ? "neither sent nor kept" : "not sent";
    if (!composer.problem().empty())
        std::cerr << "lumora-settings: the message was " << lost << ": " << printable(composer.problem()) << std::endl;
    if (!composer.draft().empty())
        std::cerr << "lumora-settings: the message is kept as a draft, " << composer.draft().string() << std::endl;
}

} // namespace

Navigation::Navigation(Show show) : show_(std::move(show)) {
}

void Navigation::handle(std::uint64_t id, const Event& event) {
    OpenPage* page = pageOnTop(id);
    if (!page || !hears(*page->controller, event)) return;
    listen_(page->pageClass->name, event);
    expectChange(*page, event);
    std::visit([&](const auto& happened) { take(*page, happened); }, event);
}

/// Opens what a link names, if that class exists; chooses an option; calls a button.
void Navigation::take(OpenPage& page, const RowTapped& tap) {
    const PSSpecifierRef tapped = rowAt(*page.controller, tap.row);
    if (!tapped) return;
    switch (tapped->cellType()) {
    case PSLinkCell:
    case PSLinkListCell:
        open(tapped->detail().resolve(), tapped->name(), tapped);
        break;
    case PSListItemCell:
        tapped->performAction();
        noteChange();
        refreshOpener();
        refresh(page);
        break;
    case PSButtonCell:
        tapped->performAction();
        watchComposer(page);
        break;
    default:
        break;
    }
}

/// Kept on purpose: only the row that was edited reads its value again. A reply that landed meanwhile must not change
/// the others under the user's hand.
void Navigation::take(OpenPage& page, const ValueChanged& change) {
    const PSSpecifierRef edited = rowAt(*page.controller, change.row);
    if (!edited || !isEditable(*edited, change)) return pending_.reset();
    edited->performSetter(change.value);
    noteChange();
    amend(page, [&](PageSnapshot& shown) {
        if (change.row < shown.rows.size()) shown.rows[change.row] = snapshotOf(*page.controller, change.row);
    });
}

void Navigation::take(OpenPage& page, const RowMoved& move) {
    changeTable(page, [&](UITableView& table) { table.dropRow(move.from, move.to); });
}

void Navigation::take(OpenPage& page, const TableRowTapped& tap) {
    changeTable(page, [&](UITableView& table) { table.tapRow(tap.path); });
}

void Navigation::take(OpenPage& page, const TableRowSought& sought) {
    changeTable(page, [&](UITableView& table) { table.seekRow(sought.beginning, sought.after); });
}

/// Makes the cells for what is seen.
void Navigation::take(OpenPage& page, const TableScrolled& scroll) {
    changeTable(page, [&viewport = scroll.viewport](UITableView& table) {
        table.layoutIfNeeded();
        for (std::size_t i = 0; i < viewport.sections.size(); ++i)
            table.setSectionHeights(static_cast<int>(i), viewport.sections[i].header, viewport.sections[i].footer);
        table.setViewport(viewport.top, viewport.bottom);
    });
}

void Navigation::changeTable(OpenPage& page, const std::function<void(UITableView&)>& change) {
    UITableView* table = tableOf(*page.controller);
    if (!table) return;
    change(*table);
    noteChange();
    refresh(page);
}

void Navigation::take(OpenPage& page, const Touched& touch) {
    if (!page.controller->hostsView() || !page.controller->view()) return;
    touches_.send(page.controller->view(), touch.points);
    if (!touches_.isTouched()) noteChange(); // until the last finger has left, all is one change
    refresh(page);
}

void Navigation::take(OpenPage& page, const Composed& composed) {
    const auto presented = composerOf(*page.controller);
    if (!presented || presented->id() != composed.composer) return;
    switch (composed.action) {
    case ComposerAction::send:
        return presented->send(composed.text);
    case ComposerAction::save:
        return presented->saveDraft(composed.text);
    case ComposerAction::cancel:
        return presented->cancel();
    case ComposerAction::leave:
        return presented->leave(composed.text);
    }
}

void Navigation::setContentSize(CGSize size) {
    // A window that is still being set up has no room for a page, and what shrinks to nothing does not grow back alike.
    if (size == contentSize_ || size.width <= 0 || size.height <= 0) return;
    contentSize_ = size;
    if (pages_.empty()) return;
    OpenPage& top = pages_.back();
    fit(top);
    if (top.controller->hostsView() && top.controller->view()) refresh(top); // rows are laid out where they are drawn
}

void Navigation::appearAnew(std::uint64_t id) {
    OpenPage* page = pageOnTop(id);
    if (!page || page->controller->presentedViewController() || !page->snapshot->keepsPlaces) return;
    if (page->madeFor == contentSize_) return;
    const std::shared_ptr<UIView> former = page->controller->view();
    announceAppearance(*page);
    makeView(*page, false);
    if (const auto& view = page->controller->view(); view && view != former) takeOver(*view, *former);
    showAppeared(*page);
}

std::shared_ptr<PSListController> Navigation::topPage() const {
    return pages_.empty() ? nullptr : pages_.back().controller;
}

void Navigation::appear(bool animated) {
    OpenPage& top = pages_.back();
    announceAppearance(top);
    makeView(top, animated);
    showAppeared(top);
}

/// Making the view of a page again may block for good too.
void Navigation::announceAppearance(const OpenPage& page) {
    touches_.cancel();
    noteChange();
    if (page.snapshot) publish(Opening{page.pageClass->name, page.snapshot->title});
}

void Navigation::makeView(OpenPage& page, bool animated) {
    const std::shared_ptr<UIView> former = page.controller->view();
    if (former) former->setFrame({{0, 0}, contentSize_});
    page.controller->viewWillAppear(animated);
    if (page.controller->hostsView()) hosting_.insert(page.pageClass);
    if (page.controller->view() != former) page.madeFor = contentSize_;
    fit(page);
}

/// Has the page's view fill the page. What keeps its place stays in reach: the view is as large as it was made.
void Navigation::fit(OpenPage& page) const {
    const auto& view = page.controller->view();
    if (!view) return;
    CGSize size = contentSize_;
    if (page.controller->hostsView()) {
        const CGSize reach = reachOf(*view);
        size.width = std::max(size.width, std::min(reach.width, page.madeFor.width));
        size.height = std::max(size.height, std::min(reach.height, page.madeFor.height));
    }
    view->setFrame({{0, 0}, size});
}

void Navigation::showAppeared(OpenPage& page) {
    refresh(page);
    // Something may change by itself in a view, such as an icon that is drawn after its row.
    const auto& view = page.controller->view();
    if (page.controller->hostsView() && view) view->watchContents(whileOnTop(page.id, &Navigation::refresh));
}

/// Shows what a button has presented, and every change of it.
void Navigation::watchComposer(OpenPage& page) {
    const auto composer = composerOf(*page.controller);
    if (!composer || (page.snapshot->composer && page.snapshot->composer->id == composer->id())) return;
    composer->setObserver([watched = std::weak_ptr(composer), show = whileOnTop(page.id, &Navigation::showComposer)] {
        if (const auto changed = watched.lock()) report(*changed);
        show();
    });
    showComposer(page);
}

/// The rows keep the values that they are shown with, as when one of them is edited.
void Navigation::showComposer(OpenPage& page) {
    amend(page, [&](PageSnapshot& shown) { addComposer(shown, *page.controller); });
}

/// Shows a change of the page, unless the page is covered or gone by then.
std::function<void()> Navigation::whileOnTop(std::uint64_t id, void (Navigation::*show)(OpenPage&)) {
    return [watched = std::weak_ptr(self_), id, show] {
        const auto self = watched.lock();
        if (OpenPage* page = self ? (*self)->pageOnTop(id) : nullptr) ((*self)->*show)(*page);
    };
}

/// Shows the page as it is now.
void Navigation::refresh(OpenPage& page) {
    look(page);
    publish();
}

void Navigation::look(OpenPage& page) const {
    PageSnapshot shown = snapshotOf(*page.controller, page.pageClass->name, page.id);
    addDefaults(shown);
    compareWithOpening(page, shown);
    page.snapshot = std::make_shared<const PageSnapshot>(std::move(shown));
}

/// Shows the page as it was shown last, with one change.
void Navigation::amend(OpenPage& page, const std::function<void(PageSnapshot&)>& change) {
    PageSnapshot shown = *page.snapshot;
    change(shown);
    addDefaults(shown);
    page.snapshot = std::make_shared<const PageSnapshot>(std::move(shown));
    publish();
}

/// Leaves out a page that is still being made.
void Navigation::publish(std::optional<Opening> opening) {
    const auto titleOf = [](const Change* change) { return change ? std::optional(change->title) : std::nullopt; };
    StackSnapshot stack{
        {}, std::move(opening), {titleOf(undoStack_.nextUndo()), titleOf(undoStack_.nextRedo()), changes_}};
    for (const OpenPage& page : pages_)
        if (page.snapshot) stack.pages.push_back(page.snapshot);
    show_(std::move(stack));
}

Navigation::OpenPage* Navigation::pageOnTop(std::uint64_t id) {
    return !pages_.empty() && pages_.back().id == id ? &pages_.back() : nullptr;
}

} // namespace settings

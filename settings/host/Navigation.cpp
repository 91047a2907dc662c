#include "settings/host/Navigation.h"

#include "platform/foundation/Unicode.h"
#include "platform/preferences/PSListItemsController.h"
#include "settings/host/ComposerSnapshotOf.h"
#include "settings/host/SnapshotOf.h"

#include <exception>
#include <iostream>
#include <utility>

namespace settings {

using namespace platform;

namespace {

std::uint64_t nextPageId() {
    static std::uint64_t last = 0;
    return ++last;
}

/// The row at a position, null when the page has no such row.
PSSpecifierRef rowAt(PSListController& page, std::size_t row) {
    const PSSpecifierList rows = page.specifiers();
    return rows && row < rows->size() ? (*rows)[row] : nullptr;
}

void addComposer(PageSnapshot& shown, const PSListController& page) {
    shown.composer = composerSnapshotOf(page);
    shown.presentsAnimated = page.presentsAnimated();
}

bool isEditable(const PSSpecifier& row) {
    switch (row.cellType()) {
    case PSSliderCell:
    case PSSwitchCell:
    case PSEditTextCell:
    case PSSecureEditTextCell:
        return true;
    default:
        return false;
    }
}

/// Runs code of a page, which may be a stranger's. Fails when it throws.
Result<void> attempt(const std::function<void()>& work) {
    try {
        work();
        return {};
    } catch (const std::exception& thrown) {
        return Result<void>::failure(*thrown.what() ? thrown.what() : "it throws an exception without a word");
    } catch (...) {
        return Result<void>::failure("it throws what is no exception");
    }
}

/// Both texts may be a stranger's.
void complain(const std::string& className, const char* ofWhat, const std::string& fault) {
    std::cerr << "lumora-settings: the page " << printable(className) << ofWhat << printable(fault) << std::endl;
}

bool isField(const PSSpecifier& row) {
    return row.cellType() == PSEditTextCell || row.cellType() == PSSecureEditTextCell;
}

} // namespace

Navigation::Navigation(Show show) : show_(std::move(show)) {
}

bool Navigation::open(Class pageClass, const std::string& title) {
    return open(pageClass, title, nullptr);
}

bool Navigation::open(Class pageClass, const std::string& title, const PSSpecifierRef& row) {
    if (!pageClass) return false;
    publishOpening(pageClass->name, title);
    const std::size_t depth = pages_.size();
    const Result<void> opened = attempt([&] {
        auto page = std::dynamic_pointer_cast<PSListController>(pageClass->make());
        if (!page) return;
        if (!title.empty()) page->setTitle(title);
        page->setSpecifier(row);
        pages_.push_back({nextPageId(), std::move(page), pageClass->name, nullptr});
        appear(pages_.size() > 1);
    });
    if (!opened) {
        complain(pageClass->name, " does not open: ", opened.error());
        pages_.erase(pages_.begin() + std::ptrdiff_t(depth), pages_.end());
    }
    if (pages_.size() > depth) return true;
    publish();
    return false;
}

void Navigation::run(const std::function<void(Navigation&)>& work) {
    Result<void> done = attempt([&] { work(*this); });
    while (!done && !pages_.empty()) {
        complain(pages_.back().className, " fails: ", done.error());
        if (pages_.size() == 1) return publish(); // not as if it were still being opened
        pages_.pop_back();
        done = attempt([this] { appear(true); });
    }
}

void Navigation::rowTapped(std::uint64_t page, std::size_t row) {
    OpenPage* top = openToEvents(page);
    const PSSpecifierRef tapped = top ? rowAt(*top->controller, row) : nullptr;
    if (!tapped) return;
    switch (tapped->cellType()) {
    case PSLinkCell:
    case PSLinkListCell:
        open(tapped->detail().resolve(), tapped->name(), tapped);
        break;
    case PSListItemCell:
        tapped->performAction();
        readAnew(*top);
        publish();
        break;
    case PSButtonCell:
        tapped->performAction();
        watchComposer(*top);
        break;
    default:
        break;
    }
}

void Navigation::valueChanged(std::uint64_t page, std::size_t row, const Value& value) {
    OpenPage* top = pageOnTop(page);
    const PSSpecifierRef edited = top ? rowAt(*top->controller, row) : nullptr;
    if (!edited || !isEditable(*edited)) return;
    // A field hands on what was typed when something is presented, because it loses the focus to that.
    if (!isField(*edited) && !openToEvents(page)) return;
    edited->performSetter(value);
    // Kept on purpose: only the row that was edited reads its value anew. A reply that landed meanwhile must not
    // change the others under the user's hand.
    PageSnapshot shown = *top->snapshot;
    if (row < shown.rows.size()) shown.rows[row] = snapshotOf(*top->controller, row);
    top->snapshot = std::make_shared<const PageSnapshot>(std::move(shown));
    publish();
}

void Navigation::rowMoved(std::uint64_t page, NSIndexPath from, NSIndexPath to) {
    OpenPage* top = openToEvents(page);
    UITableView* table = top ? tableOf(*top->controller) : nullptr;
    if (!table) return;
    table->dropRow(from, to);
    readAnew(*top);
    publish();
}

void Navigation::tableRowTapped(std::uint64_t page, NSIndexPath path) {
    OpenPage* top = openToEvents(page);
    UITableView* table = top ? tableOf(*top->controller) : nullptr;
    if (!table) return;
    table->tapRow(path);
    readAnew(*top);
    publish();
}

void Navigation::touched(std::uint64_t page, const std::vector<UITouchRouter::Point>& points) {
    OpenPage* top = openToEvents(page);
    if (!top || !top->controller->hostsView() || !top->controller->view()) return;
    touches_.send(top->controller->view(), points);
    readAnew(*top);
    publish();
}

void Navigation::composed(std::uint64_t page, std::uint64_t composer, ComposerAction action, const MailText& text) {
    OpenPage* top = pageOnTop(page);
    const auto presented = top ? composerOf(*top->controller) : nullptr;
    if (!presented || presented->id() != composer) return;
    switch (action) {
    case ComposerAction::send:
        return presented->send(text);
    case ComposerAction::save:
        return presented->saveDraft(text);
    case ComposerAction::cancel:
        return presented->cancel();
    case ComposerAction::leave:
        return presented->leave(text);
    }
}

/// Shows what a button has presented, and each change of it.
void Navigation::watchComposer(OpenPage& page) {
    const auto composer = composerOf(*page.controller);
    if (!composer || (page.snapshot->composer && page.snapshot->composer->id == composer->id())) return;
    composer->setObserver([self = std::weak_ptr(self_), id = page.id, watched = std::weak_ptr(composer)] {
        if (const auto changed = watched.lock()) report(*changed);
        if (const auto navigation = self.lock()) (*navigation)->composerChanged(id);
    });
    composerChanged(page.id);
}

void Navigation::composerChanged(std::uint64_t id) {
    OpenPage* page = pageOnTop(id);
    if (!page) return;
    // The rows keep the values that they have been shown with, as when one of them is edited.
    PageSnapshot shown = *page->snapshot;
    addComposer(shown, *page->controller);
    page->snapshot = std::make_shared<const PageSnapshot>(std::move(shown));
    publish();
}

void Navigation::tableScrolled(std::uint64_t page, const TableViewport& viewport) {
    OpenPage* top = pageOnTop(page);
    UITableView* table = top ? tableOf(*top->controller) : nullptr;
    if (!table) return;
    table->layoutIfNeeded();
    for (std::size_t i = 0; i < viewport.sections.size(); ++i)
        table->setSectionHeights(static_cast<int>(i), viewport.sections[i].header, viewport.sections[i].footer);
    table->setViewport(viewport.top, viewport.bottom);
    readAnew(*top);
    publish();
}

void Navigation::back(std::uint64_t page) {
    if (pages_.size() < 2 || !openToEvents(page)) return;
    pages_.pop_back();
    appear(true);
}

void Navigation::setContentSize(CGSize size) {
    // A window that is still being set up has no room for a page yet; what shrinks to nothing does not grow back alike.
    if (size == contentSize_ || size.width <= 0 || size.height <= 0) return;
    contentSize_ = size;
    if (pages_.empty()) return;
    OpenPage& top = pages_.back();
    if (!top.controller->view()) return;
    top.controller->view()->setFrame({{0, 0}, size});
    if (!top.controller->hostsView()) return; // rows are laid out where they are drawn
    readAnew(top);
    publish();
}

std::shared_ptr<PSListController> Navigation::topPage() const {
    return pages_.empty() ? nullptr : pages_.back().controller;
}

void Navigation::appear(bool animated) {
    OpenPage& top = pages_.back();
    PSListController& page = *top.controller;
    touches_.cancel();
    if (top.snapshot) publishOpening(top.className, top.snapshot->title); // a view made anew may block for good too
    if (page.view()) page.view()->setFrame({{0, 0}, contentSize_});
    page.viewWillAppear(animated);
    readAnew(top);
    watchView(top);
    publish();
}

/// Shows what changes by itself in a view, such as an icon that is drawn when its row is seen already.
void Navigation::watchView(const OpenPage& page) {
    if (!page.controller->hostsView() || !page.controller->view()) return;
    page.controller->view()->watchContents([self = std::weak_ptr(self_), id = page.id] {
        if (const auto navigation = self.lock()) (*navigation)->viewChanged(id);
    });
}

void Navigation::viewChanged(std::uint64_t id) {
    OpenPage* page = pageOnTop(id);
    if (!page) return;
    readAnew(*page);
    publish();
}

void Navigation::readAnew(OpenPage& page) {
    PageSnapshot shown = snapshotOf(*page.controller, page.className, page.id);
    addComposer(shown, *page.controller);
    page.snapshot = std::make_shared<const PageSnapshot>(std::move(shown));
}

void Navigation::publishOpening(const std::string& className, const std::string& title) {
    StackSnapshot stack;
    for (const OpenPage& page : pages_)
        if (page.snapshot) stack.pages.push_back(page.snapshot);
    stack.opening = Opening{className, title};
    show_(std::move(stack));
}

void Navigation::publish() {
    StackSnapshot stack;
    for (const OpenPage& page : pages_)
        stack.pages.push_back(page.snapshot);
    show_(std::move(stack));
}

Navigation::OpenPage* Navigation::pageOnTop(std::uint64_t id) {
    return !pages_.empty() && pages_.back().id == id ? &pages_.back() : nullptr;
}

Navigation::OpenPage* Navigation::openToEvents(std::uint64_t id) {
    OpenPage* top = pageOnTop(id);
    return top && !top->controller->presentedViewController() ? top : nullptr;
}

} // namespace settings

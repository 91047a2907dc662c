#include "settings/host/SnapshotOf.h"

#include "platform/preferences/PSListItemsController.h"
#include "platform/preferences/PSTextFieldSpecifier.h"
#include "platform/ui/UITextView.h"

#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <typeinfo>
#include <utility>

namespace settings {

using namespace platform;

namespace {

std::optional<double> number(const PSSpecifier& row, const std::string& key) {
    const Value value = row.property(key);
    return value.isNumber() ? std::optional(value.doubleValue()) : std::nullopt;
}

std::optional<bool> flag(const PSSpecifier& row, const std::string& key) {
    return row.hasProperty(key) ? std::optional(row.property(key).boolValue()) : std::nullopt;
}

std::string text(const PSSpecifier& row, const std::string& key) {
    const Value value = row.property(key);
    return std::string(value.text() ? *value.text() : std::string_view());
}

/// An option-list page has its group row first, then the options in their order.
bool isMarked(const PSListController& page, std::size_t row) {
    const auto* options = dynamic_cast<const PSListItemsController*>(&page);
    return options && row > 0 && std::cmp_equal(row - 1, options->selectedIndex());
}

RowSnapshot snapshotOf(PSListController& page, PSSpecifier& row, std::size_t position) {
    RowSnapshot shown;
    shown.cell = row.cellType();
    shown.name = row.name();
    shown.identifier = row.identifier();
    shown.value = row.performGetter();
    shown.footerText = text(row, "footerText");
    if (const auto* field = dynamic_cast<const PSTextFieldSpecifier*>(&row)) shown.placeholder = field->placeholder();
    shown.min = number(row, "min");
    shown.max = number(row, "max");
    shown.showValue = flag(row, "showValue");
    shown.titles = row.titles();
    shown.shortTitles = row.shortTitles();
    shown.values = row.values();
    shown.detail = row.detail().name();
    shown.icon = row.imageProperty("iconImage");
    if (row.cellType() == PSLinkListCell) shown.valueTitle = valueTitleOf(shown);
    if (row.cellType() == PSListItemCell) shown.marked = isMarked(page, position);
    return shown;
}

std::string titleOf(PSListController& page) {
    if (const UINavigationItem* item = page.navigationItem(); item && !item->title.empty()) return item->title;
    return page.navigationTitle();
}

/// The class's own name without its namespaces, as it is written in the source.
std::string classNameOf(const UIView& view) {
    const std::unique_ptr<char, void (*)(void*)> readable(
        abi::__cxa_demangle(typeid(view).name(), nullptr, nullptr, nullptr), std::free);
    const std::string name = readable ? readable.get() : typeid(view).name();
    const std::size_t colons = name.rfind("::");
    return colons == std::string::npos ? name : name.substr(colons + 2);
}

/// The first view of that class in a view, itself included, and hidden ones left out; null for none.
template<class Kind>
Kind* firstIn(UIView& view) {
    if (view.isHidden()) return nullptr;
    if (auto* found = dynamic_cast<Kind*>(&view)) return found;
    for (const auto& subview : view.subviews())
        if (Kind* found = firstIn<Kind>(*subview)) return found;
    return nullptr;
}

/// From the coordinates of a view to those of the page that shows it.
CGRect onPage(CGRect frame, const UIView& view) {
    for (const UIView* each = &view; each; each = each->superview()) {
        frame.origin.x += each->frame().origin.x;
        frame.origin.y += each->frame().origin.y;
    }
    return frame;
}

CellSnapshot snapshotOf(UITableView& table, NSIndexPath path, UITableViewCell& cell) {
    CellSnapshot shown;
    shown.title = cell.textLabel().text();
    shown.marked = cell.accessoryType() == UITableViewCellAccessoryCheckmark;
    shown.identifier = cell.detailTextLabel().text();
    shown.image = cell.imageView().image();
    shown.movable = table.canMoveRow(path);
    shown.editingStyle = table.editingStyleOfRow(path);
    shown.indented = table.isRowIndented(path);
    if (const UIFontRef& font = cell.textLabel().font(); !font->fontName().empty()) shown.font = font;
    return shown;
}

TableSnapshot snapshotOf(UITableView& table) {
    table.layoutIfNeeded();
    TableSnapshot shown;
    shown.id = table.id();
    shown.frame = onPage(table.bounds(), table);
    shown.layout = table.layout();
    for (const auto& [path, cell] : table.visibleCells())
        shown.cells.emplace(path, snapshotOf(table, path, *cell));
    shown.grouped = table.style() == UITableViewStyleGrouped;
    shown.selectable = !table.isEditing();
    shown.selected = table.indexPathForSelectedRow();
    shown.deselectsAnimated = table.deselectsAnimated();
    shown.scroll = table.scrollRequest();
    return shown;
}

TextSnapshot snapshotOf(const UITextView& view) {
    return {view.id(), onPage(view.bounds(), view), view.sharedText(), view.font(), view.isSelectable()};
}

/// What two rectangles share; without width or height when that is nothing.
CGRect intersection(const CGRect& one, const CGRect& other) {
    const double left = std::max(one.origin.x, other.origin.x);
    const double top = std::max(one.origin.y, other.origin.y);
    const double right = std::min(one.origin.x + one.size.width, other.origin.x + other.size.width);
    const double bottom = std::min(one.origin.y + one.size.height, other.origin.y + other.size.height);
    return CGRectMake(left, top, std::max(0.0, right - left), std::max(0.0, bottom - top));
}

/// Adds only what a touch can reach, as no touch begins beyond the page's end.
void addElements(std::vector<ElementSnapshot>& elements, const UIView& view, const CGRect& page) {
    if (view.isHidden()) return;
    for (UIAccessibilityElement& element : view.accessibilityElements()) {
        element.frame = onPage(element.frame, view);
        const CGRect reached = intersection(element.frame, page);
        if (reached.size.width <= 0 || reached.size.height <= 0) continue;
        if (element.axes.empty()) element.frame = reached; // quantities are measured along the whole of it
        elements.push_back(std::move(element));
    }
    for (const auto& subview : view.subviews())
        addElements(elements, *subview, page);
}

bool staysAsItIs(const std::shared_ptr<UIView>& part) {
    return !part->isHidden() && part->autoresizingMask() == UIViewAutoresizingNone;
}

ViewSnapshot pictureOf(const UIView& view) {
    const auto* picture = dynamic_cast<const UIImageView*>(&view);
    ViewSnapshot shown{
        classNameOf(view), view.frame(), view.layer(), picture ? picture->image() : nullptr, view.drawing(), {}};
    for (const auto& subview : view.subviews())
        if (!subview->isHidden()) shown.subviews.push_back(pictureOf(*subview));
    return shown;
}

/// Adds what is seen of the view that a page hosts.
void addView(PageSnapshot& shown, UIView& view) {
    if (view.isHidden()) return;
    shown.view = std::make_shared<const ViewSnapshot>(settings::snapshotOf(view));
    shown.keepsPlaces = keepsPlaces(view);
    if (auto* table = firstIn<UITableView>(view))
        shown.table = std::make_shared<const TableSnapshot>(snapshotOf(*table));
    if (const auto* text = firstIn<UITextView>(view))
        shown.text = std::make_shared<const TextSnapshot>(snapshotOf(*text));
    addElements(shown.elements, view, view.frame());
}

} // namespace

PSSpecifierRef rowAt(PSListController& page, std::size_t position) {
    const PSSpecifierList rows = page.specifiers();
    return rows && position < rows->size() ? (*rows)[position] : nullptr;
}

/// The lists of an option list correspond by position, but may differ in length.
std::string valueTitleOf(const RowSnapshot& row) {
    const int index = indexOfOption(row.values, row.titles.size(), row.value);
    if (index < 0) return {};
    const auto at = static_cast<std::size_t>(index);
    return at < row.shortTitles.size() ? row.shortTitles[at] : row.titles[at];
}

PageSnapshot snapshotOf(PSListController& page, const std::string& className, std::uint64_t id) {
    PageSnapshot shown;
    shown.id = id;
    shown.className = className;
    shown.title = titleOf(page);
    shown.hostsView = page.hostsView();
    addComposer(shown, page);
    if (page.hostsView()) {
        if (page.view()) addView(shown, *page.view());
        return shown;
    }
    if (const PSSpecifierList rows = page.specifiers()) {
        if (std::ranges::count(*rows, nullptr) > 0) throw std::runtime_error("it has a null row");
        for (std::size_t i = 0; i < rows->size(); ++i)
            shown.rows.push_back(snapshotOf(page, *(*rows)[i], i));
    }
    return shown;
}

RowSnapshot snapshotOf(PSListController& page, std::size_t row) {
    return snapshotOf(page, *page.specifiers()->at(row), row);
}

std::shared_ptr<MFMailComposeViewController> composerOf(const PSListController& page) {
    return std::dynamic_pointer_cast<MFMailComposeViewController>(page.presentedViewController());
}

void addComposer(PageSnapshot& shown, const PSListController& page) {
    shown.composer = nullptr;
    shown.presentsAnimated = page.presentsAnimated();
    const auto composer = composerOf(page);
    if (!composer) return;
    ComposerSnapshot message{composer->id(),        composer->message().text, {},
                             composer->isWorking(), composer->problem(),      composer->draft()};
    for (const MailAttachment& attachment : composer->message().attachments)
        message.attachments.push_back({attachment.fileName, attachment.data->size()});
    shown.composer = std::make_shared<const ComposerSnapshot>(std::move(message));
}

UITableView* tableOf(const PSListController& page) {
    return page.hostsView() && page.view() ? firstIn<UITableView>(*page.view()) : nullptr;
}

bool keepsPlaces(const UIView& view) {
    return std::ranges::any_of(view.subviews(), staysAsItIs);
}

CGSize reachOf(const UIView& view) {
    CGSize reach;
    for (const auto& part : view.subviews()) {
        if (!staysAsItIs(part)) continue;
        const auto& [origin, size] = part->frame();
        reach.width = std::max(reach.width, origin.x + size.width);
        reach.height = std::max(reach.height, origin.y + size.height);
    }
    return reach;
}

void takeOver(UIView& view, UIView& former) {
    auto* table = firstIn<UITableView>(view);
    if (const auto* before = firstIn<UITableView>(former); table && before) table->takeOver(*before);
    auto* text = firstIn<UITextView>(view);
    if (const auto* before = firstIn<UITextView>(former); text && before) text->takeOver(*before);
}

ViewSnapshot snapshotOf(UIView& view) {
    view.layoutIfNeeded();
    view.displayIfNeeded();
    return pictureOf(view);
}

} // namespace settings

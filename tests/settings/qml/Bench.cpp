#include "tests/settings/qml/Bench.h"

#include "fonts/FontFaces.h"
#include "platform/ui/Move.h"
#include "tests/settings/qml/BenchValues.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QQuickWindow>
#include <QWheelEvent>

#include <algorithm>

using namespace platform;
using namespace settings;
using namespace bench_values;

namespace {

constexpr double kTableHeight = 700;

std::shared_ptr<PageSnapshot> pageSnapshot() {
    auto page = std::make_shared<PageSnapshot>();
    page->id = 1;
    page->title = "Bench";
    return page;
}

/// A page that hosts a view of such a ground, with nothing in it yet.
std::shared_ptr<PageSnapshot> hostSnapshot(const UIColorRef& ground, std::vector<ViewSnapshot> subviews = {}) {
    auto page = pageSnapshot();
    page->hostsView = true;
    ViewSnapshot view{"View", CGRectMake(0, 0, 390, kTableHeight), {.backgroundColor = ground}};
    view.subviews = std::move(subviews);
    page->view = std::make_shared<const ViewSnapshot>(std::move(view));
    return page;
}

std::shared_ptr<const PageSnapshot> rowsSnapshot(const QVariantList& rows) {
    auto page = pageSnapshot();
    for (const QVariant& row : rows)
        page->rows.push_back(toRow(row.toMap()));
    return page;
}

std::shared_ptr<const PageSnapshot> viewSnapshot(const QVariantMap& view, const UIColorRef& ground) {
    std::vector<ViewSnapshot> parts;
    for (const QVariant& part : view["views"].toList())
        parts.push_back({"View", toFrame(part.toMap()["frame"]), {.backgroundColor = toColor(part.toMap()["color"])}});
    auto page = hostSnapshot(ground, std::move(parts));
    for (const QVariant& element : view["elements"].toList())
        page->elements.push_back(toElement(element.toMap()));
    if (const QVariantMap text = view["text"].toMap(); !text.isEmpty())
        page->text = std::make_shared<const TextSnapshot>(TextSnapshot{
            text["id"].toULongLong(), toFrame(text["frame"]), std::make_shared<const std::string>(toText(text["text"])),
            UIFont::systemFontOfSize(15), text["selectable"].toBool()});
    return page;
}

/// The control and everything in it, from the outside to the inside.
QList<QAccessibleInterface*> controlsIn(QAccessibleInterface* control) {
    QList<QAccessibleInterface*> all{control};
    for (int i = 0; i < control->childCount(); ++i)
        if (QAccessibleInterface* child = control->child(i)) all += controlsIn(child);
    return all;
}

/// All that assistive tools find in the item's window.
QList<QAccessibleInterface*> controlsAround(const QQuickItem* item) {
    return controlsIn(QAccessible::queryAccessibleInterface(item->window()));
}

} // namespace

void Bench::reset() {
    selectable_ = plain_ = deselectsAnimated_ = false;
    selected_ = -1;
    scroll_ = {};
    ground_ = nullptr;
}

PageModel* Bench::page(const QVariantMap& content) {
    events_.clear();
    busy_ = false;
    underWay_.clear();
    viewport_ = {0, kTableHeight, {}};
    page_ = new PageModel(std::bind_front(&Bench::take, this), snapshot(content), this);
    return page_;
}

void Bench::show(const QVariantMap& content) {
    page_->read(snapshot(content));
}

std::shared_ptr<const PageSnapshot> Bench::snapshot(const QVariantMap& content) {
    if (content.contains("color")) ground_ = toColor(content["color"]);
    if (content.contains("rows")) return rowsSnapshot(content["rows"].toList());
    if (!content.contains("sections")) return viewSnapshot(content, ground_);
    if (content["anew"].toBool()) {
        ++tableId_;
        viewport_ = {0, kTableHeight, {}};
    }
    setSections(content["sections"].toList());
    return tableSnapshot();
}

void Bench::compose(const QVariantMap& message) {
    PageSnapshot page = page_->snapshot();
    page.composer = nullptr;
    if (!message.isEmpty()) {
        ComposerSnapshot composer{message["id"].toULongLong(),
                                  {toText(message["to"]), toText(message["subject"]), toText(message["body"])},
                                  {},
                                  message["working"].toBool(),
                                  toText(message["problem"])};
        for (const QVariant& file : message["attachments"].toList())
            composer.attachments.push_back({toText(file.toMap()["name"]), file.toMap()["size"].toULongLong()});
        page.composer = std::make_shared<const ComposerSnapshot>(std::move(composer));
    }
    page_->read(std::make_shared<const PageSnapshot>(std::move(page)));
}

void Bench::askToScroll(int row, int position, bool animated) {
    scroll_ = {scroll_.serial + 1, {0, row}, static_cast<UITableViewScrollPosition>(position), animated};
}

void Bench::takeAll() {
    for (const auto& taken : std::exchange(underWay_, {}))
        taken();
}

DifferencesModel* Bench::differences(const QVariantMap& content) {
    QList<DifferencesModel::Difference> found;
    for (const QVariant& change : content["changes"].toList()) {
        const QVariantMap map = change.toMap();
        found.append({.title = map["title"].toString(),
                      .path = map["path"].toString(),
                      .now = map["now"].toString(),
                      .then = map["then"].toString()});
    }
    auto* model = new DifferencesModel(0, found, nullptr); // QML owns what an operation gives it
    model->setNotes(content["notes"].toStringList());
    return model;
}

SearchModel* Bench::search(const QVariantMap& content) {
    landings_.clear();
    search_ = new SearchModel(this);
    connect(search_, &SearchModel::chosen, this, [this](const Landing& landing) {
        QVariantList way;
        for (const KnownLink& link : landing.way)
            way << QString::fromStdString(link.pageClass);
        if (landing.row) way << int(landing.row->position);
        landings_ << QVariant(way);
    });
    index(content);
    return search_;
}

void Bench::index(const QVariantMap& content) {
    std::vector<search::Page> pages;
    for (const QVariant& page : content["pages"].toList())
        pages.push_back(toPage(page.toMap(), pages.size()));
    std::vector<search::Entry> entries;
    for (const QVariant& entry : content["entries"].toList())
        entries.push_back(toEntry(entry.toMap()));
    search_->setIndex(search::Index(std::move(pages), std::move(entries)));
}

void Bench::answer(const QVariantMap& settings) {
    Dictionary values;
    for (auto each = settings.begin(); each != settings.end(); ++each)
        values.set(each.key().toStdString(), toValue(each.value()));
    search_->setSettings(std::move(values));
}

int Bench::fontsOpened() {
    return fonts::FontFaces::shared().opened();
}

QVariantList Bench::spoken(QQuickItem* item) {
    QAccessible::setActive(true);
    QVariantList all;
    for (QAccessibleInterface* control : controlsAround(item)) {
        QAccessibleTextInterface* text = control->textInterface();
        const QVariant value = control->valueInterface() ? control->valueInterface()->currentValue() : QVariant();
        all << QVariantMap{{"role", int(control->role())},
                           {"name", control->text(QAccessible::Name)},
                           {"description", control->text(QAccessible::Description)},
                           {"value", control->text(QAccessible::Value)},
                           {"number", value},
                           {"text", text ? text->text(0, text->characterCount()) : QString()},
                           {"checked", bool(control->state().checked)},
                           {"checkable", bool(control->state().checkable)},
                           {"focused", bool(control->state().focused)},
                           {"focusable", bool(control->state().focusable)}};
    }
    return all;
}

bool Bench::act(QQuickItem* item, const QString& name, const QString& action) {
    for (QAccessibleInterface* control : controlsAround(item)) {
        QAccessibleActionInterface* actions = control->actionInterface();
        if (!actions || control->text(QAccessible::Name) != name || !actions->actionNames().contains(action)) continue;
        actions->doAction(action);
        return true;
    }
    return false;
}

bool Bench::setNumber(QQuickItem* item, const QString& name, double value) {
    for (QAccessibleInterface* control : controlsAround(item)) {
        if (control->role() != QAccessible::Slider || control->text(QAccessible::Name) != name) continue;
        control->valueInterface()->setCurrentValue(value);
        return true;
    }
    return false;
}

void Bench::pullByTouchpad(QQuickItem* item, int points, bool tellsOfItsEnd) {
    constexpr int step = 10;
    const QPointF middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
    const auto send = [&](int by, Qt::ScrollPhase phase) {
        QWheelEvent event(middle, item->window()->mapToGlobal(middle), {0, by}, {0, by}, Qt::NoButton, Qt::NoModifier,
                          tellsOfItsEnd ? phase : Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(item->window(), &event);
    };
    if (tellsOfItsEnd) send(0, Qt::ScrollBegin);
    for (int i = 0; i < points; i += step)
        send(step, Qt::ScrollUpdate);
    if (tellsOfItsEnd) send(0, Qt::ScrollEnd);
}

void Bench::repeatKey(QQuickItem* item, int key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
    QCoreApplication::sendEvent(item->window(), &event);
}

void Bench::take(Event event, std::function<void()> taken) {
    if (const auto* moved = std::get_if<RowMoved>(&event)) {
        taken = [this, moved = *moved, taken = std::move(taken)] {
            layout_ = layout_.moved(moved.from, moved.to);
            cells_ = platform::moved(std::move(cells_), moved.from, moved.to);
            page_->read(tableSnapshot());
            taken();
        };
    }
    if (const auto* scroll = std::get_if<TableScrolled>(&event)) {
        viewport_ = scroll->viewport;
        if (!busy_)
            QMetaObject::invokeMethod(
                page_, [this, page = page_] { page->read(tableSnapshot()); }, Qt::QueuedConnection);
    }
    if (taken) underWay_.push_back(std::move(taken));
    events_.push_back(std::move(event));
}

/// A font by its file, and its number there after a "#".
UIFontRef Bench::fontIn(const QString& file) const {
    const QStringList parts = file.split('#');
    return std::make_shared<const UIFont>(file.toStdString(), 17.0, (fonts_ + parts[0]).toStdString(),
                                          parts.value(1).toInt());
}

CellSnapshot Bench::toCell(const QVariantMap& map) const {
    CellSnapshot cell;
    cell.title = toText(map["title"]);
    cell.identifier = toText(map["identifier"]);
    cell.image = toIcon(map["icon"]);
    cell.marked = map["marked"].toBool();
    cell.movable = !map["fixed"].toBool() && !selectable_;
    cell.editingStyle = map["editingStyle"].toInt();
    cell.indented = map["indented"].toBool();
    if (map.contains("font")) cell.font = fontIn(map["font"].toString());
    return cell;
}

void Bench::setSections(const QVariantList& sections) {
    std::vector<TableSection> all;
    cells_.clear();
    for (const QVariant& section : sections) {
        const QVariantMap map = section.toMap();
        NSIndexPath path{static_cast<int>(all.size()), 0};
        for (const QVariant& row : map["rows"].toList())
            cells_[{path.section, path.row++}] = toCell(row.toMap());
        all.push_back({toText(map["header"]), toText(map["footer"]), 50, 24, 40, path.row});
    }
    layout_ = TableLayout(std::move(all));
}

/// The cells of those rows alone that are in the viewport.
std::shared_ptr<const PageSnapshot> Bench::tableSnapshot() const {
    TableSnapshot table;
    table.id = tableId_;
    table.selectable = selectable_;
    table.scroll = scroll_;
    table.grouped = !plain_;
    if (selected_ >= 0) table.selected = NSIndexPath{0, selected_};
    table.deselectsAnimated = deselectsAnimated_;
    table.frame = CGRectMake(0, 0, 390, kTableHeight);
    table.layout = layout_;
    for (int i = 0; i < std::min(layout_.sectionCount(), int(viewport_.sections.size())); ++i)
        table.layout.setHeights(i, viewport_.sections[std::size_t(i)].header,
                                viewport_.sections[std::size_t(i)].footer);
    const auto inView = table.layout.rowsBetween(viewport_.top, viewport_.bottom);
    for (const auto& [path, cell] : cells_)
        if (inView[std::size_t(path.section)].contain(path.row)) table.cells.emplace(path, cell);
    auto page = hostSnapshot(ground_);
    page->table = std::make_shared<const TableSnapshot>(std::move(table));
    return page;
}

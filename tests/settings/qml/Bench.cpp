#include "tests/settings/qml/Bench.h"

#include "fonts/FontFaces.h"
#include "platform/ui/Move.h"

#include <QAccessible>
#include <QBuffer>
#include <QImage>
#include <QQuickWindow>

#include <algorithm>

using namespace platform;
using namespace settings;

namespace {

constexpr double kTableHeight = 700;

Value toValue(const QVariant& value) {
    const int type = value.typeId();
    if (type == QMetaType::Bool) return value.toBool();
    if (type == QMetaType::Int) return value.toInt();
    if (type == QMetaType::Double) return value.toDouble();
    if (type == QMetaType::QString) return value.toString().toStdString();
    if (type == QMetaType::QVariantList) return List{};
    return {};
}

std::string toText(const QVariant& text) {
    return text.toString().toStdString();
}

UIColorRef toColor(const QVariant& name) {
    const QColor color(name.toString());
    return UIColor::colorWithRed(color.redF(), color.greenF(), color.blueF(), color.alphaF());
}

/// A picture of one colour; null for none.
UIImageRef toIcon(const QVariant& color) {
    if (color.isNull()) return nullptr;
    QImage image(29, 29, QImage::Format_RGB32);
    image.fill(QColor(color.toString()));
    QByteArray file;
    QBuffer buffer(&file);
    image.save(&buffer, "PNG");
    return std::make_shared<const UIImage>(CGSize{29, 29}, Data(file.begin(), file.end()), Data{});
}

CGRect toFrame(const QVariant& frame) {
    const QRectF rect = frame.toRectF();
    return CGRectMake(rect.x(), rect.y(), rect.width(), rect.height());
}

RowSnapshot toRow(const QVariantMap& map) {
    RowSnapshot row;
    row.cell = map["cell"].toInt();
    row.name = toText(map["name"]);
    row.identifier = toText(map["identifier"]);
    row.value = toValue(map["value"]);
    row.valueTitle = toText(map["valueTitle"]);
    row.footerText = toText(map["footerText"]);
    row.placeholder = toText(map["placeholder"]);
    if (map.contains("min")) row.min = map["min"].toDouble();
    if (map.contains("max")) row.max = map["max"].toDouble();
    if (map.contains("showValue")) row.showValue = map["showValue"].toBool();
    row.marked = map["marked"].toBool();
    row.icon = toIcon(map["icon"]);
    return row;
}

ElementSnapshot toElement(const QVariantMap& map) {
    ElementSnapshot element;
    element.label = toText(map["label"]);
    element.frame = toFrame(map["frame"]);
    for (const QVariant& part : map["axes"].toList()) {
        const QVariantMap axis = part.toMap();
        element.axes.push_back(
            {toText(axis["label"]), axis["value"].toDouble(), axis["vertical"].toBool(), axis["reversed"].toBool()});
    }
    return element;
}

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

QVariant toVariant(const Value& value) {
    if (value.boolean()) return *value.boolean();
    if (value.isNumber()) return value.doubleValue();
    return value.text() ? QString::fromUtf8(*value.text()) : QVariant();
}

QVariant toVariant(const RowTapped& tap) {
    return int(tap.row);
}

QVariant toVariant(const ValueChanged& change) {
    return QVariantList{int(change.row), toVariant(change.value)};
}

QVariant toVariant(const RowMoved& move) {
    return QVariantList{move.from.section, move.from.row, move.to.section, move.to.row};
}

QVariant toVariant(const TableRowTapped& tap) {
    return QVariantList{tap.path.section, tap.path.row};
}

QVariant toVariant(const TableRowSought& sought) {
    return QVariantList{QString::fromStdString(sought.beginning), sought.after.section, sought.after.row};
}

QVariant toVariant(const TableScrolled& scroll) {
    QVariantList headers;
    QVariantList footers;
    for (const auto& heights : scroll.viewport.sections) {
        headers << heights.header;
        footers << heights.footer;
    }
    return QVariantMap{
        {"top", scroll.viewport.top}, {"bottom", scroll.viewport.bottom}, {"headers", headers}, {"footers", footers}};
}

QVariant toVariant(const Touched& touch) {
    static constexpr const char* phases[] = {"began", "moved", "", "ended", "cancelled"};
    QVariantList points;
    for (const auto& [finger, phase, location] : touch.points)
        points << QVariant(QVariantList{int(finger), phases[static_cast<int>(phase)], location.x, location.y});
    return points;
}

QVariant toVariant(const Composed& composed) {
    static constexpr const char* actions[] = {"send", "save", "cancel", "leave"};
    return QVariantMap{{"action", actions[static_cast<int>(composed.action)]},
                       {"to", QString::fromStdString(composed.text.to)},
                       {"subject", QString::fromStdString(composed.text.subject)},
                       {"body", QString::fromStdString(composed.text.body)}};
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
    for (const QVariant& each : content["pages"].toList()) {
        const QVariantMap page = each.toMap();
        std::optional<std::size_t> from;
        if (page.contains("from")) from = page["from"].toULongLong();
        pages.push_back({"Class" + std::to_string(pages.size()), toText(page["title"]), from, 0, {}, {}});
    }
    std::vector<search::Entry> entries;
    for (const QVariant& each : content["entries"].toList()) {
        const QVariantMap map = each.toMap();
        search::Entry entry;
        entry.title = toText(map["title"]);
        entry.page = map["page"].toULongLong();
        entry.cell = map["cell"].toInt();
        entry.key = toText(map["key"]);
        entry.header = toText(map["header"]);
        entry.section = map.value("section", -1).toInt();
        entry.row = map["row"].toULongLong();
        for (const QString& word : map["words"].toStringList())
            entry.words.push_back(word.toStdString());
        entries.push_back(std::move(entry));
    }
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

QVariant Bench::written(const Event& event) {
    return std::visit([](const auto& happened) { return toVariant(happened); }, event);
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

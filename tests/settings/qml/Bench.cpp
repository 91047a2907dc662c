#include "tests/settings/qml/Bench.h"

#include "platform/ui/Move.h"
#include "settings/paint/FontFaces.h"

#include <QAccessible>
#include <QBuffer>
#include <QImage>
#include <QQuickWindow>

#include <algorithm>

namespace {

constexpr double kTableHeight = 700;

platform::Value toValue(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
        return value.toInt();
    case QMetaType::Double:
        return value.toDouble();
    case QMetaType::QString:
        return value.toString().toStdString();
    case QMetaType::QVariantList:
        return platform::List{};
    default:
        return {};
    }
}

QVariant toVariant(const platform::Value& value) {
    if (value.boolean()) return *value.boolean();
    if (value.isNumber()) return value.doubleValue();
    return value.text() ? QString::fromUtf8(*value.text()) : QVariant();
}

platform::UIImageRef square(const QString& color) {
    QImage image(29, 29, QImage::Format_RGB32);
    image.fill(QColor(color));
    QByteArray file;
    QBuffer buffer(&file);
    image.save(&buffer, "PNG");
    return std::make_shared<const platform::UIImage>(platform::CGSize{29, 29}, platform::Data(file.begin(), file.end()),
                                                     platform::Data{});
}

settings::RowSnapshot toRow(const QVariantMap& map) {
    settings::RowSnapshot row;
    row.cell = map["cell"].toInt();
    row.name = map["name"].toString().toStdString();
    row.identifier = map["identifier"].toString().toStdString();
    row.value = toValue(map["value"]);
    row.valueTitle = map["valueTitle"].toString().toStdString();
    row.footerText = map["footerText"].toString().toStdString();
    row.placeholder = map["placeholder"].toString().toStdString();
    if (map.contains("min")) row.min = map["min"].toDouble();
    if (map.contains("max")) row.max = map["max"].toDouble();
    if (map.contains("showValue")) row.showValue = map["showValue"].toBool();
    row.marked = map["marked"].toBool();
    if (map.contains("icon")) row.icon = square(map["icon"].toString());
    return row;
}

QVariant toVariant(const settings::RowTapped& tap) {
    return int(tap.row);
}

QVariant toVariant(const settings::ValueChanged& change) {
    return QVariantList{int(change.row), toVariant(change.value)};
}

QVariant toVariant(const settings::RowMoved& move) {
    return QVariantList{move.from.section, move.from.row, move.to.section, move.to.row};
}

QVariant toVariant(const settings::TableRowTapped& tap) {
    return QVariantList{tap.path.section, tap.path.row};
}

QVariant toVariant(const settings::TableScrolled& scroll) {
    QVariantList headers;
    QVariantList footers;
    for (const auto& heights : scroll.viewport.sections) {
        headers << heights.header;
        footers << heights.footer;
    }
    return QVariantMap{
        {"top", scroll.viewport.top}, {"bottom", scroll.viewport.bottom}, {"headers", headers}, {"footers", footers}};
}

QVariant toVariant(const settings::Touched& touch) {
    static constexpr const char* phases[] = {"began", "moved", "", "ended", "cancelled"};
    QVariantList points;
    for (const auto& [finger, phase, location] : touch.points)
        points << QVariant(QVariantList{int(finger), phases[static_cast<int>(phase)], location.x, location.y});
    return points;
}

QVariant toVariant(const settings::Composed& composed) {
    static constexpr const char* actions[] = {"send", "save", "cancel", "leave"};
    return QVariantMap{{"action", actions[static_cast<int>(composed.action)]},
                       {"to", QString::fromStdString(composed.text.to)},
                       {"subject", QString::fromStdString(composed.text.subject)},
                       {"body", QString::fromStdString(composed.text.body)}};
}

platform::CGRect toFrame(const QVariant& frame) {
    const QRectF rect = frame.toRectF();
    return platform::CGRectMake(rect.x(), rect.y(), rect.width(), rect.height());
}

settings::ViewSnapshot toView(const platform::CGRect& frame, const QVariant& color) {
    const QColor ground(color.toString());
    return {"View",
            frame,
            {.backgroundColor =
                 platform::UIColor::colorWithRed(ground.redF(), ground.greenF(), ground.blueF(), ground.alphaF())}};
}

settings::ElementSnapshot toElement(const QVariantMap& map) {
    settings::ElementSnapshot element;
    element.label = map["label"].toString().toStdString();
    element.frame = toFrame(map["frame"]);
    for (const QVariant& part : map["axes"].toList()) {
        const QVariantMap axis = part.toMap();
        element.axes.push_back({axis["label"].toString().toStdString(), axis["value"].toDouble(),
                                axis["vertical"].toBool(), axis["reversed"].toBool()});
    }
    return element;
}

void visit(QAccessibleInterface* control, const std::function<void(QAccessibleInterface*)>& look) {
    if (!control) return;
    look(control);
    for (int i = 0; i < control->childCount(); ++i)
        visit(control->child(i), look);
}

} // namespace

/// A font by its file, and its number there after a "#".
platform::UIFontRef Bench::fontIn(const QString& file) const {
    const QStringList parts = file.split('#');
    return std::make_shared<const platform::UIFont>(file.toStdString(), 17.0, (fonts_ + parts[0]).toStdString(),
                                                    parts.value(1).toInt());
}

settings::CellSnapshot Bench::toCell(const QVariantMap& map) const {
    settings::CellSnapshot cell;
    cell.title = map["title"].toString().toStdString();
    cell.identifier = map["identifier"].toString().toStdString();
    if (map.contains("icon")) cell.image = square(map["icon"].toString());
    cell.marked = map["marked"].toBool();
    cell.movable = !map["fixed"].toBool() && !selectable_;
    cell.editingStyle = map["editingStyle"].toInt();
    cell.indented = map["indented"].toBool();
    if (map.contains("font")) cell.font = fontIn(map["font"].toString());
    return cell;
}

settings::CellSnapshot Bench::toCell(int number, bool inItsFont) const {
    settings::CellSnapshot cell;
    cell.title = "Row " + std::to_string(number);
    cell.identifier = "row." + std::to_string(number);
    cell.movable = !selectable_;
    if (inItsFont) {
        const QString digits = QStringLiteral("%1").arg(number, 4, 10, QLatin1Char('0'));
        cell.title = "Many" + digits.toStdString();
        cell.font = fontIn("many" + digits + ".ttf");
    }
    return cell;
}

void Bench::setSections(const QVariantList& sections) {
    std::vector<platform::TableSection> all;
    cells_.clear();
    for (const QVariant& section : sections) {
        const QVariantMap map = section.toMap();
        platform::NSIndexPath path{static_cast<int>(all.size()), 0};
        for (const QVariant& row : map["rows"].toList())
            cells_[{path.section, path.row++}] = toCell(row.toMap());
        for (int i = 0; i < map["count"].toInt(); ++i)
            cells_[{path.section, path.row++}] = toCell(i, map["fonts"].toBool());
        all.push_back(
            {map["header"].toString().toStdString(), map["footer"].toString().toStdString(), 50, 24, 40, path.row});
    }
    layout_ = platform::TableLayout(std::move(all));
}

settings::PageModel* Bench::page(const QVariantList& rows) {
    setPage(snapshot(rows));
    return page_;
}

void Bench::setPage(std::shared_ptr<const settings::PageSnapshot> page) {
    events_.clear();
    busy_ = false;
    underWay_.clear();
    viewport_ = {0, kTableHeight, {}};
    page_ = new settings::PageModel(std::bind_front(&Bench::take, this), std::move(page), this);
}

settings::PageModel* Bench::tablePage(const QVariantList& sections) {
    viewport_ = {0, kTableHeight, {}};
    setSections(sections);
    setPage(tableSnapshot());
    return page_;
}

void Bench::showTable(const QVariantList& sections) {
    setSections(sections);
    page_->read(tableSnapshot());
}

void Bench::showOtherTable(const QVariantList& sections) {
    ++tableId_;
    viewport_ = {0, kTableHeight, {}};
    showTable(sections);
}

void Bench::askToScroll(int row, int position, bool animated) {
    scroll_ = {scroll_.serial + 1, {0, row}, static_cast<platform::UITableViewScrollPosition>(position), animated};
}

int Bench::fontsOpened() {
    return settings::FontFaces::shared().opened();
}

void Bench::paint(const QString& color) {
    const QColor ground(color);
    ground_ = platform::UIColor::colorWithRed(ground.redF(), ground.greenF(), ground.blueF(), 1);
    page_->read(tableSnapshot());
}

void Bench::show(const QVariantList& rows) {
    page_->read(snapshot(rows));
}

void Bench::takeAll() {
    for (const auto& taken : std::exchange(underWay_, {}))
        taken();
}

QVariantList Bench::spoken(QQuickItem* item) {
    QAccessible::setActive(true);
    QVariantList all;
    visit(QAccessible::queryAccessibleInterface(item->window()), [&](QAccessibleInterface* control) {
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
    });
    return all;
}

bool Bench::act(QQuickItem* item, const QString& name, const QString& action) {
    bool done = false;
    visit(QAccessible::queryAccessibleInterface(item->window()), [&](QAccessibleInterface* control) {
        if (done || control->text(QAccessible::Name) != name || !control->actionInterface() ||
            !control->actionInterface()->actionNames().contains(action))
            return;
        control->actionInterface()->doAction(action);
        done = true;
    });
    return done;
}

bool Bench::setNumber(QQuickItem* item, const QString& name, double value) {
    bool done = false;
    visit(QAccessible::queryAccessibleInterface(item->window()), [&](QAccessibleInterface* control) {
        if (done || control->role() != QAccessible::Slider || control->text(QAccessible::Name) != name) return;
        control->valueInterface()->setCurrentValue(value);
        done = true;
    });
    return done;
}

settings::PageModel* Bench::viewPage(const QVariantMap& view) {
    setPage(viewSnapshot(view));
    return page_;
}

void Bench::showView(const QVariantMap& view) {
    page_->read(viewSnapshot(view));
}

QString Bench::colorAt(QQuickItem* item, double x, double y) {
    const QImage picture = item->window()->grabWindow();
    return picture.pixelColor((item->mapToScene({x, y}) * picture.devicePixelRatio()).toPoint()).name();
}

std::shared_ptr<const settings::PageSnapshot> Bench::viewSnapshot(const QVariantMap& view) {
    auto page = std::make_shared<settings::PageSnapshot>();
    page->id = 1;
    page->title = "Bench";
    page->hostsView = true;
    settings::ViewSnapshot root = toView(platform::CGRectMake(0, 0, 390, kTableHeight), view["color"]);
    for (const QVariant& part : view["views"].toList())
        root.subviews.push_back(toView(toFrame(part.toMap()["frame"]), part.toMap()["color"]));
    page->view = std::make_shared<const settings::ViewSnapshot>(std::move(root));
    for (const QVariant& element : view["elements"].toList())
        page->elements.push_back(toElement(element.toMap()));
    if (const QVariantMap text = view["text"].toMap(); !text.isEmpty())
        page->text = std::make_shared<const settings::TextSnapshot>(
            settings::TextSnapshot{text["id"].toULongLong(), toFrame(text["frame"]),
                                   std::make_shared<const std::string>(text["text"].toString().toStdString()),
                                   platform::UIFont::systemFontOfSize(15), text["selectable"].toBool()});
    return page;
}

QVariant Bench::written(const settings::Event& event) {
    return std::visit([](const auto& happened) { return toVariant(happened); }, event);
}

void Bench::take(settings::Event event, std::function<void()> taken) {
    if (const auto* moved = std::get_if<settings::RowMoved>(&event)) {
        taken = [this, moved = *moved, taken = std::move(taken)] {
            layout_ = layout_.moved(moved.from, moved.to);
            cells_ = platform::moved(std::move(cells_), moved.from, moved.to);
            page_->read(tableSnapshot());
            taken();
        };
    }
    if (const auto* scroll = std::get_if<settings::TableScrolled>(&event)) {
        viewport_ = scroll->viewport;
        if (!busy_)
            QMetaObject::invokeMethod(
                page_, [this, page = page_] { page->read(tableSnapshot()); }, Qt::QueuedConnection);
    }
    if (taken) underWay_.push_back(std::move(taken));
    events_.push_back(std::move(event));
}

void Bench::compose(const QVariantMap& message) {
    settings::PageSnapshot page = page_->snapshot();
    page.composer = nullptr;
    if (!message.isEmpty()) {
        const auto text = [&](const char* key) { return message[key].toString().toStdString(); };
        settings::ComposerSnapshot composer{message["id"].toULongLong(),
                                            {text("to"), text("subject"), text("body")},
                                            {},
                                            message["working"].toBool(),
                                            text("problem")};
        for (const QVariant& file : message["attachments"].toList())
            composer.attachments.push_back(
                {file.toMap()["name"].toString().toStdString(), file.toMap()["size"].toULongLong()});
        page.composer = std::make_shared<const settings::ComposerSnapshot>(std::move(composer));
    }
    page_->read(std::make_shared<const settings::PageSnapshot>(std::move(page)));
}

/// The cells of those rows alone that are in the viewport.
std::shared_ptr<const settings::PageSnapshot> Bench::tableSnapshot() const {
    settings::TableSnapshot table;
    table.id = tableId_;
    table.selectable = selectable_;
    table.scroll = scroll_;
    table.grouped = !plain_;
    if (selected_ >= 0) table.selected = platform::NSIndexPath{0, selected_};
    table.deselectsAnimated = deselectsAnimated_;
    table.frame = platform::CGRectMake(0, 0, 390, kTableHeight);
    table.layout = layout_;
    for (int i = 0; i < std::min(layout_.sectionCount(), int(viewport_.sections.size())); ++i)
        table.layout.setHeights(i, viewport_.sections[std::size_t(i)].header,
                                viewport_.sections[std::size_t(i)].footer);
    const auto inView = table.layout.rowsBetween(viewport_.top, viewport_.bottom);
    for (const auto& [path, cell] : cells_)
        if (inView[std::size_t(path.section)].contain(path.row)) table.cells.emplace(path, cell);
    auto page = std::make_shared<settings::PageSnapshot>();
    page->id = 1;
    page->title = "Bench";
    page->hostsView = true;
    page->view = std::make_shared<const settings::ViewSnapshot>(
        settings::ViewSnapshot{"View", platform::CGRectMake(0, 0, 390, kTableHeight), {.backgroundColor = ground_}});
    page->table = std::make_shared<const settings::TableSnapshot>(std::move(table));
    return page;
}

std::shared_ptr<const settings::PageSnapshot> Bench::snapshot(const QVariantList& rows) {
    auto page = std::make_shared<settings::PageSnapshot>();
    page->id = 1;
    page->title = "Bench";
    for (const QVariant& row : rows)
        page->rows.push_back(toRow(row.toMap()));
    return page;
}

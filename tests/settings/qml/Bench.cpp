#include "tests/settings/qml/Bench.h"

#include "settings/paint/FontFaces.h"

#include <QAccessible>
#include <QBuffer>
#include <QImage>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

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

settings::SectionSnapshot Bench::toSection(const QVariantMap& map) const {
    settings::SectionSnapshot section;
    section.header = map["header"].toString().toStdString();
    section.footer = map["footer"].toString().toStdString();
    section.headerHeight = 50;
    section.footerHeight = 24;
    section.rowHeight = 40;
    for (const QVariant& row : map["rows"].toList())
        section.cells.push_back(toCell(row.toMap()));
    for (int i = 0; i < map["count"].toInt(); ++i) {
        settings::CellSnapshot cell;
        cell.title = "Row " + std::to_string(i);
        cell.identifier = "row." + std::to_string(i);
        cell.movable = !selectable_;
        if (map["fonts"].toBool()) {
            const QString number = QStringLiteral("%1").arg(i, 4, 10, QLatin1Char('0'));
            cell.title = "Many" + number.toStdString();
            cell.font = fontIn("many" + number + ".ttf");
        }
        section.cells.push_back(std::move(cell));
    }
    return section;
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
    sections_.clear();
    for (const QVariant& section : sections)
        sections_.push_back(toSection(section.toMap()));
    setPage(tableSnapshot());
    return page_;
}

void Bench::showTable(const QVariantList& sections) {
    sections_.clear();
    for (const QVariant& section : sections)
        sections_.push_back(toSection(section.toMap()));
    page_->read(tableSnapshot());
}

void Bench::showOtherTable(const QVariantList& sections) {
    ++tableId_;
    viewport_ = {0, kTableHeight, {}};
    showTable(sections);
}

void Bench::askToScroll(int row, int position, bool animated) {
    scroll_ = {scroll_.serial + 1, {0, row}, static_cast<settings::ScrollPosition>(position), animated};
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
            move(moved);
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

void Bench::move(const settings::RowMoved& move) {
    auto& source = sections_[std::size_t(move.from.section)].cells;
    const settings::CellSnapshot cell = source[std::size_t(move.from.row)];
    source.erase(source.begin() + move.from.row);
    auto& destination = sections_[std::size_t(move.to.section)].cells;
    destination.insert(destination.begin() + move.to.row, cell);
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
    double y = 0;
    for (std::size_t i = 0; i < sections_.size(); ++i) {
        settings::SectionSnapshot section = sections_[i];
        section.rowCount = int(section.cells.size());
        if (i < viewport_.sections.size()) {
            section.headerHeight = viewport_.sections[i].header;
            section.footerHeight = viewport_.sections[i].footer;
        }
        const double rows = y + section.headerHeight;
        const int first = std::clamp(int(std::floor((viewport_.top - rows) / 40)), 0, section.rowCount);
        const int end = std::clamp(int(std::ceil((viewport_.bottom - rows) / 40)), first, section.rowCount);
        section.cells.erase(section.cells.begin() + end, section.cells.end());
        section.cells.erase(section.cells.begin(), section.cells.begin() + first);
        section.firstCell = first;
        y = rows + section.rowCount * 40 + section.footerHeight;
        table.sections.push_back(std::move(section));
    }
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

#include "tests/settings/ui/Bench.h"

#include <QAccessible>
#include <QQuickWindow>

namespace {

QStringList told; ///< by accessibility events

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
    return value.text() ? QString::fromStdString(*value.text()) : QVariant();
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
    return row;
}

void visit(QAccessibleInterface* control, const std::function<void(QAccessibleInterface*)>& look) {
    if (!control) return;
    look(control);
    for (int i = 0; i < control->childCount(); ++i)
        visit(control->child(i), look);
}

void listen(QAccessibleEvent* event) {
    if (event->type() == QAccessible::TextInserted)
        told << static_cast<QAccessibleTextInsertEvent*>(event)->textInserted();
    if (event->type() == QAccessible::TextRemoved)
        told << static_cast<QAccessibleTextRemoveEvent*>(event)->textRemoved();
    if (event->type() == QAccessible::TextUpdated)
        told << static_cast<QAccessibleTextUpdateEvent*>(event)->textInserted();
    if (event->type() == QAccessible::ValueChanged)
        told << static_cast<QAccessibleValueChangeEvent*>(event)->value().toString();
}

} // namespace

settings::PageModel* Bench::page(const QVariantList& rows) {
    changes_.clear();
    taps_.clear();
    underWay_.clear();
    page_ = new settings::PageModel(*this, snapshot(rows), this);
    return page_;
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

QStringList Bench::spokenEvents() {
    QAccessible::setActive(true);
    QAccessible::installUpdateHandler(listen);
    return std::exchange(told, {});
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

void Bench::rowTapped(std::uint64_t /*page*/, std::size_t row) {
    taps_ << int(row);
}

void Bench::valueChanged(std::uint64_t /*page*/, std::size_t row, const platform::Value& value,
                         std::function<void()> taken) {
    changes_ << QVariant(QVariantList{int(row), toVariant(value)});
    underWay_.push_back(std::move(taken));
}

void Bench::rowMoved(std::uint64_t /*page*/, platform::NSIndexPath /*from*/, platform::NSIndexPath /*to*/,
                     std::function<void()> taken) {
    underWay_.push_back(std::move(taken));
}

void Bench::tableScrolled(std::uint64_t /*page*/, const settings::TableViewport& /*viewport*/) {
}

std::shared_ptr<const settings::PageSnapshot> Bench::snapshot(const QVariantList& rows) {
    auto page = std::make_shared<settings::PageSnapshot>();
    page->id = 1;
    page->title = "Bench";
    for (const QVariant& row : rows)
        page->rows.push_back(toRow(row.toMap()));
    return page;
}

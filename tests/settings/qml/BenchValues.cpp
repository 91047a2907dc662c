#include "tests/settings/qml/BenchValues.h"

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <QRectF>

using namespace platform;
using namespace settings;

namespace bench_values {
namespace {

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

} // namespace

QVariant written(const Event& event) {
    return std::visit([](const auto& happened) { return toVariant(happened); }, event);
}

Value toValue(const QVariant& value) {
    const int type = value.typeId();
    if (type == QMetaType::Bool) return value.toBool();
    if (type == QMetaType::Int) return value.toInt();
    if (type == QMetaType::Double) return value.toDouble();
    if (type == QMetaType::QString) return value.toString().toStdString();
    List list;
    for (const QVariant& each : value.toList())
        list.push_back(toValue(each));
    return type == QMetaType::QVariantList ? Value(std::move(list)) : Value();
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
    if (map.contains("byDefault")) row.byDefault = toValue(map["byDefault"]);
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

std::vector<std::string> toTexts(const QVariant& list) {
    std::vector<std::string> texts;
    for (const QString& text : list.toStringList())
        texts.push_back(text.toStdString());
    return texts;
}

search::Page toPage(const QVariantMap& map, std::size_t position) {
    std::optional<std::size_t> from;
    if (map.contains("from")) from = map["from"].toULongLong();
    return {"Class" + std::to_string(position), toText(map["title"]), from, 0, {}, {}};
}

search::Entry toEntry(const QVariantMap& map) {
    search::Entry entry;
    entry.title = toText(map["title"]);
    entry.page = map["page"].toULongLong();
    entry.cell = map["cell"].toInt();
    entry.identifier = toText(map["identifier"]);
    entry.key = toText(map["key"]);
    entry.header = toText(map["header"]);
    entry.section = map.value("section", -1).toInt();
    entry.row = map["row"].toULongLong();
    entry.words = toTexts(map["words"]);
    entry.options = toTexts(map["options"]);
    entry.shortTitles = toTexts(map["shortTitles"]);
    for (const QVariant& value : map["values"].toList())
        entry.values.push_back(toValue(value));
    if (map.contains("minimum")) entry.minimum = map["minimum"].toDouble();
    if (map.contains("maximum")) entry.maximum = map["maximum"].toDouble();
    entry.showsNumber = map["showsNumber"].toBool();
    entry.chosenBy = toTexts(map["chosenBy"]);
    return entry;
}

} // namespace bench_values

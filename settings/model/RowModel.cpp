#include "settings/model/RowModel.h"

#include <QPointer>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

namespace settings {

using namespace platform;

namespace {

constexpr double kNoise = 1e-6;  ///< of computing, in parts of a step
constexpr double kFinest = 1e-6; ///< than which no hand is finer

QString nameFor(const RowSnapshot& row, const RowModel::Surroundings& around) {
    const QString identifier = QString::fromStdString(row.identifier);
    const auto firstOf = [](std::initializer_list<QString> names) {
        return *std::find_if(names.begin(), names.end() - 1, [](const QString& name) { return !name.isEmpty(); });
    };
    switch (row.cell) {
    case PSSliderCell:
        return firstOf({around.textAbove, around.header, identifier});
    case PSEditTextCell:
    case PSSecureEditTextCell:
        return firstOf({QString::fromStdString(row.placeholder), around.header, identifier});
    default:
        return firstOf({QString::fromStdString(row.name), identifier});
    }
}

} // namespace

RowModel::RowModel(SendEvent send, std::size_t position, const RowSnapshot& row, const Surroundings& around,
                   QObject* parent)
    : QObject(parent), send_(std::move(send)), position_(position), row_(row), accessibleName_(nameFor(row, around)),
      accessibleDescription_(around.footer.isEmpty() ? around.header : around.footer) {
    if (accessibleDescription_ == accessibleName_) accessibleDescription_.clear();
}

/// The largest of 1, 2, 5, 10, 20 and so on of which at least twenty fit between the bounds.
double RowModel::step() const {
    const double most = maximum() / 20 - minimum() / 20;
    if (most <= 0) return 1;
    const double power = std::pow(10, std::floor(std::log10(most) + kNoise));
    const double digit = most / power + kNoise;
    return (digit >= 5 ? 5 : digit >= 2 ? 2 : 1) * power;
}

QString RowModel::valueText() const {
    switch (row_.cell) {
    case PSSwitchCell:
        return on() ? tr("On") : tr("Off");
    case PSSliderCell:
        return shown(number());
    case PSEditTextCell:
        return text();
    case PSLinkListCell:
        return valueTitle();
    default:
        return {};
    }
}

bool RowModel::isSameRow(const RowSnapshot& row) const {
    return row.cell == row_.cell && row.name == row_.name && row.identifier == row_.identifier &&
           row.footerText == row_.footerText && row.placeholder == row_.placeholder && row.min == row_.min &&
           row.max == row_.max && row.showValue == row_.showValue && row.icon == row_.icon;
}

void RowModel::read(const RowSnapshot& row, bool changed) {
    row_ = row;
    changed_ = changed;
    if (changesUnderWay_ == 0) emit valueRead();
}

void RowModel::setOpen(bool open) {
    if (std::exchange(open_, open) != open) emit openChanged();
}

void RowModel::setRemark(const QString& remark) {
    if (std::exchange(remark_, remark) != remark) emit remarkChanged();
}

void RowModel::setMark(const QString& mark) {
    if (std::exchange(mark_, mark) != mark) emit remarkChanged();
}

QString RowModel::accessibleDescription() const {
    QStringList texts{remark_, mark_, accessibleDescription_};
    texts.removeAll(QString());
    return texts.join(QStringLiteral(". "));
}

double RowModel::unit() const {
    const double largest = std::max(std::abs(minimum()), std::abs(maximum()));
    const double shown = largest >= kLongNumber
                             ? std::pow(10, std::floor(std::log10(largest)) + 1 - kDigitsOfLongNumber)
                             : std::pow(10, -decimalsOf(row_));
    return showsValue() && shown <= step() * (1 + kNoise) ? shown : kFinest;
}

double RowModel::nearest(double number) const {
    if (number <= minimum()) return minimum();
    if (number >= maximum()) return maximum();
    const double rounded = unit() > kFinest ? shown(number).toDouble() : std::round(number * 1e6) / 1e6;
    return std::clamp(rounded, minimum(), maximum());
}

double RowModel::stepped(double number, int steps, bool fine) const {
    const double size = fine ? std::max(unit(), step() / 10) : step();
    const double place = number / size;
    return nearest(((steps > 0 ? std::floor(place + kNoise) : std::ceil(place - kNoise)) + steps) * size);
}

bool RowModel::canReset() const {
    if (!row_.byDefault) return false;
    const Value& value = row_.value;
    if (value.isNumber() && row_.byDefault->isNumber()) return value.doubleValue() != row_.byDefault->doubleValue();
    return !(value == *row_.byDefault);
}

void RowModel::reset() {
    if (canReset()) change(*row_.byDefault, true);
}

void RowModel::change(const Value& value, bool resets) {
    ++changesUnderWay_;
    send_(ValueChanged{position_, value, resets}, [self = QPointer(this)] {
        if (self && --self->changesUnderWay_ == 0) emit self->valueRead();
    });
}

} // namespace settings

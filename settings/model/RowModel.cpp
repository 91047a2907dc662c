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
constexpr double kLong = 1e7;    ///< a number from which on only the first digits are shown
constexpr int kLongDigits = 4;

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

double RowModel::minimum() const {
    const double minimum = row_.min.value_or(0);
    return std::isfinite(minimum) ? minimum : 0;
}

double RowModel::maximum() const {
    const double maximum = row_.max.value_or(1);
    return std::isfinite(maximum) ? std::max(maximum, minimum()) : minimum() + 1;
}

double RowModel::number() const {
    const double number = row_.value.isNumber() ? row_.value.doubleValue() : minimum();
    return std::isnan(number) ? minimum() : number;
}

/// The largest of 1, 2, 5, 10, 20 and so on of which at least twenty fit between the bounds.
double RowModel::step() const {
    const double most = maximum() / 20 - minimum() / 20;
    if (most <= 0) return 1;
    const double power = std::pow(10, std::floor(std::log10(most) + kNoise));
    const double digit = most / power + kNoise;
    return (digit >= 5 ? 5 : digit >= 2 ? 2 : 1) * power;
}

/// A field shows text and numbers; it shows anything else as empty, like nil.
QString RowModel::text() const {
    if (const std::string_view* text = row_.value.text()) return QString::fromUtf8(*text);
    return row_.value.isNumber() ? QString::fromStdString(description(row_.value)) : QString();
}

bool RowModel::isSameRow(const RowSnapshot& row) const {
    return row.cell == row_.cell && row.name == row_.name && row.identifier == row_.identifier &&
           row.footerText == row_.footerText && row.placeholder == row_.placeholder && row.min == row_.min &&
           row.max == row_.max && row.showValue == row_.showValue && row.icon == row_.icon;
}

void RowModel::read(const RowSnapshot& row) {
    row_ = row;
    if (changesUnderWay_ == 0) emit valueRead();
}

void RowModel::setOpen(bool open) {
    if (std::exchange(open_, open) != open) emit openChanged();
}

double RowModel::unit() const {
    const double largest = std::max(std::abs(minimum()), std::abs(maximum()));
    const double shown =
        largest >= kLong ? std::pow(10, std::floor(std::log10(largest)) + 1 - kLongDigits) : std::pow(10, -decimals());
    return showsValue() && shown <= step() * (1 + kNoise) ? shown : kFinest;
}

int RowModel::decimals() const {
    return maximum() - minimum() > 10 ? 1 : 2;
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

QString RowModel::shown(double number) const {
    if (std::abs(number) >= kLong) return QString::number(number, 'g', kLongDigits); // a row has no room for all digits
    const QString text = QString::number(number, 'f', decimals());
    return text.startsWith(u'-') && text.toDouble() == 0 ? text.sliced(1) : text;
}

void RowModel::change(const Value& value) {
    ++changesUnderWay_;
    send_(ValueChanged{position_, value}, [self = QPointer(this)] {
        if (self && --self->changesUnderWay_ == 0) emit self->valueRead();
    });
}

} // namespace settings

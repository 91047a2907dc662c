#include "settings/model/RowModel.h"

#include <QPointer>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

namespace settings {

using namespace platform;

namespace {

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
    return std::isnan(number) ? minimum() : std::clamp(number, minimum(), maximum());
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

void RowModel::slide(double number) {
    // Six decimals are finer than any hand, and steps leave no 0.30000000000000004 behind.
    const double rounded = std::round(number * 1e6) / 1e6;
    change(std::clamp(rounded, minimum(), maximum()));
}

QString RowModel::shown(double number) const {
    if (std::abs(number) >= 1e7) return QString::number(number, 'g', 4); // a row has no room for all digits
    const int decimals = maximum() - minimum() > 10 ? 1 : 2;
    return QString::number(number, 'f', decimals);
}

void RowModel::change(const Value& value) {
    ++changesUnderWay_;
    send_(ValueChanged{position_, value}, [self = QPointer(this)] {
        if (self && --self->changesUnderWay_ == 0) emit self->valueRead();
    });
}

} // namespace settings

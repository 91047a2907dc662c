#include "settings/model/RowValue.h"

#include "platform/preferences/PSSpecifier.h"

#include <algorithm>
#include <cmath>

namespace settings {
namespace {

bool holdsAValue(const RowSnapshot& row) {
    return row.cell == platform::PSSwitchCell || row.cell == platform::PSSliderCell ||
           row.cell == platform::PSLinkListCell || row.cell == platform::PSEditTextCell ||
           row.cell == platform::PSSecureEditTextCell;
}

} // namespace

double minimumOf(const RowSnapshot& row) {
    const double minimum = row.min.value_or(0);
    return std::isfinite(minimum) ? minimum : 0;
}

double maximumOf(const RowSnapshot& row) {
    const double maximum = row.max.value_or(1);
    return std::isfinite(maximum) ? std::max(maximum, minimumOf(row)) : minimumOf(row) + 1;
}

double numberOf(const RowSnapshot& row) {
    const double number = row.value.isNumber() ? row.value.doubleValue() : minimumOf(row);
    return std::isnan(number) ? minimumOf(row) : number;
}

int decimalsOf(const RowSnapshot& row) {
    return maximumOf(row) - minimumOf(row) > 10 ? 1 : 2;
}

QString shownNumber(const RowSnapshot& row, double number) {
    if (std::abs(number) >= kLongNumber) return QString::number(number, 'g', kDigitsOfLongNumber);
    const QString text = QString::number(number, 'f', decimalsOf(row));
    return text.startsWith(u'-') && text.toDouble() == 0 ? text.sliced(1) : text;
}

QString fieldTextOf(const RowSnapshot& row) {
    if (const std::string_view* text = row.value.text()) return QString::fromUtf8(*text);
    return row.value.isNumber() ? QString::fromStdString(platform::description(row.value)) : QString();
}

bool isChanged(const PageSnapshot& page, std::size_t position) {
    if (!page.openedRows || page.openedRows->size() != page.rows.size()) return false;
    const RowSnapshot& row = page.rows[position];
    const RowSnapshot& opened = (*page.openedRows)[position];
    return holdsAValue(row) && row.identifier == opened.identifier && row.value != opened.value;
}

} // namespace settings

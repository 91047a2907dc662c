#include "platform/preferences/PSListItemsController.h"

#include <algorithm>

namespace platform {

PLATFORM_CLASS(PSListItemsController)

namespace {

std::size_t optionCount(const PSSpecifier& row) {
    return std::min(row.titles().size(), row.values().size());
}

bool isSameOption(const Value& option, const Value& stored) {
    if (option.isNumber() && stored.isNumber()) return option.doubleValue() == stored.doubleValue();
    return option == stored;
}

} // namespace

int indexOfOption(const PSSpecifier& row, const Value& value) {
    return indexOfOption(row.values(), row.titles().size(), value);
}

int indexOfOption(const std::vector<Value>& values, std::size_t count, const Value& value) {
    for (std::size_t i = 0; i < std::min(values.size(), count); ++i)
        if (isSameOption(values[i], value)) return static_cast<int>(i);
    return -1;
}

PSSpecifierList PSListItemsController::specifiers() {
    if (_specifiers || !specifier()) return _specifiers;
    const PSSpecifier& options = *specifier();
    std::vector<PSSpecifierRef> rows{
        PSSpecifier::preferenceSpecifierNamed("", this, nullptr, nullptr, {}, PSGroupCell, false)};
    for (std::size_t i = 0; i < optionCount(options); ++i) {
        auto row = PSSpecifier::preferenceSpecifierNamed(options.titles()[i], this, nullptr, nullptr, {},
                                                         PSListItemCell, false);
        row->action = [this, i](NSObject&, PSSpecifier&) { select(static_cast<int>(i)); };
        rows.push_back(std::move(row));
    }
    _specifiers = std::make_shared<const std::vector<PSSpecifierRef>>(std::move(rows));
    return _specifiers;
}

int PSListItemsController::selectedIndex() const {
    return specifier() ? indexOfOption(*specifier(), specifier()->performGetter()) : -1;
}

void PSListItemsController::select(int index) {
    if (!specifier() || index < 0 || static_cast<std::size_t>(index) >= optionCount(*specifier())) return;
    specifier()->performSetter(specifier()->values()[static_cast<std::size_t>(index)]);
}

} // namespace platform

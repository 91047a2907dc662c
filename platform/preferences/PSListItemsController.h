#pragma once

#include "platform/preferences/PSListController.h"

#include <cstddef>
#include <vector>

namespace platform {

/// The page of an option list: a row for each option of the row that opened it, that of the stored value marked. Main
/// thread.
class PLATFORM_EXPORT PSListItemsController final : public PSListController {
  public:
    /// A group row, then a row of kind PSListItemCell for each option that has both a title and a value.
    PSSpecifierList specifiers() override;

    /// The position of the stored value among the options, -1 when it is not among them. A number equals a number of
    /// the other kind.
    [[nodiscard]] int selectedIndex() const;
    /// Stores the option's value through the opening row's set operation. Does nothing for a position without an
    /// option.
    void select(int index);
};

/// The position of a value among the options of a row, -1 when it is not among them. Main thread.
[[nodiscard]] PLATFORM_EXPORT int indexOfOption(const PSSpecifier& row, const Value& value);
/// The same among options that are given by their values, of which only so many count. Any thread.
[[nodiscard]] PLATFORM_EXPORT int indexOfOption(const std::vector<Value>& values, std::size_t count,
                                                const Value& value);

} // namespace platform

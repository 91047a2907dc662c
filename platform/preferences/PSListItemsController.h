#pragma once

#include "platform/preferences/PSListController.h"

namespace platform {

/// The page of an option list: one row for each title of the row that opened it, the stored value's row marked.
/// Main thread.
class PLATFORM_EXPORT PSListItemsController final : public PSListController {
  public:
    /// A group row, then a row of kind PSListItemCell for each option that has both a title and a value.
    PSSpecifierList specifiers() override;

    /// The position of the stored value among the options, -1 when it is none of them. Values compare as they are
    /// stored, a number with a number whatever its kind.
    [[nodiscard]] int selectedIndex() const;
    /// Stores the option's value through the opening row's set operation. Positions that are no option do nothing.
    void select(int index);
};

/// The position of a value among an option list's values, -1 when it is none of them.
[[nodiscard]] PLATFORM_EXPORT int indexOfOption(const PSSpecifier& row, const Value& value);

} // namespace platform

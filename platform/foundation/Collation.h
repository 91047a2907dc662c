#pragma once

#include "platform/Export.h"

#include <memory>
#include <string>
#include <string_view>

namespace platform {

/// The order of texts in one language: accents count, case does not. A byte that is not UTF-8 counts as U+FFFD. Immutable; any thread.
///
///     const Collation& order = Collation::ofUser();
///     std::ranges::sort(names, [&](const auto& a, const auto& b) {
///         return order.localizedCaseInsensitiveCompare(a, b) < 0;
///     });
class PLATFORM_EXPORT Collation {
  public:
    /// Takes a locale's name as the environment spells it, such as "sv_SE.UTF-8". An unknown locale gets the order that
    /// suits most languages, and so do "C" and "POSIX", whose own order tells case apart.
    explicit Collation(std::string_view locale);

    /// The order of the user's language: that of LC_ALL, LC_COLLATE or LANG at the first call.
    [[nodiscard]] static const Collation& ofUser();

    /// Less than, equal to or greater than 0.
    [[nodiscard]] int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b) const;

  private:
    struct Rules;
    std::shared_ptr<const Rules> rules_;
};

} // namespace platform

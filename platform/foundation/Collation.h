#pragma once

#include "platform/Export.h"

#include <memory>
#include <string>
#include <string_view>

namespace platform {

/// Compares two texts as the user's language orders them, without regard to case: less than, equal to or greater than
/// 0.
///
///     std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
///         return localizedCaseInsensitiveCompare(a, b) < 0;
///     });
///
/// The language is that of LC_ALL, LC_COLLATE or LANG when the first comparison is made. Any thread.
[[nodiscard]] PLATFORM_EXPORT int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b);

/// The order of texts in one language: accents count, case does not. What is not UTF-8 counts as replacement
/// characters. Immutable; any thread.
class PLATFORM_EXPORT Collation {
  public:
    /// Takes a locale's name as the environment spells it, such as "sv_SE.UTF-8". One that is not known, and "C" and
    /// "POSIX", whose own order would tell case apart, get the order that suits most languages.
    explicit Collation(std::string_view locale);

    /// The order of the user's language, for whoever compares often.
    [[nodiscard]] static const Collation& ofUser();

    [[nodiscard]] int compare(std::string_view a, std::string_view b) const;

  private:
    struct Rules;
    std::shared_ptr<const Rules> rules_;
};

} // namespace platform

#pragma once

#include "platform/Export.h"

#include <string>
#include <string_view>

namespace platform {

/// The user's locale for a category such as "LC_TIME", as the environment spells it: "sv_SE.UTF-8". Empty without one.
/// Any thread, as the other.
[[nodiscard]] PLATFORM_EXPORT std::string_view usersLocale(const char* category);

/// The name under which ICU knows a locale of the environment; empty is its root, that of "C" and "POSIX" too.
[[nodiscard]] PLATFORM_EXPORT std::string icuLocale(std::string_view locale);

} // namespace platform

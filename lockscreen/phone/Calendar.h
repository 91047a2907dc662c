#pragma once

#include <ctime>
#include <string>
#include <string_view>

namespace lumora {

/// Dates and times as a locale writes them; it is named as the environment does, such as "sv_SE.UTF-8". British
/// for "C", "POSIX" and an unknown one, which have no words of their own. Any thread.

/// "18:36", or "6:36" where the day is halved; without saying which half.
[[nodiscard]] std::string clockText(const std::tm& time, std::string_view locale);
/// "Friday · 20 November": the day of the week, then the day of the month in the locale's order.
[[nodiscard]] std::string dateText(const std::tm& time, std::string_view locale);

} // namespace lumora

#include "platform/foundation/Timestamp.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace platform {

namespace {

constexpr std::chrono::sys_seconds kEpoch = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1);

} // namespace

std::optional<std::string> timestamp(Date date) {
    using namespace std::chrono;
    constexpr double farthest = 9e11;
    if (!(std::abs(date.seconds) < farthest)) return std::nullopt;
    const sys_seconds moment = kEpoch + seconds(static_cast<std::int64_t>(std::floor(date.seconds)));
    const auto midnight = floor<days>(moment);
    const year_month_day day(midnight);
    const hh_mm_ss time(moment - midnight);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(day.year()),
                  static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text.data();
}

std::optional<Date> dateFromTimestamp(std::string_view text) {
    constexpr std::string_view form = "0000-00-00T00:00:00Z";
    if (text.size() != form.size()) return std::nullopt;
    std::array<unsigned, 6> fields{};
    std::size_t field = 0;
    for (std::size_t i = 0; i < form.size(); ++i) {
        const bool digit = form[i] == '0';
        if (digit ? text[i] < '0' || text[i] > '9' : text[i] != form[i]) return std::nullopt;
        if (digit) fields[field] = fields[field] * 10 + static_cast<unsigned>(text[i] - '0');
        if (!digit) ++field;
    }
    using namespace std::chrono;
    const year_month_day date{year(static_cast<int>(fields[0])), month(fields[1]), day(fields[2])};
    if (!date.ok() || fields[3] > 23 || fields[4] > 59 || fields[5] > 60) return std::nullopt;
    const seconds sinceEpoch = sys_days(date) - kEpoch + hours(fields[3]) + minutes(fields[4]) + seconds(fields[5]);
    return Date{static_cast<double>(sinceEpoch.count())};
}

} // namespace platform

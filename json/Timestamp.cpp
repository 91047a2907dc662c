#include "json/Timestamp.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

using platform::Date;
using namespace std::chrono;

namespace lumora {
namespace {

/// Where archives count from.
constexpr sys_seconds kEpoch = sys_days{year{2001} / January / 1};
constexpr sys_seconds kFirst = sys_days{year{1} / January / 1};
constexpr sys_seconds kLast = sys_days{year{9999} / December / 31} + hours{24} - seconds{1};

/// The number that the whole text is; -1 when it is none.
int number(std::string_view digits) {
    if (digits.find_first_not_of("0123456789") != std::string_view::npos) return -1;
    int value = -1;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

} // namespace

std::optional<std::string> formatTimestamp(Date date) {
    const auto first = static_cast<double>((kFirst - kEpoch).count());
    const auto last = static_cast<double>((kLast - kEpoch).count());
    // A negative zero is told apart as well: it would come back as plain zero.
    if (!(date.seconds >= first && date.seconds <= last) || std::trunc(date.seconds) != date.seconds ||
        (date.seconds == 0 && std::signbit(date.seconds)))
        return std::nullopt;
    const sys_seconds moment = kEpoch + seconds{static_cast<std::int64_t>(date.seconds)};
    const auto midnight = floor<days>(moment);
    const year_month_day day{midnight};
    const hh_mm_ss time{moment - midnight};
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(day.year()),
                  static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text.data();
}

std::optional<Date> parseTimestamp(std::string_view text) {
    constexpr std::string_view form = "0000-00-00T00:00:00Z";
    if (text.size() != form.size()) return std::nullopt;
    for (std::size_t at = 0; at < form.size(); ++at)
        if (form[at] != '0' && text[at] != form[at]) return std::nullopt;
    const year_month_day day{year{number(text.substr(0, 4))}, month{static_cast<unsigned>(number(text.substr(5, 2)))},
                             std::chrono::day{static_cast<unsigned>(number(text.substr(8, 2)))}};
    const int hour = number(text.substr(11, 2));
    const int minute = number(text.substr(14, 2));
    const int second = number(text.substr(17, 2));
    const bool inRange = number(text.substr(0, 4)) > 0 && day.ok() && hour >= 0 && hour < 24 && minute >= 0 &&
                         minute < 60 && second >= 0 && second < 60;
    if (!inRange) return std::nullopt;
    const sys_seconds moment = sys_days{day} + hours{hour} + minutes{minute} + seconds{second};
    return Date{static_cast<double>((moment - kEpoch).count())};
}

} // namespace lumora

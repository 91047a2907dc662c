#include "history/Moment.h"

#include "platform/foundation/Timestamp.h"

#include <array>
#include <cmath>
#include <ctime>

using platform::Result;

namespace lumora {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;
using std::chrono::weeks;

namespace {

constexpr sys_seconds kDatesBegin = sys_days(std::chrono::year(2001) / 1 / 1);

std::tm localClock(Moment moment) {
    const std::time_t time = floor<seconds>(moment).time_since_epoch().count();
    std::tm clock{};
    ::localtime_r(&time, &clock);
    return clock;
}

/// In the time zone of the user.
Moment localMoment(int year, unsigned month, unsigned day, milliseconds ofDay) {
    std::tm clock{};
    clock.tm_year = year - 1900;
    clock.tm_mon = static_cast<int>(month) - 1;
    clock.tm_mday = static_cast<int>(day);
    const auto wholeSeconds = floor<seconds>(ofDay);
    clock.tm_sec = static_cast<int>(wholeSeconds.count() % 60);
    clock.tm_min = static_cast<int>(wholeSeconds.count() / 60 % 60);
    clock.tm_hour = static_cast<int>(wholeSeconds.count() / 3600);
    clock.tm_isdst = -1;
    return Moment(seconds(std::mktime(&clock)) + (ofDay - wholeSeconds));
}

/// So many days before the one that the moment is in.
Moment daysBefore(Moment moment, int count, milliseconds ofDay) {
    const std::tm clock = localClock(moment);
    // The calendar takes days below the first for those of the month before.
    const auto date =
        sys_days(std::chrono::year(clock.tm_year + 1900) / (clock.tm_mon + 1) / clock.tm_mday) - days(count);
    const std::chrono::year_month_day day(date);
    return localMoment(static_cast<int>(day.year()), static_cast<unsigned>(day.month()),
                       static_cast<unsigned>(day.day()), ofDay);
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Takes a text apart from its front.
class MomentReader {
  public:
    MomentReader(std::string text, Moment now) : text_(std::move(text)), rest_(text_), now_(now) {}

    std::optional<Moment> read() {
        if (takeWord("now")) return atEnd(now_);
        for (const auto& [word, before] : {std::pair("today", 0), std::pair("yesterday", 1)})
            if (takeWord(word)) return dayBefore(before);
        if (const auto moment = attempt(&MomentReader::date)) return moment;
        if (const auto moment = attempt(&MomentReader::clock)) return moment;
        return attempt(&MomentReader::ago);
    }

  private:
    using Form = std::optional<Moment> (MomentReader::*)();

    std::optional<Moment> attempt(Form form) {
        const std::string_view before = rest_;
        const auto moment = (this->*form)();
        if (!moment) rest_ = before;
        return moment;
    }

    [[nodiscard]] std::optional<Moment> atEnd(Moment moment) const {
        return rest_.empty() ? std::optional(moment) : std::nullopt;
    }

    bool take(char character) {
        if (!rest_.starts_with(character)) return false;
        rest_.remove_prefix(1);
        return true;
    }
    /// A whole one, with the space behind it.
    bool takeWord(std::string_view word) {
        if (!rest_.starts_with(word)) return false;
        const std::string_view after = rest_.substr(word.size());
        if (!after.empty() && after.front() != ' ') return false;
        rest_ = after;
        take(' ');
        return true;
    }
    /// Of as many digits at most, and at least.
    std::optional<int> takeNumber(std::size_t most, std::size_t least = 1) {
        int number = 0;
        std::size_t digits = 0;
        for (; digits < most && !rest_.empty() && isDigit(rest_.front()); ++digits) {
            number = number * 10 + (rest_.front() - '0');
            rest_.remove_prefix(1);
        }
        return digits >= least ? std::optional(number) : std::nullopt;
    }

    /// "18:36", "18:36:05", "18:36:05.123".
    std::optional<milliseconds> takeClock() {
        const auto hour = takeNumber(2);
        if (!hour || *hour > 23 || !take(':')) return std::nullopt;
        const auto minute = takeNumber(2, 2);
        if (!minute || *minute > 59) return std::nullopt;
        milliseconds time = hours(*hour) + minutes(*minute);
        if (!take(':')) return time;
        const auto second = takeNumber(2, 2);
        if (!second || *second > 59) return std::nullopt;
        time += seconds(*second);
        if (!take('.')) return time;
        const auto thousandths = takeNumber(3, 3);
        return thousandths ? std::optional(time + milliseconds(*thousandths)) : std::nullopt;
    }

    /// "Z", "+01:00", "-0530".
    std::optional<minutes> takeZone() {
        if (take('z')) return minutes(0);
        const bool west = rest_.starts_with('-');
        if (!take('+') && !take('-')) return std::nullopt;
        const auto hour = takeNumber(2, 2);
        take(':');
        const auto minute = takeNumber(2, 2);
        if (!hour || !minute || *hour > 23 || *minute > 59) return std::nullopt;
        const minutes ahead = hours(*hour) + minutes(*minute);
        return west ? -ahead : ahead;
    }

    std::optional<Moment> dayBefore(int count) {
        const auto time = rest_.empty() ? milliseconds(0) : takeClock();
        return time ? atEnd(daysBefore(now_, count, *time)) : std::nullopt;
    }

    std::optional<Moment> clock() {
        const auto time = takeClock();
        if (!time || !rest_.empty()) return std::nullopt;
        const Moment today = daysBefore(now_, 0, *time);
        return today <= now_ ? today : daysBefore(now_, 1, *time);
    }

    std::optional<Moment> date() {
        const auto year = takeNumber(4, 4);
        if (!year || !take('-')) return std::nullopt;
        const auto month = takeNumber(2, 2);
        if (!month || !take('-')) return std::nullopt;
        const auto day = takeNumber(2, 2);
        if (!day) return std::nullopt;
        const auto calendar = std::chrono::year(*year) / *month / *day;
        if (!calendar.ok() || *year < 1970) return std::nullopt;
        milliseconds ofDay(0);
        if (!rest_.empty()) {
            const auto time = take('t') || take(' ') ? takeClock() : std::nullopt;
            if (!time) return std::nullopt;
            ofDay = *time;
            if (!rest_.empty()) {
                const auto ahead = takeZone();
                return ahead ? atEnd(sys_days(calendar) + ofDay - *ahead) : std::nullopt;
            }
        }
        return localMoment(*year, static_cast<unsigned>(*month), static_cast<unsigned>(*day), ofDay);
    }

    /// "1h30m", "2 days ago", "an hour ago".
    std::optional<Moment> ago() {
        milliseconds length(0);
        do {
            const bool one = takeWord("an") || takeWord("a");
            const auto number = one ? std::optional(1) : takeNumber(6);
            if (!number) return std::nullopt;
            take(' ');
            const auto unit = takeUnit();
            if (!unit) return std::nullopt;
            length += *number * *unit;
            take(' ');
        } while (!rest_.empty() && rest_ != "ago");
        return now_ - length;
    }

    std::optional<milliseconds> takeUnit() {
        struct Unit {
            std::array<std::string_view, 4> names;
            milliseconds length;
        };
        static constexpr std::array<Unit, 5> units{{{{"seconds", "second", "sec", "s"}, seconds(1)},
                                                    {{"minutes", "minute", "min", "m"}, minutes(1)},
                                                    {{"hours", "hour", "hrs", "h"}, hours(1)},
                                                    {{"days", "day", "", "d"}, days(1)},
                                                    {{"weeks", "week", "", "w"}, weeks(1)}}};
        for (const auto& [names, length] : units)
            for (const std::string_view name : names) {
                const bool isNext = !name.empty() && rest_.starts_with(name);
                const std::string_view after = isNext ? rest_.substr(name.size()) : std::string_view();
                if (!isNext || (!after.empty() && after.front() != ' ' && !isDigit(after.front()))) continue;
                rest_ = after;
                return length;
            }
        return std::nullopt;
    }

    std::string text_; ///< in small letters, with a space between words and none around them
    std::string_view rest_;
    Moment now_;
};

std::string simplified(std::string_view text) {
    std::string simple;
    for (const char character : text) {
        const bool isSpace = character == ' ' || character == '\t';
        if (isSpace && (simple.empty() || simple.back() == ' ')) continue;
        const bool isCapital = character >= 'A' && character <= 'Z';
        simple += isSpace ? ' ' : isCapital ? static_cast<char>(character - 'A' + 'a') : character;
    }
    if (simple.ends_with(' ')) simple.pop_back();
    return simple;
}

} // namespace

std::string timestampOf(Moment moment) {
    const auto second = floor<seconds>(moment);
    const auto text = platform::timestamp({static_cast<double>((second - kDatesBegin).count())});
    std::string thousandths = std::to_string((moment - second).count());
    thousandths.insert(0, 3 - thousandths.size(), '0');
    return text.value_or("0000-00-00T00:00:00Z").substr(0, 19) + "." + thousandths + "Z";
}

std::optional<Moment> momentOf(std::string_view timestamp) {
    std::string whole(timestamp);
    milliseconds thousandths(0);
    if (constexpr std::size_t dot = 19; whole.size() == 24 && whole[dot] == '.') {
        for (std::size_t i = dot + 1; i < dot + 4; ++i) {
            if (!isDigit(whole[i])) return std::nullopt;
            thousandths = thousandths * 10 + milliseconds(whole[i] - '0');
        }
        whole.erase(dot, 4);
    }
    const auto date = platform::dateFromTimestamp(whole);
    if (!date || whole[17] == '6') return std::nullopt; // the system's clock has no leap seconds
    return kDatesBegin + seconds(std::llround(date->seconds)) + thousandths;
}

std::string localTimeOf(Moment moment) {
    const std::tm clock = localClock(moment);
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &clock)};
}

Result<Moment> readMoment(std::string_view text, Moment now) {
    if (const auto moment = MomentReader(simplified(text), now).read()) return *moment;
    return Result<Moment>::failure("\"" + std::string(text) +
                                   "\" is no time, such as 18:36, yesterday 18:36, 2026-11-20 18:36 or 2h ago");
}

} // namespace lumora

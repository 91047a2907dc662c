#include "lockscreen/phone/Calendar.h"

#include "platform/foundation/UserLocale.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <unicode/dtptngen.h>
#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>
#include <utility>

namespace lumora {
namespace {

/// The locale if ICU knows its language, else British.
icu::Locale known(std::string_view locale) {
    const icu::Locale asked(platform::icuLocale(locale).c_str());
    std::int32_t count = 0;
    const icu::Locale* available = icu::Locale::getAvailableLocales(count);
    const bool isKnown = std::any_of(available, available + count, [&](const icu::Locale& one) {
        return std::strcmp(one.getLanguage(), asked.getLanguage()) == 0;
    });
    return isKnown ? asked : icu::Locale::getUK();
}

std::unique_ptr<icu::DateTimePatternGenerator> patternsOf(const icu::Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::DateTimePatternGenerator> patterns(
        icu::DateTimePatternGenerator::createInstance(locale, status));
    return U_FAILURE(status) ? nullptr : std::move(patterns);
}

/// How the locale arranges the fields of a skeleton, each of which is a letter of ICU's.
icu::UnicodeString pattern(const icu::Locale& locale, const char* fields) {
    UErrorCode status = U_ZERO_ERROR;
    const auto patterns = patternsOf(locale);
    return patterns ? patterns->getBestPattern(fields, status) : icu::UnicodeString();
}

bool halvesTheDay(const icu::Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    const auto patterns = patternsOf(locale);
    const auto cycle = patterns ? patterns->getDefaultHourCycle(status) : UDAT_HOUR_CYCLE_23;
    return !U_FAILURE(status) && (cycle == UDAT_HOUR_CYCLE_11 || cycle == UDAT_HOUR_CYCLE_12);
}

/// Empty for an empty pattern, or if ICU is without its data.
std::string written(const std::tm& time, const icu::Locale& locale, const icu::UnicodeString& pattern) {
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat format(pattern, locale, status);
    // The fields are written as they are: no zone comes between.
    icu::GregorianCalendar calendar(*icu::TimeZone::getGMT(), locale, status);
    if (U_FAILURE(status)) return {};
    calendar.set(time.tm_year + 1900, time.tm_mon, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec);
    format.setTimeZone(*icu::TimeZone::getGMT());
    icu::UnicodeString text;
    format.format(calendar.getTime(status), text);
    std::string utf8;
    return U_FAILURE(status) ? utf8 : text.toUTF8String(utf8);
}

} // namespace

std::string clockText(const std::tm& time, std::string_view locale) {
    const icu::Locale users = known(locale);
    icu::UnicodeString fields = pattern(users, "Hmm");
    // A pattern for halves of the day would say which half.
    if (halvesTheDay(users)) fields.findAndReplace("HH", "h").findAndReplace("H", "h");
    std::string text = written(time, users, fields);
    if (!text.empty()) return text;
    std::array<char, 16> plain{};
    std::snprintf(plain.data(), plain.size(), "%02d:%02d", time.tm_hour, time.tm_min);
    return plain.data();
}

std::string dateText(const std::tm& time, std::string_view locale) {
    const icu::Locale users = known(locale);
    const std::string weekday = written(time, users, pattern(users, "EEEE"));
    const std::string day = written(time, users, pattern(users, "MMMMd"));
    return weekday.empty() || day.empty() ? weekday + day : weekday + " · " + day;
}

} // namespace lumora

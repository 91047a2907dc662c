#include "lockscreen/phone/Calendar.h"

#include "platform/foundation/UserLocale.h"

#include <array>
#include <cstdio>
#include <memory>
#include <unicode/dtptngen.h>
#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>

namespace lumora {
namespace {

/// A time as the locale writes the fields of a skeleton, each a letter of ICU's; empty if ICU is without its data.
std::string written(const std::tm& time, std::string_view locale, const char* fields) {
    const std::string known = platform::icuLocale(locale);
    const icu::Locale users(known.empty() ? "en_001" : known.c_str());
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> patterns(
        icu::DateTimePatternGenerator::createInstance(users, status));
    if (U_FAILURE(status)) return {};
    const icu::UnicodeString pattern = patterns->getBestPattern(fields, status);
    icu::SimpleDateFormat format(pattern, users, status);
    if (U_FAILURE(status)) return {};
    // The fields are written as they are: no zone of the clock's comes between.
    icu::GregorianCalendar calendar(*icu::TimeZone::getGMT(), users, status);
    calendar.set(time.tm_year + 1900, time.tm_mon, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec);
    format.adoptTimeZone(icu::TimeZone::getGMT()->clone());
    const UDate moment = calendar.getTime(status);
    if (U_FAILURE(status)) return {};
    icu::UnicodeString text;
    format.format(moment, text);
    std::string utf8;
    return text.toUTF8String(utf8);
}

} // namespace

std::string clockText(const std::tm& time, std::string_view locale) {
    std::string text = written(time, locale, "Jmm");
    if (!text.empty()) return text;
    std::array<char, 16> plain{};
    std::snprintf(plain.data(), plain.size(), "%02d:%02d", time.tm_hour, time.tm_min);
    return plain.data();
}

std::string dateText(const std::tm& time, std::string_view locale) {
    const std::string weekday = written(time, locale, "EEEE");
    const std::string day = written(time, locale, "MMMMd");
    return weekday.empty() || day.empty() ? weekday + day : weekday + " · " + day;
}

} // namespace lumora

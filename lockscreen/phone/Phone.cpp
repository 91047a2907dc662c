#include "lockscreen/phone/Phone.h"

#include "lockscreen/phone/Calendar.h"

#include "platform/foundation/UserLocale.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace lumora {
namespace {

/// A notice or a badge is of an application whose identifier ends so.
struct SampleNotice {
    std::string_view application;
    const char* title;
    const char* text;
    int minutes; ///< ago
};

constexpr std::array<SampleNotice, 3> kNotices{{
    {"Messages", "Ines", "The ridge is glowing, come outside!", 0},
    {"Calendar", "Evening walk", "19:00 – 20:30 · North shore", 6},
    {"Mail", "Boathouse", "Your key is ready at the front desk", 44},
}};

constexpr std::array<std::pair<std::string_view, int>, 3> kBadges{{{"Phone", 1}, {"Messages", 3}, {"Mail", 120}}};

/// Null without such an application.
const Application* ofKind(std::string_view kind, const std::vector<Application>& applications) {
    const auto found = std::ranges::find_if(applications, [kind](const Application& application) {
        const std::string& name = application.identifier;
        return name == kind || name.ends_with("." + std::string(kind));
    });
    return found == applications.end() ? nullptr : &*found;
}

/// Takes a number of so many digits off the front of a text.
std::optional<int> takeNumber(std::string_view& text, std::size_t digits) {
    if (text.size() < digits) return {};
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + digits, number);
    if (error != std::errc() || end != text.data() + digits || text.front() == '-') return {};
    text.remove_prefix(digits);
    return number;
}

bool take(std::string_view& text, char sign) {
    if (!text.starts_with(sign)) return false;
    text.remove_prefix(1);
    return true;
}

std::tm localTime(std::time_t time) {
    std::tm local{};
    ::localtime_r(&time, &local);
    return local;
}

/// A time of a clock that knows no summer time.
std::tm earlier(std::tm time, int minutes) {
    time.tm_min -= minutes;
    time.tm_isdst = 0;
    const std::time_t moment = ::timegm(&time);
    std::tm before{};
    ::gmtime_r(&moment, &before);
    return before;
}

} // namespace

Phone::Phone(PhoneOptions options, Installed installed)
    : options_(std::move(options)), installed_(std::move(installed)) {
}

Device Phone::device(std::time_t now) const {
    const std::string_view locale = platform::usersLocale("LC_TIME");
    const std::tm time = options_.time.value_or(localTime(now));
    Device device;
    device.size = options_.size;
    device.time = clockText(time, locale);
    device.date = dateText(time, locale);
    device.battery = options_.battery;
    device.passcode = options_.passcode;
    device.applications = installed_.applications;
    device.views = installed_.views;
    for (const SampleNotice& notice : kNotices)
        if (const Application* application = ofKind(notice.application, device.applications))
            device.notices.push_back({application->identifier, notice.title, notice.text,
                                      notice.minutes == 0 ? "now" : clockText(earlier(time, notice.minutes), locale)});
    for (const auto& [kind, count] : kBadges)
        if (const Application* application = ofKind(kind, device.applications))
            device.badges[application->identifier] = count;
    return device;
}

std::optional<std::tm> timeFrom(std::string_view text) {
    std::tm time = localTime(std::time(nullptr));
    if (text.find('T') != std::string_view::npos) {
        const auto year = takeNumber(text, 4);
        const bool dash = take(text, '-');
        const auto month = takeNumber(text, 2);
        const bool secondDash = take(text, '-');
        const auto day = takeNumber(text, 2);
        if (!year || !dash || !month || !secondDash || !day || !take(text, 'T')) return {};
        time.tm_year = *year - 1900;
        time.tm_mon = *month - 1;
        time.tm_mday = *day;
    }
    const auto hour = takeNumber(text, 2);
    const bool colon = take(text, ':');
    const auto minute = takeNumber(text, 2);
    if (!hour || !colon || !minute || !text.empty() || *hour > 23 || *minute > 59) return {};
    time.tm_hour = *hour;
    time.tm_min = *minute;
    time.tm_sec = 0;
    // A day that no month has comes back as another one.
    const std::tm same = earlier(time, 0);
    return same.tm_mday == time.tm_mday && same.tm_mon == time.tm_mon ? std::optional(time) : std::nullopt;
}

} // namespace lumora

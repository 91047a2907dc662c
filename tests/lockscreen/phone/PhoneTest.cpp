#include "lockscreen/phone/Phone.h"

#include "lockscreen/phone/Calendar.h"

#include "tests/support/KeptEnvironment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using namespace lumora;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

struct Phones : testing::Test {
    Phones() { ::setenv("LC_ALL", "C", 1); }

    static Installed installed(const std::vector<std::string>& names) {
        Installed all;
        for (const std::string& name : names)
            all.applications.push_back({"org.example." + name, name});
        all.views = {{"view.clock", "Clock", "org.example.Clock", false}, {"view.notes", "Notes", "", false}};
        return all;
    }
    static PhoneOptions at(const char* time) {
        PhoneOptions options;
        options.time = timeFrom(time);
        return options;
    }
    static Device device(PhoneOptions options,
                         const std::vector<std::string>& names = {"Calendar", "Mail", "Messages"}) {
        return Phone(std::move(options), installed(names)).device(0);
    }

    tests::KeptEnvironment environment;
};

TEST_F(Phones, ShowWhatIsChosen) {
    PhoneOptions options = at("2026-11-20T18:36");
    options.size = {844, 390};
    options.battery = 0.25;
    options.passcode = "42";
    const Device shown = device(options);
    EXPECT_EQ(shown.size, options.size);
    EXPECT_EQ(shown.battery, 0.25);
    EXPECT_EQ(shown.passcode, "42");
    EXPECT_EQ(shown.time, "18:36");
    EXPECT_EQ(shown.date, "Friday · 20 November");
}

TEST_F(Phones, HaveNoticesAndBadgesOfInstalledApplicationsAlone) {
    const Device full = device(at("2026-11-20T18:36"));
    ASSERT_EQ(full.notices.size(), 3U);
    EXPECT_EQ(full.notices[0].identifier, "org.example.Messages");
    EXPECT_EQ(full.notices[0].title, "Ines");
    EXPECT_EQ(full.notices[0].text, "The ridge is glowing, come outside!");
    EXPECT_EQ(full.notices[0].when, "now");
    EXPECT_EQ(full.notices[1].when, "18:30");
    EXPECT_EQ(full.notices[2].when, "17:52");
    EXPECT_THAT(full.badges,
                ElementsAre(testing::Pair("org.example.Mail", 120), testing::Pair("org.example.Messages", 3)));

    const Device other = device(at("18:36"), {"Mail", "Sendmail"});
    ASSERT_EQ(other.notices.size(), 1U);
    EXPECT_EQ(other.notices[0].identifier, "org.example.Mail");
    EXPECT_THAT(device({}, {}).notices, IsEmpty());
    EXPECT_THAT(device({}, {}).badges, IsEmpty());
}

TEST_F(Phones, TellWhatCameBeforeMidnight) {
    EXPECT_EQ(device(at("2026-11-20T00:10")).notices[2].when, "23:26");
}

TEST_F(Phones, GoOnWithTheClockUnlessTheirTimeIsChosen) {
    ::setenv("TZ", "UTC", 1);
    ::tzset();
    const Phone going({}, installed({}));
    constexpr std::time_t kEvening = 1795199760; // of 20 November 2026
    EXPECT_EQ(going.device(kEvening).time, "18:36");
    EXPECT_EQ(going.device(kEvening).date, "Friday · 20 November");
    EXPECT_EQ(Phone::nextChange(kEvening + 59), kEvening + 60);
    EXPECT_EQ(Phone::nextChange(kEvening), kEvening + 60);
    EXPECT_EQ(going.device(Phone::nextChange(kEvening)).time, "18:37");
    const Phone standing(at("2026-11-20T18:36"), installed({}));
    EXPECT_EQ(standing.device(kEvening).time, standing.device(kEvening + 86400).time);
}

TEST_F(Phones, SpeakTheUsersLanguage) {
    ::setenv("LC_ALL", "sv_SE.UTF-8", 1);
    EXPECT_EQ(device(at("2026-11-20T18:36")).date, "fredag · 20 november");
    ::unsetenv("LC_ALL");
    ::setenv("LC_TIME", "en_US.UTF-8", 1);
    EXPECT_EQ(device(at("2026-11-20T18:36")).date, "Friday · November 20");
    EXPECT_EQ(device(at("2026-11-20T18:36")).time, "6:36");
}

TEST(Calendar, WritesDatesAsALocaleDoes) {
    const std::tm time = timeFrom("2026-11-20T18:36").value();
    const std::vector<std::tuple<const char*, const char*, const char*>> expected{
        {"de_DE.UTF-8", "18:36", "Freitag · 20. November"}, {"hu_HU.UTF-8", "18:36", "péntek · november 20."},
        {"ja_JP.UTF-8", "18:36", "金曜日 · 11月20日"},      {"ar_EG.UTF-8", "٦:٣٦", "الجمعة · ٢٠ نوفمبر"},
        {"POSIX", "18:36", "Friday · 20 November"},         {"", "18:36", "Friday · 20 November"},
        {"xx_YY", "18:36", "Friday · 20 November"},         {"no locale at all", "18:36", "Friday · 20 November"}};
    for (const auto& [locale, clock, date] : expected) {
        EXPECT_EQ(clockText(time, locale), clock) << locale;
        EXPECT_EQ(dateText(time, locale), date) << locale;
    }
}

TEST(Calendar, ShowsNoonAndMidnightWhereTheDayIsHalved) {
    EXPECT_EQ(clockText(timeFrom("00:05").value(), "en_US"), "12:05");
    EXPECT_EQ(clockText(timeFrom("12:05").value(), "en_US"), "12:05");
    EXPECT_EQ(clockText(timeFrom("00:05").value(), "en_GB"), "00:05");
}

TEST(Times, AreReadWithADayOrWithout) {
    const auto time = timeFrom("2026-02-28T23:59");
    ASSERT_TRUE(time);
    EXPECT_EQ(time->tm_year, 126);
    EXPECT_EQ(time->tm_mon, 1);
    EXPECT_EQ(time->tm_mday, 28);
    EXPECT_EQ(time->tm_hour, 23);
    EXPECT_EQ(time->tm_min, 59);
    EXPECT_TRUE(timeFrom("00:00"));
    for (const char* wrong :
         {"", "18", "1836", "24:00", "18:60", "8:36", "18:3", "18:36 ", "-1:30", "18:-3", "18:36:00",
          "2026-02-29T18:36", "2026-13-01T18:36", "2026-00-10T18:36", "2026-1-1T18:36", "T18:36", "2026-11-20 18:36"})
        EXPECT_FALSE(timeFrom(wrong)) << wrong;
}

} // namespace

#include "history/Moment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

using namespace lumora;

namespace {

/// In a time zone two hours ahead in summer and one in winter, at noon by the sun of 2026-07-15.
class MomentTest : public testing::Test {
  protected:
    MomentTest() {
        ::setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
        ::tzset();
    }
    ~MomentTest() override {
        ::unsetenv("TZ");
        ::tzset();
    }

    /// As a timestamp; empty for what is no time.
    static std::string read(const std::string& text) {
        const auto moment = readMoment(text, *momentOf("2026-07-15T12:00:00.500Z"));
        return moment ? timestampOf(moment.value()) : "";
    }
};

} // namespace

TEST_F(MomentTest, IsATimestampToTheMillisecondAndBack) {
    for (const char* text : {"2026-11-20T18:36:00.123Z", "1999-12-31T23:59:59.999Z", "2001-01-01T00:00:00.000Z"}) {
        ASSERT_TRUE(momentOf(text)) << text;
        EXPECT_EQ(timestampOf(*momentOf(text)), text);
    }
    EXPECT_EQ(momentOf("2026-11-20T18:36:00Z"), momentOf("2026-11-20T18:36:00.000Z"));
    for (const char* text : {"", "2026-11-20", "2026-11-20T18:36:00.12Z", "2026-11-20T18:36:00.1x3Z",
                             "2026-11-31T18:36:00.123Z", "2026-11-20T18:36:00.123"})
        EXPECT_FALSE(momentOf(text)) << text;
}

TEST_F(MomentTest, IsShownInTheUsersTimeZone) {
    EXPECT_EQ(localTimeOf(*momentOf("2026-07-15T12:00:00.999Z")), "2026-07-15 14:00:00");
}

TEST_F(MomentTest, ReadsHowLongAgoItWas) {
    EXPECT_EQ(read("now"), "2026-07-15T12:00:00.500Z");
    EXPECT_EQ(read("90s"), "2026-07-15T11:58:30.500Z");
    for (const char* text : {"2h", "2h ago", "2 hours ago", "2 Hours  Ago", "120 min", "1h 60m ago", "1h60m"})
        EXPECT_EQ(read(text), "2026-07-15T10:00:00.500Z") << text;
    EXPECT_EQ(read("an hour ago"), "2026-07-15T11:00:00.500Z");
    EXPECT_EQ(read("a day ago"), read("1d"));
    EXPECT_EQ(read("a week ago"), read("7 days ago"));
    EXPECT_EQ(read("2w"), "2026-07-01T12:00:00.500Z");
}

TEST_F(MomentTest, ReadsTheLastTimeThatTheClockShowedThis) {
    EXPECT_EQ(read("10:30"), "2026-07-15T08:30:00.000Z");
    EXPECT_EQ(read("9:30:15"), "2026-07-15T07:30:15.000Z");
    EXPECT_EQ(read("18:00"), "2026-07-14T16:00:00.000Z") << "it is two o'clock";
}

TEST_F(MomentTest, ReadsDays) {
    EXPECT_EQ(read("today"), "2026-07-14T22:00:00.000Z");
    EXPECT_EQ(read("yesterday"), "2026-07-13T22:00:00.000Z");
    EXPECT_EQ(read("Yesterday 18:00"), "2026-07-14T16:00:00.000Z");
    EXPECT_EQ(read("today 23:00"), "2026-07-15T21:00:00.000Z");
}

TEST_F(MomentTest, ReadsDatesInTheUsersTimeZoneUnlessTheyNameOne) {
    EXPECT_EQ(read("2026-01-31"), "2026-01-30T23:00:00.000Z");
    EXPECT_EQ(read("2026-01-31 08:00"), "2026-01-31T07:00:00.000Z");
    EXPECT_EQ(read("2026-01-31T08:00:05.250"), "2026-01-31T07:00:05.250Z");
    EXPECT_EQ(read("2026-01-31T08:00:05Z"), "2026-01-31T08:00:05.000Z");
    EXPECT_EQ(read("2026-01-31t08:00z"), "2026-01-31T08:00:00.000Z");
    EXPECT_EQ(read("2026-01-31T08:00+05:30"), "2026-01-31T02:30:00.000Z");
    EXPECT_EQ(read("2026-01-31T08:00-0100"), "2026-01-31T09:00:00.000Z");
    EXPECT_EQ(read("2027-01-31T08:00Z"), "2027-01-31T08:00:00.000Z");
}

TEST_F(MomentTest, RefusesWhatIsNoTime) {
    for (const char* text : {"",
                             " ",
                             "ago",
                             "soon",
                             "2",
                             "2x",
                             "h",
                             "-2h",
                             "2h ago ago",
                             "25:00",
                             "10:60",
                             "10",
                             "10:3",
                             "2026-13-01",
                             "2026-02-30",
                             "2026-1-1",
                             "2026-01-31T",
                             "2026-01-31T08:00+1",
                             "yesterday 25:00",
                             "yesterday tomorrow",
                             "now 10:30",
                             "1969-12-31",
                             "1month",
                             "12345678s",
                             "10:30 ago"})
        EXPECT_EQ(read(text), "") << text;
    EXPECT_THAT(readMoment("soon", {}).error(), testing::HasSubstr("\"soon\" is no time, such as 18:36"));
}

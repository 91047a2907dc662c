#include "EdgeValues.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;
using namespace platform;

TEST(Description, OfAValueThatStandsAloneIsBare) {
    EXPECT_EQ(description(Value()), "(null)");
    EXPECT_EQ(description("a text, as it is: \"ü\""), "a text, as it is: \"ü\"");
    EXPECT_EQ(description(true), "1");
    EXPECT_EQ(description(-12), "-12");
    EXPECT_EQ(description(0.75), "0.75");
    EXPECT_EQ(description(Data{0x68, 0x65, 0x6c, 0x6c, 0x6f}), "<68656c6c 6f>");
    EXPECT_EQ(description(Data{}), "<>");
    EXPECT_EQ(description(Date{0}), "2001-01-01 00:00:00 +0000");
    EXPECT_EQ(description(Date{-0.5}), "2000-12-31 23:59:59 +0000");
    EXPECT_EQ(description(Date{1e300}), "1e+300");
    EXPECT_EQ(description(Date{std::nan("")}), "nan");
}

TEST(Description, SortsKeysAndIndentsAsThePlatformDoes) {
    const Value settings = Dictionary{{"kTweakEnabled", true},
                                      {"kSleepTime", 10},
                                      {"kAppsEnabled", List{"com.a.b", "plain"}},
                                      {"kLSBlurColor", Dictionary{{"s", 0.75}, {"h", 1.0}, {"b", 0.9}}},
                                      {"kAppIconOpacity", 0.75}};
    EXPECT_EQ(description(settings), R"({
    kAppIconOpacity = "0.75";
    kAppsEnabled =     (
        "com.a.b",
        plain
    );
    kLSBlurColor =     {
        b = "0.9";
        h = 1;
        s = "0.75";
    };
    kSleepTime = 10;
    kTweakEnabled = 1;
})");
}

TEST(Description, NestsContainersInLists) {
    EXPECT_EQ(description(List{Dictionary{{"a", 1}}, List{"x"}}), R"((
        {
        a = 1;
    },
        (
        x
    )
))");
    EXPECT_EQ(description(Dictionary{}), "{\n}");
    EXPECT_EQ(description(List{}), "(\n)");
}

TEST(Description, QuotesAnythingButLettersDigitsAndUnderscores) {
    const auto quoted = [](const Value& value) {
        const std::string text = description(List{value});
        return text.substr(6, text.size() - 8); // behind "(\n    ", before "\n)"
    };
    EXPECT_EQ(quoted("Letters_09"), "Letters_09");
    EXPECT_EQ(quoted(""), R"("")");
    EXPECT_EQ(quoted("a b"), R"("a b")");
    EXPECT_EQ(quoted("a-b"), R"("a-b")");
    EXPECT_EQ(quoted("say \"no\"\\"), R"("say \"no\"\\")");
    EXPECT_EQ(quoted("line\nline\ttab"), R"("line\nline\ttab")");
    EXPECT_EQ(quoted("Grüße"), R"("Gr\U00fc\U00dfe")");
    EXPECT_EQ(quoted("😀"), R"("\Ud83d\Ude00")");
    EXPECT_EQ(quoted("a\0b"s), R"("a\U0000b")");
    EXPECT_EQ(quoted(-12), R"("-12")");
    EXPECT_EQ(quoted(0.5), R"("0.5")");
    EXPECT_EQ(quoted(2.0), "2");
    EXPECT_EQ(quoted(false), "0");
    EXPECT_EQ(quoted(Date{0}), R"("2001-01-01 00:00:00 +0000")");
    EXPECT_EQ(quoted(Data{1, 2, 3, 4, 5}), "<01020304 05>");
    EXPECT_EQ(quoted(Value()), R"("<null>")");
}

TEST(Description, EndsInAnEllipsisWhereAValueIsBeyondAllReason) {
    EXPECT_NE(description(nested(100'000)).find("..."), std::string::npos);

    Value wide = "x";
    for (int i = 0; i < 40; ++i)
        wide = List{wide, wide};
    const std::string text = description(wide);
    EXPECT_NE(text.find("..."), std::string::npos);
    EXPECT_LT(text.size(), 32U << 20U);
}

} // namespace

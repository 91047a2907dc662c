#include "platform/foundation/Collation.h"
#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using platform::Collation;
using Texts = std::vector<std::string>;

Texts sorted(const char* locale, Texts texts) {
    const Collation order(locale);
    std::sort(texts.begin(), texts.end(), [&](const std::string& a, const std::string& b) {
        return order.localizedCaseInsensitiveCompare(a, b) < 0;
    });
    return texts;
}

TEST(Collation, DoesNotTellCaseApart) {
    for (const char* locale : {"", "C", "C.UTF-8", "POSIX", "de_DE.UTF-8", "sv_SE", "en_US.UTF-8", "no such locale"}) {
        EXPECT_EQ(Collation(locale).localizedCaseInsensitiveCompare("Mail", "mAIL"), 0) << locale;
        EXPECT_EQ(Collation(locale).localizedCaseInsensitiveCompare("ÄPFEL", "äpfel"), 0) << locale;
        EXPECT_LT(Collation(locale).localizedCaseInsensitiveCompare("apple", "Banana"), 0) << locale;
        EXPECT_GT(Collation(locale).localizedCaseInsensitiveCompare("banana", "Apple"), 0) << locale;
    }
}

TEST(Collation, TellsAccentsApartOnlyAmongEqualLetters) {
    const Collation order("en_US.UTF-8");
    EXPECT_LT(order.localizedCaseInsensitiveCompare("resume", "résumé"), 0);
    EXPECT_LT(order.localizedCaseInsensitiveCompare("résumé", "resumes"), 0);
}

TEST(Collation, TakesComposedAndDecomposedLettersForTheSame) {
    EXPECT_EQ(Collation("de_DE.UTF-8").localizedCaseInsensitiveCompare("\u00FCbung", "u\u0308bung"), 0);
}

TEST(Collation, FollowsTheLanguage) {
    const Texts german{"Äpfel", "Birnen", "Öl", "Zitronen"};
    const Texts swedish{"Birnen", "Zitronen", "Äpfel", "Öl"};
    EXPECT_EQ(sorted("de_DE.UTF-8", swedish), german);
    EXPECT_EQ(sorted("de_AT.UTF-8@euro", swedish), german);
    EXPECT_EQ(sorted("sv_SE.UTF-8", german), swedish);
    EXPECT_EQ(sorted("C", swedish), german);
    EXPECT_EQ(sorted("xx_YY.UTF-8", swedish), german);
}

TEST(Folded, IsTheSameWhateverTheCaseAndTheAccents) {
    EXPECT_EQ(platform::folded("\u00C9CLAIR"), "eclair");
    EXPECT_EQ(platform::folded("E\u0301clair"), "eclair");
    EXPECT_EQ(platform::folded("STRASSE"), platform::folded("Stra\u00DFe"));
    EXPECT_EQ(platform::folded("\u0419"), platform::folded("\u0438")) << "a breve is an accent too";
    EXPECT_EQ(platform::folded("\u97F3\u697D 2"), "\u97F3\u697D 2");
    EXPECT_EQ(platform::folded(""), "");
    EXPECT_EQ(platform::folded("a\xFF"
                               "b"),
              "a\uFFFD"
              "b");
}

TEST(Collation, PutsTheEmptyTextFirst) {
    const Collation order("");
    EXPECT_EQ(order.localizedCaseInsensitiveCompare("", ""), 0);
    EXPECT_EQ(order.localizedCaseInsensitiveCompare({}, ""), 0);
    EXPECT_LT(order.localizedCaseInsensitiveCompare("", "a"), 0);
    EXPECT_GT(order.localizedCaseInsensitiveCompare("\U0001F3B5", ""), 0);
}

TEST(Collation, OrdersAnyBytes) {
    const Collation order("de_DE.UTF-8");
    const Texts bytes{"\xFF", "\xC3", "a\xC3(", "\xED\xA0\x80", "\xF8\x88\x80\x80\x80", std::string("a\0b", 3),
                      "a",    "z"};
    for (const std::string& a : bytes) {
        EXPECT_EQ(order.localizedCaseInsensitiveCompare(a, a), 0);
        for (const std::string& b : bytes)
            EXPECT_EQ(order.localizedCaseInsensitiveCompare(a, b) < 0, order.localizedCaseInsensitiveCompare(b, a) > 0)
                << a << " " << b;
    }
    EXPECT_GT(order.localizedCaseInsensitiveCompare("a\xC3", "a"), 0);
}

TEST(Collation, FallsBackToTheCommonOrderForALongNameOfALocale) {
    EXPECT_LT(Collation(std::string(5000, 'x')).localizedCaseInsensitiveCompare("ä", "B"), 0);
}

/// What the process says whose environment names the locales; started anew, since a process has one collator.
void expectOrder(const char* all, const char* collate, const char* language, bool swedish) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            setenv("LC_ALL", all, 1);
            setenv("LC_COLLATE", collate, 1);
            setenv("LANG", language, 1);
            _exit(Collation::ofUser().localizedCaseInsensitiveCompare("Ö", "z") > 0 ? 2 : 3);
        },
        testing::ExitedWithCode(swedish ? 2 : 3), "");
}

TEST(CollationDeathTest, OfTheUserComesFromTheEnvironment) {
    expectOrder("", "", "sv_SE.UTF-8", true);
    expectOrder("", "", "de_DE.UTF-8", false);
    expectOrder("", "sv_SE.UTF-8", "de_DE.UTF-8", true);
    expectOrder("de_DE.UTF-8", "sv_SE.UTF-8", "sv_SE.UTF-8", false);
    expectOrder("C", "sv_SE.UTF-8", "", false);
    expectOrder("", "", "", false);
}

} // namespace

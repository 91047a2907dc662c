#include "search/Folding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using search::fold;
using testing::ElementsAre;

TEST(Folding, DropsCaseAndAccents) {
    EXPECT_EQ(fold("Opacity (1.0)"), "opacity (1.0)");
    EXPECT_EQ(fold("\u00C9CLAIR"), "eclair");
    EXPECT_EQ(fold("E\u0301clair"), "eclair");
    EXPECT_EQ(fold("\u1E9E und \u00DF"), "ss und ss");
    EXPECT_EQ(fold("\u039F\u03B4\u03CC\u03C2"), fold("\u03BF\u03B4\u03BF\u03C3")) << "a sigma at the end is a sigma";
    EXPECT_EQ(fold("\u0130stanbul"), "istanbul");
}

TEST(Folding, TakesLettersWithStrokesForPlainOnes) {
    EXPECT_EQ(fold("\u0141\u00F3d\u017A, S\u00D8R, \u0110akovo, d\u0131\u015F"), "lodz, sor, dakovo, dis");
    EXPECT_EQ(fold("\u00C6r\u0153"), "aeroe");
}

TEST(Folding, TakesFormsOfOneLetterForOne) {
    EXPECT_EQ(fold("\uFF21\uFF22 \uFB01x \u00B2"), "ab fix 2");
    EXPECT_EQ(fold("a\u00A0b"), "a b");
}

TEST(Folding, TellsWhereLettersComeFrom) {
    // An emoji has two units, and the accent after "e" belongs to that.
    const auto places = search::foldWithPlaces("\U0001F600e\u0301\u00DFx");
    EXPECT_EQ(places.text, "\U0001F600essx");
    EXPECT_THAT(places.begins, ElementsAre(0, 0, 0, 0, 2, 4, 4, 5));
    EXPECT_THAT(places.ends, ElementsAre(2, 2, 2, 2, 4, 5, 5, 6));
}

TEST(Folding, LeavesInvalidTextInPlace) {
    EXPECT_EQ(search::foldWithPlaces("a\xFFz").ends.back(), 3U);
    EXPECT_NO_FATAL_FAILURE((void)fold("\xC3"));
}

TEST(Folding, CutsWordsAtSpaces) {
    EXPECT_THAT(search::wordsOf("  blur  icon-view\t(1) "), ElementsAre("blur", "icon-view", "(1)"));
    EXPECT_TRUE(search::wordsOf(" \n ").empty());
}

TEST(Folding, LeavesLettersAndDigits) {
    EXPECT_EQ(search::lettersAndDigitsOf(" auto-unlock (1.0)"), "auto unlock 1 0");
    EXPECT_EQ(search::lettersAndDigitsOf("--"), "");
}

TEST(Folding, HasABitForEachLetterOfAWord) {
    const auto letters = search::lettersOf("opacity 1.0");
    EXPECT_EQ(letters & search::lettersOf("pic"), search::lettersOf("pic"));
    EXPECT_NE(letters & search::lettersOf("blur"), search::lettersOf("blur"));
    EXPECT_EQ(search::lettersOf(" "), 0U);
}

} // namespace

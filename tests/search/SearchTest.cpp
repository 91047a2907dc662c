#include "search/Search.h"
#include "search/Words.h"
#include "tests/search/SomeIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using search::Hit;
using search::Range;
using testing::ElementsAre;
using testing::IsEmpty;

struct SearchTest : testing::Test, tests::SomeIndex {
    std::vector<Hit> hits(const std::string& query, std::size_t most = 100) const {
        return search::find(index(), query, most);
    }
    std::vector<std::string> titles(const std::string& query) const {
        std::vector<std::string> found;
        for (const Hit& hit : hits(query))
            found.push_back(index().entries()[hit.entry].title);
        return found;
    }
};

TEST_F(SearchTest, FindsRowsThatHaveEveryWordInAnyOrder) {
    add(apps, "Blur Icon View");
    add(apps, "Blur Color");
    EXPECT_THAT(titles("color blur"), ElementsAre("Blur Color"));
    EXPECT_THAT(titles("BLUR"), ElementsAre("Blur Icon View", "Blur Color"));
    EXPECT_THAT(titles("blur unheard-of"), IsEmpty());
    EXPECT_THAT(titles("  "), IsEmpty());
}

TEST_F(SearchTest, PutsTheBeginningBeforeAWordsBeginningBeforeTheInside) {
    add(apps, "Unbadged");
    add(apps, "Show Badges");
    add(apps, "Badges");
    add(apps, "Badge");
    EXPECT_THAT(titles("badge"), ElementsAre("Badge", "Badges", "Show Badges", "Unbadged"));
}

TEST_F(SearchTest, PutsTitlesBeforePathsBeforeOtherTexts) {
    add(apps, "Explained").footer = "Your passcode is kept";
    add(passcode, "Buttons");
    add(apps, "Passcode");
    EXPECT_THAT(titles("passcode"), ElementsAre("Passcode", "Buttons", "Explained"));
}

TEST_F(SearchTest, PutsEquallyGoodRowsInTheOrderOfThePagesAndFontsBehindThem) {
    add(root, "Clock A").kind = search::Kind::font;
    add(root, "Clock B");
    add(apps, "Clock C");
    EXPECT_THAT(titles("clock"), ElementsAre("Clock B", "Clock C", "Clock A"));
}

TEST_F(SearchTest, PutsSettingsBeforeNamesOfFontsAndApplications) {
    add(root, "Fonteva").kind = search::Kind::font;
    add(apps, "Date Font");
    EXPECT_THAT(titles("font"), ElementsAre("Date Font", "Fonteva"));
}

TEST_F(SearchTest, PutsTheTitleThatIsTheQueryFirstWhateverItsSigns) {
    add(apps, "Auto Unlock Notifications");
    add(apps, "Auto-Unlock");
    EXPECT_THAT(titles("auto unlock"), ElementsAre("Auto-Unlock", "Auto Unlock Notifications"));
}

TEST_F(SearchTest, FindsByEveryTextOfARow) {
    search::Entry& entry = add(apps, "Sleep After");
    entry.header = "Timer";
    entry.footer = "Saves the battery";
    entry.placeholder = "Minutes";
    entry.options = {"10 Seconds", "Never"};
    entry.identifier = "kSleepTime";
    entry.words = {"screen timeout"};
    for (const char* word : {"timer", "battery", "minutes", "never", "ksleeptime", "timeout", "apps after"})
        EXPECT_THAT(titles(word), ElementsAre("Sleep After")) << word;
    EXPECT_THAT(titles("timer saves"), ElementsAre("Sleep After")) << "each word in a text of its own";
    EXPECT_THAT(titles("10 seconds never"), ElementsAre("Sleep After"));
}

TEST_F(SearchTest, FindsNoWordAcrossTwoTexts) {
    search::Entry& entry = add(apps, "One");
    entry.header = "abc";
    entry.footer = "def";
    EXPECT_THAT(titles("cde"), IsEmpty());
}

TEST_F(SearchTest, TakesTheFirstPagesTitleBesideOtherWordsOnly) {
    add(apps, "Badges");
    add(root, "Enable Lumora");
    EXPECT_THAT(titles("lumora"), ElementsAre("Enable Lumora"));
    EXPECT_THAT(titles("lumora badges"), ElementsAre("Badges"));
}

TEST_F(SearchTest, TellsWhatMatches) {
    add(passcode, "\U0001F600 Bl\u00FCr the Blur");
    const Hit hit = hits("view blu").front();
    EXPECT_THAT(hit.title, ElementsAre(Range{3, 3}));
    EXPECT_THAT(hit.path, ElementsAre(IsEmpty(), IsEmpty(), ElementsAre(Range{9, 4})));
    EXPECT_EQ(hit.also, "");
    EXPECT_FALSE(hit.similar);
}

TEST_F(SearchTest, JoinsPartsThatTouch) {
    add(apps, "Blurred");
    EXPECT_THAT(hits("blur urre").front().title, ElementsAre(Range{0, 6}));
}

TEST_F(SearchTest, SaysWhyARowIsFoundBesidesTitleAndPath) {
    search::Entry& entry = add(apps, "Opacity");
    entry.footer = "Of all icons";
    entry.words = {"brightness", "transparency"};
    EXPECT_EQ(hits("transp").front().also, "transparency");
    EXPECT_EQ(hits("opacity icons").front().also, "Of all icons");
    EXPECT_EQ(hits("opac").front().also, "");
}

TEST_F(SearchTest, GivesNoNameThatIsForNobodyAsAReason) {
    search::Entry& entry = add(apps, "Opacity");
    entry.identifier = entry.key = "kIconTransparency";
    EXPECT_EQ(hits("transp").front().also, "");
    entry.words = {"half transparent"};
    EXPECT_EQ(hits("transp").front().also, "half transparent");
}

TEST_F(SearchTest, ForgivesOneMistakeInAWordWhenNothingElseIsFound) {
    add(apps, "Opacity Level");
    for (const char* query : {"opcity", "opaacity", "opaxity", "opcaity", "opacty leevl", "opacity levle"}) {
        const auto found = hits(query);
        ASSERT_EQ(found.size(), 1U) << query;
        EXPECT_TRUE(found.front().similar) << query;
    }
    EXPECT_THAT(hits("opcty"), IsEmpty()) << "two mistakes";
    EXPECT_THAT(hits("lvl"), IsEmpty()) << "too short to be sure";
    EXPECT_THAT(hits("paxity"), IsEmpty()) << "at the beginning of a word only, which has used its mistake up";
}

TEST_F(SearchTest, ForgivesNothingWhileSomethingIsFound) {
    add(apps, "Clock");
    add(apps, "Block");
    EXPECT_THAT(titles("clock"), ElementsAre("Clock"));
    EXPECT_THAT(titles("xlock"), ElementsAre("Clock", "Block"));
}

TEST_F(SearchTest, ForgivesMistakesInLettersOfSeveralBytes) {
    add(apps, "\u043F\u0430\u0440\u043E\u043B\u044C");
    EXPECT_EQ(hits("\u043F\u0430\u0440\u0430\u043B\u044C").size(), 1U);
    EXPECT_EQ(hits("\u043F\u0430\u043E\u0440\u043B\u044C").size(), 1U);
}

TEST_F(SearchTest, MarksWhatIsSimilar) {
    add(apps, "The Opacity");
    EXPECT_THAT(hits("opcity").front().title, ElementsAre(Range{4, 7}));
}

TEST_F(SearchTest, GivesTheBestOfManyOnly) {
    for (int i = 0; i < 20; ++i)
        add(apps, "The row " + std::to_string(i));
    add(apps, "Row");
    const auto best = hits("row", 3);
    ASSERT_EQ(best.size(), 3U);
    EXPECT_EQ(index().entries()[best.front().entry].title, "Row");
    EXPECT_THAT(hits("row", 0), IsEmpty());
}

TEST_F(SearchTest, FindsNothingByAQueryOfAllLengths) {
    add(apps, "Row");
    EXPECT_THAT(hits(std::string(1'000'000, 'r')), IsEmpty());
    EXPECT_THAT(hits("\xFF\xC3"), IsEmpty());
    EXPECT_THAT(search::find(search::Index(), "row", 10), IsEmpty());
}

TEST(FurtherWords, KnowsWhatPeopleCallASetting) {
    EXPECT_THAT(search::furtherWords("kAppIconOpacity"), testing::Contains("transparency"));
    EXPECT_THAT(search::furtherWords("kAutoUnlockPasscode"), testing::Contains("PIN"));
    EXPECT_THAT(search::furtherWords("PluginsListController"), testing::Contains("widgets"));
    EXPECT_THAT(search::furtherWords("noSuchKey"), IsEmpty());
}

} // namespace

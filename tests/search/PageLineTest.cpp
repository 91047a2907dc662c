#include "search/PageLine.h"
#include "tests/search/SomeIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using search::PageLine;
using search::Way;
using testing::ElementsAre;

struct PageLineTest : testing::Test, tests::SomeIndex {};

TEST_F(PageLineTest, KeepsAllOfAnIndex) {
    add(passcode, "Blur \u201Cone\u201D\n").words = {"PIN"};
    search::Entry& entry = add(apps, "Sleep After");
    entry.kind = search::Kind::option;
    entry.section = 2;
    entry.cell = 12;
    entry.secure = true;
    entry.name = "n";
    entry.identifier = "i";
    entry.key = "k";
    entry.header = "h";
    entry.footer = "f";
    entry.placeholder = "p";
    entry.options = {"Never", ""};
    entry.shortTitles = {"0"};
    entry.values = {0, 1.5, "text", true, nullptr};
    entry.minimum = -1;
    entry.maximum = 2.5;
    entry.showsNumber = true;
    entry.chosenBy = {"kChosen"};
    const search::Index before = index();
    std::vector<PageLine> lines;
    for (const PageLine& line : search::linesOf(before)) {
        const auto text = search::writePageLine(line);
        ASSERT_TRUE(text);
        EXPECT_EQ(text.value().find('\n'), std::string::npos);
        const auto read = search::readPageLine(text.value());
        ASSERT_TRUE(read) << read.error();
        lines.insert(lines.begin(), read.value()); // the order is that of the ways
    }
    const search::Index after = search::indexOf(lines);
    EXPECT_EQ(after.pages(), before.pages());
    ASSERT_EQ(after.entries().size(), 2U);
    EXPECT_EQ(after.entries()[0], before.entries()[1]);
    EXPECT_EQ(after.entries()[1], before.entries()[0]);
}

TEST_F(PageLineTest, LeavesOutPagesThatNothingLeadsTo) {
    const search::Index index = search::indexOf({{Way{{3, 1}}, {"Deep", "", {}, 0, "", ""}, {search::Entry()}},
                                                 {Way{}, {"Root", "", {}, 0, "", ""}, {}},
                                                 {Way{{2}}, {"Two", "", {}, 0, "", ""}, {search::Entry()}},
                                                 {Way{{2}}, {"Again", "", {}, 0, "", ""}, {search::Entry()}}});
    ASSERT_EQ(index.pages().size(), 2U);
    EXPECT_EQ(index.pages()[1].pageClass, "Two");
    EXPECT_EQ(index.pages()[1].row, 2U);
    EXPECT_EQ(index.entries().size(), 1U);
    EXPECT_THAT(index.wayTo(1), ElementsAre(0, 1));
}

TEST(PageLine, RefusesWhatIsNoPage) {
    ASSERT_TRUE(search::readPageLine(R"({"way": "", "page": "P", "entries": []})"));
    for (const char* text :
         {"", "{", "[]", "3", R"({"way": "1", "page": "P", "entries": [{"kind": "none"}]})",
          R"({"way": "x", "page": "P"})", R"({"way": "1.", "page": "P"})", R"({"way": "-1", "page": "P"})",
          R"({"way": "99999999999999999999", "page": "P"})", R"({"way": 1, "page": "P"})", R"({"way": ""})", "{}",
          R"({"way": "", "page": "P", "title": 1})", R"({"way": "", "page": "P", "entries": 5})",
          R"({"way": "", "page": "P", "entries": [5]})",
          R"({"way": "", "page": "P", "entries": [{"kind": "row", "row": -1}]})",
          R"({"way": "", "page": "P", "entries": [{"kind": "row", "options": [1]}]})",
          R"({"way": "", "page": "P", "entries": [{"kind": "row", "values": 1}]})",
          R"({"way": "", "page": "P", "entries": [{"kind": "row", "minimum": "1"}]})"})
        EXPECT_FALSE(search::readPageLine(text)) << text;
}

TEST(Way, GoesIntoAPageBeforeItGoesOnBehindIt) {
    const Way first{};
    const Way two{{2}};
    const Way deep{{2, 10}};
    const Way three{{3}};
    EXPECT_TRUE(first < two && two < deep && deep < three);
    EXPECT_TRUE(deep.leadsOver(two) && deep.leadsOver(first) && deep.leadsOver(deep));
    EXPECT_FALSE(two.leadsOver(deep) || three.leadsOver(two));
    EXPECT_EQ(deep.text(), "2.10");
    EXPECT_EQ(Way::of("2.10"), deep);
    EXPECT_EQ(Way::of(""), first);
}

} // namespace

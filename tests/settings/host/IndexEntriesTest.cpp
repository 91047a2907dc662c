#include "settings/host/IndexEntries.h"

#include "platform/preferences/PSSpecifier.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace settings;
using search::Entry;
using search::Kind;
using testing::ElementsAre;
using testing::IsEmpty;

RowSnapshot rowOf(int cell, const char* name, const char* identifier = "") {
    RowSnapshot row;
    row.cell = cell;
    row.name = name;
    row.identifier = identifier;
    return row;
}

std::vector<Entry> entriesOf(std::vector<RowSnapshot> rows, const RowSnapshot* opener = nullptr) {
    PageSnapshot page;
    page.className = "SomePage";
    page.rows = std::move(rows);
    return pageLineOf(page, {}, opener).entries;
}

TEST(IndexEntries, NameThePageAndTheRowThatOpensIt) {
    PageSnapshot page;
    page.className = "SomePage";
    page.title = "Some";
    const RowSnapshot opener = rowOf(PSLinkCell, "To some", "kSome");
    const search::PageLine line = pageLineOf(page, search::Way{{4, 1}}, &opener);
    EXPECT_EQ(line.page, (search::Page{"SomePage", "Some", std::nullopt, 0, "kSome", "To some"}));
    EXPECT_EQ(line.way.text(), "4.1");
}

TEST(IndexEntries, HaveTheTextsOfTheirGroup) {
    RowSnapshot group = rowOf(PSGroupCell, "Options");
    group.footerText = "Below";
    const auto entries = entriesOf({rowOf(PSButtonCell, "Above"), group, rowOf(PSSwitchCell, "Badges", "kBadges")});
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].header, "");
    EXPECT_EQ(entries[1].header, "Options");
    EXPECT_EQ(entries[1].footer, "Below");
    EXPECT_EQ(entries[1].key, "kBadges");
    EXPECT_EQ(entries[1].row, 2U) << "groups count";
}

TEST(IndexEntries, OfASliderHaveTheTextAboveItAsTheirTitle) {
    const auto entries = entriesOf({rowOf(PSStaticTextCell, "Opacity (1.0)"),
                                    rowOf(PSSliderCell, "", "kAppIconOpacity"), rowOf(PSStaticTextCell, "A note")});
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].title, "Opacity (1.0)");
    EXPECT_EQ(entries[0].row, 1U);
    EXPECT_EQ(entries[0].cell, PSSliderCell);
    EXPECT_THAT(entries[0].words, testing::Contains("transparency"));
    EXPECT_EQ(entries[1].title, "A note");
}

TEST(IndexEntries, KnowWhatTheRowMakesOfAValue) {
    RowSnapshot list = rowOf(PSLinkListCell, "Sleep After", "kSleepTime");
    list.titles = {"Ten", "Never"};
    list.shortTitles = {"10 s"};
    list.values = {10, Data{1}, "\xFF"};
    RowSnapshot slider = rowOf(PSSliderCell, "", "kSize");
    slider.min = 1;
    slider.showValue = true;
    const auto entries = entriesOf({list, slider});
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].options, list.titles);
    EXPECT_EQ(entries[0].shortTitles, list.shortTitles);
    ASSERT_EQ(entries[0].values.size(), 3U);
    EXPECT_EQ(entries[0].values[0], Value(10));
    for (const Value& other : {entries[0].values[1], entries[0].values[2]})
        EXPECT_NE(other, other) << "is no value of a setting";
    EXPECT_EQ(entries[1].minimum, 1);
    EXPECT_EQ(entries[1].maximum, std::nullopt);
    EXPECT_TRUE(entries[1].showsNumber);
    EXPECT_TRUE(search::writePageLine({{}, {"P", "", {}, 0, "", ""}, entries}));
}

TEST(IndexEntries, OfAFieldHaveItsPlaceholderAsTheirTitleAndNoValue) {
    RowSnapshot field = rowOf(PSSecureEditTextCell, "", "kPasscode");
    field.placeholder = "Passcode";
    field.value = "1234";
    const auto entries = entriesOf({field});
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].title, "Passcode");
    EXPECT_TRUE(entries[0].secure);
    const auto written = search::writePageLine({{}, {"P", "", {}, 0, "", ""}, entries});
    EXPECT_EQ(written.value().find("1234"), std::string::npos);
}

TEST(IndexEntries, OfOptionsHaveTheKeyOfTheRowThatOpensThem) {
    const RowSnapshot opener = rowOf(PSLinkListCell, "Sleep After", "kSleepTime");
    const auto entries = entriesOf({rowOf(PSGroupCell, ""), rowOf(PSListItemCell, "Never")}, &opener);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].kind, Kind::option);
    EXPECT_EQ(entries[0].key, "kSleepTime");
    EXPECT_THAT(entries[0].words, IsEmpty()) << "the row has them";
}

TEST(IndexEntries, AreTheTextsOfGroupsWithoutRowsToo) {
    RowSnapshot footer = rowOf(PSGroupCell, "");
    footer.footerText = "Tap and hold.";
    const auto entries = entriesOf({footer, rowOf(PSGroupCell, ""), rowOf(PSGroupCell, "Why?")});
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].title, "Tap and hold.");
    EXPECT_EQ(entries[0].footer, "");
    EXPECT_EQ(entries[1].title, "Why?");
    EXPECT_EQ(entries[1].kind, Kind::note);
}

TEST(IndexEntries, OfTablesTellTheirSectionButNoOrder) {
    for (const auto& [pageClass, kind, header] : {std::tuple("FontViewController", Kind::font, "Fonts"),
                                                  {"AppsListController", Kind::application, ""},
                                                  {"PluginsListViewController", Kind::appView, ""},
                                                  {"SomePage", Kind::other, "Fonts"}}) {
        PageSnapshot page;
        page.className = pageClass;
        page.hostsView = true;
        TableSnapshot table;
        table.layout = TableLayout({{"Fonts", "", 50, 24, 40, 2}});
        table.cells[{0, 1}] = {.title = "Inter", .identifier = "inter", .image = nullptr};
        table.cells[{0, 0}] = {.title = "", .identifier = "nameless", .image = nullptr};
        page.table = std::make_shared<const TableSnapshot>(table);
        const auto entries = pageLineOf(page, {}, nullptr).entries;
        ASSERT_EQ(entries.size(), 2U);
        EXPECT_EQ(entries[0].title, "nameless");
        EXPECT_EQ(entries[1].title, "Inter");
        EXPECT_EQ(entries[1].kind, kind);
        EXPECT_EQ(entries[1].header, header) << "sections of an order are those of the moment";
        EXPECT_EQ(entries[1].section, 0);
        EXPECT_EQ(entries[1].row, 1U);
    }
}

TEST(IndexEntries, CanBeWrittenWhateverTheTextsAre) {
    RowSnapshot row = rowOf(PSSwitchCell, "A bad \xFF byte");
    row.titles = {"\xC3"};
    RowSnapshot longer = rowOf(PSSwitchCell, "");
    for (int i = 0; i < 5000; ++i)
        longer.name += "\u00E9";
    const auto entries = entriesOf({row, longer});
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].title, "A bad \uFFFD byte");
    EXPECT_LE(entries[1].title.size(), 4096U);
    EXPECT_TRUE(search::writePageLine({{}, {"P", "", {}, 0, "", ""}, entries}));
}

} // namespace

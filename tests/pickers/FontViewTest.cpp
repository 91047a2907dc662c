#include "pickers/FontView.h"
#include "pages/FontViewController.h"

#include "link/PreferenceKeys.h"
#include "tests/pages/OpenPage.h"
#include "tests/support/OpenedFiles.h"
#include "tests/support/TestFonts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using lumora::FontView;
using lumora::FontViewController;
using platform::CGRectMake;
using platform::Dictionary;
using platform::List;
using platform::make;
using platform::NSIndexPath;
using platform::UITableView;
using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;
using tests::RecordingTweak;
using tests::TestFonts;

constexpr auto kFrame = CGRectMake(0, 0, 390, 760);
constexpr int kMark = platform::UITableViewCellAccessoryCheckmark;

struct FontList : testing::Test {
    RecordingTweak& tweak = RecordingTweak::shared();
    std::shared_ptr<FontView> view;

    void show(Dictionary settings) {
        tests::giveSettings<FontView>(std::move(settings));
        view = make<FontView>(kFrame);
        tweak.waitUntilIdle();
        ASSERT_NE(view, nullptr);
    }
    void showWith(const Value& stored) { show({{lumora::kLSDateFontName, stored}}); }
    [[nodiscard]] UITableView& table() const { return *view->tableView(); }
    [[nodiscard]] std::vector<int> markedRows() const {
        std::vector<int> rows;
        for (const auto& [path, cell] : table().visibleCells())
            if (cell->accessoryType() == kMark) rows.push_back(path.row);
        return rows;
    }
    /// The chosen row alone is marked, and is to be scrolled to the middle; these rows are in view.
    void expectChosen(int row, int first, int last) const {
        EXPECT_EQ(view->selectedIndex(), (NSIndexPath{0, row}));
        EXPECT_THAT(markedRows(), ElementsAre(row));
        EXPECT_EQ(table().scrollRequest().row, (NSIndexPath{0, row}));
        EXPECT_EQ(table().scrollRequest().position, platform::UITableViewScrollPositionMiddle);
        EXPECT_FALSE(table().scrollRequest().animated);
        EXPECT_EQ(table().visibleCells().begin()->first.row, first);
        EXPECT_EQ(table().visibleCells().rbegin()->first.row, last);
    }
    void tap(int row) const { table().tapRow({0, row}); }
    /// The whole list is in view from then on.
    void showAll() const { table().setViewport(0, 1e9); }
    [[nodiscard]] static Value change(const char* name) {
        return Dictionary{{"key", "kLSDateFontName"}, {"object", name}};
    }
};

TEST_F(FontList, ListsEveryFontSortedBehindDefault) {
    const TestFonts fonts({"cases", "twins", "variable"});
    show({});
    const auto& names = view->fonts();
    EXPECT_EQ(names, FontView::allFonts());
    ASSERT_EQ(names.size(), 9U);
    EXPECT_EQ(names[0], "Default");
    EXPECT_EQ(std::ranges::count(names, "Twin-Regular"), 1) << "of two files";
    // Families come as they come; those that differ only in case stand together all the same.
    EXPECT_THAT(std::vector(names.begin() + 1, names.begin() + 3), testing::UnorderedElementsAre("alpha", "Alpha"));
    EXPECT_THAT(std::vector(names.begin() + 3, names.begin() + 5), testing::UnorderedElementsAre("beta", "BETA"));
}

TEST_F(FontList, IsATableOfOneSection) {
    const TestFonts fonts({"twins"});
    show({});
    EXPECT_THAT(view->subviews(), ElementsAre(view->tableView()));
    EXPECT_EQ(table().style(), platform::UITableViewStyleGrouped);
    EXPECT_EQ(table().frame(), kFrame);
    EXPECT_EQ(table().autoresizingMask(), 18U);
    EXPECT_FALSE(table().isEditing());
    ASSERT_EQ(table().numberOfSections(), 1);
    EXPECT_EQ(table().layout().section(0).header, "Fonts");
    EXPECT_EQ(table().layout().section(0).footer, "");
    EXPECT_EQ(table().layout().section(0).rowHeight, 40.0);
    EXPECT_EQ(table().numberOfRowsInSection(0), 2);
}

TEST_F(FontList, ShowsEachNameInItsOwnFontAtTheLabelsSize) {
    const TestFonts fonts({"collection"});
    show({});
    const auto& label = table().cellForRowAtIndexPath({0, 1})->textLabel();
    EXPECT_EQ(label.text(), "CollectHigh-Regular");
    EXPECT_EQ(label.font()->fontName(), "CollectHigh-Regular");
    EXPECT_EQ(label.font()->pointSize(), 17.0);
    EXPECT_EQ(table().cellForRowAtIndexPath({0, 0})->textLabel().font()->fontName(), "");
}

TEST_F(FontList, LeavesDefaultTheFontOfTheRowBefore) {
    const TestFonts fonts({"many=100"});
    showWith("Many0099-Regular");
    EXPECT_EQ(table().cellForRowAtIndexPath({0, 0}), nullptr);
    table().setViewport(0, 90); // the one row that comes into view is "Default", in a cell that has served before
    EXPECT_EQ(table().cellForRowAtIndexPath({0, 0})->textLabel().text(), "Default");
    EXPECT_NE(table().cellForRowAtIndexPath({0, 0})->textLabel().font()->fontName(), "");
}

TEST_F(FontList, LeavesALabelItsFontWhenThereIsNoSuchFontAnyMore) {
    const TestFonts fonts({"twins"});
    show({});
    const auto before = table().cellForRowAtIndexPath({0, 1})->textLabel().font();
    ASSERT_EQ(before->fontName(), "Twin-Regular");
    view->setFonts({"Default", "Gone-Regular"});
    table().reloadData();
    const auto& label = table().cellForRowAtIndexPath({0, 1})->textLabel();
    EXPECT_EQ(label.text(), "Gone-Regular");
    ASSERT_NE(label.font(), nullptr);
    EXPECT_EQ(label.font(), before);
}

TEST_F(FontList, MarksDefaultAndBeginsAtTheTopWithoutAFontOfTheStoredName) {
    const TestFonts fonts({"many=100"});
    show({{"other", 1}});
    expectChosen(0, 0, 17);
    for (const Value& stored : List{"Default", "Gone-Regular", "Many 0001", "many0001-regular", "", 7}) {
        SCOPED_TRACE(description(stored));
        showWith(stored);
        expectChosen(0, 0, 17);
        EXPECT_THAT(tweak.changes(), IsEmpty()) << "nothing is saved until a row is tapped";
    }
}

TEST_F(FontList, MarksTheStoredFontAndScrollsItToTheMiddle) {
    const TestFonts fonts({"many=100"});
    showWith("Many0049-Regular");
    expectChosen(50, 41, 59);
}

TEST_F(FontList, MarksTheOneRowOfTwoFontsOfTheStoredName) {
    const TestFonts fonts({"twins"});
    showWith("Twin-Regular");
    EXPECT_THAT(markedRows(), ElementsAre(1));
}

TEST_F(FontList, StoresATappedFontAtOnceAndMovesTheMark) {
    const TestFonts fonts({"many=10"});
    showWith("Many0002-Regular");
    const int asked = tweak.requests();
    tap(7);
    EXPECT_THAT(markedRows(), ElementsAre(7));
    EXPECT_EQ(view->selectedIndex(), (NSIndexPath{0, 7}));
    EXPECT_EQ(table().indexPathForSelectedRow(), std::nullopt);
    EXPECT_THAT(tweak.waitForChanges(1), ElementsAre(change("Many0006-Regular")));
    EXPECT_EQ(tweak.requests(), asked) << "the choice is read at creation only";
    tap(0);
    EXPECT_THAT(markedRows(), ElementsAre(0));
    EXPECT_EQ(tweak.waitForChanges(2).back(), change("Default")) << "which is stored by that name";
}

TEST_F(FontList, SendsTheMarkedRowAgainAndKeepsItsMark) {
    const TestFonts fonts({"many=10"});
    showWith("Many0002-Regular");
    tap(3);
    tap(3);
    EXPECT_THAT(markedRows(), ElementsAre(3));
    EXPECT_THAT(tweak.waitForChanges(2), ElementsAre(change("Many0002-Regular"), change("Many0002-Regular")));
}

TEST_F(FontList, LeavesNoStaleMarkOnARowThatWasOutOfView) {
    const TestFonts fonts({"many=100"});
    showWith("Many0049-Regular");
    table().setViewport(0, 400);
    ASSERT_THAT(markedRows(), IsEmpty());
    tap(2);
    EXPECT_THAT(markedRows(), ElementsAre(2));
    showAll();
    EXPECT_THAT(markedRows(), ElementsAre(2));
}

TEST_F(FontList, IsNotReloadedByATap) {
    const TestFonts fonts({"many=10"});
    show({});
    const auto cell = table().cellForRowAtIndexPath({0, 4});
    tap(5);
    EXPECT_EQ(table().cellForRowAtIndexPath({0, 4}), cell);
}

TEST_F(FontList, ShowsTheNewChoiceOnItsNextAppearance) {
    const TestFonts fonts({"many=10"});
    showWith("Many0002-Regular");
    tap(7);
    tests::giveSettings<FontView>(
        Dictionary{{"kLSDateFontName", "Many0006-Regular"}}); // as a tweak would answer from then on
    EXPECT_EQ(make<FontView>(kFrame)->selectedIndex(), (NSIndexPath{0, 7}));
}

TEST_F(FontList, OpensNoneOfTwoThousandFonts) {
    const TestFonts fonts({"many=2000"});
    EXPECT_EQ(FontView::allFonts().size(), 2001U); // from here on the system knows them
    const tests::OpenedFiles opened(fonts.files());
    showWith("Many1234-Regular");
    showAll();
    EXPECT_EQ(table().visibleCells().size(), 2001U);
    EXPECT_THAT(markedRows(), ElementsAre(1235));
    EXPECT_THAT(opened.names(), IsEmpty());
}

TEST_F(FontList, ReadsTheFontsAnewOnEachAppearanceOfItsPage) {
    const TestFonts fonts({"twins"});
    tests::giveSettings<FontView>(Dictionary{});
    const auto page = make<FontViewController>();
    EXPECT_EQ(page->title(), "Fonts");
    page->viewWillAppear(true);
    const auto rows = [&] { return dynamic_cast<FontView&>(*page->view()).fonts().size(); };
    EXPECT_EQ(rows(), 2U);
    fonts.install({"nameless"});
    page->viewWillAppear(true);
    EXPECT_EQ(rows(), 3U);
}

TEST_F(FontList, RestoresTheStoredNameEvenOfAFontThatIsNotInstalled) {
    showWith("No Such Font");
    const auto state = view->undoState();
    view->didSelectRowAtIndexPath(table(), {0, 1});
    tweak.waitForChanges(1);
    tweak.setSettings({});
    view->restore(state);
    EXPECT_THAT(tweak.waitForChanges(1),
                ElementsAre(Value(Dictionary{{"key", "kLSDateFontName"}, {"object", "No Such Font"}})));
    EXPECT_EQ(view->selectedIndex(), (NSIndexPath{0, 0}));
}

} // namespace

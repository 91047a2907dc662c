#include "tests/settings/host/NavigationTest.h"

#include "platform/ui/Move.h"
#include "platform/ui/UITableView.h"

#include <gmock/gmock.h>

namespace {

using namespace tests;
using ::testing::ElementsAre;
using ::testing::Key;
using ::testing::Pair;

/// A page that hosts one view, made anew at each appearance.
template<class View>
class PageOf : public PSListController {
  public:
    void viewWillAppear(bool animated) override {
        PSListController::viewWillAppear(animated);
        setView(make<View>(view()->frame()));
    }
};

/// Two sections of rows that can be moved.
class TableView : public UIView, public UITableViewDataSource, public UITableViewDelegate {
  public:
    static inline std::vector<std::vector<std::string>> sections;
    static inline int cellsAsked = 0;

    bool initWithFrame(const CGRect& frame) override {
        if (!UIView::initWithFrame(frame)) return false;
        const CGRect below = CGRectMake(0, 10, frame.size.width, frame.size.height - 10);
        const auto table = make<UITableView>(below, UITableViewStyleGrouped);
        table->setDataSource(this);
        table->setDelegate(this);
        table->setEditing(true);
        addSubview(table);
        return true;
    }
    int numberOfSectionsInTableView(UITableView& /*table*/) override { return static_cast<int>(sections.size()); }
    int numberOfRowsInSection(UITableView& /*table*/, int section) override {
        return static_cast<int>(rowsOf(section).size());
    }
    std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(UITableView& /*table*/, NSIndexPath path) override {
        ++cellsAsked;
        auto cell = make<UITableViewCell>(UITableViewCellStyleDefault, "cell");
        cell->textLabel().setText("Title of " + row(path));
        cell->detailTextLabel().setText(row(path));
        return cell;
    }
    std::string titleForHeaderInSection(UITableView& /*table*/, int section) override {
        return section == 0 ? "Enabled" : "Disabled";
    }
    std::string titleForFooterInSection(UITableView& /*table*/, int /*section*/) override { return " "; }
    std::string nameOfRowAtIndexPath(UITableView& /*table*/, NSIndexPath path) override { return row(path); }
    bool canMoveRowAtIndexPath(UITableView& /*table*/, NSIndexPath path) override { return row(path) != "fixed"; }
    void moveRowAtIndexPath(UITableView& /*table*/, NSIndexPath from, NSIndexPath to) override {
        moveRow(rowsOf(from.section), from.row, rowsOf(to.section), to.row);
    }
    double heightForRowAtIndexPath(UITableView& /*table*/, NSIndexPath /*path*/) override { return 40; }
    UITableViewCellEditingStyle editingStyleForRowAtIndexPath(UITableView& /*table*/, NSIndexPath path) override {
        return path == NSIndexPath{0, 1}   ? UITableViewCellEditingStyleDelete
               : path == NSIndexPath{0, 2} ? UITableViewCellEditingStyleInsert
                                           : UITableViewCellEditingStyleNone;
    }
    bool shouldIndentWhileEditingRowAtIndexPath(UITableView& /*table*/, NSIndexPath path) override {
        return path == NSIndexPath{0, 1};
    }

  private:
    static std::vector<std::string>& rowsOf(int section) { return sections.at(static_cast<std::size_t>(section)); }
    static const std::string& row(NSIndexPath path) {
        return rowsOf(path.section).at(static_cast<std::size_t>(path.row));
    }
};

/// A hundred rows to choose from, scrolled to row 50.
class ChoiceView : public UIView, public UITableViewDataSource, public UITableViewDelegate {
  public:
    static inline UITableViewStyle style = UITableViewStyleGrouped;

    bool initWithFrame(const CGRect& frame) override {
        if (!UIView::initWithFrame(frame)) return false;
        const auto table = make<UITableView>(frame, style);
        table->setDataSource(this);
        table->setDelegate(this);
        addSubview(table);
        table->scrollToRowAtIndexPath({0, 50}, UITableViewScrollPositionMiddle, true);
        return true;
    }
    int numberOfRowsInSection(UITableView& /*table*/, int /*section*/) override { return 100; }
    std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(UITableView& /*table*/, NSIndexPath path) override {
        auto cell = make<UITableViewCell>(UITableViewCellStyleDefault, "cell");
        if (path.row == 51)
            cell->textLabel().setFont(std::make_shared<const UIFont>("Inter-Bold", 17, "/fonts/a.otf", 0));
        return cell;
    }
    void didSelectRowAtIndexPath(UITableView& table, NSIndexPath path) override {
        table.cellForRowAtIndexPath(path)->setAccessoryType(UITableViewCellAccessoryCheckmark);
        if (path.row == 53) table.deselectRowAtIndexPath(path, true);
    }
};

using TablePage = PageOf<TableView>;
PLATFORM_CLASS(TablePage)
using ChoicePage = PageOf<ChoiceView>;
PLATFORM_CLASS(ChoicePage)

/// A page with a table of ten rows and one, drawn with headers of 50 points and footers of 20.
struct TableNavigationTest : NavigationTest {
    void SetUp() override {
        TableView::sections = {{"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"}, {"k"}};
        TableView::cellsAsked = 0;
        ASSERT_TRUE(open("TablePage", "Plugins"));
    }
    void scroll(double upper, double lower) { handle(TableScrolled{{upper, lower, {{50, 20}, {50, 20}}}}); }
    [[nodiscard]] const TableSnapshot& table() const { return *top().table; }
};

TEST_F(TableNavigationTest, ShowsTheTableWithTheCellsOfTheRowsInView) {
    EXPECT_EQ(table().frame, CGRectMake(0, 10, 390, 750));
    ASSERT_EQ(table().layout.sectionCount(), 2);
    EXPECT_EQ(table().layout.section(0).header, "Enabled");
    EXPECT_EQ(table().layout.section(0).footer, " ");
    EXPECT_EQ(table().layout.section(0).rowCount, 10);
    EXPECT_EQ(table().layout.section(0).rowHeight, 40);
    EXPECT_EQ(table().cells.at({1, 0}).title, "Title of k");
    EXPECT_EQ(table().cells.at({1, 0}).identifier, "k");
    EXPECT_TRUE(table().cells.at({1, 0}).movable);
    EXPECT_FALSE(table().selectable) << "while it is edited";
    EXPECT_EQ(table().scroll.serial, 0U) << "there is nothing to scroll to";
}

TEST_F(TableNavigationTest, MakesTheCellsThatScrollIntoViewAndNoOthers) {
    scroll(0, 100);
    const int asked = TableView::cellsAsked;
    scroll(130, 210); // the third and fourth row
    ASSERT_THAT(table().cells, ElementsAre(Key(NSIndexPath{0, 2}), Key(NSIndexPath{0, 3})));
    EXPECT_EQ(table().cells.at({0, 3}).identifier, "d");
    EXPECT_EQ(TableView::cellsAsked, asked + 2);
}

TEST_F(TableNavigationTest, TakesUpTheHeightsThatHeadersAndFootersWereDrawnWith) {
    scroll(0, 10000);
    EXPECT_EQ(table().layout.section(0).headerHeight, 50);
    EXPECT_EQ(table().layout.section(1).footerHeight, 20);
    handle(TableScrolled{{0, 10, {{50, 20}, {50, 20}, {7, 7}}}}); // a section that does not exist
    EXPECT_EQ(table().layout.sectionCount(), 2);
}

TEST_F(TableNavigationTest, BeginsAtTheTopOfAnotherTableWhenThePageAppearsAgain) {
    scroll(130, 210);
    const std::uint64_t before = table().id;
    handle(RowMoved{{0, 0}, {0, 1}});
    EXPECT_EQ(table().id, before);
    ASSERT_TRUE(open("TablePage", "Above"));
    goBack();
    EXPECT_NE(table().id, before);
    EXPECT_EQ(table().cells.begin()->first, (NSIndexPath{0, 0}));
}

TEST_F(TableNavigationTest, IsNotShrunkByAWindowThatHasNoSizeYet) {
    navigation.setContentSize({0, -52});
    navigation.setContentSize({390, 0});
    navigation.setContentSize({390, 792});
    EXPECT_EQ(top().view->frame, CGRectMake(0, 0, 390, 792));
    EXPECT_EQ(table().frame, CGRectMake(0, 10, 390, 750)) << "it has no mask";
}

TEST_F(TableNavigationTest, MovesARowAndShowsTheTableAfterwards) {
    scroll(0, 10000);
    handle(RowMoved{{0, 0}, {1, 1}});
    EXPECT_EQ(table().layout.section(0).rowCount, 9);
    EXPECT_EQ(table().layout.section(1).rowCount, 2);
    EXPECT_EQ(table().cells.at({1, 1}).identifier, "a");
}

TEST_F(TableNavigationTest, ScrollsToARowThatIsSoughtByItsNameAndMovesNothing) {
    const auto before = TableView::sections;
    const auto serial = table().scroll.serial;
    handle(TableRowSought{"E", {0, 0}});
    EXPECT_EQ(table().scroll.serial, serial + 1);
    EXPECT_EQ(table().scroll.row, (NSIndexPath{0, 4}));
    handle(TableRowSought{"no such name", {0, 0}});
    EXPECT_EQ(table().scroll.serial, serial + 1);
    EXPECT_EQ(TableView::sections, before);
}

TEST_F(TableNavigationTest, AnswersAMoveThatCannotBeWithTheSameTable) {
    TableView::sections[0][0] = "fixed";
    const auto before = TableView::sections;
    const std::size_t shownBefore = shown.size();
    handle(RowMoved{{0, 0}, {0, 3}});
    handle(RowMoved{{0, 99}, {0, 3}});
    EXPECT_EQ(TableView::sections, before);
    EXPECT_EQ(shown.size(), shownBefore + 2) << "the window has drawn the move and learns how it stands";
}

TEST_F(TableNavigationTest, IgnoresTableEventsOfOtherPages) {
    const std::uint64_t id = top().id;
    openRoot();
    const std::size_t shownBefore = shown.size();
    for (const std::uint64_t page : {id, top().id}) { // a covered page and one without a table
        navigation.handle(page, RowMoved{{0, 0}, {0, 1}});
        navigation.handle(page, TableScrolled{{0, 10, {}}});
    }
    EXPECT_EQ(shown.size(), shownBefore);
    EXPECT_EQ(TableView::sections[0][0], "a");
}

TEST_F(TableNavigationTest, TellsWhichRowsHaveSignsAndRoomForThem) {
    scroll(50, 170);
    std::vector<std::pair<int, bool>> signs;
    for (const auto& [path, cell] : table().cells)
        signs.emplace_back(cell.editingStyle, cell.indented);
    EXPECT_THAT(signs, ElementsAre(Pair(0, false), Pair(1, true), Pair(2, false)));
}

struct ChoiceNavigationTest : NavigationTest {
    void SetUp() override { ASSERT_TRUE(open("ChoicePage", "Choice")); }
    [[nodiscard]] const TableSnapshot& table() const { return *top().table; }
    /// The cell of a row in view.
    [[nodiscard]] const CellSnapshot& cell(int row) const { return table().cells.at({0, row}); }
};

TEST_F(ChoiceNavigationTest, TellsWhereATableIsToBeScrolledWithTheCellsThere) {
    EXPECT_NE(table().scroll.serial, 0U);
    EXPECT_EQ(table().scroll.row, (NSIndexPath{0, 50}));
    EXPECT_EQ(table().scroll.position, UITableViewScrollPositionMiddle);
    EXPECT_TRUE(table().scroll.animated);
    EXPECT_GT(table().cells.begin()->first.row, 35);
}

TEST_F(ChoiceNavigationTest, MarksAndSelectsTheTappedRowAndTellsHowItCeasesToBeSelected) {
    EXPECT_TRUE(table().selectable);
    EXPECT_FALSE(cell(52).marked);
    EXPECT_EQ(table().selected, std::nullopt);
    EXPECT_FALSE(table().deselectsAnimated);
    handle(TableRowTapped{{0, 52}});
    EXPECT_TRUE(cell(52).marked);
    EXPECT_FALSE(cell(51).marked);
    EXPECT_EQ(table().selected, (NSIndexPath{0, 52}));
    handle(TableRowTapped{{0, 53}}); // which the page deselects at once
    EXPECT_EQ(table().selected, std::nullopt);
    EXPECT_TRUE(table().deselectsAnimated);
}

TEST_F(ChoiceNavigationTest, TellsTheStyleOfItsTable) {
    EXPECT_TRUE(table().grouped);
    ChoiceView::style = UITableViewStylePlain;
    EXPECT_TRUE(open("ChoicePage"));
    EXPECT_FALSE(table().grouped);
    ChoiceView::style = UITableViewStyleGrouped;
}

TEST_F(ChoiceNavigationTest, NamesTheFontOfATitleUnlessItIsTheSystems) {
    ASSERT_NE(cell(51).font, nullptr);
    EXPECT_EQ(cell(51).font->fontName(), "Inter-Bold");
    EXPECT_EQ(cell(52).font, nullptr);
}

TEST_F(TableNavigationTest, GivesATableThatIsMadeAnewTheIdAndTheViewportOfTheFormerOne) {
    handle(TableScrolled{{100, 200, {{60, 10}, {70, 15}}}});
    const TableSnapshot former = table();
    navigation.setContentSize({844, 338});
    navigation.appearAnew(top().id);
    EXPECT_EQ(table().frame, CGRectMake(0, 10, 844, 328));
    EXPECT_EQ(table().id, former.id);
    EXPECT_EQ(table().cells, former.cells);
    EXPECT_EQ(table().layout.rowTop({1, 0}), former.layout.rowTop({1, 0})) << "below the headers as drawn";
    handle(RowMoved{{0, 0}, {1, 0}});
    EXPECT_THAT(TableView::sections,
                ElementsAre(ElementsAre("b", "c", "d", "e", "f", "g", "h", "i", "j"), ElementsAre("a", "k")));
}

TEST_F(TableNavigationTest, LandsOnARowInTheMiddleOfTheView) {
    const auto land = [&](int section, KnownRow row) { return navigation.land({{}, std::move(row), section}); };
    EXPECT_EQ(land(1, {0, "k", "Title of k"}), (Landed{top().id, 10, false}));
    EXPECT_EQ(table().scroll.row, (NSIndexPath{1, 0}));
    EXPECT_EQ(table().scroll.position, UITableViewScrollPositionMiddle);
    EXPECT_EQ(land(1, {3, "c", "Title of c"}), (Landed{top().id, 2, false})) << "it stands elsewhere by now";
    EXPECT_EQ(table().scroll.row, (NSIndexPath{0, 2}));
    EXPECT_EQ(land(-1, {0, "k", "Title of k"}), (Landed{top().id, 10, false})) << "its section is not known";
    EXPECT_EQ(land(0, {3, "z", "Title of z"}), (Landed{top().id, std::nullopt, true}));
}

} // namespace

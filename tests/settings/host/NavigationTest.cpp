#include "settings/host/Navigation.h"

#include "tests/settings/host/TestPages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace platform;
using namespace settings;
using namespace tests;
using ::testing::ElementsAre;
using ::testing::Key;
using ::testing::Pair;

class NavigationTest : public ::testing::Test {
  protected:
    NavigationTest() {
        RowsPage::reset();
        HostedView::made = 0;
        HostedPage::mask = UIViewAutoresizingNone;
        HostedPage::viewless = false;
    }

    const PageSnapshot& top() const { return *shown.back().pages.back(); }
    std::size_t depth() const { return shown.back().pages.size(); }
    void openRoot() { ASSERT_TRUE(navigation.open(NSClassFromString("RowsPage"), "Root")); }
    void tap(RowsPage::Row row) { navigation.handle(top().id, RowTapped{row}); }

    std::vector<StackSnapshot> shown;
    Navigation navigation{[this](StackSnapshot stack) { shown.push_back(std::move(stack)); }};
};

TEST_F(NavigationTest, TellsWhatItOpensBeforeThePageIsMade) {
    openRoot();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_TRUE(shown.front().pages.empty());
    ASSERT_TRUE(shown.front().opening);
    EXPECT_EQ(shown.front().opening->className, "RowsPage");
    EXPECT_EQ(shown.front().opening->title, "Root");
    EXPECT_FALSE(shown.back().opening);
}

TEST_F(NavigationTest, ShowsARowOfEachKindWithWhatItHas) {
    RowsPage::values = {{"switch", true}, {"slider", 1.25}, {"options", 10}, {"secret", "1234"}};
    openRoot();
    const auto& rows = top().rows;
    ASSERT_EQ(rows.size(), 11u);
    EXPECT_EQ(top().title, "Root");
    EXPECT_EQ(rows[RowsPage::Group].footerText, "Below");
    EXPECT_EQ(rows[RowsPage::Switch].value, Value(true));
    EXPECT_EQ(rows[RowsPage::Slider].min, 0.5);
    EXPECT_EQ(rows[RowsPage::Slider].max, 2.0);
    EXPECT_EQ(rows[RowsPage::Slider].showValue, true);
    EXPECT_EQ(rows[RowsPage::Options].valueTitle, "10");
    EXPECT_EQ(rows[RowsPage::Secret].placeholder, "Passcode");
    EXPECT_EQ(rows[RowsPage::Hosted].detail, "HostedPage");
    EXPECT_FALSE(rows[RowsPage::Switch].showValue);
    EXPECT_TRUE(rows[RowsPage::Text].value.isNil());
}

TEST_F(NavigationTest, ShowsNothingChosenWhenTheStoredValueIsNoOption) {
    RowsPage::values = {{"options", 11}};
    openRoot();
    EXPECT_EQ(top().rows[RowsPage::Options].valueTitle, "");
}

TEST_F(NavigationTest, LetsAPageAppearOnceWhenItOpensAndOnceWhenItIsBack) {
    openRoot();
    EXPECT_THAT(RowsPage::appearances, ElementsAre(false));
    tap(RowsPage::Options);
    EXPECT_EQ(depth(), 2u);
    EXPECT_EQ(RowsPage::appearances.size(), 1u);
    navigation.back(top().id);
    EXPECT_EQ(depth(), 1u);
    EXPECT_THAT(RowsPage::appearances, ElementsAre(false, true));
}

TEST_F(NavigationTest, ReadsTheRowsAnewWhenAPageIsBack) {
    RowsPage::values = {{"options", 5}};
    openRoot();
    tap(RowsPage::Options);
    navigation.handle(top().id, RowTapped{3});
    navigation.back(top().id);
    EXPECT_EQ(top().rows[RowsPage::Options].valueTitle, "–");
}

TEST_F(NavigationTest, KeepsThePageThatIsBackTheSamePage) {
    openRoot();
    const auto id = top().id;
    tap(RowsPage::Options);
    EXPECT_NE(top().id, id);
    navigation.back(top().id);
    EXPECT_EQ(top().id, id);
}

TEST_F(NavigationTest, OpensNothingForALinkWhoseClassIsMissing) {
    openRoot();
    const std::size_t before = shown.size();
    tap(RowsPage::Nowhere);
    EXPECT_EQ(shown.size(), before);
    EXPECT_EQ(RowsPage::appearances.size(), 1u);
}

TEST_F(NavigationTest, StaysWhereItIsWhenAClassMakesNoPage) {
    openRoot();
    for (const auto row : {RowsPage::NoPage, RowsPage::Refused}) {
        tap(row);
        EXPECT_EQ(depth(), 1u);
        EXPECT_FALSE(shown.back().opening);
    }
    EXPECT_EQ(RowsPage::appearances.size(), 1u);
    EXPECT_FALSE(navigation.open(nullptr, ""));
    EXPECT_FALSE(navigation.open(NSClassFromString("NotAPage"), ""));
}

TEST_F(NavigationTest, OpensNothingForAPageThatThrowsOrHasANullRowAndSaysSo) {
    openRoot();
    for (const char* fault : {"constructor", "init", "rows", "row", "appearance"}) {
        FaultyPage::fault = fault;
        testing::internal::CaptureStderr();
        EXPECT_FALSE(navigation.open(NSClassFromString("FaultyPage"), "Faulty")) << fault;
        const std::string said = testing::internal::GetCapturedStderr();
        EXPECT_EQ(said, "lumora-settings: the page FaultyPage does not open: " +
                            std::string(fault == std::string("row") ? "it has a null row" : "no page today") + "\n");
        ASSERT_EQ(depth(), 1U) << fault;
        EXPECT_EQ(top().className, "RowsPage");
        EXPECT_FALSE(shown.back().opening);
    }
    FaultyPage::fault = "";
    EXPECT_TRUE(navigation.open(NSClassFromString("FaultyPage"), "Faulty")) << "another time";
}

TEST_F(NavigationTest, ClosesAPageThatThrowsLaterOnButNotTheFirst) {
    openRoot();
    FaultyPage::fault = "";
    ASSERT_TRUE(navigation.open(NSClassFromString("FaultyPage"), "Faulty"));
    ASSERT_EQ(depth(), 2U);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(navigation.run([](Navigation&) { throw 7; }));
    EXPECT_EQ(depth(), 1U);
    EXPECT_FALSE(navigation.run([](Navigation&) { throw std::runtime_error("no more"); }));
    EXPECT_TRUE(navigation.run([](Navigation&) {}));
    EXPECT_EQ(depth(), 1U);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "lumora-settings: the page FaultyPage fails: it throws what is no exception\n"
              "lumora-settings: the page RowsPage fails: no more\n");
}

TEST_F(NavigationTest, ShowsTheFirstPageAsItWasWhenItThrowsAtItsReturn) {
    FaultyPage::fault = "";
    ASSERT_TRUE(navigation.open(NSClassFromString("FaultyPage"), "Faulty"));
    ASSERT_TRUE(navigation.open(NSClassFromString("RowsPage"), "Rows"));
    FaultyPage::fault = "appearance";
    testing::internal::CaptureStderr();
    navigation.run([this](Navigation&) { navigation.back(top().id); });
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "lumora-settings: the page FaultyPage fails: no page today\n");
    FaultyPage::fault = "";
    EXPECT_EQ(depth(), 1U);
    EXPECT_FALSE(shown.back().opening);
}

TEST_F(NavigationTest, KeepsNamesAndWordsOfStrangersFromSteeringTheTerminal) {
    const ClassRecord stranger{"Clear\x1B[2J", []() -> std::shared_ptr<NSObject> { return make<FaultyPage>(); }};
    const std::string name = "Clear\uFFFD[2J";
    FaultyPage::fault = "";
    ASSERT_TRUE(navigation.open(&stranger, ""));
    testing::internal::CaptureStderr();
    navigation.run([](Navigation&) { throw std::runtime_error("\x1B]0;title\x07"); });
    FaultyPage::fault = "init";
    navigation.open(&stranger, "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "lumora-settings: the page " + name + " fails: \uFFFD]0;title\uFFFD\n" + "lumora-settings: the page " +
                  name + " does not open: no page today\n");
    FaultyPage::fault = "";
}

TEST_F(NavigationTest, GivesAPageTheTitleAndTheRowThatOpenedIt) {
    openRoot();
    tap(RowsPage::Options);
    EXPECT_EQ(navigation.topPage()->title(), "Options");
    ASSERT_TRUE(navigation.topPage()->specifier());
    EXPECT_EQ(navigation.topPage()->specifier()->identifier(), "options");
    EXPECT_EQ(top().title, "Options");
}

TEST_F(NavigationTest, MarksTheStoredOptionAndMovesTheMarkToTheChosenOne) {
    RowsPage::values = {{"options", 5}};
    openRoot();
    tap(RowsPage::Options);
    EXPECT_EQ(top().className, "PSListItemsController");
    ASSERT_EQ(top().rows.size(), 4u);
    EXPECT_TRUE(top().rows[1].marked);
    navigation.handle(top().id, RowTapped{3});
    EXPECT_THAT(RowsPage::changes, ElementsAre(Pair("options", Value(3600))));
    EXPECT_FALSE(top().rows[1].marked);
    EXPECT_TRUE(top().rows[3].marked);
    EXPECT_EQ(depth(), 2u) << "choosing stays on the list";
}

TEST_F(NavigationTest, StoresAnEditedValueOnceAndReadsTheRowAnew) {
    openRoot();
    navigation.handle(top().id, ValueChanged{RowsPage::Switch, true});
    EXPECT_THAT(RowsPage::changes, ElementsAre(Pair("switch", Value(true))));
    EXPECT_EQ(top().rows[RowsPage::Switch].value, Value(true));
}

TEST_F(NavigationTest, LeavesOtherRowsAsTheyWereReadWhenOneIsEdited) {
    RowsPage::values = {{"slider", 1.0}};
    openRoot();
    RowsPage::values["slider"] = 2.0; // as by a late reply
    navigation.handle(top().id, ValueChanged{RowsPage::Switch, true});
    EXPECT_EQ(top().rows[RowsPage::Slider].value, Value(1.0));
}

TEST_F(NavigationTest, EditsOnlyRowsThatCanBeEdited) {
    openRoot();
    for (const auto row : {RowsPage::Group, RowsPage::Options, RowsPage::Button, RowsPage::Text})
        navigation.handle(top().id, ValueChanged{row, true});
    navigation.handle(top().id, ValueChanged{1000, true});
    EXPECT_TRUE(RowsPage::changes.empty());
}

TEST_F(NavigationTest, CallsAButtonsActionOnceForEachTap) {
    openRoot();
    tap(RowsPage::Button);
    tap(RowsPage::Button);
    EXPECT_EQ(RowsPage::buttonTaps, 2);
}

TEST_F(NavigationTest, IgnoresEventsForPagesThatAreGoneOrCovered) {
    openRoot();
    const auto root = top().id;
    tap(RowsPage::Options);
    const auto options = top().id;
    navigation.handle(root, ValueChanged{RowsPage::Switch, true});
    navigation.handle(root, RowTapped{RowsPage::Button});
    navigation.back(root);
    EXPECT_EQ(depth(), 2u);
    navigation.back(options);
    navigation.back(options);
    navigation.handle(options, RowTapped{2});
    EXPECT_EQ(depth(), 1u);
    EXPECT_TRUE(RowsPage::changes.empty());
    EXPECT_EQ(RowsPage::buttonTaps, 0);
}

TEST_F(NavigationTest, HasNoWayBackFromTheFirstPage) {
    openRoot();
    navigation.back(top().id);
    EXPECT_EQ(depth(), 1u);
    EXPECT_EQ(RowsPage::appearances.size(), 1u);
}

TEST_F(NavigationTest, ShowsAHostedViewInTheContentAreaWithoutItsHiddenViews) {
    navigation.setContentSize({320, 500});
    ASSERT_TRUE(navigation.open(NSClassFromString("HostedPage"), ""));
    EXPECT_TRUE(top().hostsView);
    EXPECT_EQ(top().title, "Fonts");
    EXPECT_TRUE(top().rows.empty());
    ASSERT_TRUE(top().view);
    EXPECT_EQ(top().view->className, "HostedView");
    EXPECT_EQ(top().view->frame, CGRectMake(0, 0, 320, 500));
    EXPECT_EQ(top().view->layer.backgroundColor, UIColor::whiteColor());
    ASSERT_EQ(top().view->subviews.size(), 1u);
    EXPECT_EQ(top().view->subviews[0].frame, CGRectMake(1, 2, 3, 4));
}

TEST_F(NavigationTest, GivesAHostedPageAFreshViewAtEachAppearance) {
    openRoot();
    tap(RowsPage::Hosted);
    const auto first = navigation.topPage()->view();
    navigation.topPage()->viewWillAppear(true);
    EXPECT_NE(navigation.topPage()->view(), first);
    navigation.back(top().id);
    tap(RowsPage::Hosted);
    EXPECT_EQ(HostedView::made, 3);
}

TEST_F(NavigationTest, TellsAPageThatAppearsAgainBecauseItsViewMayBlock) {
    ASSERT_TRUE(navigation.open(NSClassFromString("HostedPage"), ""));
    ASSERT_TRUE(navigation.open(NSClassFromString("RowsPage"), "Above"));
    const auto above = top().id;
    shown.clear();
    navigation.back(above);
    ASSERT_EQ(shown.size(), 2u);
    ASSERT_TRUE(shown.front().opening);
    EXPECT_EQ(shown.front().opening->className, "HostedPage");
    EXPECT_EQ(shown.front().pages.size(), 1u) << "the page above is gone already";
    EXPECT_FALSE(shown.back().opening);
}

TEST_F(NavigationTest, ShowsAPageWithoutAViewAsEmpty) {
    HostedPage::viewless = true;
    ASSERT_TRUE(navigation.open(NSClassFromString("HostedPage"), ""));
    EXPECT_TRUE(top().hostsView);
    EXPECT_FALSE(top().view);
    navigation.setContentSize({100, 100});
    EXPECT_FALSE(top().view);
}

TEST_F(NavigationTest, TakesTheTitleFromAPageWithoutNavigationItem) {
    ASSERT_TRUE(navigation.open(NSClassFromString("BarePage"), "Bare"));
    EXPECT_EQ(top().title, "Bare");
    EXPECT_TRUE(top().view);
}

TEST_F(NavigationTest, FillsThePageWithTheHostedViewAndKeepsTheFrameOfWhatHasNoMaskInIt) {
    ASSERT_TRUE(navigation.open(NSClassFromString("HostedPage"), ""));
    navigation.setContentSize({1024, 700});
    EXPECT_EQ(top().view->frame, CGRectMake(0, 0, 1024, 700));
    EXPECT_EQ(top().view->subviews.at(0).frame, CGRectMake(1, 2, 3, 4));
}

TEST_F(NavigationTest, ResizesWhatIsInTheHostedViewByItsMask) {
    HostedPage::mask = UIViewAutoresizingFlexibleWidth;
    ASSERT_TRUE(navigation.open(NSClassFromString("HostedPage"), ""));
    navigation.setContentSize({1024, 700});
    EXPECT_EQ(top().view->subviews.at(0).frame, CGRectMake(1, 2, 3 + 1024 - 390, 4));
}

/// A page with a table of ten rows and one, drawn with headers of 50 points and footers of 20.
struct TableNavigationTest : NavigationTest {
    void SetUp() override {
        TableView::sections = {{"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"}, {"k"}};
        TableView::cellsAsked = 0;
        ASSERT_TRUE(navigation.open(NSClassFromString("TablePage"), "Plugins"));
    }
    void scroll(double upper, double lower) {
        navigation.handle(top().id, TableScrolled{{upper, lower, {{50, 20}, {50, 20}}}});
    }
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
    navigation.handle(top().id, TableScrolled{{0, 10, {{50, 20}, {50, 20}, {7, 7}}}}); // a section that does not exist
    EXPECT_EQ(table().layout.sectionCount(), 2);
}

TEST_F(TableNavigationTest, MakesAllCellsWhenThereIsNoEndToTheView) {
    scroll(0, std::numeric_limits<double>::infinity());
    EXPECT_EQ(table().cells.size(), 11U);
}

TEST_F(TableNavigationTest, BeginsAtTheTopOfAnotherTableWhenThePageAppearsAgain) {
    scroll(130, 210);
    const std::uint64_t before = table().id;
    navigation.handle(top().id, RowMoved{{0, 0}, {0, 1}});
    EXPECT_EQ(table().id, before);
    ASSERT_TRUE(navigation.open(NSClassFromString("TablePage"), "Above"));
    navigation.back(top().id);
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
    navigation.handle(top().id, RowMoved{{0, 0}, {1, 1}});
    EXPECT_EQ(table().layout.section(0).rowCount, 9);
    EXPECT_EQ(table().layout.section(1).rowCount, 2);
    EXPECT_EQ(table().cells.at({1, 1}).identifier, "a");
}

TEST_F(TableNavigationTest, TellsOfAMoveThatCannotBeByTheSameTable) {
    TableView::sections[0][0] = "fixed";
    const auto before = TableView::sections;
    const std::size_t shownBefore = shown.size();
    navigation.handle(top().id, RowMoved{{0, 0}, {0, 3}});
    navigation.handle(top().id, RowMoved{{0, 99}, {0, 3}});
    EXPECT_EQ(TableView::sections, before);
    EXPECT_EQ(shown.size(), shownBefore + 2) << "whoever drew the move is told how it stands";
}

TEST_F(TableNavigationTest, IgnoresTableEventsOfOtherPages) {
    const std::uint64_t id = top().id;
    ASSERT_TRUE(navigation.open(NSClassFromString("RowsPage"), "Above"));
    const std::size_t shownBefore = shown.size();
    navigation.handle(id, RowMoved{{0, 0}, {0, 1}});
    navigation.handle(id, TableScrolled{{0, 10, {}}});
    navigation.handle(top().id, RowMoved{{0, 0}, {0, 1}}); // a page without a table
    navigation.handle(top().id, TableScrolled{{0, 10, {}}});
    EXPECT_EQ(shown.size(), shownBefore);
    EXPECT_EQ(TableView::sections[0][0], "a");
}

/// A page whose view is touched.
struct FieldNavigationTest : NavigationTest {
    void SetUp() override {
        FieldView::reset();
        ASSERT_TRUE(navigation.open(NSClassFromString("FieldPage"), "Color"));
    }
    void touch(std::vector<UITouchRouter::Point> points) { navigation.handle(top().id, Touched{points}); }
    [[nodiscard]] const ViewSnapshot& field() const { return top().view->subviews.at(0); }
};

TEST_F(FieldNavigationTest, ShowsTheLookOfEachViewThatIsSeen) {
    EXPECT_EQ(field().className, "FieldView");
    EXPECT_EQ(field().frame, CGRectMake(10, 20, 300, 300));
    ASSERT_EQ(field().subviews.size(), 4U) << "the hidden one is left out";
    const ViewSnapshot& picture = field().subviews.at(0);
    EXPECT_EQ(picture.frame, CGRectMake(20, 30, 200, 100)) << "in the view that it is in";
    EXPECT_EQ(picture.layer.cornerRadius, 2);
    EXPECT_TRUE(picture.layer.masksToBounds);
    EXPECT_TRUE(picture.image);
    EXPECT_FALSE(picture.drawing);
    EXPECT_FALSE(field().image);
    ASSERT_TRUE(field().drawing);
    EXPECT_EQ(field().drawing->size, (CGSize{300, 300}));
    EXPECT_EQ(field().drawing->steps.size(), 1U);
}

TEST_F(FieldNavigationTest, ShowsTheElementsThatAreSeenByTheirPlacesOnThePage) {
    ASSERT_EQ(top().elements.size(), 2U);
    EXPECT_EQ(top().elements[0].label, "Field");
    EXPECT_EQ(top().elements[0].frame, CGRectMake(30, 50, 200, 100));
    EXPECT_EQ(top().elements[0].axes.at(0).label, "Across");
    EXPECT_EQ(top().elements[1].label, "Press");
    EXPECT_EQ(top().elements[1].frame, CGRectMake(30, 220, 50, 40));
    EXPECT_TRUE(top().elements[1].axes.empty());
}

TEST_F(FieldNavigationTest, ShowsOfTheElementsOnlyWhatATouchReachesOnASmallerPage) {
    navigation.setContentSize({200, 240});
    ASSERT_EQ(top().elements.size(), 2U);
    EXPECT_EQ(top().elements[0].frame, CGRectMake(30, 50, 200, 100)) << "its quantity is measured along all of it";
    EXPECT_EQ(top().elements[1].frame, CGRectMake(30, 220, 50, 20));
    navigation.setContentSize({50, 230});
    EXPECT_EQ(top().elements.at(1).frame, CGRectMake(30, 220, 20, 10));
    navigation.setContentSize({200, 220});
    ASSERT_EQ(top().elements.size(), 1U);
    EXPECT_EQ(top().elements[0].label, "Field");
    navigation.setContentSize({30, 500});
    EXPECT_TRUE(top().elements.empty());
    navigation.setContentSize({390, 500});
    EXPECT_EQ(top().elements.at(1).frame, CGRectMake(30, 220, 50, 40));
}

TEST_F(FieldNavigationTest, ShowsTheTextByItsPlaceOnThePage) {
    ASSERT_TRUE(top().text);
    EXPECT_EQ(top().text->frame, CGRectMake(160, 220, 100, 60));
    EXPECT_EQ(*top().text->text, "Text");
    EXPECT_EQ(top().text->font->pointSize(), 15);
    EXPECT_FALSE(top().text->selectable);
}

TEST_F(FieldNavigationTest, HandsTouchesToTheViewAndShowsWhatComesOfThem) {
    touch({{0, UITouchPhase::began, {130, 100}}});
    EXPECT_THAT(FieldView::touches, ElementsAre("began 120 80"));
    EXPECT_EQ(field().subviews.at(1).frame, CGRectMake(115, 75, 10, 10));
    EXPECT_EQ(top().elements[0].axes[0].value, 0.5);
    touch({{0, UITouchPhase::moved, {80, 100}}});
    EXPECT_EQ(top().elements[0].axes[0].value, 0.25);
    touch({{0, UITouchPhase::ended, {80, 100}}});
    EXPECT_THAT(FieldView::touches, ElementsAre("began 120 80", "moved 70 80", "ended 70 80"));
}

TEST_F(FieldNavigationTest, HandsOnTheFingersOfOneEventInTheirOrder) {
    touch({{4, UITouchPhase::began, {40, 60}}, {2, UITouchPhase::began, {50, 70}}});
    touch({{4, UITouchPhase::moved, {41, 60}}, {2, UITouchPhase::ended, {50, 70}}});
    EXPECT_THAT(FieldView::touches, ElementsAre("began 30 40", "began 40 50", "moved 31 40", "ended 40 50"));
    EXPECT_EQ(field().subviews.at(1).frame.origin, (CGPoint{35, 45})) << "the last one's place stays";
}

TEST_F(FieldNavigationTest, PressesAButtonOnceForEachTouchThatEndsOnIt) {
    touch({{0, UITouchPhase::began, {50, 230}}});
    EXPECT_EQ(FieldView::presses, 0);
    touch({{0, UITouchPhase::ended, {50, 230}}});
    EXPECT_EQ(FieldView::presses, 1);
    touch({{0, UITouchPhase::began, {50, 230}}});
    touch({{0, UITouchPhase::cancelled, {50, 230}}});
    EXPECT_EQ(FieldView::presses, 1);
    EXPECT_TRUE(FieldView::touches.empty());
}

TEST_F(FieldNavigationTest, KeepsTheTextAndPlaceOfATextThatIsTouchedBeside) {
    const std::uint64_t id = top().text->id;
    touch({{0, UITouchPhase::began, {130, 100}}});
    EXPECT_EQ(top().text->id, id);
    openRoot();
    navigation.back(top().id);
    EXPECT_NE(top().text->id, id) << "a page that appears again has a view of its own";
}

TEST_F(FieldNavigationTest, CancelsTheTouchesOfAPageThatIsCovered) {
    const std::uint64_t id = top().id;
    touch({{0, UITouchPhase::began, {130, 100}}, {1, UITouchPhase::began, {140, 100}}});
    FieldView::touches.clear();
    openRoot();
    EXPECT_THAT(FieldView::touches, ElementsAre("cancelled", "cancelled"));
    navigation.handle(id, Touched{{{0, UITouchPhase::moved, {131, 100}}}});
    navigation.handle(top().id, Touched{{{0, UITouchPhase::began, {131, 100}}}}); // a page of rows
    EXPECT_EQ(FieldView::touches.size(), 2U);
}

TEST_F(FieldNavigationTest, ForgetsTheTouchesOfAPageThatIsGone) {
    openRoot();
    ASSERT_TRUE(navigation.open(NSClassFromString("FieldPage"), "Color"));
    const std::uint64_t id = top().id;
    touch({{0, UITouchPhase::began, {130, 100}}});
    FieldView::touches.clear();
    navigation.back(id);
    const std::size_t shownBefore = shown.size();
    navigation.handle(id, Touched{{{0, UITouchPhase::ended, {130, 100}}}});
    EXPECT_TRUE(FieldView::touches.empty());
    EXPECT_EQ(shown.size(), shownBefore);
}

TEST_F(FieldNavigationTest, HandsNoTouchToAViewThatCameAfterItBegan) {
    touch({{0, UITouchPhase::began, {130, 100}}});
    openRoot();
    navigation.back(top().id);
    FieldView::touches.clear();
    touch({{0, UITouchPhase::moved, {131, 100}}});
    touch({{0, UITouchPhase::ended, {131, 100}}});
    EXPECT_TRUE(FieldView::touches.empty());
}

struct ChoiceNavigationTest : NavigationTest {
    void SetUp() override { ASSERT_TRUE(navigation.open(NSClassFromString("ChoicePage"), "Choice")); }
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

TEST_F(ChoiceNavigationTest, MarksTheTappedRow) {
    EXPECT_TRUE(table().selectable);
    EXPECT_FALSE(cell(52).marked);
    navigation.handle(top().id, TableRowTapped{{0, 52}});
    EXPECT_TRUE(cell(52).marked);
    EXPECT_FALSE(cell(51).marked);
}

TEST_F(ChoiceNavigationTest, TellsWhichRowIsSelectedAndHowTheLastOneCeasedToBe) {
    EXPECT_EQ(table().selected, std::nullopt);
    EXPECT_FALSE(table().deselectsAnimated);
    navigation.handle(top().id, TableRowTapped{{0, 52}});
    EXPECT_EQ(table().selected, (NSIndexPath{0, 52}));
    navigation.handle(top().id, TableRowTapped{{0, 53}}); // which the page deselects at once
    EXPECT_EQ(table().selected, std::nullopt);
    EXPECT_TRUE(table().deselectsAnimated);
}

TEST_F(ChoiceNavigationTest, TellsTheStyleOfItsTable) {
    EXPECT_TRUE(table().grouped);
    ChoiceView::style = UITableViewStylePlain;
    ASSERT_TRUE(navigation.open(NSClassFromString("ChoicePage"), "Choice"));
    EXPECT_FALSE(table().grouped);
    ChoiceView::style = UITableViewStyleGrouped;
}

TEST_F(ChoiceNavigationTest, NamesTheFontOfATitleUnlessItIsTheSystems) {
    ASSERT_NE(cell(51).font, nullptr);
    EXPECT_EQ(cell(51).font->fontName(), "Inter-Bold");
    EXPECT_EQ(cell(52).font, nullptr);
}

TEST_F(TableNavigationTest, TellsWhichRowsHaveSignsAndRoomForThem) {
    scroll(50, 170);
    std::vector<std::pair<int, bool>> signs;
    for (const auto& [path, cell] : table().cells)
        signs.emplace_back(cell.editingStyle, cell.indented);
    EXPECT_THAT(signs, ElementsAre(Pair(0, false), Pair(1, true), Pair(2, false)));
}

TEST_F(TableNavigationTest, HasNothingToSelectWhileItIsEditedAndNothingToScrollTo) {
    EXPECT_FALSE(table().selectable);
    EXPECT_EQ(table().scroll.serial, 0U);
}

TEST_F(NavigationTest, ShowsWhatChangesByItselfInAViewThatIsSeen) {
    openRoot();
    tap(RowsPage::Hosted);
    const auto view = navigation.topPage()->view();
    ASSERT_FALSE(view->subviews().empty());
    const auto inner = view->subviews().front();
    const std::size_t before = shown.size();
    inner->setFrame(CGRectMake(1, 2, 3, 4));
    inner->contentsChanged();
    ASSERT_EQ(shown.size(), before + 1);
    EXPECT_EQ(top().view->subviews.front().frame, CGRectMake(1, 2, 3, 4));
    navigation.back(top().id);
    const std::size_t after = shown.size();
    inner->contentsChanged();
    EXPECT_EQ(shown.size(), after) << "nobody sees it any more";
}

} // namespace

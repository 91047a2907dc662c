#include "tests/settings/host/NavigationTest.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using namespace tests;
using ::testing::ElementsAre;
using ::testing::Pair;

class RefusedPage : public PSListController {
  public:
    bool init() override { return false; }
};
PLATFORM_CLASS(RefusedPage)

class NotAPage : public NSObject {
  public:
    [[nodiscard]] bool init() const { return true; }
};
PLATFORM_CLASS(NotAPage)

/// A page that fails in one place, or nowhere.
class FaultyPage : public PSListController {
  public:
    static inline std::string fault;

    FaultyPage() { failIn("constructor"); }
    bool init() override {
        failIn("init");
        return PSListController::init();
    }
    void viewWillAppear(bool animated) override {
        failIn("appearance");
        PSListController::viewWillAppear(animated);
    }
    PSSpecifierList specifiers() override {
        failIn("rows");
        return fault == "row" ? std::make_shared<const std::vector<PSSpecifierRef>>(1) : nullptr;
    }

  private:
    static void failIn(const std::string& place) {
        if (fault == place) throw std::runtime_error("no page today");
    }
};
PLATFORM_CLASS(FaultyPage)

TEST_F(NavigationTest, AnnouncesAPageBeforeItIsMade) {
    openRoot();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_TRUE(shown.front().pages.empty());
    ASSERT_TRUE(shown.front().opening);
    EXPECT_EQ(shown.front().opening->className, "RowsPage");
    EXPECT_EQ(shown.front().opening->title, "Root");
    EXPECT_FALSE(shown.back().opening);
}

TEST_F(NavigationTest, ShowsARowOfEachKindWithWhatItHas) {
    openRoot({{"switch", true}, {"slider", 1.25}, {"options", 10}, {"secret", "1234"}});
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
    openRoot({{"options", 11}});
    EXPECT_EQ(top().rows[RowsPage::Options].valueTitle, "");
}

TEST_F(NavigationTest, LetsAPageAppearOnceWhenItOpensAndOnceWhenItIsBackAsTheSamePage) {
    openRoot();
    const auto id = top().id;
    EXPECT_THAT(RowsPage::appearances, ElementsAre(false));
    tap(RowsPage::Options);
    EXPECT_EQ(depth(), 2u);
    EXPECT_NE(top().id, id);
    EXPECT_EQ(RowsPage::appearances.size(), 1u);
    goBack();
    EXPECT_EQ(depth(), 1u);
    EXPECT_EQ(top().id, id);
    EXPECT_THAT(RowsPage::appearances, ElementsAre(false, true));
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
    EXPECT_FALSE(open("NoSuchClass"));
    EXPECT_FALSE(open("NotAPage"));
}

TEST_F(NavigationTest, GivesAPageTheTitleAndTheRowThatOpenedIt) {
    openRoot();
    tap(RowsPage::Options);
    EXPECT_EQ(navigation.topPage()->title(), "Options");
    ASSERT_TRUE(navigation.topPage()->specifier());
    EXPECT_EQ(navigation.topPage()->specifier()->identifier(), "options");
    EXPECT_EQ(top().title, "Options");
}

TEST_F(NavigationTest, MarksTheStoredOptionThenTheChosenOneWhichShowsOnThePageBelow) {
    openRoot({{"options", 5}});
    tap(RowsPage::Options);
    EXPECT_EQ(top().className, "PSListItemsController");
    ASSERT_EQ(top().rows.size(), 4u);
    EXPECT_TRUE(top().rows[1].marked);
    tap(3);
    EXPECT_THAT(RowsPage::changes, ElementsAre(Pair("options", Value(3600))));
    EXPECT_FALSE(top().rows[1].marked);
    EXPECT_TRUE(top().rows[3].marked);
    EXPECT_EQ(depth(), 2u) << "choosing stays on the list";
    goBack();
    EXPECT_EQ(top().rows[RowsPage::Options].valueTitle, "–");
}

TEST_F(NavigationTest, StoresAnEditedValueOnceAndReadsOnlyItsRowAgain) {
    openRoot({{"slider", 1.0}});
    RowsPage::values["slider"] = 2.0; // as by a late reply
    handle(ValueChanged{RowsPage::Switch, true});
    EXPECT_THAT(RowsPage::changes, ElementsAre(Pair("switch", Value(true))));
    EXPECT_EQ(top().rows[RowsPage::Switch].value, Value(true));
    EXPECT_EQ(top().rows[RowsPage::Slider].value, Value(1.0));
}

TEST_F(NavigationTest, EditsOnlyRowsThatCanBeEdited) {
    openRoot();
    for (const std::size_t row : {RowsPage::Group, RowsPage::Options, RowsPage::Button, RowsPage::Text})
        handle(ValueChanged{row, true});
    handle(ValueChanged{1000, true});
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
    goBack();
    EXPECT_EQ(depth(), 1u);
    EXPECT_EQ(RowsPage::appearances.size(), 1u);
}

/// Pages that are sound unless a test says otherwise, and what is said of those that are not.
struct FaultyNavigationTest : NavigationTest {
    FaultyNavigationTest() {
        FaultyPage::fault = "";
        testing::internal::CaptureStderr();
    }
    ~FaultyNavigationTest() override { EXPECT_EQ(testing::internal::GetCapturedStderr(), said); }

    std::string said;
};

TEST_F(FaultyNavigationTest, OpensNoPageThatThrowsOrHasANullRow) {
    openRoot();
    for (const char* fault : {"constructor", "init", "rows", "row", "appearance"}) {
        FaultyPage::fault = fault;
        said += "lumora-settings: the page FaultyPage does not open: ";
        said += FaultyPage::fault == "row" ? "it has a null row\n" : "no page today\n";
        EXPECT_FALSE(open("FaultyPage")) << fault;
        ASSERT_EQ(depth(), 1U) << fault;
        EXPECT_EQ(top().className, "RowsPage");
        EXPECT_FALSE(shown.back().opening);
    }
    FaultyPage::fault = "";
    EXPECT_TRUE(open("FaultyPage")) << "another time";
}

TEST_F(FaultyNavigationTest, ClosesAPageThatThrowsLaterOnButNotTheFirst) {
    openRoot();
    ASSERT_TRUE(open("FaultyPage"));
    ASSERT_EQ(depth(), 2U);
    EXPECT_FALSE(navigation.run([](Navigation&) { throw 7; }));
    EXPECT_EQ(depth(), 1U);
    EXPECT_FALSE(navigation.run([](Navigation&) { throw std::runtime_error("no more"); }));
    EXPECT_TRUE(navigation.run([](Navigation&) {}));
    EXPECT_EQ(depth(), 1U);
    said = "lumora-settings: the page FaultyPage fails: it throws what is no exception\n"
           "lumora-settings: the page RowsPage fails: no more\n";
}

TEST_F(FaultyNavigationTest, ShowsTheFirstPageAsItWasWhenItThrowsOnItsReturn) {
    ASSERT_TRUE(open("FaultyPage"));
    openRoot();
    FaultyPage::fault = "appearance";
    navigation.run([this](Navigation&) { goBack(); });
    EXPECT_EQ(depth(), 1U);
    EXPECT_FALSE(shown.back().opening);
    said = "lumora-settings: the page FaultyPage fails: no page today\n";
}

TEST_F(FaultyNavigationTest, KeepsNamesAndWordsOfStrangersFromSteeringTheTerminal) {
    const ClassRecord stranger{"Clear\x1B[2J", []() -> std::shared_ptr<NSObject> { return make<FaultyPage>(); }};
    ASSERT_TRUE(navigation.open(&stranger, ""));
    navigation.run([](Navigation&) { throw std::runtime_error("\x1B]0;title\x07"); });
    FaultyPage::fault = "init";
    EXPECT_FALSE(navigation.open(&stranger, ""));
    said = "lumora-settings: the page Clear\uFFFD[2J fails: \uFFFD]0;title\uFFFD\n"
           "lumora-settings: the page Clear\uFFFD[2J does not open: no page today\n";
}

} // namespace

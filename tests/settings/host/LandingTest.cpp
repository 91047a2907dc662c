#include "tests/settings/host/NavigationTest.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace {

using namespace tests;
using ::testing::ElementsAre;

/// A page of switches whose rows the test chooses, each an identifier and a title; and a link to each kind of page.
class ShiftingPage : public PSListController {
  public:
    static inline std::vector<std::pair<std::string, std::string>> switches;

    PSSpecifierList specifiers() override {
        std::vector<PSSpecifierRef> rows;
        for (const auto& [identifier, title] : switches) {
            rows.push_back(
                PSSpecifier::preferenceSpecifierNamed(title, this, nullptr, nullptr, {}, PSSwitchCell, false));
            rows.back()->setIdentifier(identifier);
        }
        for (const char* name : {"ShiftingPage", "RowsPage"})
            rows.push_back(
                PSSpecifier::preferenceSpecifierNamed(name, this, nullptr, nullptr, name, PSLinkCell, false));
        return std::make_shared<const std::vector<PSSpecifierRef>>(std::move(rows));
    }
};
PLATFORM_CLASS(ShiftingPage)

struct LandingTest : NavigationTest {
    LandingTest() {
        ShiftingPage::switches = {{"one", "One"}, {"two", "Two"}, {"three", "Three"}};
        open("ShiftingPage", "First");
    }
    static Landing landing(std::vector<const char*> way, std::optional<KnownRow> row) {
        Landing asked{{}, std::move(row)};
        for (const char* name : way) // the links come after three switches
            asked.way.push_back({{std::string(name) == "RowsPage" ? 4U : 3U, "", name}, name});
        return asked;
    }
    /// On a page that is made anew.
    std::optional<std::size_t> rowOf(const KnownRow& known) {
        navigation.land({});
        return navigation.land(landing({"ShiftingPage"}, known)).row;
    }
    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> all;
        for (const auto& page : shown.back().pages)
            all.push_back(page->title);
        return all;
    }
};

TEST_F(LandingTest, OpensThePagesOfTheWayOneByOneAsTapsWould) {
    const std::size_t before = shown.size();
    const Landed landed =
        navigation.land(landing({"ShiftingPage", "RowsPage"}, KnownRow{RowsPage::Switch, "switch", "Switch"}));
    EXPECT_THAT(titles(), ElementsAre("First", "ShiftingPage", "RowsPage"));
    EXPECT_EQ(landed, (Landed{top().id, RowsPage::Switch, false}));
    EXPECT_THAT(RowsPage::appearances, ElementsAre(true));
    EXPECT_TRUE(std::any_of(shown.begin() + std::ptrdiff_t(before), shown.end(),
                            [](const StackSnapshot& stack) { return stack.pages.size() == 2 && !stack.opening; }));
}

TEST_F(LandingTest, KeepsThePagesThatAreOpenAlready) {
    navigation.land(landing({"ShiftingPage", "RowsPage"}, {}));
    const std::uint64_t shared = shown.back().pages[1]->id;
    navigation.land(landing({"ShiftingPage", "ShiftingPage"}, {}));
    EXPECT_THAT(titles(), ElementsAre("First", "ShiftingPage", "ShiftingPage"));
    EXPECT_EQ(shown.back().pages[1]->id, shared);
    navigation.land(landing({}, {}));
    EXPECT_THAT(titles(), ElementsAre("First"));
}

TEST_F(LandingTest, FindsARowOfAChangedPageByItsTextsThenItsIdentifierThenItsTitle) {
    EXPECT_EQ(rowOf({1, "two", "Two"}), 1U);
    ShiftingPage::switches = {{"two", "Renamed"}, {"new", "Two"}, {"two", "Two"}};
    EXPECT_EQ(rowOf({1, "two", "Two"}), 2U);
    ShiftingPage::switches.pop_back();
    EXPECT_EQ(rowOf({1, "two", "Two"}), 0U);
    ShiftingPage::switches.erase(ShiftingPage::switches.begin());
    EXPECT_EQ(rowOf({1, "two", "Two"}), 0U);
}

TEST_F(LandingTest, KnowsASliderByTheTextAboveItAndAFieldByItsPlaceholder) {
    const auto row = [&](const char* title) {
        return navigation.land(landing({"RowsPage"}, KnownRow{99, "", title})).row;
    };
    EXPECT_EQ(row("Passcode"), RowsPage::Secret);
    EXPECT_EQ(row("General"), std::nullopt) << "a group is no row";
}

TEST_F(LandingTest, TellsOfARowThatHasGone) {
    const Landed landed = navigation.land(landing({"RowsPage"}, KnownRow{1, "gone", "Gone"}));
    EXPECT_EQ(landed, (Landed{top().id, std::nullopt, true}));
    EXPECT_EQ(top().className, "RowsPage");
}

TEST_F(LandingTest, StopsWhereTheWayEnds) {
    Landing asked = landing({"ShiftingPage", "RowsPage"}, KnownRow{1, "switch", "Switch"});
    asked.way[1].row = {4, "", "No such link"};
    const Landed landed = navigation.land(asked);
    EXPECT_THAT(titles(), ElementsAre("First", "ShiftingPage"));
    EXPECT_EQ(landed, (Landed{top().id, std::nullopt, true}));
}

TEST_F(LandingTest, HasNowhereToGoBeforeThereIsAPage) {
    Navigation none([](const StackSnapshot&) {});
    EXPECT_EQ(none.land({}), (Landed{0, std::nullopt, true}));
}

} // namespace

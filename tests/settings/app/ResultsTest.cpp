// The results of the search, which one leaves for a page and comes back to.
#include "tests/settings/app/Visit.h"
#include "tests/support/Waiting.h"

#include <QTest>

#include <gmock/gmock.h>

#include <future>

namespace results_test {

using namespace tests;
using testing::ElementsAre;

/// Two rows of the Passcode View, and one of the first page.
search::Index someRows() {
    const auto row = [](std::size_t page, std::size_t at, const char* title, const char* key) {
        search::Entry entry;
        entry.page = page;
        entry.row = at;
        entry.title = title;
        entry.identifier = key;
        return entry;
    };
    return {{{"LumoraPreferences", "Lumora", std::nullopt, 0, "", ""},
             {"LSSettingsController", "Lock Screen Settings", 0, 8, "", "Lock Screen Settings"},
             {"LSPasscodeSettings", "Passcode View", 1, 10, "", "Passcode View"}},
            {row(2, 1, "Passcode Blur", "kLSPasscodeBlurHidden"), row(2, 0, "Blur Cutoff", "kLSBlurCutoffEnabled"),
             row(0, 0, "Hide Notifications On Tap", "kNotificationsHideOnTap")}};
}

struct Results : testing::TestWithParam<QSize> {
    Results() { visit.search.setIndex(someRows()); }

    [[nodiscard]] bool areShown() const {
        const QQuickItem* field = visit.window->activeFocusItem();
        return field && field->property("text").toString() == visit.search.query() && !visit.search.query().isEmpty();
    }
    void lookFor(const QString& words) {
        visit.press(Qt::Key_F, Qt::ControlModifier);
        visit.type(words);
        EXPECT_TRUE(areShown());
    }

    Visit visit{GetParam()};
    const std::vector<std::string> taps{"LumoraPreferences: tap 8", "LSSettingsController: tap 10"};
};

TEST_P(Results, AreThereAgainAsTheyWereLeftWhenOneGoesBack) {
    lookFor("blur");
    visit.press(Qt::Key_Down);
    const int chosen = visit.search.current();
    for (const auto& [key, modifiers] : {std::pair(Qt::Key_Escape, Qt::NoModifier), {Qt::Key_Left, Qt::AltModifier}}) {
        visit.press(Qt::Key_Return);
        EXPECT_FALSE(areShown());
        EXPECT_THAT(visit.opened(), ElementsAre("LumoraPreferences", "LSSettingsController", "LSPasscodeSettings"));
        visit.press(key, modifiers);
        EXPECT_TRUE(areShown());
        EXPECT_EQ(visit.search.query(), "blur");
        EXPECT_EQ(visit.search.current(), chosen);
    }
    EXPECT_EQ(visit.heard(), taps) << "no page hears of the way back to the results, nor is one opened anew";
}

TEST_P(Results, AreThereAgainWhenSomethingThatTakesLongIsOver) {
    lookFor("blur");
    std::promise<void> over;
    visit.shell.post([&over](settings::Navigation&) { awaited(over.get_future(), "the end of it"); });
    EXPECT_TRUE(happens([this] { return visit.shell.waiting(); }));
    EXPECT_FALSE(areShown());
    over.set_value();
    EXPECT_TRUE(happens([this] { return areShown(); }));
    EXPECT_EQ(visit.search.query(), "blur");
}

TEST_P(Results, LetOneGoBackByHandOnceTheyAreLeft) {
    lookFor("blur");
    visit.press(Qt::Key_Return);
    visit.press(Qt::Key_Escape);
    EXPECT_TRUE(areShown());
    visit.press(Qt::Key_Escape); // empties the field
    visit.press(Qt::Key_Escape);
    EXPECT_THAT(visit.opened(), testing::SizeIs(3));
    visit.press(Qt::Key_Escape);
    EXPECT_THAT(visit.opened(), testing::SizeIs(2));
    EXPECT_EQ(visit.heard().back(), "LSPasscodeSettings: back");
    visit.press(Qt::Key_Escape);
    EXPECT_THAT(visit.opened(), testing::SizeIs(1));
}

TEST_P(Results, AreBehindThePageToWhichTheyLedAndNotBehindOthers) {
    lookFor("blur");
    visit.press(Qt::Key_Return);
    visit.reach("LSPasscodeSettings");
    visit.open("Blur Color");
    EXPECT_EQ(visit.opened().back(), "ColorPickerController");
    visit.press(Qt::Key_Escape);
    EXPECT_EQ(visit.opened().back(), "LSPasscodeSettings");
    EXPECT_FALSE(areShown());
    visit.press(Qt::Key_F5); // opens the page anew
    visit.press(Qt::Key_Escape);
    EXPECT_TRUE(areShown());
    EXPECT_EQ(visit.opened().back(), "LSPasscodeSettings");
}

TEST_P(Results, AreThereAgainFromTheFirstPageToo) {
    lookFor("notifications");
    visit.press(Qt::Key_Return);
    EXPECT_FALSE(areShown());
    visit.press(Qt::Key_Space);
    EXPECT_THAT(visit.heard(), ElementsAre("LumoraPreferences: change 9 to 1"));
    visit.press(Qt::Key_Escape);
    EXPECT_TRUE(areShown());
    visit.press(Qt::Key_Escape);
    visit.press(Qt::Key_Escape);
    visit.press(Qt::Key_Escape);
    EXPECT_THAT(visit.opened(), ElementsAre("LumoraPreferences"));
    EXPECT_THAT(visit.heard(), testing::SizeIs(1));
}

INSTANTIATE_TEST_SUITE_P(InOneColumn, Results, testing::Values(kNarrow));
INSTANTIATE_TEST_SUITE_P(InTwoColumns, Results, testing::Values(kWide));

} // namespace results_test

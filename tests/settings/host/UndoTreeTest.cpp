#include "tests/settings/host/TreeTest.h"

#include <gmock/gmock.h>

#include <utility>

namespace {

using namespace tests;
using platform::Dictionary;
using platform::List;
using platform::Value;
using testing::ElementsAre;

/// What a row of that kind holds before and after a change; nil for a row that holds nothing.
std::pair<Value, Value> valuesOf(const RowSnapshot& row) {
    switch (row.cell) {
    case platform::PSSwitchCell:
        return {false, true};
    case platform::PSSliderCell:
        return {*row.min, *row.max};
    case platform::PSEditTextCell:
    case platform::PSSecureEditTextCell:
        return {"before", "after"};
    case platform::PSLinkListCell:
        return {row.values.front(), row.values.back()};
    default:
        return {};
    }
}

/// In its parts and their places, of which the marks tell the colour.
bool isAlike(const ViewSnapshot& a, const ViewSnapshot& b) {
    return a.className == b.className && a.frame == b.frame && std::ranges::equal(a.subviews, b.subviews, isAlike);
}

/// All pages hold a setting for each of their rows.
class UndoTreeTest : public TreeTest {
  protected:
    UndoTreeTest() {
        const auto collect = [this] {
            for (const RowSnapshot& row : top().rows)
                if (const Value before = valuesOf(row).first; !before.isNil()) settings.set(row.identifier, before);
        };
        collect();
        visit(collect);
        settings.set("kAppsEnabled", List{"org.one", "org.two"});
        settings.set("kAUAppsDisabled", List{"org.two", "org.gone"});
        settings.set("kAppViewsEnabled", List{"org.gone", "org.one"});
        settings.set("kLSDateFontName", "Default");
        settings.set("kLSBlurColor", Dictionary{{"h", 0.5}, {"s", 1.0}, {"b", 0.5}});
        tweak.setSettings(settings);
        for (int ask = 0; ask < 2; ++ask) { // a page shows what the request of the one before it has brought
            navigation.reload(top().id);
            visit([] {});
            EXPECT_TRUE(platform::dispatch_wait_until_idle(kLongEnough));
        }
    }

    /// Has the user change something on the page on top, take that back and do it again: a message for each, and in
    /// the end all is as it was.
    void expectTakenBack(const std::string& key, const Event& event) {
        SCOPED_TRACE(key);
        const PageSnapshot was = top();
        tweak.setSettings(settings); // forgets the changes
        navigation.handle(top().id, event);
        const Value change = tweak.waitForChanges(1)[0];
        EXPECT_EQ(change["key"], Value(key));
        const Value changeBack = Dictionary{{"key", key}, {"object", settings[key]}};
        EXPECT_EQ(navigation.undo().fate, Navigation::Undone::Fate::done);
        EXPECT_THAT(tweak.waitForChanges(2), ElementsAre(change, changeBack));
        expectLooksAs(was);
        EXPECT_EQ(navigation.redo().fate, Navigation::Undone::Fate::done);
        EXPECT_THAT(tweak.waitForChanges(3), ElementsAre(change, changeBack, change));
        navigation.undo();
        EXPECT_EQ(tweak.waitForChanges(4).size(), 4U);
        EXPECT_EQ(tweak.changes().size(), 4U) << "a message too many";
    }
    void expectLooksAs(const PageSnapshot& was) const {
        EXPECT_EQ(top().id, was.id);
        for (std::size_t row = 0; row < was.rows.size(); ++row) {
            EXPECT_EQ(top().rows[row].value, was.rows[row].value) << was.rows[row].name;
            EXPECT_EQ(top().rows[row].marked, was.rows[row].marked) << was.rows[row].name;
        }
        EXPECT_EQ(bool(top().view), bool(was.view));
        if (was.table) {
            EXPECT_EQ(rowsOf(*top().table), rowsOf(*was.table));
        } else if (was.view) {
            EXPECT_TRUE(isAlike(*top().view, *was.view));
        }
    }
    static std::vector<std::string> rowsOf(const TableSnapshot& table) {
        std::vector<std::string> rows;
        for (const auto& [path, cell] : table.cells)
            rows.push_back(std::to_string(path.section) + cell.title + cell.identifier + (cell.marked ? "*" : ""));
        return rows;
    }
    void expectTakenBackOn(const std::vector<std::string>& way, const std::string& key, const Event& event) {
        follow(way);
        expectTakenBack(key, event);
        goBack(way.size());
    }

    RecordingTweak& tweak = RecordingTweak::shared();
    Dictionary settings;
};

TEST_F(UndoTreeTest, TakesBackAndDoesAgainTheChangeOfEveryRowOfEveryPage) {
    int changed = 0;
    const auto changeAll = [&] {
        const PageSnapshot page = top();
        for (std::size_t row = 0; row < page.rows.size(); ++row) {
            const Value after = valuesOf(page.rows[row]).second;
            if (after.isNil() || page.rows[row].cell == platform::PSLinkListCell) continue;
            expectTakenBack(page.rows[row].identifier, ValueChanged{row, after});
            ++changed;
        }
        if (page.className != "PSListItemsController") return;
        const std::vector<RowSnapshot> rowsBefore = shown.pages[shown.pages.size() - 2]->rows;
        const auto opener = std::ranges::find(rowsBefore, page.title, &RowSnapshot::name);
        ASSERT_NE(opener, rowsBefore.end());
        expectTakenBack(opener->identifier, RowTapped{page.rows.size() - 1});
        ++changed;
    };
    changeAll();
    visit(changeAll);
    EXPECT_GE(changed, 50) << "the rows of the bundle alone";
}

TEST_F(UndoTreeTest, TakesBackAndDoesAgainTheChangeOfEveryView) {
    const RowMoved intoTheOtherSection{{0, 0}, {1, 0}};
    expectTakenBackOn({"Apps", "Apps"}, "kAppsEnabled", intoTheOtherSection);
    expectTakenBackOn({"Apps", "Auto-Unlock", "Auto-Unlock Apps"}, "kAUAppsDisabled", intoTheOtherSection);
    expectTakenBackOn({"App Views", "Select Plugins"}, "kAppViewsEnabled", intoTheOtherSection);
    expectTakenBackOn({"Lock Screen Settings", "Date View", "Date View Font"}, "kLSDateFontName",
                      TableRowTapped{{0, 2}});
    const platform::CGPoint pink{390 * 6.5 / 7, 740};
    expectTakenBackOn({"Lock Screen Settings", "Passcode View", "Blur Color"}, "kLSBlurColor",
                      Touched{{{1, platform::UITouchPhase::began, pink}, {1, platform::UITouchPhase::ended, pink}}});
}

} // namespace

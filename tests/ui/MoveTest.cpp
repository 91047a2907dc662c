#include "platform/ui/Move.h"
#include "platform/ui/TableLayout.h"

#include <gtest/gtest.h>

#include <array>
#include <list>
#include <string>

namespace {

using platform::NSIndexPath;
using platform::TableLayout;

/// What is in section 0 and what is in section 1.
using Rows = std::array<std::vector<std::string>, 2>;

Rows moved(Rows rows, NSIndexPath from, NSIndexPath to) {
    platform::moveRow(rows.at(std::size_t(from.section)), from.row, rows.at(std::size_t(to.section)), to.row);
    return rows;
}

/// The move as one would do it by hand with two decks of cards: draw the card, then count down the other deck.
Rows movedByHand(const Rows& rows, NSIndexPath from, NSIndexPath to) {
    std::list<std::string> decks[2] = {{rows[0].begin(), rows[0].end()}, {rows[1].begin(), rows[1].end()}};
    std::list<std::string> drawn;
    auto card = decks[from.section].begin();
    for (int i = 0; i < from.row; ++i)
        ++card;
    drawn.splice(drawn.begin(), decks[from.section], card);
    auto place = decks[to.section].begin();
    for (int i = 0; i < to.row; ++i)
        ++place;
    decks[to.section].splice(place, drawn);
    return {{{decks[0].begin(), decks[0].end()}, {decks[1].begin(), decks[1].end()}}};
}

std::vector<std::string> named(char first, int count) {
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i)
        names.emplace_back(1, static_cast<char>(first + i));
    return names;
}

std::map<NSIndexPath, std::string> byPlace(const Rows& rows) {
    std::map<NSIndexPath, std::string> placed;
    for (const int section : {0, 1})
        for (int row = 0; const std::string& name : rows.at(std::size_t(section)))
            placed[{section, row++}] = name;
    return placed;
}

/// By the numbers of rows alone.
TableLayout layoutOf(const Rows& rows) {
    return TableLayout({{"", "", 0, 0, 0, int(rows[0].size())}, {"", "", 0, 0, 0, int(rows[1].size())}});
}

/// Those that there are, and some that there are not.
std::vector<NSIndexPath> places(const Rows& rows) {
    std::vector<NSIndexPath> all;
    for (const int section : {0, 1})
        for (int row = -1; row <= int(rows.at(std::size_t(section)).size()) + 1; ++row)
            all.push_back({section, row});
    return all;
}

void expectToBeAsByHand(const Rows& before, NSIndexPath from, NSIndexPath to) {
    const Rows after = movedByHand(before, from, to);
    EXPECT_EQ(moved(before, from, to), after);
    EXPECT_EQ(moved(byPlace(before), from, to), byPlace(after));
    const TableLayout layout = layoutOf(before).moved(from, to);
    EXPECT_EQ(layout.section(0).rowCount, int(after[0].size()));
    EXPECT_EQ(layout.section(1).rowCount, int(after[1].size()));
}

TEST(Move, DoesWhatOneWouldDoByHandForEveryPlaceInListsOfUpToFiveAndNothingForOthers) {
    int moves = 0;
    for (int enabled = 0; enabled <= 5; ++enabled) {
        for (int disabled = 0; disabled <= 5; ++disabled) {
            const Rows before{named('a', enabled), named('A', disabled)};
            const int rows[2] = {enabled, disabled};
            for (const NSIndexPath from : places(before)) {
                for (const NSIndexPath to : places(before)) {
                    SCOPED_TRACE(testing::Message() << enabled << "+" << disabled << ": " << from.section << ","
                                                    << from.row << " to " << to.section << "," << to.row);
                    const int placesThere = rows[to.section] + (to.section == from.section ? 0 : 1);
                    const bool can =
                        from.row >= 0 && from.row < rows[from.section] && to.row >= 0 && to.row < placesThere;
                    ASSERT_EQ(layoutOf(before).canMove(from, to), can);
                    if (can)
                        expectToBeAsByHand(before, from, to);
                    else
                        ASSERT_EQ(moved(before, from, to), before);
                    moves += can ? 1 : 0;
                }
            }
        }
    }
    // Each of the n(n + m + 1) + m(n + m + 1) moves for all n, m up to 5.
    EXPECT_EQ(moves, 1290);
}

TEST(Move, FromTheFirstOfThreeToTheLastShiftsTheOthersUp) {
    EXPECT_EQ(moved({{{"first", "second", "third"}, {}}}, {0, 0}, {0, 2}), (Rows{{{"second", "third", "first"}, {}}}));
}

TEST(TableLayout, CrossesIntoTheNearerEndOfTheSectionBesideAndNowhereElse) {
    const TableLayout layout = layoutOf({named('a', 3), named('A', 2)});
    EXPECT_EQ(layout.across({0, 1}, 1), (NSIndexPath{1, 0}));
    EXPECT_EQ(layout.across({1, 1}, -1), (NSIndexPath{0, 3}));
    EXPECT_EQ(layout.across({0, 1}, -1), std::nullopt);
    EXPECT_EQ(layout.across({1, 0}, 1), std::nullopt);
}

TEST(TableLayout, LeavesRoomInPlaceOfRowsOnlyWhileThereAreNone) {
    TableLayout layout({{"", "", 50, 20, 40, 0}, {"", "", 50, 20, 40, 2}});
    EXPECT_EQ(layout.emptyHeight(), 0) << "none is asked for";
    for (const int section : {0, 1})
        layout.setEmptyHeight(section, 30);
    EXPECT_EQ(layout.emptyHeight(), 30);
    EXPECT_EQ(layout.footerTop(0), 50 + 30);
    EXPECT_EQ(layout.sectionTop(1), 50 + 30 + 20);
    EXPECT_EQ(layout.rowTop({1, 1}), 100 + 50 + 40);
    EXPECT_EQ(layout.height(), 100 + 50 + 80 + 20);
    EXPECT_EQ(layout.rowsBetween(150, 160)[1], (TableLayout::Rows{0, 1}));
    EXPECT_EQ(layout.nearest({1, 0}, 60), (NSIndexPath{0, 0}));
    const TableLayout filled = layout.moved({1, 0}, {0, 0});
    EXPECT_EQ(filled.emptyHeight(), 0);
    EXPECT_EQ(filled.sectionTop(1), 50 + 40 + 20);
}

TEST(Move, TakesOneOfTwoEqualRows) {
    EXPECT_EQ(moved({{{"a", "b", "a"}, {}}}, {0, 2}, {1, 0}), (Rows{{{"a", "b"}, {"a"}}}));
}

} // namespace

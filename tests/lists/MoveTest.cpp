#include "lists/Move.h"

#include <gtest/gtest.h>

#include <list>
#include <string>

namespace {

using lumora::moved;
using lumora::Selection;
using platform::NSIndexPath;

/// The move as one would do it by hand with two decks of cards: draw the card, then count down the other deck.
Selection movedByHand(const Selection& selection, NSIndexPath from, NSIndexPath to) {
    std::list<std::string> decks[2] = {{selection.enabled.begin(), selection.enabled.end()},
                                       {selection.disabled.begin(), selection.disabled.end()}};
    std::list<std::string> drawn;
    auto card = decks[from.section].begin();
    for (int i = 0; i < from.row; ++i)
        ++card;
    drawn.splice(drawn.begin(), decks[from.section], card);
    auto place = decks[to.section].begin();
    for (int i = 0; i < to.row; ++i)
        ++place;
    decks[to.section].splice(place, drawn);
    return {{decks[0].begin(), decks[0].end()}, {decks[1].begin(), decks[1].end()}};
}

std::vector<std::string> named(char first, int count) {
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i)
        names.emplace_back(1, static_cast<char>(first + i));
    return names;
}

TEST(Move, DoesWhatOneWouldDoByHandForEveryPlaceInListsOfUpToFive) {
    int moves = 0;
    for (int enabled = 0; enabled <= 5; ++enabled) {
        for (int disabled = 0; disabled <= 5; ++disabled) {
            const Selection before{named('a', enabled), named('A', disabled)};
            const int rows[2] = {enabled, disabled};
            for (int section = 0; section < 2; ++section) {
                for (int row = 0; row < rows[section]; ++row) {
                    for (int there = 0; there < 2; ++there) {
                        const int places = rows[there] + (there == section ? 0 : 1);
                        for (int place = 0; place < places; ++place) {
                            const NSIndexPath from{section, row};
                            const NSIndexPath to{there, place};
                            ASSERT_EQ(moved(before, from, to), movedByHand(before, from, to))
                                << enabled << "+" << disabled << ": " << section << "," << row << " to " << there << ","
                                << place;
                            ++moves;
                        }
                    }
                }
            }
        }
    }
    // Each of the n(n + m + 1) + m(n + m + 1) moves for all n, m up to 5.
    EXPECT_EQ(moves, 1290);
}

TEST(Move, FromTheFirstOfThreeToTheLastShiftsTheOthersUp) {
    EXPECT_EQ(moved({{"first", "second", "third"}, {}}, {0, 0}, {0, 2}).enabled,
              (std::vector<std::string>{"second", "third", "first"}));
}

TEST(Move, ToItsOwnPlaceChangesNothing) {
    const Selection before{{"a", "b"}, {"c"}};
    EXPECT_EQ(moved(before, {0, 1}, {0, 1}), before);
}

TEST(Move, IntoAnEmptyListMakesItTheOnlyRow) {
    EXPECT_EQ(moved({{}, {"a", "b"}}, {1, 1}, {0, 0}), (Selection{{"b"}, {"a"}}));
}

TEST(Move, TakesOneOfTwoEqualRows) {
    EXPECT_EQ(moved({{"a", "b", "a"}, {}}, {0, 2}, {1, 0}), (Selection{{"a", "b"}, {"a"}}));
}

TEST(Move, CountsEverySectionButTheFirstAsTheSecond) {
    EXPECT_EQ(moved({{"a"}, {"b"}}, {0, 0}, {7, 1}), (Selection{{}, {"b", "a"}}));
}

TEST(Move, ToOrFromAPlaceThatDoesNotExistChangesNothing) {
    const Selection before{{"a", "b"}, {"c"}};
    EXPECT_EQ(moved(before, {0, 2}, {0, 0}), before);
    EXPECT_EQ(moved(before, {0, -1}, {0, 0}), before);
    EXPECT_EQ(moved(before, {0, 0}, {0, 2}), before) << "with the row taken out there is one place less";
    EXPECT_EQ(moved(before, {0, 0}, {1, 2}), before);
    EXPECT_EQ(moved(before, {0, 0}, {1, -1}), before);
}

} // namespace

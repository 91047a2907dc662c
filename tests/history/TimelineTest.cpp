#include "history/Timeline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace lumora;
using platform::Dictionary;
using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

Moment minute(int number) {
    return Moment(std::chrono::minutes(number));
}

ChangeRecord changeAt(int number, const std::string& key, std::optional<Value> before, std::optional<Value> after) {
    return {number, number, minute(number), key, std::move(before), std::move(after)};
}

/// A history made by chance, and what the settings were at each place of it.
struct Chance {
    explicit Chance(unsigned seed, int records) {
        std::mt19937 random(seed);
        Dictionary set;
        then.push_back(withDefaults(set));
        for (int i = 1; i <= records; ++i) {
            const std::string key = "key" + std::to_string(random() % 30);
            const Value* was = set.find(key);
            const std::optional<Value> before = was ? std::optional(*was) : std::nullopt;
            std::optional<Value> after;
            if (!was || random() % 10 != 0) after = Value(static_cast<int>(random() % 5));
            history.push_back(changeAt(i, key, before, after));
            if (after)
                set.set(key, *after);
            else
                set.remove(key);
            then.push_back(withDefaults(set));
        }
    }
    [[nodiscard]] Dictionary withDefaults(const Dictionary& set) const {
        Dictionary all = defaults;
        for (const auto& [key, value] : set)
            all.set(key, value);
        return all;
    }
    [[nodiscard]] Timeline timeline() const { return {history, then.back(), defaults}; }

    Dictionary defaults{{"key0", -1}, {"key1", -1}, {"key2", -1}};
    std::vector<ChangeRecord> history;
    std::vector<Dictionary> then;
};

} // namespace

TEST(Timeline, KnowsTheSettingsAtEachPlaceOfAnyHistory) {
    for (unsigned seed = 0; seed < 20; ++seed) {
        const Chance chance(seed, 200);
        const Timeline timeline = chance.timeline();
        for (std::size_t place = 0; place < chance.then.size(); ++place)
            ASSERT_EQ(timeline.at(place), chance.then[place]) << "seed " << seed << ", place " << place;
    }
}

TEST(Timeline, IsMovedAboutAsItIsReckonedAnew) {
    const Chance chance(1, 400);
    const Timeline timeline = chance.timeline();
    TimelineCursor cursor(timeline);
    EXPECT_EQ(cursor.settings(), chance.then.back());
    std::mt19937 random(2);
    for (int i = 0; i < 2000; ++i) {
        const Dictionary before = cursor.settings();
        const std::size_t near = cursor.place() + random() % 7;
        const std::size_t place =
            random() % 2 ? random() % chance.then.size() : std::min(near < 3 ? 0 : near - 3, chance.then.size() - 1);
        const auto changed = cursor.moveTo(place);
        ASSERT_EQ(cursor.settings(), chance.then[place]);
        for (const std::string& key : changed)
            EXPECT_NE(before[key], cursor.settings()[key]);
        for (const auto& [key, value] : before)
            EXPECT_TRUE(value == cursor.settings()[key] || std::ranges::count(changed, key) == 1) << key;
    }
}

TEST(Timeline, FindsAMomentBehindTheLastRecordThatIsNotLater) {
    std::vector<ChangeRecord> records;
    for (const int number : {10, 20, 30})
        records.push_back(changeAt(number, "a", 1, 2));
    records.push_back({31, 31, minute(15), "a", Value(1), Value(2)}); // the clock was set back
    const Timeline timeline(records, {}, {});
    EXPECT_EQ(timeline.placeOf(minute(9)), 0U);
    EXPECT_EQ(timeline.placeOf(minute(10)), 1U);
    EXPECT_EQ(timeline.placeOf(minute(14)), 1U);
    EXPECT_EQ(timeline.placeOf(minute(15)), 4U);
    EXPECT_EQ(timeline.placeOf(minute(99)), 4U);
    EXPECT_EQ(Timeline({}, {}, {}).placeOf(minute(1)), 0U);
}

TEST(Timeline, FindsTheRecordOfARevisionAndTheNextOfItsKey) {
    ChangeRecord folded = changeAt(6, "a", 2, 3);
    folded.first = 4;
    const Timeline timeline({changeAt(2, "a", 1, 2), changeAt(3, "b", 1, 2), folded}, {}, {});
    EXPECT_EQ(timeline.recordOfRevision(1), std::nullopt);
    EXPECT_EQ(timeline.recordOfRevision(2), 0U);
    for (const int revision : {4, 5, 6})
        EXPECT_EQ(timeline.recordOfRevision(revision), 2U);
    EXPECT_EQ(timeline.recordOfRevision(7), std::nullopt);
    EXPECT_EQ(timeline.nextOfKey(0), 2U);
    EXPECT_EQ(timeline.nextOfKey(1), std::nullopt);
    EXPECT_EQ(timeline.nextOfKey(2), std::nullopt);
}

TEST(Timeline, NamesTheKeysWhoseValuesWereWithheld) {
    const ChangeRecord large{2, 2, minute(2), "a", std::nullopt, std::nullopt, Withheld::large};
    const Timeline timeline({changeAt(1, "a", 1, 2), large, changeAt(3, "a", 7, 8)}, {{"a", 8}, {"b", 1}}, {});
    EXPECT_THAT(timeline.untoldAt(0), IsEmpty()) << "the first record has the value before it";
    EXPECT_THAT(timeline.untoldAt(1), ElementsAre("a"));
    EXPECT_THAT(timeline.untoldAt(2), IsEmpty());
    EXPECT_EQ(timeline.at(0)["a"], Value(1));
    EXPECT_EQ(timeline.at(1)["a"], Value(7)) << "that after it stands in";
    EXPECT_EQ(timeline.at(2)["a"], Value(7));
}

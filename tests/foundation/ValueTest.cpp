#include "EdgeValues.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using namespace platform;

std::vector<std::string> keysOf(const Dictionary& dictionary) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : dictionary)
        keys.push_back(key);
    return keys;
}

TEST(Value, HoldsEachKindAndGivesNothingForTheOthers) {
    EXPECT_TRUE(Value().isNil());
    EXPECT_EQ(Value(true).boolean(), true);
    EXPECT_EQ(Value(30).integer(), 30);
    EXPECT_EQ(Value(0.5).real(), 0.5);
    EXPECT_EQ(*Value("text").text(), "text");
    EXPECT_EQ(*Value(Data{1, 2}).data(), (Data{1, 2}));
    EXPECT_EQ(Value(Date{7}).date(), Date{7});
    EXPECT_EQ(Value(List{1, "b"}).list()->size(), 2U);
    EXPECT_EQ(Value(Dictionary{{"a", 1}}).dictionary()->size(), 1U);

    EXPECT_EQ(Value(1).boolean(), std::nullopt);
    EXPECT_EQ(Value(true).integer(), std::nullopt);
    EXPECT_EQ(Value(1).real(), std::nullopt);
    EXPECT_EQ(Value(1.0).integer(), std::nullopt);
    EXPECT_EQ(Value(1).text(), nullptr);
    EXPECT_EQ(Value("text").data(), nullptr);
    EXPECT_EQ(Value("text").list(), nullptr);
    EXPECT_EQ(Value(List{}).dictionary(), nullptr);
    EXPECT_EQ(Value(1.0).date(), std::nullopt);
}

TEST(Value, KeepsBooleansIntegersAndRealsApart) {
    EXPECT_NE(Value(true), Value(1));
    EXPECT_NE(Value(false), Value(0));
    EXPECT_NE(Value(1), Value(1.0));
    EXPECT_NE(Value(), Value(false));
    EXPECT_NE(Value(Date{1}), Value(1.0));
    EXPECT_EQ(Value(0.0), Value(-0.0));
    EXPECT_NE(Value(std::nan("")), Value(std::nan("")));
}

TEST(Value, MeansTheSameWhereNothingButNaNIsUnequal) {
    const auto nested = [](const Value& value) { return Value(Dictionary{{"a", List{1, value}}}); };
    const double nan = std::nan("");
    EXPECT_TRUE(meansTheSame(nested(nan), nested(-nan)));
    EXPECT_TRUE(meansTheSame(nested(Date{nan}), nested(Date{nan})));
    EXPECT_TRUE(meansTheSame(Dictionary{{"a", nan}}, Dictionary{{"a", nan}}));
    EXPECT_FALSE(meansTheSame(nested(nan), nested(Date{nan})));
    EXPECT_FALSE(meansTheSame(nested(nan), nested(0.0)));
    EXPECT_FALSE(meansTheSame(1, 1.0));
}

TEST(Value, ReadsLenientlyAsThePlatformDoes) {
    EXPECT_EQ(Value(true).doubleValue(), 1);
    EXPECT_EQ(Value(-3).doubleValue(), -3);
    EXPECT_EQ(Value(0.25).doubleValue(), 0.25);
    EXPECT_EQ(Value("7").doubleValue(), 0);
    EXPECT_EQ(Value().doubleValue(), 0);
    EXPECT_TRUE(Value(2).boolValue());
    EXPECT_TRUE(Value(0.5).boolValue());
    EXPECT_FALSE(Value(0).boolValue());
    EXPECT_FALSE(Value().boolValue());
    EXPECT_FALSE(Value("true").boolValue());
}

TEST(Value, ComparesDeepContentsWithoutRegardToTheOrderOfKeys) {
    const Value a = Dictionary{{"x", List{1, Dictionary{{"y", "z"}}}}, {"w", true}};
    const Value b = Dictionary{{"w", true}, {"x", List{1, Dictionary{{"y", "z"}}}}};
    const Value c = Dictionary{{"w", true}, {"x", List{1, Dictionary{{"y", "other"}}}}};
    EXPECT_EQ(a, b);
    EXPECT_NE(a, c);
    EXPECT_NE(Value(List{1, 2}), Value(List{2, 1}));
    EXPECT_NE(Value(Dictionary{{"a", 1}}), Value(Dictionary{{"b", 1}}));
    EXPECT_NE(Value(List{1}), Value(List{1, 1}));
}

TEST(Value, GivesNilForMissingKeysAndForWhatIsNoDictionary) {
    const Value value = Dictionary{{"key", "k"}};
    EXPECT_EQ(value["key"], Value("k"));
    EXPECT_TRUE(value["other"].isNil());
    EXPECT_TRUE(Value(3)["key"].isNil());
}

TEST(Value, IsBuiltComparedAndDestroyedAtMoreLevelsThanAStackHolds) {
    constexpr unsigned levels = 200'000;
    const Value value = nested(levels);
    EXPECT_TRUE(value == nested(levels));
    EXPECT_FALSE(value == nested(levels - 1));
}

TEST(Value, CopiesShareTheirContents) {
    const Value original = List(1000, Value("entry"));
    const Value copy = original; // NOLINT(performance-unnecessary-copy-initialization): the copy is what is tested
    EXPECT_EQ(copy.list(), original.list());
}

TEST(Dictionary, KeepsInsertionOrderAndAKeysPlace) {
    Dictionary dictionary;
    dictionary.set("zebra", 1);
    dictionary.set("apple", 2);
    dictionary.set("mango", 3);
    dictionary.set("zebra", 4);
    EXPECT_EQ(keysOf(dictionary), (std::vector<std::string>{"zebra", "apple", "mango"}));
    EXPECT_EQ(dictionary["zebra"], Value(4));
    EXPECT_TRUE(dictionary.remove("apple"));
    EXPECT_FALSE(dictionary.remove("apple"));
    EXPECT_EQ(keysOf(dictionary), (std::vector<std::string>{"zebra", "mango"}));
    EXPECT_EQ(dictionary["mango"], Value(3));
    EXPECT_FALSE(dictionary.contains("apple"));
}

TEST(Dictionary, TakesTheLastOfEqualKeysInTheFirstsPlace) {
    const Dictionary dictionary(std::vector<Dictionary::Entry>{{"b", 1}, {"a", 2}, {"b", 3}, {"c", 4}, {"b", 5}});
    EXPECT_EQ(keysOf(dictionary), (std::vector<std::string>{"b", "a", "c"}));
    EXPECT_EQ(dictionary["b"], Value(5));
    EXPECT_EQ(dictionary["a"], Value(2));
    EXPECT_EQ(dictionary["c"], Value(4));
}

TEST(Dictionary, TellsKeysApartThatDifferBehindANul) {
    using namespace std::string_literals;
    Dictionary dictionary;
    dictionary.set("a\0b"s, 1);
    dictionary.set("a\0c"s, 2);
    EXPECT_EQ(dictionary.size(), 2U);
    EXPECT_EQ(dictionary["a\0c"s], Value(2));
    EXPECT_TRUE(dictionary["a"].isNil());
}

TEST(Dictionary, AgreesWithAPlainListOfEntriesOverRandomChanges) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::vector<std::pair<std::string, int>> model;
    Dictionary dictionary;
    for (int step = 0; step < 5000; ++step) {
        const std::string key = "key" + std::to_string(random() % 50);
        const auto known =
            std::find_if(model.begin(), model.end(), [&](const auto& entry) { return entry.first == key; });
        if (random() % 3 == 0) {
            EXPECT_EQ(dictionary.remove(key), known != model.end());
            if (known != model.end()) model.erase(known);
        } else {
            dictionary.set(key, step);
            if (known != model.end())
                known->second = step;
            else
                model.emplace_back(key, step);
        }
        ASSERT_EQ(dictionary.size(), model.size());
    }
    std::size_t place = 0;
    for (const auto& [key, value] : dictionary) {
        EXPECT_EQ(key, model[place].first);
        EXPECT_EQ(value, Value(model[place].second));
        EXPECT_EQ(dictionary[key], value);
        ++place;
    }
    for (std::size_t i = 1; i < dictionary.size(); ++i)
        EXPECT_LT(dictionary.inKeyOrder(i - 1).first, dictionary.inKeyOrder(i).first);
}

} // namespace

#include "applist/IconCache.h"

#include <gtest/gtest.h>

namespace {

using applist::IconCache;

applist::DrawnIcon iconOf(std::size_t bytes) {
    return {"file", std::nullopt, std::vector<std::uint8_t>(bytes)};
}

TEST(IconCache, TellsSizesAndScalesApart) {
    IconCache cache(100'000);
    cache.put({"a", 58, 1}, iconOf(1));
    cache.put({"a", 58, 2}, iconOf(2));
    cache.put({"a", 29, 1}, iconOf(3));
    ASSERT_NE(cache.find({"a", 58, 2}), nullptr);
    EXPECT_EQ(cache.find({"a", 58, 2})->png.size(), 2);
    EXPECT_EQ(cache.find({"a", 29, 2}), nullptr);
    EXPECT_EQ(cache.find({"b", 29, 1}), nullptr);
}

TEST(IconCache, ForgetsWhatWasNotUsedForLongest) {
    IconCache cache(10'000);
    cache.put({"a", 29, 1}, iconOf(4000));
    cache.put({"b", 29, 1}, iconOf(4000));
    EXPECT_NE(cache.find({"a", 29, 1}), nullptr);
    cache.put({"c", 29, 1}, iconOf(4000));
    EXPECT_EQ(cache.find({"b", 29, 1}), nullptr);
    EXPECT_NE(cache.find({"a", 29, 1}), nullptr);
    EXPECT_NE(cache.find({"c", 29, 1}), nullptr);
    EXPECT_LE(cache.bytes(), 10'000);
}

TEST(IconCache, KeepsToItsBudgetHoweverManyAndEvenEmptyIconsComeIn) {
    IconCache cache(100'000);
    for (int i = 0; i < 10'000; ++i)
        cache.put({std::to_string(i), 29, 1}, iconOf(0));
    EXPECT_LE(cache.bytes(), 100'000);
    EXPECT_NE(cache.find({"9999", 29, 1}), nullptr);
    EXPECT_EQ(cache.find({"0", 29, 1}), nullptr);
}

TEST(IconCache, CountsAnIconThatIsReplacedOnce) {
    IconCache cache(100'000);
    cache.put({"a", 29, 1}, iconOf(1000));
    const std::size_t once = cache.bytes();
    cache.put({"a", 29, 1}, iconOf(1000));
    EXPECT_EQ(cache.bytes(), once);
    cache.clear();
    EXPECT_EQ(cache.bytes(), 0);
    EXPECT_EQ(cache.find({"a", 29, 1}), nullptr);
}

} // namespace

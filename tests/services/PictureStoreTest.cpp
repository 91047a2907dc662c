#include "platform/services/PictureStore.h"

#include <gtest/gtest.h>

namespace {

using platform::PictureStore;

platform::DrawnPicture pictureOf(std::size_t bytes) {
    return {{}, platform::Data(bytes)};
}

TEST(PictureStore, TellsFilesAndSizesApart) {
    PictureStore store(100'000);
    store.put({"a", 29}, pictureOf(1));
    store.put({"a", 58}, pictureOf(2));
    store.put({"b", 29}, pictureOf(3));
    ASSERT_NE(store.find({"a", 58}), nullptr);
    EXPECT_EQ(store.find({"a", 58})->png.size(), 2);
    EXPECT_EQ(store.find({"a", 30}), nullptr);
    EXPECT_EQ(store.find({"b", 58}), nullptr);
}

TEST(PictureStore, ForgetsWhatWasNotUsedForLongest) {
    PictureStore store(10'000);
    store.put({"a", 29}, pictureOf(4000));
    store.put({"b", 29}, pictureOf(4000));
    EXPECT_NE(store.find({"a", 29}), nullptr);
    store.put({"c", 29}, pictureOf(4000));
    EXPECT_EQ(store.find({"b", 29}), nullptr);
    EXPECT_NE(store.find({"a", 29}), nullptr);
    EXPECT_NE(store.find({"c", 29}), nullptr);
    EXPECT_LE(store.bytes(), 10'000);
}

TEST(PictureStore, KeepsToItsBudgetHoweverManyAndEvenEmptyOnesComeIn) {
    PictureStore store(100'000);
    for (int i = 0; i < 10'000; ++i)
        store.put({std::to_string(i), 29}, pictureOf(0));
    EXPECT_LE(store.bytes(), 100'000);
    EXPECT_NE(store.find({"9999", 29}), nullptr);
    EXPECT_EQ(store.find({"0", 29}), nullptr);
}

TEST(PictureStore, CountsAPictureThatIsReplacedOnce) {
    PictureStore store(100'000);
    store.put({"a", 29}, pictureOf(1000));
    const std::size_t once = store.bytes();
    store.put({"a", 29}, pictureOf(1000));
    EXPECT_EQ(store.bytes(), once);
}

} // namespace

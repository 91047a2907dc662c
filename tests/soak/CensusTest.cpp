#include "tests/soak/Census.h"
#include "platform/foundation/FileDescriptor.h"

#include <cstdlib>
#include <memory>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace {

using tests::Census;

TEST(Census, CountsDescriptors) {
    const Census before = Census::ofSelf();
    platform::FileDescriptor one(::dup(STDIN_FILENO));
    const Census with = Census::ofSelf();
    one.close();
    EXPECT_EQ(with[Census::descriptors], before[Census::descriptors] + 1);
    EXPECT_EQ(Census::ofSelf()[Census::descriptors], before[Census::descriptors]);
}

TEST(Census, CountsThreads) {
    std::thread([] {}).join(); // a sanitizer starts one of its own with the first
    const long before = Census::ofSelf()[Census::threads];
    long with = 0;
    std::thread([&with] { with = Census::ofSelf()[Census::threads]; }).join();
    EXPECT_EQ(with, before + 1);
}

TEST(Census, SeesMemoryThatIsInUse) {
    const Census before = Census::ofSelf();
    const std::vector<char> block(std::size_t{64} << 20, 'x');
    const Census with = Census::ofSelf();
    EXPECT_EQ(block.back(), 'x');
    EXPECT_GE(with[Census::residentKb] - before[Census::residentKb], 60 << 10);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // whose allocators tell nothing
    EXPECT_GE(with[Census::heapKb] - before[Census::heapKb], 64 << 10);
#endif
}

TEST(Census, KnowsOfNothingInAProcessThatIsNotThere) {
    EXPECT_EQ(Census::of(-1).held, Census{}.held);
}

} // namespace

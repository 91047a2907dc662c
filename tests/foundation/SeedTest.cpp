// The fuzzers' seeds, crashes found by them included: whatever they are, they give a value or nothing.

#include "Files.h"

#include "platform/foundation/NSKeyedArchiver.h"

#include <gtest/gtest.h>

namespace {

using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;
using platform::readPropertyList;
using platform::writePropertyList;

std::vector<std::filesystem::path> seeds(const std::string& fuzzer) {
    return filesIn(std::filesystem::path(LUMORA_SOURCE) / "fuzz" / "seeds" / fuzzer, "");
}

TEST(Seeds, OfKeyedArchivesGiveAValueThatCanBeWrittenOrNothing) {
    std::size_t read = 0;
    for (const auto& seed : seeds("KeyedArchive")) {
        SCOPED_TRACE(seed);
        const auto value = NSKeyedUnarchiver::unarchive(readFile(seed));
        if (!value) continue;
        ++read;
        const auto archive = NSKeyedArchiver::archivedDataWithRootObject(value.value());
        ASSERT_TRUE(archive);
        const auto again = NSKeyedUnarchiver::unarchive(*archive);
        ASSERT_TRUE(again) << again.error();
        EXPECT_EQ(NSKeyedArchiver::archivedDataWithRootObject(again.value()), archive);
    }
    EXPECT_GE(read, 5U);
}

TEST(Seeds, OfPropertyListsGiveAValueThatCanBeWrittenOrNothing) {
    std::size_t read = 0;
    for (const auto& seed : seeds("PropertyList")) {
        SCOPED_TRACE(seed);
        const auto value = readPropertyList(readFile(seed));
        if (!value) continue;
        ++read;
        const auto written = writePropertyList(value.value());
        ASSERT_TRUE(written) << written.error();
        const auto again = readPropertyList(written.value());
        ASSERT_TRUE(again) << again.error();
        EXPECT_EQ(writePropertyList(again.value()).value(), written.value());
    }
    EXPECT_GE(read, 5U);
}

} // namespace

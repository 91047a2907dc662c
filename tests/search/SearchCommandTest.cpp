#include "tests/support/DeviceFolder.h"
#include "tests/tweak/Program.h"
#include "json/Json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// With a cache of its own.
struct SearchCommand : testing::Test {
    static tests::Finished search(std::vector<std::string> words) {
        words.insert(words.begin(), {LUMORACTL, "search", "--root", LUMORA_TEST_ROOT});
        return tests::run(std::move(words));
    }
    tests::DeviceFolder device;
};

TEST_F(SearchCommand, PrintsThePathToEachRow) {
    const tests::Finished found = search({"blur", "color"});
    EXPECT_EQ(found.status, 0) << found.errors;
    EXPECT_THAT(found.output,
                StartsWith("Lumora \u203A Lock Screen Settings \u203A Passcode View \u203A Blur Color\n"));
    EXPECT_EQ(found.errors, "");
    EXPECT_EQ(search({"--most", "1", "blur color"}).output, found.output.substr(0, found.output.find('\n') + 1));
}

TEST_F(SearchCommand, SaysByWhichOtherWordARowIsFound) {
    EXPECT_THAT(search({"transparency"}).output, HasSubstr("Opacity (1.0)  (also: transparency)\n"));
}

TEST_F(SearchCommand, TellsARowsPlaceAsJson) {
    const auto read = lumora::readJson(search({"--json", "sleep", "after"}).output);
    ASSERT_TRUE(read && read.value().list() && !read.value().list()->empty());
    const platform::Value first = read.value().list()->front();
    EXPECT_EQ(first["title"], platform::Value("Sleep After"));
    EXPECT_EQ(first["key"], platform::Value("kSleepTime"));
    EXPECT_EQ(first["page"], platform::Value("LumoraPreferences"));
    EXPECT_EQ(first["path"], platform::Value(platform::List{"Lumora"}));
}

TEST_F(SearchCommand, FailsWhenNothingIsFoundAndSaysWhenThingsAreOnlySimilar) {
    const tests::Finished nothing = search({"qqqqqqq"});
    EXPECT_EQ(nothing.status, 1);
    EXPECT_EQ(nothing.output, "");
    EXPECT_EQ(nothing.errors, "lumoractl: nothing is found\n");
    const tests::Finished similar = search({"bagdes"});
    EXPECT_EQ(similar.status, 0);
    EXPECT_EQ(similar.output, "Lumora \u203A Apps \u203A Badges\n");
    EXPECT_EQ(similar.errors, "lumoractl: nothing has these words; these are similar\n");
    EXPECT_EQ(search({}).status, 2);
}

} // namespace

#include "profiles/Shipped.h"
#include "profiles/ReadProfile.h"
#include "tests/support/TemporaryFolder.h"
#include "tweak/Defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace profiles;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::filesystem::path kShippedSource = LUMORA_SOURCE "/profiles/shipped";

std::string contentsOf(const std::filesystem::path& file) {
    std::ostringstream contents;
    contents << std::ifstream(file).rdbuf();
    return contents.str();
}

} // namespace

TEST(Shipped, ProfilesAreCalledByWordOrNameInAnyCase) {
    std::vector<std::string> names;
    for (const ShippedProfile& profile : shippedProfiles(kShippedSource))
        names.push_back(profile.word + ": " + profile.name);
    EXPECT_THAT(names, ElementsAre("all-my-apps: All My Apps", "large-and-calm: Large and Calm", "plain: Plain"));
    EXPECT_EQ(shippedProfile("large and CALM", kShippedSource)->word, "large-and-calm");
    EXPECT_EQ(shippedProfile("Large-and-Calm", kShippedSource)->word, "large-and-calm");
    EXPECT_FALSE(shippedProfile("calm", kShippedSource));
}

TEST(Shipped, ProfilesAreWithoutFaultAndChangeWhatTheyName) {
    for (const ShippedProfile& profile : shippedProfiles(kShippedSource)) {
        const auto read = readProfile(contentsOf(profile.file));
        ASSERT_TRUE(read) << profile.word;
        EXPECT_THAT(linesOf(read.value().remarks), IsEmpty()) << profile.word;
        EXPECT_FALSE(read.value().profile.settings.empty());
        for (const auto& [key, value] : read.value().profile.settings)
            EXPECT_NE(value, lumora::findSetting(key)->byDefault) << profile.word << ": " << key;
    }
}

TEST(Shipped, PassesOverWhatIsNoProfile) {
    const tests::TemporaryFolder folder("shipped");
    EXPECT_THAT(shippedProfiles(folder.path()), IsEmpty());
    EXPECT_THAT(shippedProfiles(folder.path() / "missing"), IsEmpty());
    std::ofstream(folder.path() / "broken.json") << "{";
    std::ofstream(folder.path() / "notes.txt") << R"({"lumora": 1, "settings": {}})";
    std::ofstream(folder.path() / "mine.json") << R"({"lumora": 1, "settings": {}})";
    const auto found = shippedProfiles(folder.path());
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().word, "mine");
}

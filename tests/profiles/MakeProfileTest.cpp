#include "profiles/MakeProfile.h"
#include "profiles/Differences.h"
#include "tweak/Defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace profiles;
using platform::Dictionary;
using platform::List;
using platform::Value;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

Value deep(unsigned depth) {
    Value value = 1;
    for (unsigned i = 0; i < depth; ++i)
        value = List{value};
    return value;
}

} // namespace

TEST(MakeProfile, TakesWhatDiffersFromTheDefaults) {
    const Dictionary settings = lumora::withDefaults({{"kSleepTime", 30}, {"kAppIconSize", 70}, {"org.a.wide", true}});
    const MadeProfile made = makeProfile(settings, {}, {});
    EXPECT_EQ(made.profile.settings, (Dictionary{{"kSleepTime", 30}, {"org.a.wide", true}}));
    EXPECT_THAT(made.profile.omitted, IsEmpty());
    EXPECT_THAT(made.remarks, IsEmpty());
}

TEST(MakeProfile, TakesAllOrThoseThatAreNamed) {
    const Dictionary settings = lumora::withDefaults({{"kSleepTime", 30}});
    EXPECT_EQ(makeProfile(settings, {.changedOnly = false, .keys = {}}, {}).profile.settings.size(), 47U);
    const MadeProfile named = makeProfile(
        settings, {.changedOnly = false, .keys = {"kAppsPerRow", "kSleepTime", "org.not.set", "kAppsPerRow"}}, {});
    EXPECT_EQ(named.profile.settings, (Dictionary{{"kAppsPerRow", 4}, {"kSleepTime", 30}}));
    EXPECT_THAT(named.missing, ElementsAre("org.not.set"));
    EXPECT_EQ(makeProfile(settings, {.changedOnly = true, .keys = {"kAppsPerRow", "kSleepTime"}}, {}).profile.settings,
              (Dictionary{{"kSleepTime", 30}}));
}

TEST(MakeProfile, NeverHasAPasscodeInIt) {
    const Dictionary settings = lumora::withDefaults({{"kAutoUnlockPasscode", "24680"},
                                                      {"kAutoUnlockWidgetPasscode", "24680"},
                                                      {"org.a.pin", "24680"},
                                                      {"org.a.name", "Ann"},
                                                      {"org.b.note", List{1, "24680"}},
                                                      {"org.b.count", List{1, 2}}});
    const Secrets secrets({"org.a.pin"}, {"org.a.name"});
    for (const bool changedOnly : {true, false}) {
        const MadeProfile made = makeProfile(settings, {changedOnly, {}}, secrets);
        EXPECT_THAT(writeProfile(made.profile).value(), Not(HasSubstr("24680")));
        EXPECT_THAT(made.profile.omitted, testing::IsSupersetOf({"kAutoUnlockPasscode", "kAutoUnlockWidgetPasscode",
                                                                 "org.a.pin", "org.b.note"}));
        EXPECT_EQ(made.profile.settings["org.a.name"], Value("Ann"));
        EXPECT_EQ(made.profile.settings["org.b.count"], Value(List{1, 2}));
    }
    const MadeProfile named =
        makeProfile(settings, {false, {"kAutoUnlockPasscode", "org.a.pin", "org.b.note"}}, secrets);
    EXPECT_EQ(named.profile.settings, (Dictionary{{"org.b.note", List{1, "24680"}}}))
        << "nobody knows, but for the asker";
    EXPECT_THAT(named.profile.omitted, ElementsAre("kAutoUnlockPasscode", "org.a.pin"));
}

TEST(MakeProfile, LeavesOutWhatAFileHasNoRoomFor) {
    const MadeProfile made = makeProfile({{"org.a.deep", deep(7)}, {"org.a.flat", deep(6)}}, {}, {});
    EXPECT_EQ(made.profile.settings, (Dictionary{{"org.a.flat", deep(6)}}));
    EXPECT_THAT(made.profile.omitted, ElementsAre("org.a.deep"));
    EXPECT_TRUE(writeProfile(made.profile));
    Profile large;
    large.settings.set("org.a.text", std::string(kMostBytes, 'x'));
    EXPECT_FALSE(writeProfile(large));
    Profile many;
    std::vector<Dictionary::Entry> entries;
    for (int i = 0; i < 10'000; ++i)
        entries.emplace_back("org." + std::to_string(i), 1);
    many.settings = Dictionary(std::move(entries));
    EXPECT_THAT(writeProfile(many).error(), HasSubstr("more than 10000 keys"));
}

TEST(Differences, AreThoseOfValuesThatMeanSomethingElse) {
    EXPECT_TRUE(isSame("kAppIconSize", 70, 70.0));
    EXPECT_FALSE(isSame("org.a.size", 70, 70.0)) << "only a plug-in knows what its values mean";
    EXPECT_FALSE(isSame("kTweakEnabled", true, 1));
    EXPECT_TRUE(
        isSame("org.a.none", std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()));

    const auto changes = changesBy({{"b", 1}, {"a", 2}, {"c", 3}}, {{"a", 1}, {"b", 1}, {"d", 4}});
    ASSERT_EQ(changes.size(), 2U);
    EXPECT_EQ(changes[0].key, "a");
    EXPECT_EQ(changes[0].before, Value(1));
    EXPECT_EQ(changes[0].after, Value(2));
    EXPECT_EQ(changes[1].key, "c");
    EXPECT_EQ(changes[1].before, std::nullopt);

    const auto both = differences({{"a", 1}, {"b", 1}}, {{"b", 1}, {"c", 3}});
    ASSERT_EQ(both.size(), 2U);
    EXPECT_EQ(both[0].key, "a");
    EXPECT_EQ(both[0].after, std::nullopt);
    EXPECT_EQ(both[1].key, "c");
    EXPECT_EQ(both[1].before, std::nullopt);
}

#include "tests/tweak/Messages.h"
#include "tests/tweak/Sandbox.h"

#include "tweak/Defaults.h"
#include "tweak/Tweak.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace lumora;
using namespace tests;
using platform::Data;
using platform::Dictionary;
using platform::List;
using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;
using platform::Value;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

/// A tweak without its ports, with its log at hand.
class TweakTest : public testing::Test {
  protected:
    Tweak tweak(Tweak::Options options = {}) { return {*store, std::move(options), log}; }

    static Value answer(const std::optional<Data>& body) {
        return body ? NSKeyedUnarchiver::unarchiveObjectWithData(*body) : Value();
    }

    Sandbox sandbox;
    std::vector<std::string> lines;
    Log log = [this](const std::string& line) { lines.push_back(line); };
    std::unique_ptr<SettingsStore> store = SettingsStore::open(sandbox.settings(), log).value();
};

std::optional<Data> archived(const Value& value) {
    return NSKeyedArchiver::archivedDataWithRootObject(value);
}

} // namespace

TEST_F(TweakTest, AnswersEverySettingWithItsDefaultAtFirst) {
    const Value settings = answer(tweak().requestTweakSettings());
    ASSERT_TRUE(settings.dictionary());
    EXPECT_EQ(settings.dictionary()->size(), knownSettings().size());
    for (const Setting& setting : knownSettings())
        EXPECT_EQ(settings[setting.key], setting.byDefault) << setting.key;
}

TEST_F(TweakTest, AnswersAChangeItMakesWithoutABody) {
    EXPECT_EQ(tweak().updateSettings(changeBody("kSleepTime", 3600)), std::nullopt);
    EXPECT_EQ(answer(tweak().requestTweakSettings())["kSleepTime"], Value(3600));
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(TweakTest, RefusesMessagesOfTheWrongShapeWithOneLineAndChangesNothing) {
    const Dictionary change{{"key", "kSleepTime"}, {"object", 30}};
    const std::vector<std::optional<Data>> wrong{
        std::nullopt,
        Data{},
        Data{'b', 'p', 'l'},
        archived(change),
        archived("kSleepTime"),
        archived(List{change}),
        archived(Dictionary{{"object", change}, {"more", 1}}),
        archived(Dictionary{{"object", nullptr}}),
        archived(Dictionary{{"object", List{"kSleepTime", 30}}}),
        archived(Dictionary{{"object", Dictionary{{"key", "kSleepTime"}}}}),
        archived(Dictionary{{"object", Dictionary{{"key", "kSleepTime"}, {"value", 30}}}}),
        archived(Dictionary{{"object", Dictionary{{"key", "kSleepTime"}, {"object", 30}, {"more", 1}}}}),
        archived(Dictionary{{"object", Dictionary{{"key", 7}, {"object", 30}}}}),
        archived(Dictionary{{"object", Dictionary{{"key", nullptr}, {"object", 30}}}}),
    };
    const Dictionary before = store->settings();
    for (std::size_t i = 0; i < wrong.size(); ++i) {
        lines.clear();
        const Value reply = answer(tweak().updateSettings(wrong[i]));
        ASSERT_TRUE(reply["error"].text()) << "message " << i;
        EXPECT_EQ(reply.dictionary()->size(), 1U);
        EXPECT_THAT(lines, ElementsAre("updateSettings refused: " + std::string(*reply["error"].text())))
            << "message " << i;
        EXPECT_THAT(lines, Each(Not(HasSubstr("\n"))));
    }
    EXPECT_EQ(store->settings(), before);
    EXPECT_FALSE(std::filesystem::exists(sandbox.settings()));
}

TEST_F(TweakTest, RefusesNilForAnyKey) {
    EXPECT_EQ(answer(tweak().updateSettings(changeBody("kTweakEnabled", nullptr)))["error"],
              Value(R"("kTweakEnabled" cannot be nil)"));
    EXPECT_EQ(answer(tweak().updateSettings(changeBody("com.example.key", nullptr)))["error"],
              Value(R"("com.example.key" cannot be nil)"));
}

TEST_F(TweakTest, KeepsTheLogOnOneLineWhateverTheKeyHolds) {
    const auto reply = tweak().updateSettings(changeBody("a\nb\r" + std::string(1000, 'x'), nullptr));
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_THAT(lines[0], AllOf(Not(HasSubstr("\n")), Not(HasSubstr("\r")), HasSubstr(R"("a\nb\rxxx)")));
    EXPECT_LT(lines[0].size(), 200U);
}

TEST_F(TweakTest, CutsNoCharacterOfALongKeyInTwo) {
    for (const std::string start : {"", "a", "aa", "aaa"}) {
        std::string key = start;
        for (int i = 0; i < 100; ++i)
            key += "€";
        std::string shown = key.substr(0, start.size() + (80 - start.size()) / 3 * 3);
        ASSERT_NE(tweak().updateSettings(changeBody(key, nullptr)), std::nullopt);
        EXPECT_EQ(lines.back(), "updateSettings refused: \"" + shown + "…\" cannot be nil");
    }
}

TEST_F(TweakTest, AnswersAsIfOmittedKeysWereNotSet) {
    Tweak omitting = tweak({.omitted = {"kSleepTime", "com.example.key", "unheard-of"}});
    ASSERT_EQ(omitting.updateSettings(changeBody("com.example.key", 1)), std::nullopt);
    const Value settings = answer(omitting.requestTweakSettings());
    EXPECT_FALSE(settings.dictionary()->contains("kSleepTime"));
    EXPECT_FALSE(settings.dictionary()->contains("com.example.key"));
    EXPECT_EQ(settings.dictionary()->size(), knownSettings().size() - 1);
    EXPECT_TRUE(store->settings().contains("com.example.key")) << "it is kept all the same";
}

TEST_F(TweakTest, WritesALineForEachMessageWhenVerbose) {
    Tweak verbose = tweak({.verbose = true});
    ASSERT_TRUE(verbose.requestTweakSettings());
    ASSERT_EQ(verbose.updateSettings(changeBody("kLSPTintOpacity", 0.5)), std::nullopt);
    ASSERT_EQ(verbose.updateSettings(changeBody("kAppsEnabled", List{"com.a", "com.b"})), std::nullopt);
    ASSERT_EQ(verbose.updateSettings(changeBody("kLSDateSubtitle", std::string(1000, 'x'))), std::nullopt);
    ASSERT_NE(verbose.updateSettings(std::nullopt), std::nullopt);
    EXPECT_THAT(lines, ElementsAre("requestTweakSettings: 50 settings", R"(updateSettings: "kLSPTintOpacity" = 0.5)",
                                   R"(updateSettings: "kAppsEnabled" = ["com.a","com.b"])",
                                   R"(updateSettings: "kLSDateSubtitle" = a text)",
                                   "updateSettings refused: the message has no body"));
}

TEST_F(TweakTest, ShowsSecureValuesAsDotsWhenVerbose) {
    Tweak verbose = tweak({.verbose = true});
    for (const Setting& setting : knownSettings())
        if (setting.secure) {
            ASSERT_EQ(verbose.updateSettings(changeBody(setting.key, "24680")), std::nullopt);
            ASSERT_NE(verbose.updateSettings(changeBody(setting.key, List{"24680"})), std::nullopt);
        }
    EXPECT_EQ(lines.size(), 6U);
    EXPECT_THAT(lines, Each(Not(HasSubstr("24680"))));
    EXPECT_THAT(lines, testing::Contains(R"(updateSettings: "kAutoUnlockPasscode" = •••)"));
}

TEST_F(TweakTest, AnswersAFollowerWithTheSettingsAndTheirRevision) {
    Tweak tweak = this->tweak({.omitted = {"kTweakEnabled"}});
    ASSERT_TRUE(store->change("kSleepTime", 30));
    const std::string port = "followers/" + std::to_string(::getpid()) + "-1";
    const Value told = answer(tweak.followSettings(archived(messageWith(Dictionary{{"port", port}})), ::getpid()));
    EXPECT_EQ(told["revision"], Value(1));
    EXPECT_EQ(told["settings"]["kSleepTime"], Value(30));
    EXPECT_FALSE(told["settings"].dictionary()->contains("kTweakEnabled"));
}

TEST_F(TweakTest, FollowsNobodyToAPortThatIsNotTheSenders) {
    Tweak tweak = this->tweak();
    for (const Value& port : {Value("followers/1-1"), Value("updateSettings"), Value(1), Value()})
        EXPECT_EQ(tweak.followSettings(archived(messageWith(Dictionary{{"port", port}})), 2), std::nullopt);
    EXPECT_EQ(tweak.followSettings(std::nullopt, 2), std::nullopt);
    EXPECT_THAT(lines, Each(HasSubstr("followSettings refused: ")));
    EXPECT_EQ(lines.size(), 5U);
}

#include "tweak/Defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <set>

using namespace lumora;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::List;
using platform::Value;
using testing::Eq;
using testing::HasSubstr;
using testing::Optional;

namespace {

std::optional<std::string> objectionTo(const std::string& key, const Value& value) {
    return objection(*findSetting(key), value);
}

const List kOneOfEachKind{
    nullptr, true, 1, 1.5, "text", Data{1}, Date{1}, List{"a"}, Dictionary{{"h", 0.5}, {"s", 0.5}, {"b", 0.5}}};

/// How many of the kinds above a setting takes.
std::size_t kindsTaken(const std::string& key) {
    std::size_t taken = 0;
    for (const Value& value : kOneOfEachKind)
        taken += objectionTo(key, value) ? 0U : 1U;
    return taken;
}

} // namespace

TEST(Defaults, NameEachOfTheFiftySettingsOnce) {
    std::set<std::string> keys;
    for (const Setting& setting : knownSettings())
        keys.insert(setting.key);
    EXPECT_EQ(keys.size(), knownSettings().size());
    EXPECT_EQ(keys.size(), 50U);
}

TEST(Defaults, AreValuesThatTheirSettingsTake) {
    for (const Setting& setting : knownSettings())
        EXPECT_EQ(objection(setting, setting.byDefault), std::nullopt) << setting.key;
}

TEST(Defaults, AreTheNumbersThatTheSliderLabelsSay) {
    EXPECT_EQ(findSetting("kAppIconOpacity")->byDefault, Value(1.0));
    EXPECT_EQ(findSetting("kAppIconSize")->byDefault, Value(70.0));
    EXPECT_EQ(findSetting("kLSPBlurOpacity")->byDefault, Value(1.0));
    EXPECT_EQ(findSetting("kLSPTintOpacity")->byDefault, Value(1.0));
    EXPECT_EQ(findSetting("kLSPButtonDiam")->byDefault, Value(0.0));
    EXPECT_EQ(findSetting("kLSPButtonSpacingH")->byDefault, Value(1.0));
    EXPECT_EQ(findSetting("kLSPButtonSpacingV")->byDefault, Value(1.0));
    EXPECT_EQ(findSetting("kLSDateFontSize")->byDefault, Value(87.5));
    EXPECT_EQ(findSetting("kLSDateSubtitleFontSize")->byDefault, Value(18.0));
    EXPECT_EQ(findSetting("kLSDateOffset")->byDefault, Value(0.0));
}

TEST(Defaults, HoldThreeSecureTextsAndNoPasscode) {
    std::vector<std::string> secure;
    for (const Setting& setting : knownSettings()) {
        if (!setting.secure) continue;
        secure.push_back(setting.key);
        EXPECT_EQ(setting.byDefault, Value(""));
        EXPECT_TRUE(isSecure(setting.key));
    }
    EXPECT_THAT(secure, testing::UnorderedElementsAre("kAutoUnlockPasscode", "kAutoUnlockPasscodeConfirm",
                                                      "kAutoUnlockWidgetPasscode"));
    EXPECT_FALSE(isSecure("kTweakEnabled"));
    EXPECT_FALSE(isSecure("com.example.passcode"));
}

TEST(Objection, LetsASettingTakeValuesOfItsDefaultsKindOnly) {
    EXPECT_EQ(kindsTaken("kTweakEnabled"), 1U);
    EXPECT_EQ(kindsTaken("kSleepTime"), 2U) << "integers and reals count as one kind";
    EXPECT_EQ(kindsTaken("kAppIconSize"), 2U);
    EXPECT_EQ(kindsTaken("kLSDateSubtitle"), 1U);
    EXPECT_EQ(kindsTaken("kAppsEnabled"), 1U);
    EXPECT_EQ(kindsTaken("kLSBlurColor"), 1U);
}

TEST(Objection, SaysWhatTheSettingTakesAndWhatItGot) {
    EXPECT_THAT(objectionTo("kTweakEnabled", 1), Optional(Eq("takes a boolean, not an integer")));
    EXPECT_THAT(objectionTo("kSleepTime", true), Optional(Eq("takes a finite number, not a boolean")));
    EXPECT_THAT(objectionTo("kAppsEnabled", "one"), Optional(Eq("takes a list of texts, not a text")));
}

TEST(Objection, NeverShowsTheValue) {
    EXPECT_THAT(objectionTo("kAutoUnlockPasscode", List{"1234"}), Optional(testing::Not(HasSubstr("1234"))));
}

TEST(Objection, LeavesTheRangeOfNumbersToTheControls) {
    EXPECT_EQ(objectionTo("kAppIconOpacity", 17.5), std::nullopt);
    EXPECT_EQ(objectionTo("kLSPButtonDiam", -1000), std::nullopt);
}

TEST(Objection, RefusesNumbersThatAreNotFinite) {
    for (const double number : {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN()})
        EXPECT_THAT(objectionTo("kAppIconSize", number), Optional(Eq("takes a finite number")));
}

TEST(Objection, RefusesListsThatHoldAnythingButTexts) {
    EXPECT_EQ(objectionTo("kAppsEnabled", List{}), std::nullopt);
    EXPECT_THAT(objectionTo("kAppsEnabled", List{"com.a", 1}), Optional(Eq("takes a list of texts")));
    EXPECT_THAT(objectionTo("kAppsEnabled", List{nullptr}), Optional(Eq("takes a list of texts")));
}

TEST(Objection, TakesColoursOfThreeNumbersFromZeroToOne) {
    const auto color = [](const Value& h, const Value& s, const Value& b) {
        return Dictionary{{"b", b}, {"h", h}, {"s", s}};
    };
    EXPECT_EQ(objectionTo("kLSBlurColor", color(0, 1, 0.5)), std::nullopt);
    EXPECT_NE(objectionTo("kLSBlurColor", color(1.01, 1, 1)), std::nullopt);
    EXPECT_NE(objectionTo("kLSBlurColor", color(0, -0.01, 1)), std::nullopt);
    EXPECT_NE(objectionTo("kLSBlurColor", color(0, 0, std::numeric_limits<double>::quiet_NaN())), std::nullopt);
    EXPECT_NE(objectionTo("kLSBlurColor", color(0, 0, true)), std::nullopt);
    EXPECT_NE(objectionTo("kLSBlurColor", Dictionary{{"h", 0}, {"s", 0}}), std::nullopt);
    EXPECT_NE(objectionTo("kLSBlurColor", Dictionary{{"h", 0}, {"s", 0}, {"b", 0}, {"a", 1}}), std::nullopt);
}

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
using platform::Result;
using platform::Value;
using testing::HasSubstr;

namespace {

Result<void> canHave(const std::string& key, const Value& value) {
    return canHave(*findSetting(key), value);
}

const List kOneOfEachKind{
    nullptr, true, 1, 1.5, "text", Data{1}, Date{1}, List{"a"}, Dictionary{{"h", 0.5}, {"s", 0.5}, {"b", 0.5}}};

/// How many of the kinds above a setting takes.
std::size_t kindsTaken(const std::string& key) {
    std::size_t taken = 0;
    for (const Value& value : kOneOfEachKind)
        taken += canHave(key, value) ? 1U : 0U;
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
        EXPECT_TRUE(canHave(setting, setting.byDefault)) << setting.key;
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

TEST(Settings, TakeValuesOfTheirDefaultsKindOnly) {
    EXPECT_EQ(kindsTaken("kTweakEnabled"), 1U);
    EXPECT_EQ(kindsTaken("kSleepTime"), 2U) << "integers and reals count as one kind";
    EXPECT_EQ(kindsTaken("kAppIconSize"), 2U);
    EXPECT_EQ(kindsTaken("kLSDateSubtitle"), 1U);
    EXPECT_EQ(kindsTaken("kAppsEnabled"), 1U);
    EXPECT_EQ(kindsTaken("kLSBlurColor"), 1U);
}

TEST(Settings, SayWhatTheyTakeAndWhatTheyGot) {
    EXPECT_EQ(canHave("kTweakEnabled", 1).error(), "takes true or false, not an integer");
    EXPECT_EQ(canHave("kSleepTime", true).error(), "takes a finite number, not a boolean");
    EXPECT_EQ(canHave("kAppsEnabled", "one").error(), "takes a list of texts, not a text");
}

TEST(Settings, NeverShowTheValueThatTheyRefuse) {
    EXPECT_THAT(canHave("kAutoUnlockPasscode", List{"1234"}).error(), testing::Not(HasSubstr("1234")));
}

TEST(Settings, LeaveTheRangeOfNumbersToTheControls) {
    EXPECT_TRUE(canHave("kAppIconOpacity", 17.5));
    EXPECT_TRUE(canHave("kLSPButtonDiam", -1000));
}

TEST(Settings, RefuseNumbersThatAreNotFinite) {
    for (const double number : {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(canHave("kAppIconSize", number).error(), "takes a finite number");
}

TEST(Settings, RefuseListsThatHoldAnythingButTexts) {
    EXPECT_TRUE(canHave("kAppsEnabled", List{}));
    EXPECT_EQ(canHave("kAppsEnabled", List{"com.a", 1}).error(), "takes a list of texts");
    EXPECT_EQ(canHave("kAppsEnabled", List{nullptr}).error(), "takes a list of texts");
}

TEST(Settings, TakeColoursOfThreeNumbersFromZeroToOne) {
    const auto color = [](const Value& h, const Value& s, const Value& b) {
        return Dictionary{{"b", b}, {"h", h}, {"s", s}};
    };
    EXPECT_TRUE(canHave("kLSBlurColor", color(0, 1, 0.5)));
    EXPECT_FALSE(canHave("kLSBlurColor", color(1.01, 1, 1)));
    EXPECT_FALSE(canHave("kLSBlurColor", color(0, -0.01, 1)));
    EXPECT_FALSE(canHave("kLSBlurColor", color(0, 0, std::numeric_limits<double>::quiet_NaN())));
    EXPECT_FALSE(canHave("kLSBlurColor", color(0, 0, true)));
    EXPECT_FALSE(canHave("kLSBlurColor", Dictionary{{"h", 0}, {"s", 0}}));
    EXPECT_FALSE(canHave("kLSBlurColor", Dictionary{{"h", 0}, {"s", 0}, {"b", 0}, {"a", 1}}));
}

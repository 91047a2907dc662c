#include "profiles/ReadProfile.h"
#include "profiles/Inventory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace profiles;
using platform::Dictionary;
using platform::List;
using platform::Value;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

ReadProfile readWhole(const std::string& text, const Secrets& secrets = {}) {
    auto read = readProfile(text, secrets);
    EXPECT_TRUE(read) << text << ": " << (read ? "" : read.error());
    return read ? std::move(read).value() : ReadProfile();
}

ReadProfile withSettings(const std::string& settings, const Secrets& secrets = {}) {
    return readWhole("{\"lumora\": 1,\n\"settings\": {\n" + settings + "}}", secrets);
}

std::string nested(unsigned depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

} // namespace

TEST(ReadProfile, TakesWhatItsFileSays) {
    const ReadProfile read = readWhole(R"({"lumora": 1, "name": "Quiet evenings", "made": "2026-11-20T18:36:00Z",
        "by": "lumora 1.4", "settings": {"kAppRoundedEnabled": true, "org.a.b": {"$data": "aGk="}},
        "omitted": ["kAutoUnlockPasscode"]})");
    EXPECT_EQ(read.profile.version, 1);
    EXPECT_EQ(read.profile.name, "Quiet evenings");
    EXPECT_EQ(read.profile.made, "2026-11-20T18:36:00Z");
    EXPECT_EQ(read.profile.by, "lumora 1.4");
    EXPECT_EQ(read.profile.settings, (Dictionary{{"kAppRoundedEnabled", true}, {"org.a.b", platform::Data{'h', 'i'}}}));
    EXPECT_THAT(read.profile.omitted, ElementsAre("kAutoUnlockPasscode"));
    EXPECT_THAT(linesOf(read.remarks), IsEmpty());
}

TEST(ReadProfile, RefusesWhatIsNoProfile) {
    const std::string begin = "{\"lumora\": 1,\n\"settings\": ";
    std::string keys = "\"a.0\": 1";
    for (int i = 1; i <= 10'000; ++i)
        keys += ", \"a." + std::to_string(i) + "\": 1";
    for (const auto& [text, why] : std::vector<std::pair<std::string, std::string>>{
             {"", "line 1: "},
             {"{\"lumora\": 1,\n\n\"settings\": {\"kSleepTime\" 5}}", "line 3: "},
             {"[]", "it is no profile"},
             {R"({"kSleepTime": 5})", "it is no profile"},
             {R"({"lumora": 0, "settings": {}})", "it is no profile"},
             {R"({"lumora": "1", "settings": {}})", "it is no profile"},
             {R"({"lumora": 1})", "it has no \"settings\""},
             {begin + "[]}", "line 2: \"settings\" is no dictionary"},
             {begin + "{\"a.b\": 1,\n\"a.c\": 2,\n\"a.b\": 3}}", "line 4: the key \"a.b\" stands there twice"},
             {begin + "{\"a.b\": " + nested(7) + "}}", "nested more than 8 deep"},
             {begin + "{" + keys + "}}", "more than 10000 keys"},
             {begin + "{\"a.b\": \"" + std::string(kMostBytes, 'x') + "\"}}", "larger than 1 MB"},
             {begin + "{\"a.b\": \"\xFF\"}}", "line 2: "}}) {
        const auto read = readProfile(text);
        ASSERT_FALSE(read) << text.substr(0, 200);
        EXPECT_THAT(read.error(), HasSubstr(why)) << text.substr(0, 200);
    }
    EXPECT_TRUE(readProfile(begin + "{\"a.b\": " + nested(6) + "}}"));
}

TEST(ReadProfile, RepeatsNoValueOfAFileThatIsBroken) {
    for (const char* broken :
         {"\"kAutoUnlockPasscode\": \"24680\" \"24680\"", "\"kAutoUnlockPasscode\": 2468024680246802468024680",
          "\"kAutoUnlockPasscode\": 24680x", "\"kAutoUnlockPasscode\": \"24680\\q\"",
          "\"kAutoUnlockPasscode\": {\"$date\": \"24680\"}", "\"kAutoUnlockPasscode\": tru24680",
          "\"kAutoUnlockPasscode\": 24680e999"}) {
        const auto read = readProfile("{\"lumora\": 1, \"settings\": {" + std::string(broken) + "}}");
        ASSERT_FALSE(read) << broken;
        EXPECT_THAT(read.error(), Not(HasSubstr("24680"))) << broken;
    }
}

TEST(ReadProfile, TakesAllButTheBadSettingsAndNamesThese) {
    const ReadProfile read = withSettings(R"("kAppIconSize": "70",
"kSlepTime": 30,
"kAppsEnabled": [1],
"kLSBlurColor": {"h": 2, "s": 0, "b": 0},
"kTweakEnabled": null,
"kSleepTime": {"$real": "nan"},
"kAppsPerRow": 3)");
    EXPECT_EQ(read.profile.settings, (Dictionary{{"kAppsPerRow", 3}}));
    EXPECT_EQ(read.aside, (Dictionary{{"kSlepTime", 30}}));
    EXPECT_THAT(linesOf(read.remarks),
                ElementsAre("line 3: kAppIconSize takes a finite number, not a text",
                            "line 4: Lumora has no setting \"kSlepTime\"", "line 5: kAppsEnabled takes a list of texts",
                            R"(line 6: kLSBlurColor takes a colour {"h", "s", "b"} of numbers from 0 to 1)",
                            "line 7: \"kTweakEnabled\" cannot be nil", "line 8: kSleepTime takes a finite number"));
    for (const Remark& remark : read.remarks)
        EXPECT_TRUE(leavesOut(remark.kind)) << remark.text;
}

TEST(ReadProfile, TakesNumbersThatNoPageSetsWithAWarning) {
    const ReadProfile read = withSettings(R"("kAppIconSize": 91, "kSleepTime": 5, "kLSDateOffset": -10.5)");
    EXPECT_EQ(read.profile.settings.size(), 3U);
    EXPECT_THAT(linesOf(read.remarks),
                ElementsAre("line 3: the page sets kAppIconSize from 50 to 90: beyond that, it is drawn clamped",
                            "line 3: the page sets kLSDateOffset from -10 to 50: beyond that, it is drawn clamped"));
    EXPECT_FALSE(leavesOut(read.remarks.front().kind));
}

TEST(ReadProfile, NeverTakesPasscodes) {
    const ReadProfile one = withSettings(R"("kAutoUnlockPasscode": "24680", "kSleepTime": 30)");
    EXPECT_EQ(one.profile.settings, (Dictionary{{"kSleepTime", 30}}));
    EXPECT_TRUE(one.aside.empty());
    EXPECT_THAT(linesOf(one.remarks), ElementsAre("1 passcode was left out: kAutoUnlockPasscode"));

    const ReadProfile two = withSettings(R"("kAutoUnlockPasscode": [24680], "org.a.pin": "24680", "org.a.name": "Ann")",
                                         Secrets({"org.a.pin"}, {"org.a.name"}));
    EXPECT_EQ(two.profile.settings, (Dictionary{{"org.a.name", "Ann"}}));
    EXPECT_THAT(linesOf(two.remarks), ElementsAre("2 passcodes were left out: kAutoUnlockPasscode, org.a.pin"));
}

TEST(ReadProfile, ReadsLaterVersionsAsFarAsTheyGo) {
    const ReadProfile read = readWhole(R"({"lumora": 3, "by": "lumora 9.1", "wallpaper": "lake",
"settings": {"kNewThing": true, "kSleepTime": 30}})");
    EXPECT_EQ(read.profile.version, 3);
    EXPECT_EQ(read.profile.settings, (Dictionary{{"kSleepTime", 30}}));
    EXPECT_EQ(read.aside, (Dictionary{{"kNewThing", true}}));
    EXPECT_THAT(linesOf(read.remarks), ElementsAre("made by a later version: lumora 9.1",
                                                   "line 1: \"wallpaper\" is not known in a profile, and passed over",
                                                   "line 2: Lumora has no setting \"kNewThing\""));
}

TEST(ReadProfile, DoesWithoutNameTimeAndProgram) {
    const ReadProfile read = readWhole(R"({"lumora": 1, "name": 5, "made": "yesterday", "by": [], "omitted": [1],
"settings": {"kSleepTime": 30}})");
    EXPECT_EQ(read.profile.settings.size(), 1U);
    EXPECT_THAT(linesOf(read.remarks),
                testing::UnorderedElementsAre("line 1: \"name\" is no text", "line 1: \"by\" is no text",
                                              "line 1: \"made\" is no time such as 2026-11-20T18:36:00Z",
                                              "line 1: \"omitted\" is no list of keys"));
}

TEST(Inventory, NamesWhatIsNotInstalledHere) {
    const ReadProfile read = withSettings(R"("kAppsEnabled": ["here", "b", "c"],
"kAppViewsEnabled": ["v"], "kAUAppsDisabled": ["here"],
"kLSDateFontName": "Nowhere")");
    EXPECT_TRUE(namesApplications(read.profile));
    const auto isHere = [](const std::string& name) { return name == "here"; };
    EXPECT_THAT(linesOf(absentFrom({isHere, isHere, isHere}, read)),
                ElementsAre("line 5: kLSDateFontName names the font not installed here: Nowhere",
                            "line 3: kAppsEnabled names applications not installed here: b, c",
                            "line 4: kAppViewsEnabled names App Views not installed here: v"));
    EXPECT_THAT(absentFrom({}, read), IsEmpty());
    EXPECT_FALSE(namesApplications(withSettings(R"("kLSDateFontName": "A", "kAppsEnabled": [])").profile));
}

// The program as its users start it; without a display.

#include "tests/tweak/Program.h"
#include "tests/tweak/Sandbox.h"

#include "link/PreferenceKeys.h"
#include "json/Json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <charconv>
#include <string>
#include <string_view>
#include <vector>

using namespace tests;
using platform::Dictionary;
using platform::List;
using platform::Value;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr const char* kDigits = "7391"; // of passcodes; no number of a document happens to have them

/// What stands at a path such as "look.icons[2].frame" of a document.
Value at(Value value, std::string_view path) {
    while (!path.empty()) {
        if (path.front() == '.') path.remove_prefix(1);
        if (path.front() == '[') {
            std::size_t place = 0;
            std::from_chars(path.data() + 1, path.data() + path.size(), place);
            const List* list = value.list();
            value = list && place < list->size() ? (*list)[place] : Value();
            path.remove_prefix(path.find(']') + 1);
        } else {
            const std::string key(path.substr(0, path.find_first_of(".[")));
            value = value[key];
            path.remove_prefix(key.size());
        }
    }
    return value;
}

class LockScreen : public testing::Test {
  protected:
    LockScreen() {
        ::setenv("XDG_RUNTIME_DIR", sandbox.path().c_str(), 1);
        ::setenv("LC_ALL", "C", 1);
        ::unsetenv("DISPLAY");
        ::unsetenv("WAYLAND_DISPLAY");
    }

    static Finished lockscreen(std::vector<std::string> words, const std::string& input = {}) {
        words.insert(words.begin(), {LUMORA_LOCKSCREEN, "--root", LUMORA_TEST_ROOT});
        return run(std::move(words), input);
    }
    [[nodiscard]] std::string file(const std::string& name, const std::string& contents) const {
        writeFile(sandbox.path() / name, contents);
        return sandbox.path() / name;
    }
    /// The document that is printed with some settings, beside those of a screen with two applications and two App
    /// Views.
    Value shown(const Dictionary& settings, std::vector<std::string> words = {}, const std::string& input = {}) {
        Dictionary all{{lumora::kTweakEnabled, true},
                       {lumora::kAppsEnabled, List{"org.lumora.samples.Mail", "org.lumora.samples.Phone"}},
                       {lumora::kAppViewsEnabled, List{"org.lumora.plugins.clock", "org.lumora.plugins.weather"}}};
        for (const auto& [key, value] : settings)
            all.set(key, value);
        words.insert(words.end(), {"--state", "--time", "2026-11-20T18:36", "--settings",
                                   file("settings.json", lumora::writeJson(all).value())});
        last = lockscreen(std::move(words), input);
        EXPECT_EQ(last.status, 0) << last.errors;
        // Lines of a log come first.
        const auto document = lumora::readJson(last.output.substr(std::min(last.output.find('{'), last.output.size())));
        EXPECT_TRUE(document) << last.output;
        return document ? document.value() : Value();
    }

    Sandbox sandbox;
    Finished last;
};

TEST_F(LockScreen, PrintsWhatSettingsDo) {
    struct Case {
        const char* key;
        Value value;
        const char* surface;
        const char* path;
        Value expected;
    };
    const std::vector<Case> cases{
        {lumora::kLSDateFontSize, 100, "N", "look.clock.size", 100.0},
        {lumora::kLSDateFontSize, 500, "N", "look.clock.size", 150.0},
        {lumora::kLSDateSubtitle, "Lake is calm", "N", "look.subtitle.text", "Lake is calm"},
        {lumora::kLSDateSubtitleHidden, true, "N", "look.subtitle.visible", false},
        {lumora::kLSDateFontName, "NotInstalled", "N", "look.clock.font", "Default"},
        {lumora::kLSStatusBarHidden, true, "N", "look.statusBar.visible", false},
        {lumora::kGrabbersDisabled, true, "N", "look.topGrabber.visible", false},
        {lumora::kCameraGrabberDisabled, true, "N", "look.camera.visible", false},
        {lumora::kSlideToUnlockText, "come on in", "N", "look.slideHint.text", "come on in"},
        {lumora::kAppRoundedEnabled, true, "A", "look.icons[1].picture.round", true},
        {lumora::kAppIconOpacity, 0.5, "A", "look.icons[0].picture.opacity", 0.5},
        {lumora::kAppBadgesEnabled, false, "A", "look.icons[0].badge.visible", false},
        {lumora::kAppLabelsEnabled, false, "A", "look.icons[0].label.visible", false},
        {lumora::kIconViewBlurEnabled, false, "A", "look.iconView.blurred", false},
        {lumora::kAppViewsEnabled, List{"org.lumora.plugins.weather"}, "V", "look.appView.title.text", "Weather"},
        {lumora::kLSPasscodeTitleHidden, true, "P", "look.passcode.title.visible", false},
        {lumora::kLSPBlurOpacity, 0.25, "P", "look.passcode.blur.opacity", 0.25},
        {lumora::kTweakEnabled, false, "P", "look.stages", List{"N"}},
    };
    for (const Case& one : cases) {
        const std::string without = std::string(one.key) + " leaves it alone: " + one.path;
        if (std::string_view(one.path) != "look.clock.font") {
            EXPECT_NE(at(shown({}, {"--surface", one.surface}), one.path), one.expected) << without;
        }
        EXPECT_EQ(at(shown({{one.key, one.value}}, {"--surface", one.surface}), one.path), one.expected) << one.key;
        EXPECT_EQ(at(shown({{one.key, one.value}}, {"--surface", one.surface}), "state.surface"), Value(one.surface));
    }
}

TEST_F(LockScreen, ShowsASamplePhone) {
    const Value shown = this->shown({}, {"--battery", "37"});
    EXPECT_EQ(at(shown, "look.clock.text"), Value("18:36"));
    EXPECT_EQ(at(shown, "look.subtitle.text"), Value("Friday · 20 November"));
    EXPECT_EQ(at(shown, "look.battery.text"), Value("37 %"));
    EXPECT_EQ(at(shown, "look.notices.items[0].title.text"), Value("Ines"));
    EXPECT_EQ(at(shown, "look.icons[0].label.text"), Value("Mail"));
    EXPECT_EQ(at(shown, "look.icons[0].badge.text"), Value("99+"));
    EXPECT_EQ(at(shown, "look.stages"), Value(List{"N", "A", "V"}));
    EXPECT_EQ(at(shown, "state.locked"), Value(true));
    EXPECT_EQ(last.errors, "");
}

TEST_F(LockScreen, TurnsAndResizesThePhone) {
    EXPECT_EQ(at(shown({}), "look.sleepVeil.frame"), Value(List{0.0, 0.0, 390.0, 844.0}));
    EXPECT_EQ(at(shown({}, {"--landscape"}), "look.sleepVeil.frame"), Value(List{0.0, 0.0, 844.0, 390.0}));
    EXPECT_EQ(at(shown({}, {"--size", "800x600", "--landscape"}), "look.sleepVeil.frame"),
              Value(List{0.0, 0.0, 800.0, 600.0}));
}

TEST_F(LockScreen, FallsAsleepWhenIdle) {
    EXPECT_EQ(at(shown({{lumora::kSleepTime, 30}}, {"--idle", "29"}), "look.sleepVeil.opacity"), Value(0.4));
    EXPECT_EQ(at(shown({{lumora::kSleepTime, 30}}, {"--idle", "30"}), "state.asleep"), Value(true));
    EXPECT_EQ(at(shown({{lumora::kSleepTime, 30}}), "state.asleep"), Value(false));
}

TEST_F(LockScreen, PlaysGesturesOfAFileOrOfStandardInput) {
    const std::string gestures = "swipe left\ntap icons[1]\n";
    const Value shown = this->shown({}, {"--passcode", "", "--log", "--play", file("gestures", gestures)});
    EXPECT_EQ(at(shown, "state.opened.identifier"), Value("org.lumora.samples.Phone"));
    EXPECT_EQ(at(shown, "state.locked"), Value(false));
    EXPECT_THAT(last.output,
                StartsWith("swipe left\n-> stage A\ntap icons[1]\n-> opens org.lumora.samples.Phone\n{\n"));
    EXPECT_EQ(at(this->shown({}, {"--play", "-"}, "swipe left\n"), "state.surface"), Value("A"));
    EXPECT_THAT(last.output, StartsWith("{")) << "without a log";
}

TEST_F(LockScreen, UnlocksWithThePasscode) {
    const std::string typed = "slide\nkey 7\ntap keys[2]\nkey 9\n";
    const std::vector<std::string> words{"--passcode", kDigits, "--log", "--play", "-"};
    EXPECT_EQ(at(shown({}, words, typed), "state.typed"), Value(3));
    EXPECT_EQ(at(shown({}, words, typed), "look.passcode.dots[2].filled"), Value(true));
    EXPECT_EQ(at(shown({}, words, typed + "key 1\n"), "state.surface"), Value("O"));
    EXPECT_THAT(last.output, HasSubstr("key •\n-> unlocked\n-> home screen\n"));
    EXPECT_EQ(at(shown({}, words, typed + "key 2\n"), "state.surface"), Value("P"));
    EXPECT_THAT(last.output, HasSubstr("-> wrong\n"));
}

TEST_F(LockScreen, NeverPrintsAPasscode) {
    const Dictionary settings{{lumora::kAutoUnlockEnabled, true},
                              {lumora::kAutoUnlockPasscode, kDigits},
                              {lumora::kFullAutoUnlockEnabled, true},
                              {lumora::kAutoUnlockPasscodeConfirm, kDigits},
                              {lumora::kAutoUnlockWidgetPasscode, kDigits}};
    const std::string typed = "slide\nkey 7\nkey 3\nkey 9\n";
    for (const char* end : {"", "key 1\n", "key 1\nkey S\nkey S\nslide\ntap keys[6]\ntap keys[2]\ntap keys[8]\n"})
        for (const char* surface : {"N", "A", "V", "P", "O"}) {
            shown(settings, {"--passcode", kDigits, "--log", "--play", "-", "--surface", surface}, typed + end);
            EXPECT_THAT(last.output + last.errors, Not(HasSubstr(kDigits)));
            for (const char digit : std::string_view(kDigits)) {
                EXPECT_THAT(last.output, Not(HasSubstr(std::string("key ") + digit)));
                EXPECT_THAT(last.output, Not(HasSubstr(std::string("keys[") + static_cast<char>(digit - 1))));
            }
        }
    const auto silent = [&](const Finished& finished) {
        EXPECT_EQ(finished.status, 2);
        EXPECT_THAT(finished.output + finished.errors, Not(HasSubstr(kDigits)));
        EXPECT_NE(finished.errors, "");
    };
    silent(lockscreen({"--state", "--passcode", std::string(kDigits) + "x"}));
    silent(lockscreen({"--state", "--passcode", std::string(9, '0') + kDigits}));
    silent(lockscreen({"--state", "--settings", file("s", "{}"), "--play", "-"}, kDigits));
    silent(lockscreen({"--state", "--settings", file("s", std::string("{\"kAutoUnlockPasscode\": ") + kDigits)}));
    silent(lockscreen({"--state", "--settings", file("s", std::string("[\"") + kDigits + "\"]")}));
}

TEST_F(LockScreen, ShowsAShippedProfileAsATweakThatHasTakenIt) {
    for (const std::string name : {"plain", "large-and-calm", "all-my-apps"}) {
        const RunningTweak tweak({LUMORA_TWEAK, "--settings", sandbox.path() / (name + ".plist")});
        const std::string profile = LUMORA_SOURCE "/profiles/shipped/" + name + ".json";
        EXPECT_EQ(run({LUMORACTL, "import", "--root", LUMORA_TEST_ROOT, name}).errors, "");
        for (const std::string surface : name == "all-my-apps" ? std::vector{"N", "A", "P"} : std::vector{"N", "P"}) {
            const std::vector<std::string> words{"--state", "--time", "2026-11-20T18:36", "--surface", surface};
            std::vector<std::string> withProfile = words;
            withProfile.insert(withProfile.end(), {"--settings", profile});
            const Finished before = lockscreen(withProfile);
            EXPECT_EQ(before.status, 0) << before.errors;
            EXPECT_EQ(before.errors, "");
            EXPECT_EQ(before.output, lockscreen(words).output) << name << " on " << surface;
        }
    }
}

TEST_F(LockScreen, TakesAllOfAProfileButWhatIsWrongWithIt) {
    const std::string profile = file("profile.json", R"({"lumora": 1, "settings": {
"kSlepTime": 5, "kAutoUnlockPasscode": "7391", "kAppBadgesEnabled": false}})");
    const Finished finished = lockscreen({"--state", "--settings", profile});
    EXPECT_EQ(finished.status, 0);
    EXPECT_THAT(finished.errors, HasSubstr(profile + ", line 2: Lumora has no setting \"kSlepTime\"\n"));
    EXPECT_THAT(finished.errors, HasSubstr("1 passcode was left out: kAutoUnlockPasscode\n"));
    EXPECT_THAT(finished.errors, Not(HasSubstr(kDigits)));
}

TEST_F(LockScreen, SaysWhatIsWrongWithItsUse) {
    const std::string settings = file("settings.json", "{}");
    const std::vector<std::pair<std::vector<std::string>, const char*>> cases{
        {{"--state", "--size", "390"}, "--size: is no size such as 390x844: 390"},
        {{"--state", "--size", "0x0"}, "is no size"},
        {{"--state", "--passcode", "12 4"}, "a passcode has digits alone"},
        {{"--state", "--passcode", "1234567890123"}, "a passcode has 12 digits at most"},
        {{"--state", "--time", "25:00"}, "is no time"},
        {{"--state", "--battery", "101"}, "--battery"},
        {{"--state", "--battery", "full"}, "--battery"},
        {{"--state", "--surface", "X"}, "--surface"},
        {{"--state", "--surface", "NA"}, "--surface"},
        {{"--state", "--idle", "-1"}, "--idle"},
        {{"--state", "--idle", "nan"}, "--idle"},
        {{"--state", "--wallpaper", "dawn"}, "is neither dusk, day or night nor a file: dawn"},
        {{"--state", "--grab", "a.png"}, "excludes"},
        {{"--grab", "a.png", "--tour", "b"}, "excludes"},
        {{"--state", "--settings", "-", "--play", "-"}, "cannot both read standard input"},
        {{"--state", "--settings", settings, "--play", "/nowhere"}, "cannot read /nowhere"},
        {{"--state", "--settings", "/nowhere"}, "cannot read /nowhere"},
        {{"--state", "--settings", file("cut.json", "{")}, "is no JSON"},
        {{"--state", "--settings", file("list.json", "[1]")}, "is no object of settings"},
        {{"--state", "--settings", file("bare.json", R"({"lumora": 1})")}, "bare.json: it has no \"settings\""},
        {{"--state", "--settings", settings, "--play", file("bad", "tap\nhop\n")}, "bad, line 2: no gesture begins so"},
        {{"--state", "--text-size", "20"}, "--text-size"},
        {{"--state", "--renderer", "fast"}, "--renderer"},
        {{"--dance"}, "--dance"},
        {{"leftover"}, "leftover"},
    };
    for (const auto& [words, why] : cases) {
        const Finished finished = lockscreen(words);
        EXPECT_EQ(finished.status, 2) << why;
        EXPECT_THAT(finished.errors, HasSubstr(why));
        EXPECT_EQ(finished.output, "") << why;
    }
}

TEST_F(LockScreen, FailsWhereTheSettingsLeaveNoWay) {
    const Finished finished = lockscreen({"--state", "--surface", "A", "--settings", file("none.json", "{}")});
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.errors, HasSubstr("with these settings, no way leads to surface A"));
    EXPECT_EQ(finished.output, "");
}

TEST_F(LockScreen, SecuresAppViewsThatSaySoThemselves) {
    const std::vector<std::string> words{"--surface", "V", "--passcode", kDigits};
    const Dictionary secure{{lumora::kAppViewsEnabled, List{"org.lumora.plugins.notes"}}};
    Dictionary open = secure;
    open.set(lumora::kAutoUnlockWidgetPasscode, kDigits);
    EXPECT_EQ(at(shown(secure, words), "look.appView.locked"), Value(true));
    EXPECT_EQ(at(shown(open, words), "look.appView.locked"), Value(false));
    EXPECT_EQ(at(shown({}, words), "look.appView.secure"), Value(false));
}

TEST_F(LockScreen, AsksTheTweakOnce) {
    const RunningTweak tweak({LUMORA_TWEAK, "--root", LUMORA_TEST_ROOT, "--settings", sandbox.settings()});
    const Finished finished = lockscreen({"--state"});
    EXPECT_EQ(finished.status, 0) << finished.errors;
    const auto document = lumora::readJson(finished.output);
    ASSERT_TRUE(document);
    EXPECT_EQ(at(document.value(), "look.clock.visible"), Value(true));
}

TEST_F(LockScreen, FailsWithoutATweak) {
    const Finished finished = lockscreen({"--state"});
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.errors, StartsWith("lumora-lockscreen: no tweak answers on "));
    EXPECT_EQ(finished.output, "");
}

TEST_F(LockScreen, SaysThatItCannotPrint) {
    const Finished finished = run({"/bin/sh", "-c", "\"$0\" --state --settings \"$1\" > /dev/full", LUMORA_LOCKSCREEN,
                                   file("settings.json", "{}")});
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.errors, HasSubstr("cannot write to standard output"));
}

TEST_F(LockScreen, TellsItsVersionAndItsUse) {
    EXPECT_THAT(lockscreen({"--version"}).output, StartsWith("lumora-lockscreen 1."));
    const Finished help = lockscreen({"--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* option : {"--root", "--landscape", "--size", "--passcode", "--wallpaper", "--surface", "--time",
                               "--battery", "--text-size", "--idle", "--play", "--state", "--grab", "--tour",
                               "--scenes", "--settings", "--log", "--renderer", "tap icons[2]"})
        EXPECT_THAT(help.output, HasSubstr(option));
}

} // namespace

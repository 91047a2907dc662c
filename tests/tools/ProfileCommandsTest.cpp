// export, import and diff, as people call them, beside a real tweak.

#include "tests/support/ServedPort.h"
#include "tests/tools/Command.h"
#include "tests/tweak/Messages.h"
#include "tests/tweak/Sandbox.h"

#include "tweak/Defaults.h"
#include "json/Json.h"

#include "platform/foundation/DeviceRoot.h"
#include "search/IndexChild.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <regex>

using namespace lumora;
using namespace tests;
using platform::Dictionary;
using platform::List;
using platform::Value;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr const char* kPlanted = "24680135";

std::string profileOf(const Dictionary& settings) {
    return writeJson(Dictionary{{"lumora", 1}, {"name", "Test"}, {"settings", settings}}).value();
}

std::ptrdiff_t occurrences(const std::string& text, const std::string& part) {
    const std::regex wanted(part);
    return std::distance(std::sregex_iterator(text.begin(), text.end(), wanted), std::sregex_iterator());
}

/// lumoractl on its own: no tweak runs, and there is no index of the pages.
class ProfileCommands : public testing::Test {
  protected:
    ProfileCommands() { ::setenv("XDG_CACHE_HOME", (sandbox.path() / "cache").c_str(), 1); }

    [[nodiscard]] std::string file(const std::string& contents) const {
        writeFile(sandbox.path() / "profile.json", contents);
        return sandbox.path() / "profile.json";
    }

    /// An index of two pages of that device root, with a row of Lumora's and two of a plug-in's, one of which shows dots.
    void keepIndex(const std::filesystem::path& root = {}) const {
        const std::vector<search::Page> pages{{"Root", "Lumora", {}, 0, "", ""},
                                              {"Apps", "Lockscreen Apps", 0, 1, "", ""},
                                              {"Plug", "Notes", 0, 2, "", ""}};
        const auto row = [](std::size_t page, const char* title, const char* key, bool secure) {
            search::Entry entry;
            entry.page = page;
            entry.title = title;
            entry.key = key;
            entry.secure = secure;
            return entry;
        };
        const search::Index index(pages, {row(1, "Icon Size", "kAppIconSize", false),
                                          row(2, "Owner", "org.some.plugin.owner", false),
                                          row(2, "Code", "org.some.plugin.code", true)});
        platform::setDeviceRoot(root);
        search::IndexOrder order;
        order.bundle = platform::standardBundle();
        ASSERT_TRUE(writeIndex(indexFile(sourcesOf(order)), index, "of another time"));
        platform::setDeviceRoot({});
    }

    Sandbox sandbox;
};

/// The same beside a tweak that logs every message.
class ProfileCommandsWithTweak : public ProfileCommands {
  protected:
    RunningTweak tweak{{LUMORA_TWEAK, "--settings", sandbox.settings(), "--verbose"}};

    [[nodiscard]] std::ptrdiff_t changesSent() const { return occurrences(tweak.errors(), "updateSettings:"); }
};

} // namespace

TEST_F(ProfileCommandsWithTweak, ExportsWhatHasBeenChanged) {
    change("kSleepTime", 30);
    change("kAppsEnabled", List{"org.lumora.samples.Mail"});
    change("kAppBadgesEnabled", true);
    const Finished exported = lumoractl({"export", "--name", "Mine"});
    EXPECT_EQ(exported.status, 0) << exported.errors;
    EXPECT_EQ(exported.errors, "");
    const Value profile = parsed(exported.output);
    EXPECT_EQ(profile["lumora"], Value(1));
    EXPECT_EQ(profile["name"], Value("Mine"));
    EXPECT_THAT(std::string(*profile["by"].text()), testing::MatchesRegex("lumora [0-9.]+"));
    EXPECT_THAT(std::string(*profile["made"].text()), testing::MatchesRegex("20[0-9T:-]+Z"));
    EXPECT_EQ(profile["settings"],
              Value(Dictionary{{"kSleepTime", 30}, {"kAppsEnabled", List{"org.lumora.samples.Mail"}}}));

    EXPECT_EQ(parsed(lumoractl({"export", "--all"}).output)["settings"].dictionary()->size(),
              knownSettings().size() - 3);
    EXPECT_EQ(parsed(lumoractl({"export", "kAppsPerRow", "kSleepTime"}).output)["settings"],
              Value(Dictionary{{"kAppsPerRow", 4}, {"kSleepTime", 30}}));
    EXPECT_EQ(parsed(lumoractl({"export", "--changed", "kAppsPerRow", "kSleepTime"}).output)["settings"],
              Value(Dictionary{{"kSleepTime", 30}}));
}

TEST_F(ProfileCommandsWithTweak, ExportsNoKeyThatIsNotSet) {
    const Finished exported = lumoractl({"export", "kSleepTime", "org.not.set"});
    EXPECT_EQ(exported.status, 1);
    EXPECT_EQ(exported.output, "");
    EXPECT_EQ(exported.errors, "lumoractl: org.not.set is not set\n");
}

TEST_F(ProfileCommandsWithTweak, KeepsPasscodesToItself) {
    for (const Setting& setting : knownSettings())
        if (setting.secure) change(setting.key, kPlanted);
    change("kSleepTime", 30);
    const std::string planted = file(R"({"lumora": 1, "settings": {"kSleepTime": 31, "kAutoUnlockPasscode": ")" +
                                     std::string(kPlanted) + "\"}}");
    for (const auto& words : std::vector<std::vector<std::string>>{{"export"},
                                                                   {"export", "--all"},
                                                                   {"export", "kAutoUnlockPasscode"},
                                                                   {"diff", planted},
                                                                   {"diff", planted, "plain"},
                                                                   {"diff", "--json", planted},
                                                                   {"import", "--check", planted},
                                                                   {"import", "--dry-run", planted},
                                                                   {"import", "--dry-run", "--json", planted},
                                                                   {"import", planted}}) {
        const Finished finished = lumoractl(words);
        EXPECT_THAT(finished.output, Not(HasSubstr(kPlanted))) << words.front();
        EXPECT_THAT(finished.errors, Not(HasSubstr(kPlanted))) << words.front();
    }
    EXPECT_THAT(tweak.errors(), Not(HasSubstr(kPlanted)));
    const Finished exported = lumoractl({"export"});
    EXPECT_EQ(exported.status, 0);
    EXPECT_EQ(parsed(exported.output)["omitted"].list()->size(), 3U);
    EXPECT_THAT(exported.errors, HasSubstr("left out: kAutoUnlockPasscode is a passcode\n"));
    EXPECT_EQ(lumoractl({"export", "kAutoUnlockPasscode"}).status, 3);
    EXPECT_EQ(askForSettings()["kAutoUnlockPasscode"], Value(kPlanted));
    const Finished refused = lumoractl({"import", planted});
    EXPECT_EQ(refused.status, 3);
    EXPECT_THAT(refused.errors, HasSubstr("1 passcode was left out: kAutoUnlockPasscode\n"));
}

TEST_F(ProfileCommandsWithTweak, ExportsTextsOfPluginsOnlyWhenTheyAreNamed) {
    keepIndex(sandbox.path());
    change("org.some.plugin.note", kPlanted);
    change("org.some.plugin.wide", true);
    const Finished exported = lumoractl({"export", "--root", sandbox.path()});
    EXPECT_EQ(exported.status, 0);
    EXPECT_EQ(parsed(exported.output)["settings"], Value(Dictionary{{"org.some.plugin.wide", true}}));
    EXPECT_EQ(parsed(exported.output)["omitted"], Value(List{"org.some.plugin.note"}));
    EXPECT_THAT(exported.errors, HasSubstr("org.some.plugin.note is a text that no page shows"));
    EXPECT_EQ(parsed(lumoractl({"export", "--root", sandbox.path(), "org.some.plugin.note"}).output)["settings"],
              Value(Dictionary{{"org.some.plugin.note", kPlanted}}));
}

TEST_F(ProfileCommandsWithTweak, KnowsThePasscodesOfPluginsByTheirPages) {
    keepIndex(sandbox.path());
    change("org.some.plugin.owner", "Ann");
    change("org.some.plugin.code", kPlanted);
    const Finished exported = lumoractl({"export", "--root", sandbox.path()});
    EXPECT_EQ(parsed(exported.output)["settings"], Value(Dictionary{{"org.some.plugin.owner", "Ann"}}));
    EXPECT_EQ(parsed(exported.output)["omitted"], Value(List{"org.some.plugin.code"}));
    const Finished named = lumoractl({"export", "--root", sandbox.path(), "org.some.plugin.code"});
    EXPECT_EQ(named.status, 3);
    EXPECT_THAT(named.output, Not(HasSubstr(kPlanted)));

    const std::string profile = file(profileOf({{"org.some.plugin.code", "135"}, {"org.some.plugin.owner", "Bob"}}));
    const Finished imported = lumoractl({"import", "--root", sandbox.path(), profile});
    EXPECT_EQ(imported.status, 3);
    EXPECT_EQ(imported.output, "Notes \u203A Owner (org.some.plugin.owner): \"Ann\" \u2192 \"Bob\"\n");
    EXPECT_THAT(imported.errors, HasSubstr("1 passcode was left out: org.some.plugin.code\n"));
    EXPECT_EQ(askForSettings()["org.some.plugin.code"], Value(kPlanted));
}

TEST_F(ProfileCommandsWithTweak, TakesAllOfPluginsForPasscodesWhereNobodyKnowsTheirPages) {
    change("org.some.plugin.code", 24'680'135);
    const Finished exported = lumoractl({"export", "--root", sandbox.path(), "org.some.plugin.code"});
    EXPECT_EQ(exported.status, 3);
    EXPECT_THAT(exported.output, Not(HasSubstr(kPlanted)));
}

TEST_F(ProfileCommands, CallRowsByTheirTitlesWhereTheIndexHasThem) {
    keepIndex();
    const std::string one = file(profileOf({{"kAppIconSize", 56}, {"kSleepTime", 30}}));
    EXPECT_EQ(lumoractl({"diff", one, "-"}, profileOf({{"kAppIconSize", 60}, {"kSleepTime", 5}})).output,
              "Lockscreen Apps \u203A Icon Size (kAppIconSize): 56 \u2192 60\nkSleepTime: 30 \u2192 5\n");
    const Value json =
        parsed(lumoractl({"diff", "--json", one, "-"}, profileOf({{"kAppIconSize", 60}, {"kSleepTime", 30}})).output);
    EXPECT_EQ(json, Value(List{Dictionary{{"key", "kAppIconSize"},
                                          {"title", "Icon Size"},
                                          {"path", List{"Lockscreen Apps"}},
                                          {"old", 56},
                                          {"new", 60}}}));
}

TEST_F(ProfileCommandsWithTweak, ImportsEachChangeOnceAndLeavesTheRestAlone) {
    change("kSleepTime", 30);
    change("kAppsPerRow", 3);
    const std::string profile =
        file(profileOf({{"kSleepTime", 30}, {"kAppIconSize", 56}, {"kLSStatusBarHidden", true}}));
    const std::ptrdiff_t before = changesSent();

    const Finished dry = lumoractl({"import", "--dry-run", profile});
    EXPECT_EQ(dry.status, 0) << dry.errors;
    EXPECT_EQ(dry.output, "kAppIconSize: 70.0 \u2192 56\nkLSStatusBarHidden: false \u2192 true\n");
    EXPECT_EQ(changesSent(), before);

    const Finished imported = lumoractl({"import", profile});
    EXPECT_EQ(imported.status, 0);
    EXPECT_EQ(imported.output, dry.output);
    EXPECT_EQ(changesSent(), before + 2);
    EXPECT_EQ(askForSettings()["kAppIconSize"], Value(56));
    EXPECT_EQ(askForSettings()["kAppsPerRow"], Value(3));

    const Finished again = lumoractl({"import", profile});
    EXPECT_EQ(again.status, 0);
    EXPECT_EQ(again.output, "");
    EXPECT_EQ(again.errors, "lumoractl: nothing changes: all settings are so already\n");
    EXPECT_EQ(changesSent(), before + 2);
    EXPECT_EQ(parsed(lumoractl({"export", "kSleepTime", "kAppIconSize", "kLSStatusBarHidden"}).output)["settings"],
              parsed(profileOf({{"kSleepTime", 30}, {"kAppIconSize", 56}, {"kLSStatusBarHidden", true}}))["settings"]);
}

TEST_F(ProfileCommandsWithTweak, ImportsAFullProfileWithAMessageForEachSetting) {
    Dictionary settings;
    for (const Setting& setting : knownSettings()) {
        const Value& now = setting.byDefault;
        if (setting.secure) continue;
        settings.set(setting.key, now.boolean()      ? Value(!*now.boolean())
                                  : now.isNumber()   ? Value(now.doubleValue() == 2 ? 3 : 2)
                                  : now.text()       ? Value("other")
                                  : now.dictionary() ? Value(Dictionary{{"h", 0.1}, {"s", 0.2}, {"b", 0.3}})
                                                     : Value(List{"org.a.b"}));
    }
    for (int i = 0; i < 3; ++i)
        settings.set("org.some.plugin." + std::to_string(i), i);
    ASSERT_EQ(settings.size(), 50U);
    keepIndex(sandbox.path());
    const Finished imported = lumoractl({"import", "-", "--json", "--root", sandbox.path()}, profileOf(settings));
    EXPECT_EQ(imported.status, 0) << imported.errors;
    EXPECT_EQ(parsed(imported.output)["changes"].list()->size(), 50U);
    EXPECT_EQ(changesSent(), 50);
    const Value now = askForSettings();
    for (const auto& [key, value] : settings)
        EXPECT_EQ(now[key], value) << key;
}

TEST_F(ProfileCommandsWithTweak, ListsWhatIsLeftOutAndTakesTheRest) {
    const std::string profile =
        file("{\"lumora\": 1, \"settings\": {\n\"kSlepTime\": 1,\n\"kAppIconSize\": \"large\",\n\"kSleepTime\": 40}}");
    const Finished imported = lumoractl({"import", profile});
    EXPECT_EQ(imported.status, 3);
    EXPECT_EQ(imported.output, "kSleepTime: 10 \u2192 40\n");
    EXPECT_EQ(imported.errors, "lumoractl: " + profile + ", line 2: Lumora has no setting \"kSlepTime\"\nlumoractl: " +
                                   profile + ", line 3: kAppIconSize takes a finite number, not a text\n");
    const Value json = parsed(lumoractl({"import", "--check", "--json", profile}).output);
    EXPECT_EQ(json["settings"], Value(1));
    ASSERT_EQ(json["remarks"].list()->size(), 2U);
    EXPECT_EQ((*json["remarks"].list())[1]["kind"], Value("refused"));
    EXPECT_EQ((*json["remarks"].list())[1]["line"], Value(3));
}

TEST_F(ProfileCommands, ListsChangesThatATweakRefuses) {
    const auto answer = [](const Dictionary& contents) {
        return platform::NSKeyedArchiver::archivedDataWithRootObject(contents);
    };
    const ServedPort requests("com.nevo.lumora/requestTweakSettings", [&](auto&, auto, auto&) {
        return answer({{"kSleepTime", 10}});
    });
    const ServedPort updates("com.nevo.lumora/updateSettings", [&](auto&, auto, auto&) {
        return answer({{"error", "not today"}});
    });
    const std::string profile = file(profileOf({{"kSleepTime", 30}, {"kAppsPerRow", 3}}));
    const Finished imported = lumoractl({"import", profile});
    EXPECT_EQ(imported.status, 3);
    EXPECT_EQ(imported.output, "");
    EXPECT_EQ(imported.errors,
              "lumoractl: refused: kSleepTime: not today\nlumoractl: refused: kAppsPerRow: not today\n");
    EXPECT_EQ(parsed(lumoractl({"import", "--json", profile}).output)["refused"].list()->size(), 2U);
}

TEST_F(ProfileCommands, SaysHowFarItCameWhenTheTweakGoes) {
    const auto answer = [](const Dictionary& contents) {
        return platform::NSKeyedArchiver::archivedDataWithRootObject(contents);
    };
    auto requests = std::make_unique<ServedPort>("com.nevo.lumora/requestTweakSettings", [&](auto&, auto, auto&) {
        return answer({{"kSleepTime", 10}});
    });
    const ServedPort updates("com.nevo.lumora/updateSettings",
                             [&](auto&, auto, auto&) -> std::optional<platform::Data> {
                                 if (!requests) return answer({{"error", "going"}});
                                 requests.reset();
                                 return std::nullopt;
                             });
    const Finished imported =
        lumoractl({"import", file(profileOf({{"kSleepTime", 30}, {"kAppsPerRow", 3}, {"kTweakEnabled", false}}))});
    EXPECT_EQ(imported.status, 1);
    EXPECT_EQ(imported.output, "kSleepTime: 10 \u2192 30\n");
    EXPECT_THAT(imported.errors, AllOf(HasSubstr("no tweak answers"), HasSubstr("; 1 of 3 changes were made\n")));
}

TEST_F(ProfileCommands, ChecksAFileWithoutATweak) {
    const Finished fine = lumoractl({"import", "--check", file(profileOf({{"kSleepTime", 30}}))});
    EXPECT_EQ(fine.status, 0) << fine.errors;
    EXPECT_EQ(fine.output, "Test: 1 setting\n");
    const Finished beyond = lumoractl({"import", "--check", file(profileOf({{"kSleepTime", 4}}))});
    EXPECT_EQ(beyond.status, 0);
    EXPECT_THAT(beyond.errors, HasSubstr("the page sets kSleepTime from 5 to 3600"));
    const Finished broken = lumoractl({"import", "--check", file("{\"lumora\": 1,\n\"settings\"}")});
    EXPECT_EQ(broken.status, 1);
    EXPECT_THAT(broken.errors, HasSubstr("profile.json: line 2: "));
    EXPECT_THAT(lumoractl({"import", "--check", "/dev/zero"}).errors, HasSubstr("larger than 1 MB"));
    EXPECT_EQ(lumoractl({"import", file(profileOf({}))}).status, 1) << "no tweak runs";
}

TEST_F(ProfileCommands, NamesWhatIsNotInstalled) {
    const Finished check =
        lumoractl({"import", "--check", "--root", LUMORA_TEST_ROOT,
                   file(profileOf({{"kAppsEnabled", List{"org.lumora.samples.Mail", "org.not.Here"}},
                                   {"kAppViewsEnabled", List{"org.lumora.plugins.clock", "org.not.here"}},
                                   {"kLSDateFontName", "Nowhere-Bold"}}))});
    EXPECT_EQ(check.status, 0);
    EXPECT_THAT(check.errors, AllOf(HasSubstr("kAppsEnabled names applications not installed here: org.not.Here\n"),
                                    HasSubstr("kAppViewsEnabled names App Views not installed here: org.not.here\n"),
                                    HasSubstr("kLSDateFontName names the font not installed here: Nowhere-Bold\n")));
}

TEST_F(ProfileCommands, ListAndCheckWhatIsShipped) {
    const Finished list = lumoractl({"import", "--list"});
    EXPECT_EQ(list.status, 0) << list.errors;
    EXPECT_EQ(list.output, "all-my-apps     All My Apps\nlarge-and-calm  Large and Calm\nplain           Plain\n");
    const Value listed = parsed(lumoractl({"import", "--list", "--json"}).output);
    ASSERT_TRUE(listed.list());
    for (const Value& shipped : *listed.list()) {
        for (const char* entry : {"word", "name", "file"}) {
            const Finished check =
                lumoractl({"import", "--check", "--root", LUMORA_TEST_ROOT, std::string(*shipped[entry].text())});
            EXPECT_EQ(check.status, 0);
            EXPECT_EQ(check.errors, "");
            EXPECT_THAT(check.output, StartsWith(std::string(*shipped["name"].text()) + ": "));
        }
    }
}

TEST_F(ProfileCommands, TakeAFolderForNoProfile) {
    std::filesystem::create_directory(sandbox.path() / "plain");
    const Finished check = run({"/bin/sh", "-c", R"(cd "$0" && "$1" import --check plain)", sandbox.path(), LUMORACTL});
    EXPECT_EQ(check.status, 0) << check.errors;
    EXPECT_THAT(check.output, StartsWith("Plain: "));
}

TEST_F(ProfileCommandsWithTweak, ComparesAProfileWithTheSettingsOrAnother) {
    const std::string one = file(profileOf({{"kSleepTime", 30}, {"kAppsPerRow", 4}}));
    const Finished differs = lumoractl({"diff", one});
    EXPECT_EQ(differs.status, 1) << differs.errors;
    EXPECT_EQ(differs.output, "kSleepTime: 10 \u2192 30\n");
    const Value json = parsed(lumoractl({"diff", "--json", one}).output);
    EXPECT_EQ(json, Value(List{Dictionary{{"key", "kSleepTime"}, {"old", 10}, {"new", 30}}}));

    keepIndex();
    const Finished two =
        lumoractl({"diff", one, "-"}, profileOf({{"kSleepTime", 30.0}, {"kAppsPerRow", 5}, {"org.a.b", 1}}));
    EXPECT_EQ(two.status, 1);
    EXPECT_EQ(two.output, "kAppsPerRow: 4 \u2192 5\norg.a.b: not named \u2192 1\n");
    change("kSleepTime", 30);
    EXPECT_EQ(lumoractl({"diff", one}).status, 0);
    EXPECT_EQ(lumoractl({"diff", sandbox.path() / "missing"}).status, 2);
}

TEST_F(ProfileCommands, ShowNothingThatATerminalObeys) {
    const std::string profile = file("{\"lumora\": 1, \"name\": \"\\u001b[2J\", \"settings\": {\"k\\u001b[2J\": 1, "
                                     "\"org.a.\\u001b[2J\": \"\\u001b[2J\"}}");
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"import", "--check", profile}, {"diff", profile, "plain"}, {"import", "--check", "--json", profile}}) {
        const Finished finished = lumoractl(words);
        EXPECT_THAT(finished.output + finished.errors, Not(HasSubstr("\x1B")));
    }
}

TEST_F(ProfileCommands, TellWrongUseFromFailure) {
    for (const auto& words : std::vector<std::vector<std::string>>{{"import"},
                                                                   {"import", "a", "b"},
                                                                   {"import", "--check", "--dry-run", "a"},
                                                                   {"import", "--list", "--check"},
                                                                   {"export", "--all", "--changed"},
                                                                   {"export", "--name"},
                                                                   {"export", "\xFF"},
                                                                   {"diff"},
                                                                   {"diff", "a", "b", "c"}}) {
        const Finished wrong = lumoractl(words);
        EXPECT_EQ(wrong.status, 2) << testing::PrintToString(words);
        EXPECT_EQ(wrong.output, "") << testing::PrintToString(words);
        EXPECT_NE(wrong.errors, "") << testing::PrintToString(words);
    }
    EXPECT_EQ(lumoractl({"import", "no-such-profile"}).errors,
              "lumoractl: cannot read no-such-profile: No such file or directory\n");
}

#include "tests/support/ServedPort.h"
#include "tests/tools/Command.h"
#include "tests/tweak/Messages.h"
#include "tests/tweak/Sandbox.h"

#include "history/ChangeRecord.h"
#include "tweak/Defaults.h"
#include "json/Json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <random>

using namespace lumora;
using namespace tests;
using platform::Dictionary;
using platform::List;
using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;
using platform::Value;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

namespace {

/// A tweak that answers a change only when its sender has given up waiting, and asks for the settings.
class LateTweak {
  public:
    LateTweak() = default;
    LateTweak(const LateTweak&) = delete;
    LateTweak& operator=(const LateTweak&) = delete;
    ~LateTweak() { ended_ = true; }

  private:
    std::optional<platform::Data> take(const platform::Data& body) {
        const Value change = NSKeyedUnarchiver::unarchiveObjectWithData(body)["object"];
        const int before = asked_;
        const std::unique_lock lock(mutex_);
        settings_.set(std::string(*change["key"].text()), change["object"]);
        eventually([&] { return asked_ > before || ended_; });
        return std::nullopt;
    }
    std::optional<platform::Data> answer() {
        ++asked_;
        const std::unique_lock lock(mutex_);
        return NSKeyedArchiver::archivedDataWithRootObject(settings_);
    }

    std::atomic<int> asked_ = 0;
    std::atomic<bool> ended_ = false;
    std::mutex mutex_;
    Dictionary settings_{{"kSleepTime", 30}, {"kAppsPerRow", 3}};
    ServedPort defaults_{
        "com.nevo.lumora/defaults", [](auto&, auto, auto&) {
            return NSKeyedArchiver::archivedDataWithRootObject(Dictionary{{"kSleepTime", 10}, {"kAppsPerRow", 4}});
        }};
    ServedPort requests_{"com.nevo.lumora/requestTweakSettings", [this](auto&, auto, auto&) { return answer(); }};
    ServedPort updates_{"com.nevo.lumora/updateSettings", [this](auto&, auto, auto& body) { return take(*body); }};
};

/// lumoractl beside a tweak, whose history can be written before it starts.
class PastCommands : public testing::Test {
  protected:
    void start(const std::vector<std::string>& options = {}) {
        std::vector<std::string> command{LUMORA_TWEAK, "--settings", sandbox.settings()};
        command.insert(command.end(), options.begin(), options.end());
        tweak = std::make_unique<RunningTweak>(std::move(command));
    }
    /// A change a minute after the last one, up to an hour ago.
    void changedThen(const std::string& key, std::optional<Value> before, std::optional<Value> after) {
        ++revision;
        const Moment time = anHourAgo + std::chrono::minutes(revision);
        writeFile(file, readFile(file) +
                            lineOf({revision, revision, time, key, std::move(before), std::move(after)}).value());
    }
    static Value parsed(const Finished& done) {
        EXPECT_EQ(done.status, 0) << done.errors;
        const auto value = readJson(done.output);
        EXPECT_TRUE(value) << done.output;
        return value ? value.value() : Value();
    }
    static void expectFailure(const Finished& done, int status, const std::string& why) {
        EXPECT_EQ(done.status, status);
        EXPECT_EQ(done.output, "");
        EXPECT_EQ(done.errors, "lumoractl: " + why + "\n");
    }

    Sandbox sandbox;
    std::filesystem::path file = sandbox.path() / "settings.history";
    std::unique_ptr<RunningTweak> tweak;
    std::int64_t revision = 0;
    Moment anHourAgo =
        std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now() - std::chrono::hours(1));
};

} // namespace

TEST_F(PastCommands, ListChangesFromTheOldest) {
    start();
    ASSERT_EQ(change("kSleepTime", 30), "");
    ASSERT_EQ(change("kAutoUnlockPasscode", "24680"), "");
    ASSERT_EQ(change("com.example\n", std::string(100, 'x')), "");
    ASSERT_EQ(change("kSleepTime", 60), "");
    const Finished all = lumoractl({"history"});
    EXPECT_EQ(all.status, 0);
    const std::string time = "  [0-9-]{10} [0-9:]{8}  ";
    EXPECT_THAT(all.output,
                MatchesRegex("1" + time + "kSleepTime: not set → 30\n2" + time + "kAutoUnlockPasscode: changed\n3" +
                             time + "com.example\uFFFD: changed\n4" + time + "kSleepTime: 30 → 60\n"));
    EXPECT_THAT(lumoractl({"history", "kSleepTime"}).output, MatchesRegex("1" + time + ".*\n4" + time + ".*\n"));
    EXPECT_EQ(lumoractl({"history", "--since", "2099-01-01"}).output, "");
    EXPECT_EQ(lumoractl({"history", "--since", "1h"}).output, all.output);
    const Value json = parsed(lumoractl({"history", "--json"}));
    ASSERT_TRUE(json.list());
    ASSERT_EQ(json.list()->size(), 4U);
    EXPECT_EQ(recordOf(json.list()->back()).value().after, Value(60));
    EXPECT_THAT(lumoractl({"history", "--json"}).output, Not(HasSubstr("24680")));
}

TEST_F(PastCommands, ListWhatHasChangedSinceThen) {
    for (int i = 1; i <= 40; ++i)
        changedThen("com.example." + std::to_string(i), std::nullopt, std::nullopt);
    start();
    EXPECT_EQ(parsed(lumoractl({"history", "--since", "30m", "--json"})).list()->size(), 10U);
    const Finished sinceChange = lumoractl({"history", "--since", "39"});
    EXPECT_EQ(sinceChange.status, 0) << sinceChange.errors;
    EXPECT_THAT(sinceChange.output, MatchesRegex("40  [^\n]*\n"));
    EXPECT_EQ(lumoractl({"history", "--since", "soon"}).status, 2);
}

TEST_F(PastCommands, ClearTheHistory) {
    start();
    ASSERT_EQ(change("kSleepTime", 30), "");
    EXPECT_EQ(lumoractl({"history", "--clear"}).status, 0);
    EXPECT_EQ(lumoractl({"history"}).output, "");
    EXPECT_EQ(readFile(file), "");
    EXPECT_EQ(lumoractl({"history", "--clear", "--json"}).status, 2);
}

TEST_F(PastCommands, UndoTheLastChangeAndMakeItAgain) {
    start();
    for (const int value : {30, 60}) {
        ASSERT_EQ(change("kSleepTime", value), "");
        ASSERT_EQ(change("kAppsPerRow", value), ""); // so that nothing is folded
    }
    EXPECT_EQ(lumoractl({"undo", "-2"}).output, "kSleepTime: 60 → 30\n");
    EXPECT_EQ(lumoractl({"undo"}).output, "kSleepTime: 30 → 60\n");
    EXPECT_EQ(lumoractl({"undo"}).output, "kSleepTime: 60 → 30\n");
    EXPECT_EQ(askForSettings()["kSleepTime"], Value(30));
}

TEST_F(PastCommands, UndoOneChangeAndNoOther) {
    start();
    for (const auto& [key, value] :
         {std::pair("kSleepTime", 20), std::pair("kAppsPerRow", 4), std::pair("kSleepTime", 30),
          std::pair("kAppsPerRow", 5), std::pair("kSleepTime", 60)})
        ASSERT_EQ(change(key, value), "");
    expectFailure(lumoractl({"undo", "3"}), 1,
                  "kSleepTime has been changed again since, by 5 (kSleepTime: 30 → 60): to set it back nevertheless, "
                  "lumoractl set kSleepTime '20'");
    EXPECT_EQ(lumoractl({"undo", "4"}).output, "kAppsPerRow: 5 → 4\n");
    EXPECT_EQ(askForSettings()["kSleepTime"], Value(60));
    EXPECT_EQ(askForSettings()["kAppsPerRow"], Value(4));
    expectFailure(lumoractl({"undo", "7"}), 1, "no change of revision 7 is recorded");
    expectFailure(lumoractl({"undo", "-9"}), 1, "fewer changes are recorded: 6");
    EXPECT_EQ(lumoractl({"undo", "soon"}).status, 2);
    EXPECT_EQ(lumoractl({"undo", "0"}).status, 2);
}

TEST_F(PastCommands, UndoPutsInTheDefaultOfWhatWasNotSet) {
    start();
    expectFailure(lumoractl({"undo"}), 1, "no change is recorded");
    ASSERT_EQ(change("kSleepTime", 30), "");
    EXPECT_EQ(lumoractl({"undo"}).output, "kSleepTime: 30 → 10\n");
    ASSERT_EQ(change("com.example.key", 30), "");
    expectFailure(lumoractl({"undo"}), 1, "com.example.key was not set, and no message takes a setting away");
    ASSERT_EQ(change("kAutoUnlockPasscode", "24680"), "");
    expectFailure(lumoractl({"undo"}), 1,
                  "kAutoUnlockPasscode has changed, but its values are not kept: it cannot be taken back");
}

TEST_F(PastCommands, ShowTheSettingsAsTheyWereThen) {
    start();
    ASSERT_EQ(change("kSleepTime", 60), "");
    ASSERT_EQ(change("com.example.key", 3), "");
    ASSERT_EQ(change("kAutoUnlockPasscode", "24680"), "");
    tweak->kill();
    std::filesystem::remove(file);
    changedThen("com.example.key", std::nullopt, Value(2));
    changedThen("kSleepTime", std::nullopt, Value(30));
    changedThen("kSleepTime", Value(30), Value(60));
    changedThen("com.example.key", Value(2), Value(3));
    start();
    const Value first = parsed(lumoractl({"at", "2h", "ago"}));
    EXPECT_EQ(first["kSleepTime"], Value(10));
    EXPECT_FALSE(first.dictionary()->contains("com.example.key"));
    EXPECT_THAT(lumoractl({"at", "2h ago"}).errors,
                HasSubstr("is not known: these are the settings as they were then"));
    const Value second = parsed(lumoractl({"at", "2"}));
    EXPECT_EQ(second["kSleepTime"], Value(30));
    EXPECT_EQ(second["com.example.key"], Value(2));
    EXPECT_EQ(second.dictionary()->size(), knownSettings().size() - 3 + 1) << "all but the passcodes";
    EXPECT_EQ(parsed(lumoractl({"at", timestampOf(anHourAgo + std::chrono::seconds(150))})), second);
    EXPECT_EQ(parsed(lumoractl({"at", "now"}))["kSleepTime"], Value(60));
    for (const char* wrong : {"soon", "25:00"})
        EXPECT_EQ(lumoractl({"at", wrong}).status, 2) << wrong;
    EXPECT_EQ(lumoractl({"at"}).status, 2);
    EXPECT_THAT(lumoractl({"at", "2099-01-01"}).errors, HasSubstr("2099-01-01 00:00:00 is still to come"));
    EXPECT_EQ(lumoractl({"at", "99"}).errors, "lumoractl: no change of revision 99 is recorded\n");
}

TEST_F(PastCommands, RestoreTheSettingsOfAnyMomentOfAnyHistory) {
    std::mt19937 random(7);
    std::vector<std::string> keys;
    for (const Setting& setting : knownSettings())
        if (setting.byDefault.boolean() || setting.byDefault.integer()) keys.push_back(setting.key);
    Dictionary set;
    std::vector<Dictionary> then{set};
    for (int i = 0; i < 55; ++i) {
        const std::string& key = keys[random() % keys.size()];
        const Value* was = set.find(key);
        const Value now =
            findSetting(key)->byDefault.boolean() ? Value(random() % 2 == 0) : Value(static_cast<int>(random() % 9));
        if (was && *was == now) continue;
        changedThen(key, was ? std::optional(*was) : std::nullopt, now);
        set.set(key, now);
        then.push_back(set);
    }
    const std::string history = readFile(file);
    std::filesystem::remove(file);
    start();
    for (const auto& [key, value] : set)
        ASSERT_EQ(change(key, value), "");
    ASSERT_EQ(change("kAutoUnlockPasscode", "24680"), "");
    ASSERT_EQ(change("com.example.key", 1), "");
    tweak->kill();
    tweak.reset();
    writeFile(file, history);
    start();
    for (int i = 0; i < 12; ++i) {
        const std::size_t place = random() % then.size();
        const std::string time = timestampOf(anHourAgo + std::chrono::minutes(place) + std::chrono::seconds(30));
        const Value before = askForSettings();
        const Finished told = lumoractl({"restore", "--dry-run", time});
        EXPECT_EQ(told.status, 0) << told.errors;
        EXPECT_EQ(askForSettings(), before);
        EXPECT_EQ(lumoractl({"restore", time}).output, told.output);
        const Value after = askForSettings();
        for (const Setting& setting : knownSettings()) {
            const Value* value = then[place].find(setting.key);
            const Value wanted = setting.secure ? before[setting.key] : value ? *value : setting.byDefault;
            EXPECT_EQ(after[setting.key], wanted) << setting.key << " at " << place;
        }
        EXPECT_EQ(after["com.example.key"], Value(1));
        EXPECT_EQ(lumoractl({"restore", time}).output, "") << "nothing differs any more";
    }
}

TEST_F(PastCommands, ResetSettingsToTheirDefaults) {
    start();
    for (const char* key : {"kSleepTime", "kAppsPerRow", "kAppsPerRowLandscape"})
        ASSERT_EQ(change(key, 5), "");
    ASSERT_EQ(change("kAutoUnlockPasscode", "24680"), "");
    ASSERT_EQ(change("com.example.key", 5), "");
    EXPECT_EQ(lumoractl({"reset", "kSleepTime"}).output, "kSleepTime: 5 → 10\n");
    EXPECT_EQ(lumoractl({"reset", "kSleepTime"}).output, "") << "it has it already";
    expectFailure(lumoractl({"reset", "com.example.key"}), 1, "the tweak tells no default of com.example.key");
    expectFailure(lumoractl({"reset", "kAutoUnlockPasscode"}), 1,
                  "kAutoUnlockPasscode is a secret, and stays as it is");
    EXPECT_EQ(lumoractl({"reset", "--all"}).output, "kAppsPerRow: 5 → 4\nkAppsPerRowLandscape: 5 → 6\n");
    EXPECT_EQ(askForSettings()["kAutoUnlockPasscode"], Value("24680"));
    EXPECT_EQ(lumoractl({"reset"}).status, 2);
    EXPECT_EQ(lumoractl({"reset", "--all", "kSleepTime"}).status, 2);
}

TEST_F(PastCommands, CountChangesAsMadeWhoseAnswersComeTooLate) {
    const LateTweak slow;
    const Finished reset = lumoractl({"reset", "--all"});
    EXPECT_EQ(reset.status, 0) << reset.errors;
    EXPECT_EQ(reset.output, "kSleepTime: 30 → 10\nkAppsPerRow: 3 → 4\n");
    const std::string profile = sandbox.path() / "profile.json";
    writeFile(profile, R"({"lumora": 1, "settings": {"kSleepTime": 40}})");
    const Finished imported = lumoractl({"import", profile});
    EXPECT_EQ(imported.status, 0) << imported.errors;
    EXPECT_THAT(imported.output, HasSubstr("10 → 40\n"));
}

TEST_F(PastCommands, ResetNoMoreOnceTheTweakIsGone) {
    const auto answer = [](int value) {
        return NSKeyedArchiver::archivedDataWithRootObject(
            Dictionary{{"kSleepTime", value}, {"kAppsPerRow", value}, {"kAppIconSize", value}});
    };
    const ServedPort defaults("com.nevo.lumora/defaults", [&](auto&, auto, auto&) { return answer(50); });
    auto requests = std::make_unique<ServedPort>("com.nevo.lumora/requestTweakSettings",
                                                 [&](auto&, auto, auto&) { return answer(5); });
    const ServedPort updates("com.nevo.lumora/updateSettings",
                             [&](auto&, auto, auto&) -> std::optional<platform::Data> {
                                 if (!requests)
                                     return NSKeyedArchiver::archivedDataWithRootObject(Dictionary{{"error", "going"}});
                                 requests.reset();
                                 return std::nullopt;
                             });
    const Finished reset = lumoractl({"reset", "--all"});
    EXPECT_EQ(reset.status, 1);
    EXPECT_EQ(reset.output, "kSleepTime: 5 → 50\n");
    EXPECT_THAT(reset.errors, MatchesRegex("lumoractl: no tweak answers on [^\n]*\n"));
}

TEST_F(PastCommands, TellThatTheTweakOffersNone) {
    start({"--no-history"});
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"history"}, {"history", "--clear"}, {"undo"}, {"at", "2h"}, {"restore", "2h"}})
        expectFailure(lumoractl(words), 3, "the tweak offers no history");
    EXPECT_EQ(lumoractl({"reset", "--all"}).status, 0);
    tweak->kill();
    tweak.reset();
    expectFailure(lumoractl({"history"}), 1,
                  "no tweak answers on " + (sandbox.ports() / "com.nevo.lumora/history").string() +
                      ": is lumora-tweak running?");
}

TEST_F(PastCommands, TellThatAnotherMakeOfTweakHasNoneOfTheMessages) {
    const auto answer = [](auto&, auto, auto&) { return NSKeyedArchiver::archivedDataWithRootObject(Dictionary{}); };
    const ServedPort requests("com.nevo.lumora/requestTweakSettings", answer);
    const ServedPort updates("com.nevo.lumora/updateSettings", answer);
    expectFailure(lumoractl({"history"}), 3, "the tweak offers no history");
    expectFailure(lumoractl({"reset", "--all"}), 3, "the tweak does not tell its defaults");
    const ServedPort history("com.nevo.lumora/history", answer);
    expectFailure(lumoractl({"history"}), 1, "the tweak refuses to tell its history");
}

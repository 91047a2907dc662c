#include "tests/tweak/Messages.h"
#include "tests/tweak/Program.h"
#include "tests/tweak/Sandbox.h"

#include "history/Timeline.h"
#include "tweak/Defaults.h"

#include "platform/foundation/PropertyList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include <sys/stat.h>

using namespace lumora;
using namespace tests;
using platform::Dictionary;
using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;
using platform::Value;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

/// lumora-tweak, asked for its history.
class TweakHistory : public testing::Test {
  protected:
    [[nodiscard]] std::unique_ptr<RunningTweak> start(std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {LUMORA_TWEAK, "--settings", sandbox.settings().string()});
        return std::make_unique<RunningTweak>(std::move(options));
    }
    static std::optional<platform::Data> replyTo(const char* message, const Value& body) {
        std::optional<platform::Data> reply;
        const auto archived =
            body.isNil() ? std::nullopt : NSKeyedArchiver::archivedDataWithRootObject(messageWith(body));
        send(message, archived, reply);
        return reply;
    }
    static Value ask(const char* message, const Value& body = nullptr) {
        const auto reply = replyTo(message, body);
        return reply ? NSKeyedUnarchiver::unarchiveObjectWithData(*reply) : Value();
    }
    static std::vector<ChangeRecord> records(std::int64_t since = 0) {
        std::vector<ChangeRecord> records;
        const Value answer = ask(kHistory, Dictionary{{"since", since}});
        EXPECT_TRUE(answer["records"].list());
        if (const auto* list = answer["records"].list())
            for (const Value& one : *list)
                records.push_back(recordOf(one).value());
        return records;
    }

    Sandbox sandbox;
    std::filesystem::path file = sandbox.path() / "settings.history";
};

} // namespace

TEST_F(TweakHistory, TellsWhatHasChangedSinceARevision) {
    const auto tweak = start();
    ASSERT_EQ(change("kSleepTime", 30), "");
    ASSERT_EQ(change("kSleepTime", 30), "") << "which changes nothing";
    ASSERT_EQ(change("com.example.key", platform::List{1, 1.0}), "");
    ASSERT_EQ(change("kTweakEnabled", "no"), "kTweakEnabled takes true or false, not a text");
    const auto all = records();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].key, "kSleepTime");
    EXPECT_EQ(all[0].before, std::nullopt) << "it was not set";
    EXPECT_EQ(all[0].after, Value(30));
    EXPECT_EQ(all[1].after, Value(platform::List{1, 1.0}));
    EXPECT_EQ(records(all[0].revision).size(), 1U);
    EXPECT_EQ(ask(kHistory, Dictionary{{"since", 0}})["more"], Value(false));
    EXPECT_EQ(ask(kHistory, Dictionary{{"since", 0}})["revision"], Value(all[1].revision));
}

TEST_F(TweakHistory, TellsOfTheDeepestValueThatIsTaken) {
    const auto tweak = start();
    Value deep = 1;
    Value taken;
    // No change can carry a deeper one.
    for (auto level = platform::PropertyListLimits::depth - 2;
         level > 0 && change("com.example.deep", platform::List{deep}).empty(); --level)
        taken = deep = platform::List{deep};
    ASSERT_FALSE(taken.isNil());
    const Value answer =
        ask(kFollowSettings, Dictionary{{kPortEntry, "followers/" + std::to_string(::getpid()) + "-1"}});
    EXPECT_EQ(answer[kSettingsEntry]["com.example.deep"], taken);
    const auto all = records();
    ASSERT_FALSE(all.empty());
    EXPECT_EQ(all.back().after, taken);
}

TEST_F(TweakHistory, RefusesWhatIsNoQuestion) {
    const auto tweak = start();
    for (const Value& wrong : {Value(), Value(1), Value(Dictionary{}), Value(Dictionary{{"since", "0"}})})
        EXPECT_EQ(replyTo(kHistory, wrong), std::nullopt);
    EXPECT_THAT(tweak->errors(), HasSubstr("history refused: the message is not of the shape"));
}

TEST_F(TweakHistory, CountsOnAfterANewStart) {
    auto tweak = start();
    ASSERT_EQ(change("kSleepTime", 30), "");
    tweak->kill();
    tweak = start();
    ASSERT_EQ(change("kTweakEnabled", false), "");
    const auto all = records();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[1].revision, 2);
}

TEST_F(TweakHistory, ForgetsEverythingWhenItIsCleared) {
    const auto tweak = start();
    ASSERT_EQ(change("kSleepTime", 30), "");
    EXPECT_EQ(ask(kHistory, Dictionary{{"since", 0}, {"clear", true}})["records"], Value(platform::List{}));
    EXPECT_EQ(readFile(file), "");
    EXPECT_EQ(askForSettings()["kSleepTime"], Value(30));
}

TEST_F(TweakHistory, TellsEveryDefaultButThoseOfPasscodes) {
    const auto tweak = start({"--omit", "kTweakEnabled"});
    ASSERT_EQ(change("kSleepTime", 30), "");
    const Value defaults = ask(kDefaults);
    for (const Setting& setting : knownSettings()) {
        const bool isTold = !setting.secure && setting.key != "kTweakEnabled";
        EXPECT_EQ(defaults[setting.key], isTold ? setting.byDefault : Value()) << setting.key;
    }
}

TEST_F(TweakHistory, LeavesOutOmittedKeys) {
    const auto tweak = start({"--omit", "kSleepTime"});
    ASSERT_EQ(change("kSleepTime", 30), "");
    ASSERT_EQ(change("kTweakEnabled", false), "");
    ASSERT_EQ(records().size(), 1U);
    EXPECT_EQ(records()[0].key, "kTweakEnabled");
}

TEST_F(TweakHistory, IsNeitherKeptNorOfferedIfThatIsAskedFor) {
    const auto tweak = start({"--no-history"});
    ASSERT_EQ(change("kSleepTime", 30), "");
    EXPECT_FALSE(std::filesystem::exists(file));
    std::optional<platform::Data> reply;
    EXPECT_EQ(send(kHistory, std::nullopt, reply), platform::kCFMessagePortIsInvalid);
    EXPECT_TRUE(ask(kDefaults).dictionary());
}

TEST_F(TweakHistory, CostsNothingButItselfWhenItsFileCannotBeUsed) {
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    const auto tweak = start();
    EXPECT_EQ(change("kSleepTime", 30), "");
    EXPECT_EQ(askForSettings()["kSleepTime"], Value(30));
    EXPECT_EQ(tweak->errors(), "lumora-tweak: cannot keep a history in " + file.string() + ": it is no regular file\n");
}

TEST_F(TweakHistory, CostsNothingButItselfWhenItsFileIsForeign) {
    writeFile(file, std::string("no\nhistory\n\0\xFF", 13));
    const auto tweak = start();
    EXPECT_EQ(change("kSleepTime", 30), "");
    EXPECT_EQ(records().size(), 1U);
    EXPECT_EQ(tweak->errors(), "lumora-tweak: " + file.string() +
                                   " holds no history (lines that are no records: 3): it is set aside as "
                                   "settings.history.unreadable\n");
}

TEST_F(TweakHistory, TellsNoPasscodeToAnybody) {
    const auto tweak = start({"--verbose"});
    for (const Setting& setting : knownSettings())
        for (const char* passcode : {"zq24680xy", "zq13579xy"})
            ASSERT_EQ(setting.secure ? change(setting.key, passcode) : "", "");
    const auto reply = replyTo(kHistory, Dictionary{{"since", 0}});
    ASSERT_TRUE(reply);
    EXPECT_EQ(records().size(), 3U);
    for (const std::string& said : {std::string(reply->begin(), reply->end()), readFile(file), tweak->errors()}) {
        EXPECT_THAT(said, HasSubstr("kAutoUnlockPasscode"));
        EXPECT_THAT(said, Not(HasSubstr("24680")));
        EXPECT_THAT(said, Not(HasSubstr("13579")));
    }
}

TEST_F(TweakHistory, TellsNoTextOfAPlugInHoweverDeepItStands) {
    const auto tweak = start({"--verbose"});
    ASSERT_EQ(change("com.example.pins", platform::List{Dictionary{{"pin", "zq24680xy"}}}), "");
    ASSERT_EQ(change("com.example.pins", platform::List{1}), "");
    const auto all = records();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].withheld, Withheld::secure);
    EXPECT_THAT(readFile(file) + tweak->errors(), Not(HasSubstr("24680")));
}

TEST_F(TweakHistory, RecordsAValueThatIsNoNumberOnce) {
    auto tweak = start();
    for (int i = 0; i < 2; ++i)
        ASSERT_EQ(change("com.example.none", std::nan("")), "");
    EXPECT_EQ(records().back().revision, 1);
    tweak.reset();
    tweak = start();
    EXPECT_EQ(records().back().revision, 1);
}

TEST_F(TweakHistory, RecordsWhatHasBecomeOfALostSettingsFile) {
    auto tweak = start();
    ASSERT_EQ(change("kSleepTime", 30), "");
    tweak->kill();
    std::filesystem::remove(sandbox.settings());
    tweak = start();
    const auto all = records();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[1].before, Value(30));
    EXPECT_EQ(all[1].after, std::nullopt);
}

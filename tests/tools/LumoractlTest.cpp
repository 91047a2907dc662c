#include "tests/support/RawSocket.h"
#include "tests/support/ServedPort.h"
#include "tests/tools/Command.h"
#include "tests/tweak/Sandbox.h"

#include "tweak/Defaults.h"

#include "platform/foundation/NSKeyedArchiver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using namespace lumora;
using namespace tests;
using platform::Data;
using platform::Dictionary;
using platform::NSKeyedArchiver;
using platform::Value;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

/// lumoractl on its own: no tweak runs.
class Lumoractl : public testing::Test {
  protected:
    Sandbox sandbox;
};

/// lumoractl beside a real tweak.
class LumoractlWithTweak : public Lumoractl {
  protected:
    RunningTweak tweak{{LUMORA_TWEAK, "--settings", sandbox.settings(), "--omit", "kLSDateOffset"}};
};

/// A tweak of another make, in this process: answers both messages with the same body.
class StrangeTweak {
  public:
    explicit StrangeTweak(std::optional<Data> answer) : answer_(std::move(answer)) {}

  private:
    std::optional<Data> answer_;
    ServedPort requests_{"com.nevo.lumora/requestTweakSettings", [this](auto&, auto, auto&) { return answer_; }};
    ServedPort updates_{"com.nevo.lumora/updateSettings", [this](auto&, auto, auto&) { return answer_; }};
};

/// A socket where the tweak's port should be, on which nobody ever answers, or which hangs up on everyone.
class RawPort {
  public:
    enum class Manner { silent, hangingUp };

    RawPort(const Sandbox& sandbox, const std::string& message, Manner manner)
        : listener_(RawSocket::listeningAt(sandbox.ports() / "com.nevo.lumora" / message)) {
        for (const auto& made : {sandbox.ports(), sandbox.ports() / "com.nevo.lumora"})
            std::filesystem::permissions(made, std::filesystem::perms::owner_all);
        if (manner == Manner::hangingUp)
            thread_ = std::thread([this] {
                const platform::FileDescriptor client(accept(listener_.number(), nullptr, nullptr));
                char byte = 0;
                while (client && recv(client.number(), &byte, 1, MSG_PEEK) < 0) {
                }
                ::shutdown(client.number(), SHUT_RDWR);
            });
    }
    RawPort(const RawPort&) = delete;
    RawPort& operator=(const RawPort&) = delete;
    ~RawPort() {
        ::shutdown(listener_.number(), SHUT_RDWR);
        if (thread_.joinable()) thread_.join();
    }

  private:
    RawSocket listener_;
    std::thread thread_;
};

} // namespace

TEST_F(LumoractlWithTweak, ListsAllSettingsAsOneObject) {
    const Finished list = lumoractl({"list"});
    EXPECT_EQ(list.status, 0) << list.errors;
    const Value settings = parsed(list.output);
    ASSERT_TRUE(settings.dictionary());
    EXPECT_EQ(settings.dictionary()->size(), knownSettings().size() - 1);
    EXPECT_EQ(settings["kAppIconSize"], Value(70.0)) << "a real stays a real";
    EXPECT_EQ(settings["kSleepTime"], Value(10));
    EXPECT_THAT(list.output, testing::StartsWith("{\n  \"kTweakEnabled\": true,\n  \"kSleepTime\": 10,\n"));
}

TEST_F(LumoractlWithTweak, ListsSecureValuesAsDotsUnlessAskedForSecrets) {
    for (const Setting& setting : knownSettings()) {
        if (setting.secure) {
            EXPECT_EQ(lumoractl({"set", setting.key, "\"24680\""}).status, 0) << setting.key;
        }
    }
    const Finished dots = lumoractl({"list"});
    EXPECT_THAT(dots.output, Not(HasSubstr("24680")));
    for (const Setting& setting : knownSettings())
        EXPECT_EQ(parsed(dots.output)[setting.key] == Value("•••"), setting.secure) << setting.key;
    EXPECT_EQ(parsed(lumoractl({"list", "--secrets"}).output)["kAutoUnlockPasscode"], Value("24680"));
}

TEST_F(LumoractlWithTweak, ListsAnEmptyPasscodeAsEmpty) {
    EXPECT_EQ(lumoractl({"set", "kAutoUnlockPasscode", "\"\""}).status, 0);
    EXPECT_EQ(parsed(lumoractl({"list"}).output)["kAutoUnlockPasscode"], Value(""));
}

TEST_F(LumoractlWithTweak, GetsWhatItSet) {
    for (const auto& [key, json] : std::vector<std::pair<std::string, std::string>>{
             {"kSleepTime", "3600"},
             {"kTweakEnabled", "false"},
             {"kLSPButtonDiam", "-15.0"},
             {"kLSPButtonSpacingH", "2"},
             {"kLSDateSubtitle", "\"Grüße\""},
             {"kLSDateFontName", "\"\""},
             {"com.example.date", "{\n  \"$date\": \"2025-01-31T08:00:00Z\"\n}"},
             {"com.example.list", "[\n  1,\n  1.0,\n  true\n]"}}) {
        const Finished set = lumoractl({"set", key, json});
        EXPECT_EQ(set.status, 0) << set.errors;
        EXPECT_EQ(set.output, "");
        const Finished get = lumoractl({"get", key});
        EXPECT_EQ(get.status, 0) << get.errors;
        EXPECT_EQ(get.output, json + "\n");
    }
}

TEST_F(LumoractlWithTweak, SetsAValueFromStandardInput) {
    EXPECT_EQ(lumoractl({"set", "kAutoUnlockPasscode", "-"}, "\"13579\"\n").status, 0);
    EXPECT_EQ(lumoractl({"get", "--secrets", "kAutoUnlockPasscode"}).output, "\"13579\"\n");
}

TEST_F(LumoractlWithTweak, GetsASecretOnlyWhenAskedForSecrets) {
    const Finished refused = lumoractl({"get", "kAutoUnlockPasscode"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.output, "");
    EXPECT_EQ(refused.errors, "lumoractl: kAutoUnlockPasscode is a secret: ask for it with --secrets\n");
}

TEST_F(LumoractlWithTweak, FailsNamingAKeyThatIsNotSet) {
    for (const char* key : {"kLSDateOffset", "com.example.unheard-of"}) {
        const Finished get = lumoractl({"get", key});
        EXPECT_EQ(get.status, 1);
        EXPECT_EQ(get.output, "");
        EXPECT_EQ(get.errors, "lumoractl: " + std::string(key) + " is not set\n");
    }
}

TEST_F(LumoractlWithTweak, ReportsWhyTheTweakRefuses) {
    const Finished set = lumoractl({"set", "kTweakEnabled", "1"});
    EXPECT_EQ(set.status, 1);
    EXPECT_EQ(set.errors, "lumoractl: kTweakEnabled takes true or false, not an integer\n");
    EXPECT_EQ(lumoractl({"get", "kTweakEnabled"}).output, "true\n");
    EXPECT_EQ(lumoractl({"set", "kTweakEnabled", "null"}).errors, "lumoractl: \"kTweakEnabled\" cannot be nil\n");
}

TEST_F(LumoractlWithTweak, RefusesAValueThatIsNoJson) {
    const Finished set = lumoractl({"set", "kLSDateSubtitle", "EEEE"});
    EXPECT_EQ(set.status, 2);
    EXPECT_THAT(set.errors, HasSubstr("a text has quotes"));
    EXPECT_THAT(lumoractl({"set", "kTweakEnabled", "yes"}).errors, HasSubstr("kTweakEnabled takes true or false"));
}

TEST_F(LumoractlWithTweak, SendsANumberThatItsPageCannotSetWithAWarning) {
    const Finished beyond = lumoractl({"set", "kAppIconSize", "90.5"});
    EXPECT_EQ(beyond.status, 0);
    EXPECT_EQ(beyond.errors, "lumoractl: warning: the page sets kAppIconSize from 50 to 90\n");
    EXPECT_EQ(lumoractl({"get", "kAppIconSize"}).output, "90.5\n");
    EXPECT_EQ(lumoractl({"set", "kAppIconSize", "90"}).errors, "");
    EXPECT_EQ(lumoractl({"set", "kLSDateOffset", "-10"}).errors, "");
}

TEST_F(LumoractlWithTweak, WarnsOfAKeyThatIsNeitherLumorasNorLooksLikeAPlugIns) {
    const Finished mistyped = lumoractl({"set", "kSlepTime", "30"});
    EXPECT_EQ(mistyped.status, 0);
    EXPECT_EQ(mistyped.errors, "lumoractl: warning: Lumora has no setting kSlepTime\n");
    EXPECT_EQ(lumoractl({"set", "org.test.key", "60"}).errors, "");
    EXPECT_EQ(lumoractl({"set", "kLSDateOffset", "0"}).errors, "") << "of Lumora's own, and not set yet";
}

TEST_F(LumoractlWithTweak, RefusesAKeyThatIsNoUtf8) {
    const std::string before = lumoractl({"list"}).output;
    for (const auto& words : std::vector<std::vector<std::string>>{{"set", "org.test.\xFF", "1"}, {"get", "\xC3"}}) {
        const Finished refused = lumoractl(words);
        EXPECT_EQ(refused.status, 2);
        EXPECT_EQ(refused.output, "");
        EXPECT_THAT(refused.errors, HasSubstr("KEY: a key is UTF-8"));
    }
    EXPECT_EQ(lumoractl({"list"}).output, before);
}

TEST_F(LumoractlWithTweak, WorksInPipes) {
    const Finished piped = shell("\"$0\" list | \"$0\" archive | \"$0\" unarchive -");
    EXPECT_EQ(piped.status, 0) << piped.errors;
    EXPECT_EQ(piped.output, lumoractl({"list"}).output);
}

TEST_F(Lumoractl, SaysThatNoTweakAnswers) {
    const std::string ports = sandbox.ports() / "com.nevo.lumora";
    for (const auto& words : std::vector<std::vector<std::string>>{{"list"}, {"get", "kSleepTime"}}) {
        const Finished failed = lumoractl(words);
        EXPECT_EQ(failed.status, 1);
        EXPECT_EQ(failed.output, "");
        EXPECT_EQ(failed.errors,
                  "lumoractl: no tweak answers on " + ports + "/requestTweakSettings: is lumora-tweak running?\n");
    }
    const Finished set = lumoractl({"set", "kSleepTime", "30"});
    EXPECT_EQ(set.status, 1);
    EXPECT_EQ(set.errors, "lumoractl: no tweak answers on " + ports + "/updateSettings: is lumora-tweak running?\n");
}

TEST_F(Lumoractl, TellsASilentTweakFromOneThatHangsUp) {
    {
        const RawPort silent(sandbox, "requestTweakSettings", RawPort::Manner::silent);
        const Finished list = lumoractl({"list"});
        EXPECT_EQ(list.status, 1);
        EXPECT_THAT(list.errors, HasSubstr("did not answer within 1 second"));
    }
    const RawPort hangingUp(sandbox, "updateSettings", RawPort::Manner::hangingUp);
    const Finished set = lumoractl({"set", "kSleepTime", "30"});
    EXPECT_EQ(set.status, 1);
    EXPECT_THAT(set.errors, HasSubstr("went away before it had answered"));
}

TEST_F(Lumoractl, SaysWhenAnAnswerHoldsNoSettings) {
    const auto errorFor = [](const std::optional<Data>& answer) {
        const StrangeTweak tweak(answer);
        const Finished list = lumoractl({"list"});
        EXPECT_EQ(list.status, 1);
        EXPECT_EQ(list.output, "");
        return list.errors;
    };
    EXPECT_THAT(errorFor(std::nullopt), HasSubstr("answered without any settings"));
    EXPECT_THAT(errorFor(Data{'n', 'o'}), HasSubstr("is no keyed archive"));
    EXPECT_THAT(errorFor(NSKeyedArchiver::archivedDataWithRootObject("text")), HasSubstr("is no dictionary"));
}

TEST_F(Lumoractl, TakesATweakThatGivesNoReasonsAtItsWord) {
    for (const auto& answer : {std::optional(Data{'o', 'k'}), NSKeyedArchiver::archivedDataWithRootObject(true)}) {
        const StrangeTweak tweak(answer);
        EXPECT_EQ(lumoractl({"set", "kSleepTime", "30"}).status, 0);
    }
}

TEST_F(Lumoractl, ShowsNothingThatATerminalObeys) {
    const StrangeTweak tweak(
        NSKeyedArchiver::archivedDataWithRootObject(Dictionary{{"error", "\u202Eno\x1B[2J\u009B\u2028"}}));
    const Finished refused = lumoractl({"set", "kSleepTime", "30"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.errors, "lumoractl: \uFFFDno\uFFFD[2J\uFFFD\uFFFD\n");
    EXPECT_EQ(lumoractl({"get", "error"}).output, "\"\\u202eno\\u001b[2J\\u009b\\u2028\"\n");
}

TEST_F(Lumoractl, TellsWrongUseFromFailure) {
    for (const auto& words : std::vector<std::vector<std::string>>{{},
                                                                   {"unknown"},
                                                                   {"list", "stray"},
                                                                   {"get"},
                                                                   {"get", "a", "b"},
                                                                   {"set"},
                                                                   {"set", "kSleepTime"},
                                                                   {"set", "kSleepTime", "1", "2"},
                                                                   {"set", "kSleepTime", "{"},
                                                                   {"list", "--no-such-option"},
                                                                   {"archive", "a", "b"},
                                                                   {"archive", "-o"},
                                                                   {"watch", "kSleepTime"},
                                                                   {"list", "list"}}) {
        const Finished wrong = lumoractl(words);
        EXPECT_EQ(wrong.status, 2) << testing::PrintToString(words);
        EXPECT_EQ(wrong.output, "") << testing::PrintToString(words);
        EXPECT_NE(wrong.errors, "") << testing::PrintToString(words);
    }
}

TEST_F(Lumoractl, NamesAWordThatIsNoCommand) {
    EXPECT_EQ(lumoractl({"frob"}).errors, "lumoractl: there is no command \"frob\": see lumoractl --help\n");
    EXPECT_EQ(lumoractl({"lists", "-x"}).errors, "lumoractl: there is no command \"lists\": see lumoractl --help\n");
    EXPECT_THAT(lumoractl({}).errors, HasSubstr("A subcommand is required"));
}

TEST_F(Lumoractl, TellsWhatIsWrongWithThePortsFolder) {
    for (const auto& [folder, why] : std::vector<std::pair<std::string, std::string>>{
             {"ports", "is relative: each program looks for it where that program was started"},
             {sandbox.path() / std::string(100, 'x'), "is too long for the path of a socket"},
             {"/dev/null", "is not a folder of this user alone"}}) {
        setenv("LUMORA_PORTS", folder.c_str(), 1);
        EXPECT_EQ(lumoractl({"list"}).errors, "lumoractl: the ports folder " + folder + " " + why + "\n");
    }
}

TEST_F(Lumoractl, HelpsEverywhere) {
    for (const auto& words : std::vector<std::vector<std::string>>{{"--help"},
                                                                   {"-h"},
                                                                   {"list", "-h"},
                                                                   {"list", "--help"},
                                                                   {"get", "--help"},
                                                                   {"set", "--help"},
                                                                   {"watch", "--help"},
                                                                   {"archive", "--help"},
                                                                   {"unarchive", "--help"}}) {
        const Finished help = lumoractl(words);
        EXPECT_EQ(help.status, 0);
        EXPECT_THAT(help.output,
                    AllOf(HasSubstr("Usage: lumoractl"), HasSubstr("Exit status: 0 done, 1 failed, 2 wrong use.\n")));
        EXPECT_EQ(help.errors, "");
    }
    const Finished version = lumoractl({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.output, testing::MatchesRegex("lumoractl [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

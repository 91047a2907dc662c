#include "tests/tweak/Messages.h"
#include "tests/tweak/Program.h"
#include "tests/tweak/Sandbox.h"

#include "json/Json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

using namespace lumora;
using namespace tests;
using platform::Value;
using testing::HasSubstr;

namespace {

/// lumoractl watch, in a sandbox.
class LumoractlWatch : public testing::Test {
  protected:
    [[nodiscard]] std::unique_ptr<RunningTweak> startTweak() const {
        return std::make_unique<RunningTweak>(std::vector<std::string>{LUMORA_TWEAK, "--settings", sandbox.settings()});
    }
    /// Changes a setting until the program prints it, for what changes before is no news to it, and reads up to there.
    static void awaitFirstChange(Program& watch) {
        int value = 1'000;
        ASSERT_TRUE(eventually([&] { return change("com.example.first", ++value).empty() && watch.hasOutput(); }));
        std::string line;
        while (line.find(std::to_string(value)) == std::string::npos)
            ASSERT_THAT(line = watch.readLine(), HasSubstr("com.example.first"));
    }
    static void expectEnd(Program& watch) {
        EXPECT_EQ(watch.wait(), 0);
        EXPECT_EQ(watch.errors(), "");
    }

    Sandbox sandbox;
};

} // namespace

TEST_F(LumoractlWatch, PrintsALineForEachChangeUntilItIsInterrupted) {
    const auto tweak = startTweak();
    const auto alone = tweak->threads();
    for (const int signal : {SIGINT, SIGTERM}) {
        Program watch({LUMORACTL, "watch"});
        awaitFirstChange(watch);
        ASSERT_EQ(change("kSleepTime", 30 + signal), "");
        EXPECT_EQ(watch.readLine(), "kSleepTime = " + std::to_string(30 + signal));
        ASSERT_EQ(change("com.example.list", platform::List{1, 1.0, "a\nb", signal}), "");
        EXPECT_EQ(watch.readLine(), "com.example.list = [1,1.0,\"a\\nb\"," + std::to_string(signal) + "]");
        ASSERT_EQ(change("com.example\n\x1B[2J", signal), "");
        EXPECT_EQ(watch.readLine(), "com.example\uFFFD\uFFFD[2J = " + std::to_string(signal));
        watch.signal(signal);
        EXPECT_EQ(watch.readRest(), "");
        expectEnd(watch);
        ASSERT_EQ(change("kSleepTime", 29), "");
        EXPECT_TRUE(eventually([&] { return tweak->threads() == alone; })) << "it is told no more";
    }
}

TEST_F(LumoractlWatch, ShowsPasscodesAsDotsAndTheirAbsenceAsItIs) {
    const auto tweak = startTweak();
    Program watch({LUMORACTL, "watch"});
    awaitFirstChange(watch);
    ASSERT_EQ(change("kAutoUnlockPasscode", "1"), "");
    EXPECT_EQ(watch.readLine(), "kAutoUnlockPasscode = \"•••\"");
    ASSERT_EQ(change("kAutoUnlockPasscode", "123456"), "");
    EXPECT_EQ(watch.readLine(), "kAutoUnlockPasscode = \"•••\"");
    ASSERT_EQ(change("kAutoUnlockPasscode", ""), "");
    EXPECT_EQ(watch.readLine(), "kAutoUnlockPasscode = \"\"");
}

TEST_F(LumoractlWatch, PrintsAnObjectForEachChangeWithJson) {
    const auto tweak = startTweak();
    Program watch({LUMORACTL, "watch", "--json"});
    awaitFirstChange(watch);
    ASSERT_EQ(change("kLSDateSubtitle", "Grüße"), "");
    const auto first = readJson(watch.readLine());
    ASSERT_TRUE(first) << first.error();
    EXPECT_EQ(first.value()["key"], Value("kLSDateSubtitle"));
    EXPECT_EQ(first.value()["value"], Value("Grüße"));
    const auto revision = first.value()["revision"].integer().value_or(0);
    EXPECT_GT(revision, 0);
    ASSERT_EQ(change("kAutoUnlockPasscode", "24680"), "");
    EXPECT_EQ(watch.readLine(),
              R"({"key":"kAutoUnlockPasscode","value":"•••","revision":)" + std::to_string(revision + 1) + "}");
}

TEST_F(LumoractlWatch, SaysOnceThatThereIsNoTweakAndGoesOnWhenOneComes) {
    Program watch({LUMORACTL, "watch"});
    const std::string missing = "lumoractl: no tweak answers on " +
                                (sandbox.ports() / "com.nevo.lumora/requestTweakSettings").string() +
                                ": is lumora-tweak running?\n";
    ASSERT_TRUE(eventually([&] { return watch.errors() == missing; })) << watch.errors();
    auto tweak = startTweak();
    awaitFirstChange(watch);
    ASSERT_EQ(change("kSleepTime", 44), "");
    EXPECT_EQ(watch.readLine(), "kSleepTime = 44");

    tweak->kill();
    ASSERT_TRUE(eventually([&] { return watch.errors() == missing + missing; })) << watch.errors();
    writeFile(sandbox.settings(), ""); // an empty file is set aside, so that the defaults count
    tweak = startTweak();
    std::string line;
    while (line != "kSleepTime = 10")
        ASSERT_NE(line = watch.readLine(), "") << "it prints what is different from before";
    EXPECT_EQ(watch.errors(), missing + missing);
}

TEST_F(LumoractlWatch, EndsWithoutFailureWhenNobodyReadsIt) {
    const auto tweak = startTweak();
    const Finished piped = run({"bash", "-c", R"("$0" watch | head -n 0; echo "${PIPESTATUS[0]}")", LUMORACTL});
    EXPECT_EQ(piped.output, "0\n") << "without a change that it could not write";
    EXPECT_EQ(piped.errors, "");
}

TEST_F(LumoractlWatch, SaysWhatItCannotWrite) {
    const auto tweak = startTweak();
    Program watch({"sh", "-c", "exec \"$0\" watch > /dev/full", LUMORACTL});
    int value = 0;
    EXPECT_TRUE(eventually([&] { return change("com.example.key", ++value).empty() && !watch.errors().empty(); }));
    EXPECT_EQ(watch.errors(), "lumoractl: cannot write standard output: No space left on device\n");
    EXPECT_EQ(watch.wait(), 1);
}

TEST_F(LumoractlWatch, EndsWhileItsReaderDoesNotRead) {
    const auto tweak = startTweak();
    Program watch({LUMORACTL, "watch"});
    awaitFirstChange(watch);
    const std::string large(100'000, 'x');
    ASSERT_EQ(change("com.example.first", large), "");
    ASSERT_EQ(change("com.example.second", large), "");
    EXPECT_EQ(watch.readLine(), "com.example.first = \"" + large + "\"");
    watch.signal(SIGTERM);
    expectEnd(watch);
}

TEST_F(LumoractlWatch, SaysWhatIsWrongWithThePortsFolder) {
    setenv("LUMORA_PORTS", "/dev/null", 1);
    Program watch({LUMORACTL, "watch"});
    EXPECT_TRUE(eventually([&] {
        return watch.errors() == "lumoractl: the ports folder /dev/null is not a folder of this user alone\n";
    })) << watch.errors();
}

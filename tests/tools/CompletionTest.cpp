#include "tests/tweak/Program.h"
#include "tests/tweak/Sandbox.h"

#include "tweak/Defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

using namespace lumora;
using namespace tests;
using testing::Contains;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

/// What bash offers for the last of these words.
std::vector<std::string> offers(std::vector<std::string> words) {
    std::vector<std::string> command{
        "bash", "-c",
        "lumoractl() { " LUMORACTL " \"$@\"; }; . " LUMORA_COMPLETIONS "/lumoractl.bash;"
        "COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _lumoractl; printf '%s\\n' \"${COMPREPLY[@]}\"",
        "bash", "lumoractl"};
    command.insert(command.end(), words.begin(), words.end());
    std::istringstream lines(run(std::move(command)).output);
    std::vector<std::string> offered;
    for (std::string line; std::getline(lines, line);)
        if (!line.empty()) offered.push_back(line);
    return offered;
}

} // namespace

TEST(BashCompletion, OffersCommandsAndTheirOptions) {
    const Sandbox sandbox;
    EXPECT_THAT(offers({""}), UnorderedElementsAre("list", "get", "set", "watch", "archive", "unarchive", "plugins",
                                                   "plugin", "search", "export", "import", "diff", "history", "undo",
                                                   "at", "restore", "reset", "--help", "--version"));
    EXPECT_THAT(offers({"una"}), UnorderedElementsAre("unarchive"));
    EXPECT_THAT(offers({"list", "-"}), UnorderedElementsAre("--help", "--secrets"));
    EXPECT_THAT(offers({"watch", "-"}), UnorderedElementsAre("--help", "--json"));
    EXPECT_THAT(offers({"archive", "--o"}), UnorderedElementsAre("--output"));
    EXPECT_THAT(offers({"plugins", "-"}), UnorderedElementsAre("--help", "--json", "--root", "--timeout"));
    EXPECT_THAT(offers({"search", "-"}), UnorderedElementsAre("--help", "--json", "--root", "--most"));
    EXPECT_THAT(offers({"export", "-"}),
                UnorderedElementsAre("--help", "--changed", "--all", "--name", "--output", "-o", "--root"));
    EXPECT_THAT(offers({"import", "--d"}), UnorderedElementsAre("--dry-run"));
    EXPECT_THAT(offers({"diff", "-"}), UnorderedElementsAre("--help", "--json", "--root"));
    EXPECT_THAT(offers({"history", "-"}), UnorderedElementsAre("--help", "--json", "--since", "--clear"));
    EXPECT_THAT(offers({"restore", "-"}), UnorderedElementsAre("--help", "--dry-run"));
    EXPECT_THAT(offers({"reset", "-"}), UnorderedElementsAre("--help", "--all"));
    EXPECT_THAT(offers({"list", ""}), IsEmpty());
}

TEST(BashCompletion, OffersTheKeysOfTheRunningTweak) {
    const Sandbox sandbox;
    const RunningTweak tweak({LUMORA_TWEAK, "--settings", sandbox.settings()});
    ASSERT_EQ(run({LUMORACTL, "set", "com.example.key", "[1, 2]"}).status, 0);
    const auto keys = offers({"get", ""});
    EXPECT_EQ(keys.size(), knownSettings().size() + 1);
    EXPECT_THAT(keys, Contains("com.example.key"));
    EXPECT_THAT(offers({"set", "kSleepT"}), UnorderedElementsAre("kSleepTime"));
    EXPECT_THAT(offers({"get", "kSleepTime", ""}), IsEmpty());
    EXPECT_THAT(offers({"history", "kSleepT"}), UnorderedElementsAre("kSleepTime"));
    EXPECT_THAT(offers({"reset", "kTweakEnabled", "kSleepT"}), UnorderedElementsAre("kSleepTime"));
    EXPECT_THAT(offers({"get", "--secrets", "kSleepT"}), UnorderedElementsAre("kSleepTime"));
}

TEST(BashCompletion, OffersBothValuesOfASwitchAndTheNumberThatIsSet) {
    const Sandbox sandbox;
    Program tweak({LUMORA_TWEAK, "--settings", sandbox.settings()});
    ASSERT_THAT(tweak.readLine(), testing::StartsWith("lumora-tweak ready"));
    EXPECT_THAT(offers({"set", "kTweakEnabled", ""}), UnorderedElementsAre("true", "false"));
    EXPECT_THAT(offers({"set", "kSleepTime", ""}), UnorderedElementsAre("10"));
    EXPECT_THAT(offers({"set", "kLSDateSubtitle", ""}), IsEmpty());
    EXPECT_THAT(offers({"set", "kSleepTime", "30", ""}), IsEmpty());
}

TEST(BashCompletion, OffersNoKeysWithoutATweak) {
    const Sandbox sandbox;
    EXPECT_THAT(offers({"get", ""}), IsEmpty());
}

TEST(BashCompletion, OffersFilesAndShippedProfilesToImport) {
    const Sandbox sandbox;
    writeFile(sandbox.path() / "mine.json", "1");
    EXPECT_THAT(offers({"import", "pl"}), Contains("plain"));
    EXPECT_THAT(offers({"diff", sandbox.path().string() + "/"}), Contains((sandbox.path() / "mine.json").string()));
    EXPECT_THAT(offers({"import", "plain", "la"}), IsEmpty());
}

TEST(BashCompletion, OffersTheStepsOfAPlugInAndTheirOptions) {
    EXPECT_THAT(offers({"plugin", ""}), UnorderedElementsAre("new", "check", "run"));
    EXPECT_THAT(offers({"plugin", "check", "--"}), UnorderedElementsAre("--help", "--json", "--strict", "--root"));
    EXPECT_THAT(offers({"plugin", "check", LUMORA_TEST_ROOT "/L"}), Contains(LUMORA_TEST_ROOT "/Library"));
    EXPECT_THAT(offers({"plugin", "new", ""}), IsEmpty());
}

TEST(BashCompletion, OffersFilesToArchive) {
    const Sandbox sandbox;
    writeFile(sandbox.path() / "in.json", "1");
    EXPECT_THAT(offers({"archive", sandbox.path().string() + "/"}), Contains((sandbox.path() / "in.json").string()));
}

#include "tests/lists/PluginFolder.h"
#include "tests/support/Waiting.h"
#include "tests/tweak/Program.h"

#include "lists/PluginDiscovery.h"
#include "platform/foundation/FileDescriptor.h"
#include "json/Json.h"

#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>

using namespace tests;
using lumora::discoverPlugins;
using platform::Dictionary;
using platform::Value;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

class PluginsCommand : public testing::Test {
  protected:
    static Finished list(std::vector<std::string> words) {
        words.insert(words.begin(), {LUMORACTL, "plugins"});
        return run(std::move(words));
    }
    /// What is told about one bundle of the folder.
    [[nodiscard]] Value told(const std::string& bundle, const std::string& timeout = "60") const {
        const Finished finished = list({"--json", "--timeout", timeout, (plugins.path() / bundle).string()});
        const auto read = lumora::readJson(finished.output);
        const bool isOne = read && read.value().list() && read.value().list()->size() == 1;
        EXPECT_TRUE(isOne) << finished.output;
        if (!isOne) return {};
        const Value entry = read.value().list()->front();
        EXPECT_EQ(finished.status, entry["skipped"].isNil() ? 0 : 1);
        return entry;
    }

    PluginFolder plugins;
};

TEST_F(PluginsCommand, ListsThePlugInFolderUnderTheRoot) {
    plugins.add("Radio.bundle", "PagePlugin");
    plugins.add("good-1.bundle", "TestPlugin");
    const Finished finished = list({"--root", plugins.root().string()});
    EXPECT_EQ(finished.status, 0) << finished.errors;
    EXPECT_THAT(finished.output, HasSubstr("Radio.bundle   Radio, test.same, for test.same, settings page\n"));
    EXPECT_THAT(
        finished.output,
        HasSubstr("good-1.bundle  good-1, test.good-1, for org.example.Application, no settings page: it has none\n"));
    EXPECT_EQ(finished.errors, "");
}

TEST_F(PluginsCommand, SaysThatAFolderIsEmpty) {
    const Finished finished = list({"--root", plugins.root().string()});
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.output, "");
    EXPECT_EQ(finished.errors, "lumoractl: nothing is in " + plugins.path().string() + "\n");
    EXPECT_EQ(list({plugins.path().string()}).errors, finished.errors);
}

TEST_F(PluginsCommand, TakesAFolderOfPlugInsWithOrWithoutASlash) {
    plugins.add("Radio.bundle", "PagePlugin");
    const Finished finished = list({plugins.path().string()});
    EXPECT_THAT(finished.output, StartsWith("Radio.bundle  Radio"));
    EXPECT_EQ(list({plugins.path().string() + "/"}).output, finished.output);
    EXPECT_EQ(list({(plugins.path() / "Radio.bundle/").string()}).output, finished.output) << "one bundle alone";
}

TEST_F(PluginsCommand, TellsEverythingAsJson) {
    plugins.add("Radio.bundle", "PagePlugin");
    EXPECT_EQ(told("Radio.bundle"), Value(Dictionary{{"entry", "Radio.bundle"},
                                                     {"name", "Radio"},
                                                     {"identifier", "test.same"},
                                                     {"appID", "test.same"},
                                                     {"settings", true},
                                                     {"secure", false},
                                                     {"draws", false}}));
    plugins.add("Foo.Bundle", "TestPlugin");
    const Finished both = list({"--json", plugins.path().string()});
    EXPECT_EQ(both.status, 1);
    const auto read = lumora::readJson(both.output);
    ASSERT_TRUE(read) << read.error();
    ASSERT_EQ(read.value().list()->size(), 2U);
}

TEST_F(PluginsCommand, SaysWhyOthersAreSkippedAndFails) {
    plugins.add("Radio.bundle", "PagePlugin");
    plugins.add("Foo.Bundle", "TestPlugin");
    plugins.write(plugins.path() / "README", "text");
    plugins.add("null-name-1.bundle", "TestPlugin");
    fs::resize_file(plugins.add("Torn.bundle", "TestPlugin") / "Code", 5000);
    const Finished finished = list({plugins.path().string()});
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.output,
                AllOf(HasSubstr("Radio.bundle        Radio, "),
                      HasSubstr("Foo.Bundle          skipped: not a bundle: its extension is not \"bundle\"\n"),
                      HasSubstr("README              skipped: not a bundle: "),
                      HasSubstr("null-name-1.bundle  skipped: its plug-in object gives no name\n"),
                      HasSubstr("Torn.bundle         skipped: "), HasSubstr("cut short\n")));
}

TEST_F(PluginsCommand, SaysTheWholeReason) {
    std::string folder;
    for (int i = 0; i < 30; ++i)
        folder += "Grüße";
    fs::resize_file(plugins.add(folder + ".bundle", "TestPlugin") / "Code", 5000);
    const Value why = told(folder + ".bundle")["skipped"];
    EXPECT_THAT(std::string(*why.text()), AllOf(HasSubstr(folder + ".bundle/Code"), HasSubstr("it is cut short")));
}

TEST_F(PluginsCommand, SaysWhyAPageOfAnotherMakeIsNotUsed) {
    plugins.add("other-tag-1.bundle", "TestPlugin");
    const Value entry = told("other-tag-1.bundle");
    EXPECT_EQ(entry["settings"], Value(false));
    EXPECT_THAT(*entry["why"].text(), StartsWith("it was made with kit 0, another compiler"));
}

TEST_F(PluginsCommand, KnowsHowAPlugInEndsWhereTheEndsOfChildrenAreIgnored) {
    const std::string bundle = plugins.add("aborting-1.bundle", "TestPlugin").string();
    const Finished finished = run({"/usr/bin/env", "--ignore-signal=CHLD", LUMORACTL, "plugins", bundle});
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.output, HasSubstr("it crashes: Aborted"));
}

TEST_F(PluginsCommand, ReportsWhatAPlugInDoesToItsProcess) {
    const std::vector<std::array<std::string, 3>> behaviours{
        {"aborting", "60", "it crashes: Aborted"},
        {"throwing-at-load", "60", "it crashes: Aborted"},
        {"exiting", "60", "it ends the process, with exit status 0"},
        {"hanging", "0.2", "it hangs: no answer within 200 ms"},
        {"closing", "60", "it closes files that are not its own"},
        {"closing-hanging", "0.2", "it hangs: no answer within 200 ms"},
        {"scribbling", "60", "it writes into files that are not its own"},
    };
    for (const auto& [behaviour, timeout, why] : behaviours) {
        plugins.add(behaviour + "-1.bundle", "TestPlugin");
        EXPECT_EQ(told(behaviour + "-1.bundle", timeout)["skipped"], Value(why)) << behaviour;
    }
}

TEST_F(PluginsCommand, EndsWhatAPlugInLeftRunning) {
    plugins.add("forking-1.bundle", "TestPlugin");
    EXPECT_EQ(told("forking-1.bundle")["name"], Value("forking-1"));
    const platform::FileDescriptor file(::open(plugins.module("forking-1.bundle").c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_TRUE(eventually([&file] { return ::flock(file.number(), LOCK_EX | LOCK_NB) == 0; }))
        << "who is left holds the lock";
}

TEST_F(PluginsCommand, KeepsWhatAPlugInPrintsOutOfItsOwnOutput) {
    plugins.add("printing-1.bundle", "TestPlugin");
    EXPECT_EQ(told("printing-1.bundle")["prints"], Value("hello?[2J from a plug-in"));
    const Finished finished = list({plugins.path().string()});
    EXPECT_EQ(finished.status, 0) << "such a plug-in can be used all the same";
    EXPECT_THAT(finished.output, AllOf(HasSubstr("prints: hello?[2J from a plug-in\n"), Not(HasSubstr("\033"))));
}

TEST_F(PluginsCommand, UsesAPlugInThatAnswersAtGreatLengthAsSettingsDoesAndTellsTheBeginning) {
    plugins.add("endless-1.bundle", "TestPlugin");
    EXPECT_EQ(told("endless-1.bundle")["name"], Value(std::string(4096, 'x') + "…"));
    EXPECT_THAT(discoverPlugins(false), testing::SizeIs(1));
}

TEST_F(PluginsCommand, TakesATagThatIsNoTextAsSettingsDoes) {
    plugins.add("foreign-tag-1.bundle", "TestPlugin");
    const Value entry = told("foreign-tag-1.bundle");
    EXPECT_EQ(entry["name"], Value("foreign-tag-1"));
    EXPECT_THAT(*entry["why"].text(), StartsWith("it was made with caf\uFFFD and does not fit kit"));
    EXPECT_THAT(discoverPlugins(true), testing::IsEmpty());
    EXPECT_THAT(discoverPlugins(false), testing::SizeIs(1));
}

TEST_F(PluginsCommand, KnowsThePagesOfTheSettingsBundleAsSettingsDoes) {
    plugins.add("BundlePage.bundle", "PagePlugin");
    EXPECT_EQ(told("BundlePage.bundle")["settings"], Value(false)) << "without the bundle there is no such page";
    const fs::path bundles = plugins.root() / "Library/PreferenceBundles";
    fs::create_directories(bundles);
    fs::create_directory_symlink(fs::path(LUMORA_TEST_ROOT) / "Library/PreferenceBundles/Lumora.bundle",
                                 bundles / "Lumora.bundle");
    const Finished listed = list({"--root", plugins.root().string()});
    EXPECT_THAT(listed.output, HasSubstr("for test.same, settings page\n"));
}

TEST_F(PluginsCommand, ShowsNoCharacterThatTellsATerminalWhatToDo) {
    // A control character of eight bits, a turned writing direction, a line separator, and a tag beyond 16 bits.
    const std::string name = "A\x1B[2J\u009B\u202Etxt\u2028\u200B\U000E0041\u00E9\U0001F600\x7F-1";
    plugins.add(name + ".bundle", "TestPlugin");
    const std::string plain = "A\uFFFD[2J\uFFFD\uFFFDtxt\uFFFD\uFFFD\uFFFD\u00E9\U0001F600\uFFFD-1";
    EXPECT_EQ(list({plugins.path().string()}).output,
              plain + ".bundle  " + plain + ", test." + plain +
                  ", for org.example.Application, no settings page: it has none\n");
    EXPECT_THAT(list({"--json", plugins.path().string()}).output,
                HasSubstr(R"("A\u001b[2J\u009b\u202etxt\u2028\u200b\udb40\udc41)"
                          "\u00E9\U0001F600\\u007f-1\""));
    EXPECT_EQ(told(name + ".bundle")["name"], Value(name)) << "nothing is lost in JSON";
}

TEST_F(PluginsCommand, GoesOnAfterAPlugInThatCrashed) {
    plugins.addEach({"aborting-1", "good-1", "good-2"});
    const Finished finished = list({plugins.path().string()});
    EXPECT_EQ(finished.status, 1);
    EXPECT_THAT(finished.output, AllOf(HasSubstr("good-1, test.good-1"), HasSubstr("good-2, test.good-2")));
}

TEST_F(PluginsCommand, HasNothingToListWithoutAPlugInFolderButMissesOneThatWasNamed) {
    const Finished none = list({"--root", (plugins.root() / "elsewhere").string()});
    EXPECT_EQ(none.status, 0);
    EXPECT_EQ(none.output, "");
    EXPECT_EQ(none.errors, "lumoractl: there is no plug-in folder at " +
                               (plugins.root() / "elsewhere/Library/Nevo/Lumora/Plugins").string() + "\n");
    EXPECT_EQ(list({"--json", "--root", (plugins.root() / "elsewhere").string()}).output, "[]\n");
    const Finished missing = list({(plugins.root() / "elsewhere").string()});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.errors, AllOf(StartsWith("lumoractl: cannot read "), HasSubstr("No such file")));
    EXPECT_EQ(list({"--timeout", "0"}).status, 2);
}

} // namespace

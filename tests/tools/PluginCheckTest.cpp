// What `lumoractl plugin check` finds, each fault in a plug-in that has no other.

#include "tests/lists/PluginFolder.h"
#include "tests/support/KeptEnvironment.h"
#include "tests/tweak/Program.h"

#include "json/Json.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tests;
using platform::Value;
using testing::AnyOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

struct Finding {
    std::string check;
    std::string severity;
    std::string what;
};

std::string textOf(const Value& value) {
    return value.text() ? std::string(*value.text()) : std::string();
}

class PluginCheck : public testing::Test {
  protected:
    /// Wherever this is built, the folder that the modules are linked with is no home but where a test says so.
    PluginCheck() { ::setenv("HOME", plugins.root().c_str(), 1); }

    Finished check(const fs::path& bundle, std::vector<std::string> words = {}) const {
        words.insert(words.begin(), {LUMORACTL, "plugin", "check", "--root", plugins.root().string(), bundle.string()});
        return run(std::move(words));
    }
    /// All but what a build under /home makes of each plug-in.
    std::vector<Finding> findings(const fs::path& bundle) const {
        const Finished finished = check(bundle, {"--json"});
        const auto read = lumora::readJson(finished.output);
        EXPECT_TRUE(read) << finished.output << finished.errors;
        std::vector<Finding> found;
        if (!read) return found;
        bool toMend = false;
        const Value findings = read.value()["findings"];
        for (const Value& each : *findings.list()) {
            EXPECT_NE(textOf(each["why"]), "") << finished.output;
            EXPECT_NE(textOf(each["mend"]), "") << finished.output;
            toMend = toMend || textOf(each["severity"]) == "error";
            if (textOf(each["check"]) != "runpath")
                found.push_back({textOf(each["check"]), textOf(each["severity"]), textOf(each["what"])});
        }
        EXPECT_EQ(finished.status, toMend ? 1 : 0) << finished.output;
        return found;
    }
    /// The one finding about a plug-in that has the fault of that name.
    Finding theFinding(const std::string& fault, const std::string& module = "FaultyPage") const {
        const auto found = findings(plugins.add(fault + ".bundle", module));
        EXPECT_EQ(found.size(), 1U) << fault;
        return found.empty() ? Finding() : found.front();
    }
    void expect(const std::string& fault, const std::string& checkName, const std::string& what) const {
        const Finding found = theFinding(fault);
        EXPECT_EQ(found.check, checkName) << fault << ": " << found.what;
        EXPECT_THAT(found.what, HasSubstr(what)) << fault;
        EXPECT_EQ(found.severity, "error") << fault;
    }

    KeptEnvironment environment;
    PluginFolder plugins;
};

TEST_F(PluginCheck, FindsNothingInTheSamples) {
    int samples = 0;
    for (const fs::directory_entry& bundle :
         fs::directory_iterator(fs::path(LUMORA_TEST_ROOT) / "Library/Nevo/Lumora/Plugins")) {
        EXPECT_THAT(findings(bundle.path()), IsEmpty()) << bundle.path();
        ++samples;
    }
    EXPECT_GE(samples, 4);
    EXPECT_THAT(findings(plugins.add("good.bundle", "FaultyPage")), IsEmpty());
}

TEST_F(PluginCheck, FindsFaultsOfRows) {
    expect("keyless", "key", "Faulty, row 1 (\"Switch\"): has no identifier");
    expect("twice", "key-twice",
           "Faulty, row 2 (\"org.example.twice.switch\"): the identifier is that of Faulty, row 1");
    expect("options", "options", "2 titles and 1 values");
    expect("empty", "options", "there are no options");
    expect("slider", "slider", "Faulty, row 1 (\"org.example.slider.bright\"): from 1 to 0");
    expect("endless", "slider", "from 0 to inf");
    expect("link", "link", "there is no page class NoSuchPage");
    expect("button", "link", "the button has no action");
    expect("differing", "rows-differ", "row 1 (\"org.example.differing.switch\"): not the same");
    expect("growing", "rows-differ", "1 rows the first time, 2 the second");
}

TEST_F(PluginCheck, FindsPagesThatCannotBeMade) {
    expect("page", "page", "its settings page: it throws: no page today");
    expect("null", "page", "it has a null row");
    expect("crash", "page", "it crashes: Aborted");
    expect("leave", "page", "it ends the process, with exit status 0");
    expect("hang", "page", "it hangs: no answer within 2 s of processor time");
}

TEST_F(PluginCheck, MeasuresIconsInBothSizes) {
    const fs::path icons = fs::path(LUMORA_SOURCE) / "kit/template";
    const fs::path bundle = plugins.add("icon.bundle", "FaultyPage");
    const auto what = [&] {
        const auto found = findings(bundle);
        return found.size() == 1 && found.front().check == "icon" ? found.front().what : "";
    };
    EXPECT_THAT(what(), HasSubstr("the icon is missing"));
    fs::copy_file(icons / "icon.png", bundle / "icon.png");
    EXPECT_THAT(what(), HasSubstr("there is no \"@2x\" icon, of 58 × 58 pixels"));
    fs::copy_file(icons / "icon.png", bundle / "icon@2x.png");
    EXPECT_THAT(what(), HasSubstr("the icon has 29 × 29 pixels, and not 58 × 58"));
    fs::remove(bundle / "icon@2x.png");
    fs::copy_file(icons / "icon@2x.png", bundle / "icon@2x.png");
    EXPECT_THAT(findings(bundle), IsEmpty());
}

TEST_F(PluginCheck, FindsSettingsThatEndThePage) {
    const Finding found = theFinding("settings");
    EXPECT_EQ(found.check, "settings");
    EXPECT_THAT(found.what, StartsWith("with {\"org.example.settings.size\":"));
    EXPECT_THAT(found.what, EndsWith("it crashes: Aborted"));
    EXPECT_EQ(findings(plugins.path() / "settings.bundle").front().what, found.what) << "the same each time";
}

TEST_F(PluginCheck, FindsFaultsOfTexts) {
    expect("unstable", "texts", "name: \"Faulty\" at first, \"Another\" the ");
    expect("scribbling", "texts", "it writes into files that are not its own");
    expect("identifier", "identifier", "\"clock\" is not in reverse-domain form");
    plugins.add("same-1.bundle", "FaultyPage");
    expect("same-2", "identifier-taken", "\"org.example.same\" is that of same-1.bundle");
}

TEST_F(PluginCheck, WarnsOfWhatHarmsNobodyYet) {
    const Finding foreign = theFinding("foreign");
    EXPECT_EQ(foreign.check, "key-prefix");
    EXPECT_EQ(foreign.severity, "warning");
    EXPECT_EQ(foreign.what, "the key \"switch\" does not begin with org.example.foreign.");
    const Finding printing = theFinding("prints");
    EXPECT_EQ(printing.check, "prints");
    EXPECT_EQ(printing.severity, "warning");
    EXPECT_THAT(printing.what, HasSubstr("hello"));
    EXPECT_EQ(check(plugins.path() / "foreign.bundle").status, 0);
    EXPECT_EQ(check(plugins.path() / "foreign.bundle", {"--strict"}).status, 1);
}

TEST_F(PluginCheck, ReadsWhatTheLoaderReads) {
    const Finding exporting = theFinding("exporting", "FaultyExports");
    EXPECT_EQ(exporting.check, "exports");
    EXPECT_THAT(exporting.what, AnyOf("it exports more than its principal class: handy, _Z7handierIiET_v",
                                      "it exports more than its principal class: _Z7handierIiET_v, handy"));
    ::setenv("HOME", fs::path(LUMORA_BINARIES).parent_path().c_str(), 1);
    const Finished finished = check(plugins.add("good.bundle", "FaultyPage"));
    EXPECT_THAT(finished.output, StartsWith("warning: its RUNPATH names a home folder: "));
    EXPECT_THAT(finished.output, EndsWith("good.bundle: 1 warning\n"));
}

TEST_F(PluginCheck, FindsFaultsOfDrawings) {
    EXPECT_THAT(findings(plugins.add("draw.bundle", "FaultyPage")), IsEmpty());
    expect("drawThrows", "draw", "drawn at 320 × 260 points, dark, texts at 100 %, it throws");
    expect("drawCrashes", "draw", "drawn at 844 × 218 points, dark, texts at 100 %, it crashes: Aborted");
    expect("drawHangs", "draw", "it hangs: no answer within 2 s of processor time");
    expect("drawSlowly", "draw-time", " ms of the processor");
    expect("drawSleeps", "draw-time", " ms by the clock");
    expect("drawMuch", "draw-size", "it draws too many steps");
    expect("drawFaintly", "contrast", "dark, texts at 100 %, the text \"Faint\" has a contrast of 1.");
    expect("drawOnBlue", "contrast", "light, texts at 100 %, the text \"Ink on blue\" has a contrast of 1.");
    expect("drawUnwary", "draw-settings", "it crashes: Aborted");
    const Finding beyond = theFinding("drawBeyond");
    EXPECT_EQ(beyond.check, "outside");
    EXPECT_EQ(beyond.severity, "warning");
    EXPECT_THAT(beyond.what, HasSubstr("the text \"Below\" reaches 19 points beyond the card"));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // whose allocators tell nothing
    expect("drawLeaks", "leak", "900 drawings leave ");
#endif
}

TEST_F(PluginCheck, SaysWhatDiscoverySays) {
    expect("tag", "tag", "it was made with kit 1, gcc 1, libstdc++ abi 0 and does not fit kit ");
    EXPECT_EQ(theFinding("missing-1", "MissingLibrary").check, "library");
    EXPECT_EQ(findings(plugins.add("null-name-1.bundle", "TestPlugin")).front().what,
              "its plug-in object gives no name");
    const Finding aborting = findings(plugins.add("aborting-1.bundle", "TestPlugin")).front();
    EXPECT_EQ(aborting.check, "harm");
    EXPECT_EQ(aborting.what, "it crashes: Aborted");
    const fs::path bundle = plugins.add("none.bundle", "FaultyPage");
    fs::remove(bundle / "Code");
    EXPECT_THAT(findings(bundle).front().what, HasSubstr("it is missing"));
}

TEST_F(PluginCheck, SaysWhereThereIsNothingToJudge) {
    for (const fs::path& path : {plugins.path() / "none.bundle", plugins.path()}) {
        const Finished finished = check(path);
        EXPECT_EQ(finished.status, 2);
        EXPECT_EQ(finished.output, "");
        EXPECT_THAT(finished.errors, HasSubstr("is not a bundle"));
    }
}

TEST_F(PluginCheck, TellsPeopleWhatWhyAndHow) {
    const Finished finished = check(plugins.add("slider.bundle", "FaultyPage"));
    EXPECT_THAT(finished.output, HasSubstr("error: Faulty, row 1 (\"org.example.slider.bright\"): from 1 to 0\n"
                                           "    There is nothing between the bounds to choose.\n"
                                           "    Give the smaller bound first.\n"));
}

TEST(PluginNew, OverwritesNothing) {
    const TemporaryFolder folder("new");
    const fs::path made = folder.path() / "made";
    const std::vector<std::string> command{LUMORACTL, "plugin", "new", "Next_Bus2Go", "--folder", made.string()};
    EXPECT_EQ(run(command).status, 0);
    const std::string source = readFile(made / "Next_Bus2Go.cpp");
    EXPECT_THAT(source, HasSubstr("return \"Next Bus2 Go\";"));
    EXPECT_THAT(source, HasSubstr("return \"com.example.next_bus2go\";"));
    const Finished again = run(command);
    EXPECT_EQ(again.status, 1);
    EXPECT_THAT(again.errors, HasSubstr("made is not empty: give another one with --folder"));
    EXPECT_EQ(readFile(made / "Next_Bus2Go.cpp"), source);
}

TEST(PluginNew, TakesNoNameThatCannotBeBuilt) {
    for (const char* name : {"", "clock", "My Clock", "2Go", "Ключ", "../Up"})
        EXPECT_EQ(run({LUMORACTL, "plugin", "new", "--", name}).status, 2) << name;
    for (const char* identifier : {"clock", "org..clock", ".clock", "org.", "1.2", "org.exa mple"})
        EXPECT_EQ(run({LUMORACTL, "plugin", "new", "Clock", "--identifier", identifier}).status, 2) << identifier;
}

} // namespace

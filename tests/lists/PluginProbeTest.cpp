// What plug-ins do to the process that they are loaded into, they do to another one first.

#include "lists/PluginDiscovery.h"
#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/LoadVerdicts.h"
#include "tests/lists/PluginFolder.h"
#include "tests/support/Waiting.h"

#include <algorithm>
#include <csignal>
#include <dlfcn.h>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

using lumora::discoverPlugins;
using Verdict = platform::Probed::Verdict;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;
using tests::namesOf;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

std::function<void()>& beforeUnloading() {
    static std::function<void()> call;
    return call;
}

/// Short enough for a test of what hangs, and for a slow machine long enough for what does not.
constexpr platform::ProbeLimits kShort{6s, 1s};

struct PluginProbe : testing::Test {
    PluginProbe() {
        plugins.write(loads, "");
        ::setenv("LUMORA_TEST_LOADS", loads.c_str(), 1);
    }
    ~PluginProbe() override { ::unsetenv("LUMORA_TEST_LOADS"); }

    /// Which plug-ins have been loaded since the last call, in this process or another, each counted.
    std::multiset<std::string> loaded() {
        std::ifstream in(loads);
        in.seekg(seen);
        std::multiset<std::string> names;
        for (std::string name; std::getline(in, name); seen += std::streamoff(name.size() + 1))
            names.insert(name);
        return names;
    }
    /// Whether the one plug-in, "good-1", is loaded by another discovery.
    bool triedAgain() {
        EXPECT_EQ(discoverPlugins(false).size(), 1U);
        return loaded().contains("good-1");
    }
    [[nodiscard]] fs::path kept() const { return plugins.root() / "cache/lumora/probed"; }
    [[nodiscard]] std::string keptText() const {
        std::ifstream in(kept(), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    tests::PluginFolder plugins;
    fs::path loads = plugins.root() / "loads";
    std::streamoff seen = 0;
};

TEST_F(PluginProbe, KeepsOutWhateverEndsOrDamagesAProcessAtAnyMoment) {
    std::vector<std::string> dangerous{"throwing-at-load-1"};
    for (const std::string behaviour :
         {"aborting", "leaving", "exiting", "killing", "overflowing", "scribbling", "closing"})
        for (const std::string moment : {"load", "instance", "identifier", "name", "appID", "page"})
            dangerous.push_back(behaviour + "-at-" + moment + "-1");
    plugins.addEach(dangerous);
    plugins.addEach({"before-1", "good-1", "middle-1", "zoo-1"}); // among them, in the order of their names
    plugins.add("page.bundle", "PagePlugin");

    EXPECT_THAT(namesOf(discoverPlugins(false)), ElementsAre("before-1", "good-1", "middle-1", "page", "zoo-1"));
    const auto tried = loaded();
    for (const std::string& name : dangerous)
        EXPECT_TRUE(tried.contains(name)) << "the probe has not tried " << name;
    EXPECT_THAT(namesOf(discoverPlugins(true)), ElementsAre("page"));
    EXPECT_THAT(loaded(), IsEmpty()) << "all are known, and what was loaded stays";
}

TEST_F(PluginProbe, GivesEachPlugInThatHangsItsTimeOnce) {
    plugins.addEach({"good-1", "hanging-1", "looping-at-load-1", "looping-at-page-1", "zoo-1"});
    EXPECT_THAT(namesOf(discoverPlugins(false, kShort)), ElementsAre("good-1", "zoo-1"));
    EXPECT_THAT(loaded(), UnorderedElementsAre("good-1", "good-1", "hanging-1", "hanging-1", "looping-at-load-1",
                                               "looping-at-page-1", "zoo-1", "zoo-1"));
    EXPECT_THAT(namesOf(discoverPlugins(false, kShort)), ElementsAre("good-1", "zoo-1"));
    EXPECT_THAT(loaded(), IsEmpty()) << "the next time at once";
    EXPECT_THAT(keptText(), HasSubstr("good-1.bundle"));
    EXPECT_THAT(keptText(), Not(HasSubstr("hanging"))) << "the next start gives it its time again";
    EXPECT_THAT(keptText(), Not(HasSubstr("looping")));
}

TEST_F(PluginProbe, BlamesNoPlugInForTheDamageThatOneBeforeItDid) {
    for (const char* culprit : {"spoiling-aborting-1", "spoiling-killing-1", "spoiling-looping-1"}) {
        const auto probed = platform::probe(platform::ForeignCode::plugin,
                                            {plugins.add(std::string(culprit) + ".bundle", "TestPlugin"),
                                             plugins.add("good-" + std::string(culprit) + ".bundle", "TestPlugin")},
                                            platform::ProbeReport::verdict, kShort);
        EXPECT_EQ(probed[1].verdict, Verdict::safe) << "behind " << culprit << ": " << probed[1].why;
        EXPECT_EQ(loaded().count("good-" + std::string(culprit)), 2U) << "behind it, then without it";
    }
}

TEST_F(PluginProbe, KeepsNoVerdictOnWhatWasKilledOrCannotBeRead) {
    plugins.add("killing-1.bundle", "TestPlugin");
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    EXPECT_EQ(loaded().count("killing-1"), 1U);
    EXPECT_THAT(keptText(), Not(HasSubstr("killing-1"))) << "the system may have killed it";
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    EXPECT_THAT(loaded(), IsEmpty()) << "once for each process";
    const fs::path bundle = plugins.add("good-1.bundle", "TestPlugin");
    const auto verdict = [&bundle] {
        return platform::probe(platform::ForeignCode::plugin, {bundle}, platform::ProbeReport::verdict, {})[0].verdict;
    };
    EXPECT_EQ(verdict(), Verdict::safe);
    fs::remove(bundle / "Code");
    EXPECT_EQ(verdict(), Verdict::undecided);
}

TEST_F(PluginProbe, TriesAPlugInAgainWhenAnyOfItsFilesHasChanged) {
    const fs::path bundle = plugins.add("good-1.bundle", "TestPlugin");
    EXPECT_TRUE(triedAgain());
    EXPECT_FALSE(triedAgain());
    fs::rename(bundle / "Code", bundle / "Old");
    fs::copy_file(bundle / "Old", bundle / "Code");
    EXPECT_TRUE(triedAgain()) << "another shared object";
    fs::copy_file(bundle / "Info.plist", bundle / "Other.plist");
    EXPECT_TRUE(triedAgain()) << "another file beside";
    fs::rename(bundle / "Other.plist", bundle / "Info.plist");
    EXPECT_TRUE(triedAgain()) << "another Info.plist";
    ::chmod((bundle / "Code").c_str(), 0700);
    EXPECT_TRUE(triedAgain()) << "other permissions, which is another time";
    EXPECT_FALSE(triedAgain());
}

TEST_F(PluginProbe, TriesAllAgainWhenTheSettingsBundleOrTheLibrariesOfTheSystemHaveChanged) {
    plugins.add("good-1.bundle", "TestPlugin");
    const fs::path bundle = plugins.add("../../../PreferenceBundles/Lumora.bundle", "TestPlugin");
    EXPECT_TRUE(triedAgain());
    EXPECT_FALSE(triedAgain());
    fs::permissions(bundle / "Code", fs::perms(0700));
    EXPECT_TRUE(triedAgain()) << "another settings bundle";
    EXPECT_FALSE(triedAgain());
    struct stat libraries {};
    if (::stat("/etc/ld.so.cache", &libraries) != 0) GTEST_SKIP() << "this system keeps no list of its libraries";
    const std::string text = keptText();
    std::ostringstream number;
    number << std::hex << libraries.st_ino << ":" << libraries.st_size << ":" << libraries.st_mtim.tv_sec;
    EXPECT_THAT(text.substr(0, text.find('\n')), HasSubstr(number.str()));
}

TEST_F(PluginProbe, MakesADangerousPlugInUsableAsSoonAsItIsReplaced) {
    const fs::path bundle = plugins.add("aborting-1.bundle", "TestPlugin");
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    fs::remove_all(bundle);
    plugins.add("aborting-1.bundle", "PagePlugin");
    EXPECT_EQ(discoverPlugins(false).size(), 1U);
    fs::remove_all(bundle);
    plugins.add("aborting-1.bundle", "TestPlugin");
    EXPECT_THAT(discoverPlugins(false), IsEmpty()) << "and the other way round";
}

TEST_F(PluginProbe, AsksAPlugInAnewThatOnlyAnswersNothing) {
    plugins.add("null-name-1.bundle", "TestPlugin");
    plugins.add("missing-1.bundle", "MissingSymbol");
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    EXPECT_THAT(loaded(), UnorderedElementsAre("null-name-1", "null-name-1")) << "by the probe, then here";
    EXPECT_THAT(keptText(), HasSubstr("null-name-1.bundle"));
    EXPECT_THAT(keptText(), HasSubstr("missing-1.bundle"));
}

TEST_F(PluginProbe, KeepsItsVerdictsForItsUserAlone) {
    ::umask(0);
    plugins.add("good-1.bundle", "TestPlugin");
    EXPECT_EQ(discoverPlugins(false).size(), 1U);
    ::umask(022);
    EXPECT_EQ(fs::status(kept()).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(kept().parent_path()).permissions(), fs::perms(0700));
    EXPECT_EQ(std::distance(fs::directory_iterator(kept().parent_path()), {}), 1) << "nothing half written";
}

TEST_F(PluginProbe, RemovesWhatAWriterThatWasKilledHasLeftBesideItsVerdicts) {
    const fs::path file = plugins.root() / "file";
    plugins.write(file, "no code");
    const auto keepOne = [&file] {
        EXPECT_EQ(platform::mayBeLoaded(platform::ForeignCode::plugin, {{file, {file}}}).size(), 1U);
    };
    const auto count = [this] { return std::distance(fs::directory_iterator(kept().parent_path()), {}); };
    const auto keepOneAndBeKilled = [&keepOne] {
        const rlimit none{};
        const rlimit few{100, 100}; // whoever writes more into a file is killed
        ::setrlimit(RLIMIT_CORE, &none);
        ::setrlimit(RLIMIT_FSIZE, &few);
        keepOne();
    };
    EXPECT_EXIT(keepOneAndBeKilled(), testing::KilledBySignal(SIGXFSZ), "");
    EXPECT_EQ(count(), 1) << "half of what was to be kept";
    EXPECT_FALSE(fs::exists(kept()));
    keepOne();
    EXPECT_THAT(keptText(), HasSubstr(file.string()));
    EXPECT_EQ(count(), 1) << "nothing half written";
}

TEST_F(PluginProbe, TakesADamagedOrForeignCacheForNone) {
    plugins.add("aborting-1.bundle", "TestPlugin");
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    const std::string good = keptText();
    const auto probedAfter = [&](const std::string& text) {
        plugins.write(kept(), text);
        loaded();
        EXPECT_THAT(discoverPlugins(false), IsEmpty());
        return loaded().contains("aborting-1");
    };
    EXPECT_FALSE(probedAfter(good));
    for (std::size_t i = 0; i < good.size(); i += 25) {
        std::string damaged = good;
        damaged[i] ^= 1;
        EXPECT_TRUE(probedAfter(damaged)) << "byte " << i;
        EXPECT_TRUE(probedAfter(good.substr(0, i))) << "cut to " << i << " bytes";
    }
    EXPECT_TRUE(probedAfter(std::string(5 << 20, '\n'))) << "far too long";
    EXPECT_FALSE(probedAfter(good));
    fs::permissions(kept(), fs::perms(0666));
    EXPECT_TRUE(probedAfter(good)) << "anybody may have written it";
    fs::rename(kept(), plugins.root() / "elsewhere");
    fs::create_symlink(plugins.root() / "elsewhere", kept());
    EXPECT_FALSE(probedAfter(good)) << "a link of the user's own";
}

TEST_F(PluginProbe, DoesWithoutAPlaceToKeepVerdictsIn) {
    plugins.write(plugins.root() / "cache", "a file");
    plugins.addEach({"good-1", "aborting-1"});
    EXPECT_THAT(namesOf(discoverPlugins(false)), ElementsAre("good-1"));
    EXPECT_THAT(loaded(), UnorderedElementsAre("aborting-1", "good-1", "good-1"));
    EXPECT_THAT(namesOf(discoverPlugins(false)), ElementsAre("good-1"));
    EXPECT_THAT(loaded(), IsEmpty()) << "this process remembers by itself";
}

TEST_F(PluginProbe, RemembersAPlugInWhoseNameCannotBeKept) {
    plugins.addEach({"aborting-1\n", "good-1\n"});
    EXPECT_THAT(namesOf(discoverPlugins(false)), ElementsAre("good-1\n"));
    EXPECT_EQ(loaded().count("aborting-1"), 1U);
    EXPECT_THAT(namesOf(discoverPlugins(false)), ElementsAre("good-1\n"));
    EXPECT_THAT(loaded(), IsEmpty());
}

TEST_F(PluginProbe, RefusesAPlugInThatChangesWhileItIsTried) {
    plugins.add("touching-at-load-1.bundle", "TestPlugin");
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    EXPECT_THAT(discoverPlugins(false), IsEmpty());
    EXPECT_EQ(loaded().size(), 2U) << "by the probe alone, each time";
    EXPECT_THAT(keptText(), Not(HasSubstr("touching")));
}

TEST_F(PluginProbe, KeepsNoMoreThanItReadsAgain) {
    constexpr std::size_t most = std::size_t{4} << 20;
    constexpr std::size_t lengthOfName = 100'000;
    const fs::path file = plugins.root() / "file";
    plugins.write(file, "no code");
    std::vector<platform::LoadCandidate> candidates; // with more in their names than may be kept
    while (candidates.size() * lengthOfName <= most)
        candidates.push_back({"/" + std::to_string(candidates.size()) + std::string(lengthOfName, '/'), {file}});
    const std::vector<bool> all(candidates.size(), true);
    EXPECT_EQ(platform::mayBeLoaded(platform::ForeignCode::plugin, candidates), all);
    EXPECT_LE(fs::file_size(kept()), most);
    EXPECT_GT(fs::file_size(kept()), most - 2 * lengthOfName);
    const fs::file_time_type written = fs::last_write_time(kept());
    EXPECT_EQ(platform::mayBeLoaded(platform::ForeignCode::plugin, candidates), all);
    EXPECT_EQ(fs::last_write_time(kept()), written) << "nothing was tried again";
}

TEST_F(PluginProbe, LoadsNothingUnknownWhenThereIsNoProcessToTryItIn) {
    plugins.add("good-1.bundle", "TestPlugin");
    EXPECT_THAT(namesOf(discoverPlugins(false)), ElementsAre("good-1"));
    plugins.add("new-1.bundle", "TestPlugin");
    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const int next = platform::FileDescriptor(::dup(STDERR_FILENO)).number();
    const rlimit few{rlim_t(next) + 3, before.rlim_max}; // enough to look at files, too few for a child's ends
    testing::internal::CaptureStderr();
    ::setrlimit(RLIMIT_NOFILE, &few);
    const auto found = namesOf(discoverPlugins(false));
    const auto again = namesOf(discoverPlugins(false));
    ::setrlimit(RLIMIT_NOFILE, &before);
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_THAT(found, ElementsAre("good-1"));
    EXPECT_THAT(again, ElementsAre("good-1"));
    static bool hasComplained = false; // which happens once in a process
    if (!std::exchange(hasComplained, true)) {
        EXPECT_THAT(said,
                    HasSubstr("lumora: plug-ins and the application list are left out, because it could not be tried"));
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
    } else {
        EXPECT_EQ(said, "");
    }
    EXPECT_THAT(namesOf(discoverPlugins(false)), ElementsAre("good-1", "new-1")) << "as soon as there is one";
}

TEST_F(PluginProbe, UnloadsEachPlugInOnceInEveryCaseAfterAllQuestions) {
    plugins.addEach({"good-1", "null-name-1", "null-instance-1", "null-page-1"});
    plugins.add("page.bundle", "PagePlugin");
    EXPECT_EQ(discoverPlugins(true).size(), 1U); // so that all are known, and each is loaded here
    const fs::path module = plugins.module("good-1.bundle");
    const std::string first = tests::askedOf(module);
    int unloaded = 0;
    std::string askedBefore;
    beforeUnloading() = [&] {
        if (++unloaded == 1) askedBefore = tests::askedOf(module);
    };
    EXPECT_EQ(discoverPlugins(true).size(), 1U);
    beforeUnloading() = nullptr;
    EXPECT_EQ(unloaded, 5);
    EXPECT_EQ(askedBefore, first + first) << "the settings page too, before the first is unloaded";
    EXPECT_THAT(first, HasSubstr("settingsController"));
}

TEST_F(PluginProbe, ListsPlugInsByTheirBundlesAndNotByTheirNames) {
    plugins.addEach({"turned-1", "turned-2", "turned-3"});
    EXPECT_THAT(namesOf(discoverPlugins(false)), ElementsAre("8", "7", "6"));
}

TEST_F(PluginProbe, LeavesNothingOpenAndNobodyBehind) {
    plugins.add("good-1.bundle", "TestPlugin");
    EXPECT_EQ(discoverPlugins(false).size(), 1U);
    const auto descriptors = tests::descriptorCount();
    plugins.addEach({"aborting-1", "closing-hanging-1", "leaving-1", "scribbling-1", "null-page-1"});
    EXPECT_EQ(discoverPlugins(false, kShort).size(), 2U);
    EXPECT_EQ(tests::descriptorCount(), descriptors);
    std::ifstream children("/proc/self/task/" + std::to_string(::getpid()) + "/children");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(children), {}), "");
}

} // namespace

/// What the platform library calls to unload.
extern "C" [[gnu::visibility("default")]] int dlclose(void* handle) noexcept {
    static const auto loaders = reinterpret_cast<int (*)(void*)>(::dlsym(RTLD_NEXT, "dlclose"));
    if (beforeUnloading()) beforeUnloading()();
    return loaders(handle);
}

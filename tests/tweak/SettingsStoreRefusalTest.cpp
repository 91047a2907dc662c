#include "tests/tweak/SettingsStoreTest.h"

#include "tests/support/Deadline.h"
#include "tests/support/FullDisk.h"

#include "tweak/History.h"

#include <cerrno>
#include <functional>
#include <future>

#include <dlfcn.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace tests;

namespace {

/// What this thread does once it has closed a file, in place of a success.
thread_local const std::function<int()>* whenClosed = nullptr;
/// Whether flock() fails for this thread.
thread_local bool locksAreMissing = false;

} // namespace

extern "C" int flock(int descriptor, int operation) noexcept {
    if (!locksAreMissing) return static_cast<int>(::syscall(SYS_flock, descriptor, operation));
    errno = ENOLCK;
    return -1;
}

/// Closes as the one of the C library does.
extern "C" int close(int descriptor) {
    static const auto librarys = reinterpret_cast<int (*)(int)>(::dlsym(RTLD_NEXT, "close"));
    const int closed = librarys(descriptor);
    return whenClosed ? (*whenClosed)() : closed;
}

TEST_F(SettingsStoreTest, SetsAnUnreadableFileAsideAndNeverOverwritesOne) {
    const std::vector<std::string> unreadable{"", "no property list", std::string("bplist00\0\0\0", 11),
                                              "<plist><array/></plist>"};
    for (const std::string& contents : unreadable) {
        writeFile(sandbox.settings(), contents);
        const auto store = open();
        ASSERT_TRUE(store) << failure;
        EXPECT_EQ(store->settings().size(), knownSettings().size());
        EXPECT_TRUE(store->change("kSleepTime", 30));
    }
    EXPECT_EQ(readFile(sandbox.path() / "settings.plist.unreadable"), unreadable[0]);
    EXPECT_EQ(readFile(sandbox.path() / "settings.plist.unreadable-2"), unreadable[1]);
    EXPECT_EQ(readFile(sandbox.path() / "settings.plist.unreadable-3"), unreadable[2]);
    EXPECT_EQ(readFile(sandbox.path() / "settings.plist.unreadable-4"), unreadable[3]);
    ASSERT_EQ(lines.size(), unreadable.size());
    EXPECT_THAT(lines[0], testing::StartsWith(sandbox.settings().string() + " holds no settings ("));
    EXPECT_THAT(lines[0], HasSubstr("it is set aside as " + sandbox.settings().string() + ".unreadable, defaults"));
    EXPECT_THAT(lines[3], HasSubstr("it holds a list in place of a dictionary"));
}

TEST_F(SettingsStoreTest, RefusesToStartOverAnUnreadableFileItCannotSetAside) {
    // Every name that it could have is taken, so the file would have to be overwritten.
    writeFile(sandbox.settings(), "no property list");
    writeFile(sandbox.path() / "settings.plist.unreadable", "");
    for (int number = 2; number < 10'000; ++number)
        writeFile(sandbox.path() / ("settings.plist.unreadable-" + std::to_string(number)), "");
    EXPECT_FALSE(open());
    EXPECT_THAT(failure, HasSubstr("cannot be set aside"));
    EXPECT_EQ(readFile(sandbox.settings()), "no property list");
}

TEST_F(SettingsStoreTest, RefusesToStartBesideAFileThatItCannotReadNowAndLeavesItAlone) {
    // Settings of that size are nobody's, and a file that is all hole takes no room.
    writeFile(sandbox.settings(), "");
    std::filesystem::resize_file(sandbox.settings(), (std::uintmax_t{64} << 20) + 1);
    EXPECT_FALSE(open());
    EXPECT_EQ(failure, "cannot read " + sandbox.settings().string() + ": it is larger than any settings file");
    EXPECT_TRUE(std::filesystem::exists(sandbox.settings()));
}

TEST_F(SettingsStoreTest, LeavesOutStoredValuesThatTheirSettingsCannotHave) {
    writeFile(sandbox.settings(), "<plist><dict><key>kSleepTime</key><string>soon</string>"
                                  "<key>kTweakEnabled</key><false/></dict></plist>");
    const auto store = open();
    ASSERT_TRUE(store) << failure;
    EXPECT_EQ(store->settings()["kSleepTime"], findSetting("kSleepTime")->byDefault);
    EXPECT_EQ(store->settings()["kTweakEnabled"], Value(false));
    EXPECT_THAT(lines, testing::ElementsAre(sandbox.settings().string() +
                                            ": kSleepTime takes a finite number, not a text: its default stands in"));
}

TEST_F(SettingsStoreTest, SaysWhyWhatItIsGivenCannotBeItsFile) {
    const auto folder = sandbox.path() / "folder";
    std::filesystem::create_directory(folder);
    const auto pipe = sandbox.path() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const auto link = sandbox.path() / "link";
    std::filesystem::create_symlink(link, link);
    writeFile(sandbox.path() / "file", "");
    const std::vector<std::pair<std::filesystem::path, testing::Matcher<std::string>>> files{
        {folder, HasSubstr("is no regular file")},
        {"/dev/null", HasSubstr("is no regular file")},
        {pipe, HasSubstr("is no regular file")},
        {sandbox.path() / "file" / "settings.plist", HasSubstr("cannot make the folder")},
        {"/", "/ is no name for a settings file"},
        {link, link.string() + " is no name for a settings file"},
    };
    for (const auto& [file, why] : files)
        EXPECT_THAT(SettingsStore::open(file, log).error(), why) << file;
}

TEST_F(SettingsStoreTest, DoesNotFollowALinkInPlaceOfItsLock) {
    const auto victim = sandbox.path() / "victim";
    std::filesystem::create_symlink(victim, sandbox.settings().string() + ".lock");
    EXPECT_FALSE(open());
    EXPECT_THAT(failure, HasSubstr("cannot write in " + sandbox.path().string()));
    EXPECT_FALSE(std::filesystem::exists(victim));
}

TEST_F(SettingsStoreTest, RefusesAChangeThatDoesNotFitOnTheDisk) {
    const auto store = open();
    ASSERT_TRUE(store->change("kSleepTime", 30));
    const std::string before = readFile(sandbox.settings());
    {
        const FullDisk full(4096);
        EXPECT_THAT(store->change("kLSDateSubtitle", std::string(10'000, 'x')).error(),
                    HasSubstr("cannot write " + sandbox.settings().string() + ": File too large"));
        EXPECT_EQ(store->settings()["kLSDateSubtitle"], Value(""));
        EXPECT_EQ(readFile(sandbox.settings()), before);
        EXPECT_THAT(files(), UnorderedElementsAre("settings.plist", "settings.plist.lock"));
        EXPECT_TRUE(store->change("kSleepTime", 60)) << "what fits is kept";
    }
    EXPECT_TRUE(store->change("kLSDateSubtitle", std::string(10'000, 'x'))) << "there is room again";
    EXPECT_EQ(onDisk()["kSleepTime"], Value(60));
}

TEST_F(SettingsStoreTest, RefusesAChangeThatDoesNotArriveOnTheDiskBeforeItsFileIsClosed) {
    const auto store = open();
    ASSERT_TRUE(store->change("kSleepTime", 30));
    const std::function<int()> fails = [] {
        errno = EDQUOT;
        return -1;
    };
    whenClosed = &fails;
    const auto changed = store->change("kSleepTime", 60);
    whenClosed = nullptr;
    ASSERT_FALSE(changed);
    EXPECT_EQ(changed.error(), "cannot write " + sandbox.settings().string() + ": Disk quota exceeded");
    EXPECT_EQ(store->settings()["kSleepTime"], Value(30));
    EXPECT_EQ(onDisk()["kSleepTime"], Value(30));
    EXPECT_THAT(files(), UnorderedElementsAre("settings.plist", "settings.plist.lock"));
}

TEST_F(SettingsStoreTest, TellsTheSettingsWhileAChangeIsWrittenAndRecorded) {
    const auto store = open();
    const auto told = [&] {
        const Deadline deadline("the settings during a change");
        return std::async(std::launch::async, [&] { return store->settings()["kSleepTime"]; }).get();
    };
    Value written;
    Value recorded;
    store->setObserver([&](const KeptChange&) { recorded = told(); });
    const std::function<int()> asks = [&] {
        written = told();
        return 0;
    };
    whenClosed = &asks;
    EXPECT_TRUE(store->change("kSleepTime", 30));
    whenClosed = nullptr;
    EXPECT_EQ(written, findSetting("kSleepTime")->byDefault);
    EXPECT_EQ(recorded, Value(30));
}

TEST_F(SettingsStoreTest, RefusesChangesWhenItsFolderIsGone) {
    const auto folder = sandbox.path() / "folder";
    const auto store = SettingsStore::open(folder / "settings.plist", log);
    ASSERT_TRUE(store);
    std::filesystem::remove_all(folder);
    EXPECT_THAT(store.value()->change("kSleepTime", 30).error(), HasSubstr("cannot write"));
    EXPECT_EQ(store.value()->settings()["kSleepTime"], findSetting("kSleepTime")->byDefault);
}

TEST_F(SettingsStoreTest, GrowsToItsLimitAndNotBeyond) {
    constexpr const char* kKey = "com.example.data";
    const auto store = open();
    const Data most(kLargestSettings - 100);
    ASSERT_TRUE(store->change(kKey, most));
    const std::string before = readFile(sandbox.settings());
    EXPECT_LE(before.size(), kLargestSettings);
    EXPECT_EQ(store->change("com.example.more", std::string(100, 'x')).error(),
              "\"com.example.more\" cannot be kept: the settings would take more than 4 MiB");
    EXPECT_EQ(store->change(kKey, Data(kLargestSettings)).error(),
              "\"com.example.data\" cannot be kept: the settings would take more than 4 MiB");
    EXPECT_FALSE(store->settings().contains("com.example.more"));
    EXPECT_EQ(store->settings()[kKey], Value(most));
    EXPECT_EQ(readFile(sandbox.settings()), before);
    EXPECT_TRUE(store->change("kTweakEnabled", false)) << "what fits is kept";
}

TEST_F(SettingsStoreTest, ChangesSwitchesInAFileBeyondItsLimitWhichGrowsNoFurther) {
    const auto written = platform::writePropertyList(Dictionary{{"a", Data(2 * kLargestSettings, 1)}});
    writeFile(sandbox.settings(), {written.value().begin(), written.value().end()});
    const auto store = open();
    ASSERT_TRUE(store) << failure;
    EXPECT_TRUE(store->change("kSleepTime", 20)) << "some bytes more than before";
    EXPECT_EQ(onDisk()["kSleepTime"], Value(20));
    EXPECT_THAT(store->change("b", Data(1 << 17)).error(), HasSubstr("more than 8 MiB"));
    EXPECT_TRUE(store->change("a", Data(kLargestSettings, 1)));
}

TEST_F(SettingsStoreTest, GrowsToItsLimitWhereALargerFileWasSetAside) {
    writeFile(sandbox.settings(), std::string(2 * kLargestSettings, 'x'));
    const auto store = open();
    ASSERT_TRUE(store) << failure;
    EXPECT_THAT(store->change("com.example.data", Data(kLargestSettings)).error(), HasSubstr("more than 4 MiB"));
}

TEST_F(SettingsStoreTest, LetsAFileBeyondItsLimitGrowAtNoStart) {
    const auto written =
        platform::writePropertyList(Dictionary{{"a", Data(2 * kLargestSettings, 1)}, {"com.example.switch", true}});
    writeFile(sandbox.settings(), {written.value().begin(), written.value().end()});
    for (int start = 1; start <= 3; ++start) {
        const auto store = open();
        ASSERT_TRUE(store) << failure;
        EXPECT_FALSE(store->change("com.example.key" + std::to_string(start), true));
        EXPECT_FALSE(store->change("com.example.switch", std::string(1000, 'x')));
        EXPECT_FALSE(store->change("kLSDateSubtitle", std::string(1000, 'x')));
        EXPECT_TRUE(store->change("com.example.switch", start % 2 == 0)) << "some bytes more than before";
        EXPECT_TRUE(store->change("kSleepTime", start * 1000));
        EXPECT_TRUE(store->change("kLSBlurColor", Dictionary{{"h", 0.25}, {"s", 1.0}, {"b", 0.1 * start}}));
    }
    EXPECT_LT(readFile(sandbox.settings()).size(), written.value().size() + 200);
    const auto store = open();
    ASSERT_TRUE(store->change("a", Data(kLargestSettings + 1000, 1)));
    EXPECT_FALSE(store->change("a", Data(kLargestSettings + 1001, 1))) << "what has shrunk grows no more";
}

TEST_F(SettingsStoreTest, RefusesValuesThatCouldNotBeReadBack) {
    const auto store = open();
    Value deep = 1;
    for (unsigned level = 0; level < platform::PropertyListLimits::depth + 1; ++level)
        deep = List{deep};
    EXPECT_THAT(store->change("com.example.deep", deep).error(), HasSubstr("cannot be kept"));
    EXPECT_THAT(store->change("com.example.nil", List{nullptr}).error(), HasSubstr("cannot be kept"));
    EXPECT_EQ(store->settings().size(), knownSettings().size());
    EXPECT_EQ(open(), nullptr) << "the file is still held by the first store";
}

TEST_F(SettingsStoreTest, SaysWhyNoFileCanBeLocked) {
    locksAreMissing = true;
    EXPECT_FALSE(open());
    const auto history = History::open(History::besideSettings(sandbox.settings()), log);
    locksAreMissing = false;
    EXPECT_EQ(failure, "cannot lock " + sandbox.settings().string() + ": No locks available");
    ASSERT_FALSE(history);
    EXPECT_THAT(history.error(), HasSubstr("cannot lock it: No locks available"));
}

TEST_F(SettingsStoreTest, IsTheOnlyOneWithItsFile) {
    auto first = open();
    ASSERT_TRUE(first);
    EXPECT_FALSE(open());
    EXPECT_EQ(failure, "another lumora-tweak is running: it holds " + sandbox.settings().string());
    first.reset();
    EXPECT_TRUE(open());
}

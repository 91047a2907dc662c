#include "tests/support/Waiting.h"
#include "tests/tweak/Sandbox.h"

#include "tweak/Defaults.h"
#include "tweak/SettingsStore.h"

#include "platform/foundation/PropertyList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <latch>
#include <set>
#include <thread>

#include <dlfcn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace lumora;
using namespace tests;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::List;
using platform::Result;
using platform::Value;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace {

std::atomic<int> synced = 0;
thread_local bool closingFails = false;

} // namespace

/// Counts what is synced to the device; the one of the C library stands behind it.
extern "C" int fsync(int descriptor) {
    ++synced;
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

/// Closes as the one of the C library does, and while it is to fail says that not everything has arrived.
extern "C" int close(int descriptor) {
    static const auto librarys = reinterpret_cast<int (*)(int)>(::dlsym(RTLD_NEXT, "close"));
    const int closed = librarys(descriptor);
    if (!closingFails) return closed;
    errno = EDQUOT;
    return -1;
}

namespace {

class SettingsStoreTest : public testing::Test {
  protected:
    std::unique_ptr<SettingsStore> open() {
        Result<std::unique_ptr<SettingsStore>> opened = SettingsStore::open(sandbox.settings(), log);
        if (opened) return std::move(opened).value();
        failure = opened.error();
        return nullptr;
    }

    [[nodiscard]] Value onDisk() const {
        const auto read = platform::readPropertyList(bytesOf(readFile(sandbox.settings())));
        return read ? read.value() : Value();
    }

    [[nodiscard]] std::set<std::string> files() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(sandbox.path()))
            names.insert(entry.path().filename());
        return names;
    }

    Sandbox sandbox;
    std::vector<std::string> lines;
    std::string failure;
    Log log = [this](const std::string& line) { lines.push_back(line); };
};

/// While it lives, no file can be made longer than so many bytes: what a full disk is like, without one.
class FullDisk {
  public:
    explicit FullDisk(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

  private:
    rlimit before_{};
    void (*handler_)(int);
};

} // namespace

TEST_F(SettingsStoreTest, HoldsEveryDefaultAndWritesNothingAtFirst) {
    const auto store = open();
    ASSERT_TRUE(store);
    for (const Setting& setting : knownSettings())
        EXPECT_EQ(store->settings()[setting.key], setting.byDefault);
    EXPECT_FALSE(std::filesystem::exists(sandbox.settings()));
}

TEST_F(SettingsStoreTest, KeepsChangesOfEveryKindAcrossARestart) {
    const std::vector<Dictionary::Entry> changes{
        {"kTweakEnabled", false},
        {"kSleepTime", 3600},
        {"kAppIconOpacity", 0.1},
        {"kLSDateSubtitle", "Grüße 😀"},
        {"kAppsEnabled", List{"com.b", "com.a"}},
        {"kLSBlurColor", Dictionary{{"h", 0.25}, {"s", 1.0}, {"b", 0.0}}},
        {"kAutoUnlockPasscode", "1234"},
    };
    {
        const auto store = open();
        for (const auto& [key, value] : changes)
            ASSERT_TRUE(store->change(key, value));
    }
    const auto store = open();
    for (const auto& [key, value] : changes)
        EXPECT_EQ(store->settings()[key], value) << key;
    EXPECT_EQ(store->settings().size(), knownSettings().size());
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(SettingsStoreTest, KeepsKeysOfPlugInsWhateverTheirKind) {
    const std::vector<Dictionary::Entry> changes{
        {"com.example.switch", true},
        {"com.example.data", Data{1, 2, 3}},
        {"com.example.date", Date{0.5}},
        {"com.example.list", List{1, "a", List{}}},
        {"com.example.nested", Dictionary{{"a", Dictionary{{"b", 1.5}}}}},
        {"", "an empty key is a key"},
    };
    {
        const auto store = open();
        for (const auto& [key, value] : changes)
            ASSERT_TRUE(store->change(key, value));
    }
    const auto store = open();
    for (const auto& [key, value] : changes)
        EXPECT_EQ(store->settings()[key], value) << key;
}

TEST_F(SettingsStoreTest, StoresOnlyWhatWasChanged) {
    const auto store = open();
    ASSERT_TRUE(store->change("kSleepTime", 30));
    ASSERT_TRUE(store->change("kTweakEnabled", true)) << "to its default, which counts as changed";
    EXPECT_EQ(onDisk(), Value(Dictionary{{"kSleepTime", 30}, {"kTweakEnabled", true}}));
}

TEST_F(SettingsStoreTest, HasEachChangeOnDiskWhenItReturns) {
    const auto store = open();
    for (int i = 0; i < 200; ++i) {
        ASSERT_TRUE(store->change("kSleepTime", i));
        ASSERT_EQ(onDisk()["kSleepTime"], Value(i));
    }
}

TEST_F(SettingsStoreTest, ReplacesTheFileSoThatAReaderNeverSeesHalfOfIt) {
    const auto store = open();
    ASSERT_TRUE(store->change("com.example.text", std::string(5000, 'a')));
    std::atomic<bool> done = false;
    std::size_t unreadable = 0;
    std::latch reading(1);
    std::thread reader([&] {
        reading.count_down();
        while (!done)
            unreadable += onDisk().isNil() ? 1U : 0U;
    });
    reading.wait();
    for (int i = 0; i < 500; ++i)
        EXPECT_TRUE(store->change("com.example.text", std::string(5000, static_cast<char>('a' + i % 26))));
    done = true;
    reader.join();
    EXPECT_EQ(unreadable, 0U);
}

TEST_F(SettingsStoreTest, LosesNoneOfTheChangesThatThreadsMakeAtOnce) {
    const auto store = open();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&store, t] {
            for (int i = 0; i < 50; ++i)
                EXPECT_TRUE(store->change("key-" + std::to_string(t) + "-" + std::to_string(i), i));
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(store->settings().size(), knownSettings().size() + 200);
    EXPECT_EQ(onDisk().dictionary()->size(), 200U);
}

TEST_F(SettingsStoreTest, LetsOnlyTheOwnerReadTheFile) {
    const mode_t before = umask(0);
    const auto store = open();
    EXPECT_TRUE(store->change("kAutoUnlockPasscode", "1234"));
    umask(before);
    struct stat status {};
    ASSERT_EQ(stat(sandbox.settings().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(SettingsStoreTest, LeavesNothingBesideTheFileButItsLock) {
    {
        const auto store = open();
        ASSERT_TRUE(store->change("kSleepTime", 30));
    }
    EXPECT_THAT(files(), UnorderedElementsAre("settings.plist", "settings.plist.lock"));
}

TEST_F(SettingsStoreTest, MakesTheFoldersOnTheWay) {
    const auto deep = sandbox.path() / "var" / "mobile" / "settings.plist";
    const auto store = SettingsStore::open(deep, log);
    ASSERT_TRUE(store);
    EXPECT_TRUE(store.value()->change("kSleepTime", 30));
    EXPECT_TRUE(std::filesystem::exists(deep));
}

TEST_F(SettingsStoreTest, ReplacesTheFileBehindALinkAndKeepsTheLink) {
    const auto real = sandbox.path() / "real.plist";
    writeFile(real, "<plist><dict><key>kSleepTime</key><integer>15</integer></dict></plist>");
    std::filesystem::create_symlink(real, sandbox.settings());
    const auto store = open();
    ASSERT_TRUE(store) << failure;
    EXPECT_EQ(store->settings()["kSleepTime"], Value(15));
    EXPECT_TRUE(store->change("kSleepTime", 30));
    EXPECT_TRUE(std::filesystem::is_symlink(sandbox.settings()));
    EXPECT_EQ(onDisk()["kSleepTime"], Value(30));
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
    EXPECT_THAT(lines[0], StartsWith(sandbox.settings().string() + " holds no settings ("));
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
    EXPECT_THAT(lines, ElementsAre(sandbox.settings().string() +
                                   ": kSleepTime takes a finite number, not a text: its default stands in"));
}

TEST_F(SettingsStoreTest, NeverTakesAnythingButARegularFileForItsOwn) {
    const auto folder = sandbox.path() / "folder";
    std::filesystem::create_directory(folder);
    EXPECT_THAT(SettingsStore::open(folder, log).error(), HasSubstr("is no regular file"));
    EXPECT_THAT(SettingsStore::open("/dev/null", log).error(), HasSubstr("is no regular file"));
    const auto pipe = sandbox.path() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_THAT(SettingsStore::open(pipe, log).error(), HasSubstr("is no regular file"));
}

TEST_F(SettingsStoreTest, SaysSoWhenItsFolderCannotBeMade) {
    writeFile(sandbox.path() / "file", "");
    EXPECT_THAT(SettingsStore::open(sandbox.path() / "file" / "settings.plist", log).error(),
                HasSubstr("cannot make the folder"));
}

TEST_F(SettingsStoreTest, SaysSoWhenItsNameIsNoFiles) {
    EXPECT_EQ(SettingsStore::open("/", log).error(), "/ is no name for a settings file");
    const auto link = sandbox.path() / "link";
    std::filesystem::create_symlink(link, link);
    EXPECT_EQ(SettingsStore::open(link, log).error(), link.string() + " is no name for a settings file");
}

TEST_F(SettingsStoreTest, DoesNotFollowALinkInPlaceOfItsLock) {
    const auto victim = sandbox.path() / "victim";
    std::filesystem::create_symlink(victim, sandbox.settings().string() + ".lock");
    EXPECT_FALSE(open());
    EXPECT_THAT(failure, HasSubstr("cannot write in " + sandbox.path().string()));
    EXPECT_FALSE(std::filesystem::exists(victim));
}

TEST_F(SettingsStoreTest, SyncsAChangeToTheDeviceWhileItIsOpenAndWithinASecond) {
    const auto store = open();
    const int before = synced;
    ASSERT_TRUE(store->change("kSleepTime", 30));
    EXPECT_TRUE(eventually([&] { return synced >= before + 2; })) << "neither the file nor its folder";
    EXPECT_LT(SettingsFile::kSyncDelay, std::chrono::seconds(1)); // what the store waits for first
}

TEST_F(SettingsStoreTest, SaysSoWhenWhatItHasWrittenCannotBeSynced) {
    // The folder may go too late, after the change has been synced: then once more.
    for (int i = 0; i < 100 && lines.empty(); ++i) {
        const auto folder = sandbox.path() / "folder";
        const auto store = SettingsStore::open(folder / "settings.plist", log);
        ASSERT_TRUE(store);
        EXPECT_TRUE(store.value()->change("kSleepTime", 30));
        std::filesystem::remove_all(folder);
    } // here it is closed, which syncs
    ASSERT_FALSE(lines.empty());
    EXPECT_THAT(lines[0], HasSubstr("settings.plist to the device: No such file or directory"));
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
    closingFails = true; // for this thread
    const Result<void> changed = store->change("kSleepTime", 60);
    closingFails = false;
    ASSERT_FALSE(changed);
    EXPECT_EQ(changed.error(), "cannot write " + sandbox.settings().string() + ": Disk quota exceeded");
    EXPECT_EQ(store->settings()["kSleepTime"], Value(30));
    EXPECT_EQ(onDisk()["kSleepTime"], Value(30));
    EXPECT_THAT(files(), UnorderedElementsAre("settings.plist", "settings.plist.lock"));
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

TEST_F(SettingsStoreTest, KeepsTheDeepestValueThatItTakes) {
    unsigned kept = 0;
    {
        const auto store = open();
        Value deep = 1;
        while (store->change("com.example.deep", deep) && kept < 1000) {
            deep = List{deep};
            ++kept;
        }
    }
    EXPECT_GT(kept, 50U);
    EXPECT_LT(kept, 1000U);
    const auto store = open();
    EXPECT_TRUE(store->settings().contains("com.example.deep"));
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(SettingsStoreTest, IsTheOnlyOneWithItsFile) {
    auto first = open();
    ASSERT_TRUE(first);
    EXPECT_FALSE(open());
    EXPECT_EQ(failure, "another lumora-tweak is running: it holds " + sandbox.settings().string());
    first.reset();
    EXPECT_TRUE(open());
}

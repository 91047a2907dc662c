#include "tests/tweak/SettingsStoreTest.h"
#include "tests/tweak/DeviceSync.h"

#include "tests/support/Waiting.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <latch>
#include <thread>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace tests;

/// The one of the C library stands behind it.
extern "C" int fsync(int descriptor) {
    if (syncingFails) {
        errno = EIO;
        return -1;
    }
    ++synced;
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

TEST_F(SettingsStoreTest, HoldsEveryDefaultAndWritesNothingAtFirst) {
    const auto store = open();
    ASSERT_TRUE(store);
    for (const Setting& setting : knownSettings())
        EXPECT_EQ(store->settings()[setting.key], setting.byDefault);
    EXPECT_FALSE(std::filesystem::exists(sandbox.settings()));
}

TEST_F(SettingsStoreTest, KeepsSettingsAndKeysOfPlugInsOfEveryKindAcrossARestart) {
    const std::vector<Dictionary::Entry> changes{
        {"kTweakEnabled", false},
        {"kSleepTime", 3600},
        {"kAppIconOpacity", 0.1},
        {"kLSDateSubtitle", "Grüße 😀"},
        {"kAppsEnabled", List{"com.b", "com.a"}},
        {"kLSBlurColor", Dictionary{{"h", 0.25}, {"s", 1.0}, {"b", 0.0}}},
        {"kAutoUnlockPasscode", "1234"},
        {"com.example.switch", true},
        {"com.example.data", Data{1, 2, 3}},
        {"com.example.date", platform::Date{0.5}},
        {"com.example.list", List{1, "a", List{}}},
        {"com.example.nested", Dictionary{{"a", Dictionary{{"b", 1.5}}}}},
        {"", "an empty key is a key"},
    };
    {
        const auto store = open();
        for (const auto& [key, value] : changes)
            ASSERT_TRUE(store->change(key, value));
    }
    EXPECT_THAT(files(), UnorderedElementsAre("settings.plist", "settings.plist.lock"));
    const auto store = open();
    for (const auto& [key, value] : changes)
        EXPECT_EQ(store->settings()[key], value) << key;
    EXPECT_EQ(store->settings().size(), knownSettings().size() + 6);
    EXPECT_THAT(lines, IsEmpty());
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

TEST_F(SettingsStoreTest, MakesTheMissingFileBehindLinksAndKeepsThem) {
    const auto folder = sandbox.path() / "folder";
    std::filesystem::create_directory(folder);
    std::filesystem::create_symlink("folder/link", sandbox.settings());
    std::filesystem::create_symlink("real.plist", folder / "link");
    const auto store = open();
    ASSERT_TRUE(store) << failure;
    EXPECT_EQ(store->path(), folder / "real.plist");
    EXPECT_TRUE(store->change("kSleepTime", 30));
    EXPECT_TRUE(std::filesystem::is_symlink(sandbox.settings()));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
    EXPECT_EQ(onDisk()["kSleepTime"], Value(30));
}

TEST_F(SettingsStoreTest, SyncsAChangeToTheDeviceWhileItIsOpenAndWithinASecond) {
    const auto store = open();
    const int before = synced;
    ASSERT_TRUE(store->change("kSleepTime", 30));
    EXPECT_TRUE(eventually([&] { return synced >= before + 2; })) << "neither the file nor its folder";
    EXPECT_LT(SettingsFile::kSyncDelay, std::chrono::seconds(1)); // what the store waits for first
}

TEST_F(SettingsStoreTest, BeginsWithTheSettingsSyncedLastWhereThoseAfterThemWereLost) {
    const std::string copy = sandbox.settings().string() + ".synced";
    EXPECT_TRUE(open()->change("kSleepTime", 30));
    EXPECT_FALSE(std::filesystem::exists(copy));
    for (const bool isMissing : {false, true}) {
        syncingFails = true;
        for (const int time : {60, 5})
            EXPECT_TRUE(open()->change("kSleepTime", time));
        syncingFails = false;
        writeFile(sandbox.settings(), ""); // as a power cut may leave it
        if (isMissing) std::filesystem::remove(sandbox.settings());
        lines.clear();
        const auto store = open();
        ASSERT_TRUE(store) << failure;
        EXPECT_EQ(store->settings()["kSleepTime"], Value(30));
        EXPECT_EQ(onDisk()["kSleepTime"], Value(30));
        EXPECT_FALSE(std::filesystem::exists(copy));
        EXPECT_EQ(lines.size(), isMissing ? 0U : 1U);
    }
}

TEST_F(SettingsStoreTest, SyncsWhatAProcessThatWasKilledHasLeftAndKeepsNothingElse) {
    EXPECT_TRUE(open()->change("kSleepTime", 30));
    syncingFails = true;
    EXPECT_TRUE(open()->change("kSleepTime", 60));
    EXPECT_THAT(files(), testing::Contains("settings.plist.synced"));
    syncingFails = false;
    const auto store = open();
    ASSERT_TRUE(store) << failure;
    EXPECT_EQ(store->settings()["kSleepTime"], Value(60));
    EXPECT_THAT(files(), UnorderedElementsAre("settings.plist", "settings.plist.lock"));
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

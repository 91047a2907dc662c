#include "search/IndexFile.h"
#include "tests/search/SomeIndex.h"
#include "tests/support/KeptEnvironment.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using search::readIndex;
using search::writeIndex;

struct IndexFileTest : testing::Test, tests::SomeIndex {
    IndexFileTest() {
        add(apps, "Badges");
        add(passcode, "Blur Color");
        EXPECT_TRUE(writeIndex(file, index(), "today"));
    }
    [[nodiscard]] std::string text() const {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    void replace(const std::string& text) const { std::ofstream(file, std::ios::binary | std::ios::trunc) << text; }

    tests::TemporaryFolder folder{"index"};
    fs::path file = folder.path() / "cache/lumora/index";
};

TEST_F(IndexFileTest, KeepsAnIndexForTheUserAlone) {
    const auto kept = readIndex(file, "today");
    ASSERT_TRUE(kept);
    EXPECT_TRUE(kept->current);
    EXPECT_EQ(kept->index.pages(), index().pages());
    EXPECT_EQ(kept->index.entries(), index().entries());
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), fs::directory_iterator()), 1);
}

TEST_F(IndexFileTest, TellsAnIndexOfOtherSources) {
    ASSERT_TRUE(readIndex(file, "tomorrow"));
    EXPECT_FALSE(readIndex(file, "tomorrow")->current);
    EXPECT_FALSE(readIndex(file, "toda")->current);
    ASSERT_TRUE(writeIndex(file, index(), ""));
    EXPECT_FALSE(readIndex(file, "")->current) << "an index without a stamp is never up to date";
}

TEST_F(IndexFileTest, TakesADamagedFileForNone) {
    const std::string whole = text();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        replace(whole.substr(0, length));
        EXPECT_FALSE(readIndex(file, "today")) << "cut off at " << length;
    }
    std::mt19937 random(1);
    for (int i = 0; i < 300; ++i) {
        std::string damaged = whole;
        const std::size_t at = random() % damaged.size();
        damaged[at] = static_cast<char>(damaged[at] ^ (1 << (random() % 8)));
        replace(damaged);
        const auto read = readIndex(file, "today");
        EXPECT_FALSE(read && read->current) << "changed at " << at;
    }
    replace(whole);
    EXPECT_TRUE(readIndex(file, "today"));
}

TEST_F(IndexFileTest, TakesNoFileOfOthersAndNothingButAPlainFile) {
    fs::permissions(file, fs::perms::others_write, fs::perm_options::add);
    EXPECT_FALSE(readIndex(file, "today"));
    fs::remove(file);
    EXPECT_FALSE(readIndex(file, "today"));
    fs::create_directory(file);
    EXPECT_FALSE(readIndex(file, "today"));
    fs::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_FALSE(readIndex(file, "today")) << "and does not wait for a writer";
}

TEST_F(IndexFileTest, TakesNoHugeFile) {
    fs::resize_file(file, std::uintmax_t{1} << 40U);
    EXPECT_FALSE(readIndex(file, "today"));
}

TEST_F(IndexFileTest, SaysWhyAFileCannotBeWritten) {
    std::ofstream(folder.path() / "plain") << "x";
    const auto written = writeIndex(folder.path() / "plain/index", index(), "today");
    ASSERT_FALSE(written);
    EXPECT_THAT(written.error(), testing::HasSubstr("plain"));
    EXPECT_FALSE(writeIndex("", index(), "today"));
}

TEST_F(IndexFileTest, StandsInTheUsersCache) {
    const tests::KeptEnvironment kept;
    ::setenv("XDG_CACHE_HOME", "/somewhere/else", 1);
    EXPECT_EQ(search::indexFile({}).parent_path(), "/somewhere/else/lumora");
}

TEST_F(IndexFileTest, IsAnotherOneForAnotherDeviceRootBundleProgramOrLanguage) {
    const tests::KeptEnvironment kept;
    std::set<fs::path> files{search::indexFile({"bundle", "program"}), search::indexFile({"other", "program"}),
                             search::indexFile({"bundle", "other"})};
    ::setenv("LUMORA_ROOT", folder.path().c_str(), 1);
    files.insert(search::indexFile({"bundle", "program"}));
    ::setenv("LC_ALL", "sv_SE.UTF-8", 1);
    files.insert(search::indexFile({"bundle", "program"}));
    EXPECT_EQ(files.size(), 5U);
    EXPECT_EQ(search::indexFile({"bundle", "program"}), search::indexFile({"bundle", "program"}));
}

TEST_F(IndexFileTest, StaysWithTheLatestThreeOthers) {
    using namespace std::chrono_literals;
    std::vector<fs::path> older;
    for (const char* name : {"index-1", "index-2", "index-3", "index-4.half-written", "other"}) {
        older.push_back(file.parent_path() / name);
        std::ofstream(older.back()) << "x";
        fs::last_write_time(older.back(), fs::last_write_time(file) - 1h * older.size());
    }
    ASSERT_TRUE(writeIndex(file, index(), "today"));
    EXPECT_TRUE(fs::exists(file) && fs::exists(older[0]) && fs::exists(older[1]) && fs::exists(older[2]));
    EXPECT_FALSE(fs::exists(older[3]));
    EXPECT_TRUE(fs::exists(older[4])) << "no index";
}

/// What each change of the sources does to the stamp.
struct IndexStampTest : testing::Test {
    IndexStampTest() {
        for (const char* name : {"bundle", "data/applications/more", "data/fonts", "config/fontconfig"})
            fs::create_directories(folder.path() / name);
        for (const auto& [variable, name] : {std::pair("XDG_DATA_HOME", "data"), {"XDG_CONFIG_HOME", "config"}})
            ::setenv(variable, (folder.path() / name).c_str(), 1);
        ::setenv("LUMORA_ROOT", folder.path().c_str(), 1);
        write("program");
    }
    void write(const std::string& name) const {
        fs::create_directories((folder.path() / name).parent_path());
        std::ofstream(folder.path() / name, std::ios::app) << "x";
    }
    [[nodiscard]] std::string stamp() const {
        return search::stampOf({folder.path() / "bundle", folder.path() / "program"});
    }

    tests::TemporaryFolder folder{"stamp"};
    tests::KeptEnvironment environment;
};

TEST_F(IndexStampTest, StaysWhileNothingChanges) {
    EXPECT_EQ(stamp(), stamp());
    EXPECT_EQ(stamp().find('\n'), std::string::npos);
}

TEST_F(IndexStampTest, ChangesWithEverySource) {
    for (const char* name :
         {"program", "bundle/Lumora", "Library/Nevo/Lumora/Plugins/Clock.bundle/Clock",
          "Library/Nevo/Lumora/Plugins/Clock.bundle/Clock", "Library/MobileSubstrate/DynamicLibraries/AppList.dylib",
          "data/applications/a.desktop", "data/applications/more/b.desktop", "data/fonts/c.ttf",
          "config/fontconfig/fonts.conf", "usr/share/applications/d.desktop"}) {
        const std::string before = stamp();
        write(name);
        EXPECT_NE(stamp(), before) << name;
    }
    const std::string before = stamp();
    ::setenv("LANG", "sv_SE.UTF-8", 1);
    EXPECT_NE(stamp(), before);
}

} // namespace

// archive and unarchive, which need no tweak: what they read and where they write.

#include "tests/support/FullDisk.h"
#include "tests/tools/Command.h"
#include "tests/tweak/Sandbox.h"

#include "platform/foundation/NSKeyedArchiver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace lumora;
using namespace tests;
using platform::NSKeyedUnarchiver;
using testing::HasSubstr;

namespace {

class ArchiveCommands : public testing::Test {
  protected:
    Sandbox sandbox;
};

} // namespace

TEST_F(ArchiveCommands, UnarchivesEveryArchiveToItsJsonAndBack) {
    int archives = 0;
    for (const auto& entry : std::filesystem::directory_iterator(LUMORA_TEST_DATA "/archives")) {
        if (entry.path().extension() != ".bplist") continue;
        ++archives;
        const std::filesystem::path name = entry.path().stem();
        const auto json = entry.path().parent_path() / (name.extension() == ".imm" ? name.stem() : name);
        const Finished read = lumoractl({"unarchive", entry.path()});
        ASSERT_EQ(read.status, 0) << entry.path() << ": " << read.errors;
        EXPECT_EQ(parsed(read.output), parsed(readFile(json.string() + ".json"))) << entry.path();

        const auto again = sandbox.path() / "again.bplist";
        ASSERT_EQ(lumoractl({"archive", "-o", again}, read.output).status, 0);
        EXPECT_EQ(lumoractl({"unarchive", again}).output, read.output) << entry.path();
    }
    EXPECT_GT(archives, 20);
}

TEST_F(ArchiveCommands, WritesAndReadsFilesByName) {
    const auto json = sandbox.path() / "in.json";
    const auto archive = sandbox.path() / "out.bplist";
    const auto back = sandbox.path() / "back.json";
    writeFile(json, R"({"b": [1, 1.0, true, null], "a": {"$data": "aGk="}})");
    EXPECT_EQ(lumoractl({"archive", json, "--output", archive}).status, 0);
    EXPECT_EQ(NSKeyedUnarchiver::unarchiveObjectWithData(bytesOf(readFile(archive))), parsed(readFile(json)));
    EXPECT_EQ(lumoractl({"unarchive", archive, "-o", back}).status, 0);
    EXPECT_EQ(parsed(readFile(back)), parsed(readFile(json)));
}

TEST_F(ArchiveCommands, LeavesTheOutputAloneWhenTheInputIsWrong) {
    const auto kept = sandbox.path() / "kept";
    writeFile(kept, "kept");
    const Finished archive = lumoractl({"archive", "-o", kept}, "{\"a\": }");
    EXPECT_EQ(archive.status, 1);
    EXPECT_THAT(archive.errors, HasSubstr("the input is no JSON: parse error at line 1"));
    const Finished unarchive = lumoractl({"unarchive", "-o", kept}, "no archive");
    EXPECT_EQ(unarchive.status, 1);
    EXPECT_THAT(unarchive.errors, HasSubstr("the input is no keyed archive: "));
    EXPECT_EQ(readFile(kept), "kept");
}

TEST_F(ArchiveCommands, LeavesTheOutputAloneWhenTheDiskIsFull) {
    const auto folder = sandbox.path() / "output";
    std::filesystem::create_directory(folder);
    writeFile(folder / "kept", "kept");
    writeFile(sandbox.path() / "long", '"' + std::string(9000, 'x') + '"');
    for (const char* name : {"kept", "new"}) {
        const FullDisk full(4096);
        const Finished archive = lumoractl({"archive", sandbox.path() / "long", "-o", folder / name});
        EXPECT_EQ(archive.status, 1);
        EXPECT_THAT(archive.errors, HasSubstr("cannot write " + (folder / name).string() + ": File too large\n"));
    }
    EXPECT_EQ(readFile(folder / "kept"), "kept");
    EXPECT_EQ(entries(folder.c_str()), 1);
}

TEST_F(ArchiveCommands, ReplacesTheFileThatALinkLeadsToAndKeepsItsMode) {
    using enum std::filesystem::perms;
    const auto file = sandbox.path() / "file";
    const auto link = sandbox.path() / "link";
    writeFile(file, "former");
    std::filesystem::permissions(file, owner_read | owner_write | group_write);
    std::filesystem::create_symlink("file", link);
    EXPECT_EQ(lumoractl({"archive", "-o", link}, "1").status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(lumoractl({"unarchive", file}).output, "1\n");
    EXPECT_EQ(std::filesystem::status(file).permissions(), owner_read | owner_write | group_write);

    const auto made = sandbox.path() / "made";
    EXPECT_EQ(shell("umask 027; echo 1 | \"$0\" archive -o '" + made.string() + "'").status, 0);
    EXPECT_EQ(std::filesystem::status(made).permissions(), owner_read | owner_write | group_read);
}

TEST_F(ArchiveCommands, WritesIntoStreamsAndDevicesThatAreNamed) {
    const auto file = sandbox.path() / "file";
    writeFile(file, "former");
    std::filesystem::create_hard_link(file, sandbox.path() / "same");
    EXPECT_EQ(shell("echo 1 | \"$0\" archive | \"$0\" unarchive -o /dev/stdout > '" + file.string() + "'").status, 0);
    EXPECT_EQ(readFile(sandbox.path() / "same"), "1\n");
    EXPECT_EQ(shell("echo 1 | \"$0\" archive -o /dev/stdout | \"$0\" unarchive").output, "1\n");
    EXPECT_EQ(lumoractl({"archive", "-o", "/dev/null"}, "1").status, 0);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(ArchiveCommands, SaysThatAValueIsTooLargeForAnArchive) {
    std::string longList = "[0";
    for (std::size_t i = 0; i < platform::PropertyListLimits::writtenValues; ++i)
        longList += ",0";
    EXPECT_EQ(lumoractl({"archive"}, longList + "]").errors,
              "lumoractl: the value is nested too deeply, or too large, for an archive\n");
}

TEST_F(ArchiveCommands, SaysWhatItCannotReadOrWrite) {
    const std::string missing = sandbox.path() / "missing" / "file";
    EXPECT_EQ(lumoractl({"archive", missing}).errors,
              "lumoractl: cannot read " + missing + ": No such file or directory\n");
    EXPECT_EQ(lumoractl({"unarchive", sandbox.path()}).errors,
              "lumoractl: cannot read " + sandbox.path().string() + ": Is a directory\n");
    EXPECT_EQ(lumoractl({"archive", "-o", missing}, "1").errors,
              "lumoractl: cannot write " + missing + ": No such file or directory\n");
    const Finished full = shell("echo 1 | \"$0\" archive > /dev/full");
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.errors, "lumoractl: cannot write standard output: No space left on device\n");
}

#include "search/PrivateFolder.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using search::PrivateFolder;

struct PrivateFolderTest : testing::Test {
    [[nodiscard]] std::ptrdiff_t count() const {
        return std::distance(fs::directory_iterator(parent.path()), fs::directory_iterator());
    }
    tests::TemporaryFolder parent{"private"};
};

TEST_F(PrivateFolderTest, IsForItsUserAloneAndGoesWithItsOwner) {
    {
        PrivateFolder folder;
        ASSERT_TRUE(folder.makeIn(parent.path()));
        EXPECT_EQ(fs::status(folder.path()).permissions(), fs::perms::owner_all);
        std::ofstream(folder.path() / "file") << "x";
    }
    EXPECT_EQ(count(), 0);
}

TEST_F(PrivateFolderTest, IsRemovedByTheNextOneWhereItsProcessWasEnded) {
    const pid_t child = ::fork();
    if (child == 0) {
        PrivateFolder folder;
        if (folder.makeIn(parent.path())) std::ofstream(folder.path() / "file") << "x";
        ::raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    ASSERT_EQ(count(), 1);
    PrivateFolder next;
    ASSERT_TRUE(next.makeIn(parent.path()));
    EXPECT_EQ(count(), 1);
    EXPECT_TRUE(fs::is_empty(next.path()));
}

TEST_F(PrivateFolderTest, StaysWhileItIsInUseAndSoDoesWhatIsNone) {
    fs::create_directory(parent.path() / "lumora-index-of-mine");
    fs::create_directory(parent.path() / "elsewhere");
    std::ofstream(parent.path() / "elsewhere" / "file") << "x";
    fs::create_directory_symlink(parent.path() / "elsewhere", parent.path() / "lumora-index-ABCDEF");
    PrivateFolder one;
    PrivateFolder other;
    ASSERT_TRUE(one.makeIn(parent.path()) && other.makeIn(parent.path()));
    EXPECT_NE(one.path(), other.path());
    EXPECT_EQ(count(), 5);
    EXPECT_TRUE(fs::exists(parent.path() / "elsewhere" / "file"));
}

TEST_F(PrivateFolderTest, IsNotMadeWhereNothingCanBeWritten) {
    PrivateFolder folder;
    EXPECT_FALSE(folder.makeIn(parent.path() / "missing"));
    EXPECT_TRUE(folder.path().empty());
}

} // namespace

#include "platform/foundation/FolderContents.h"

#include "tests/support/DeviceFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <string>

namespace fs = std::filesystem;

namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;

class FolderContents : public testing::Test {
  protected:
    [[nodiscard]] std::vector<std::string> names() {
        std::vector<std::string> names;
        for (const fs::path& path : platform::contentsOfDirectoryAtPath(device_.path(), failed_)) {
            EXPECT_EQ(path.parent_path(), device_.path());
            names.push_back(path.filename().string());
        }
        return names;
    }
    void make(const std::string& name) const { std::ofstream(device_.path() / name) << "a file"; }

    tests::DeviceFolder device_;
    std::error_code failed_;
};

TEST_F(FolderContents, comeInTheByteOrderOfTheirNames) {
    // Neither the alphabet's order nor any language's: capital letters first, a name before those that it begins, and
    // what is not ASCII, or no text at all, last.
    std::vector<std::string> sorted{".hidden", "10",  "9",   "A", "B.bundle", "Z",        "a",   "a b",
                                    "a-b",     "a.b", "a0b", "b", "z",        "\xc3\xa4", "\xff"};
    for (int i = 0; i < 200; ++i)
        sorted.push_back("n" + std::to_string(i));
    std::ranges::sort(sorted);
    std::vector<std::string> shuffled = sorted;
    std::ranges::shuffle(shuffled, std::minstd_rand(7));
    for (const std::string& name : shuffled)
        make(name);
    fs::create_directory(device_.path() / "M.folder");
    sorted.insert(std::ranges::lower_bound(sorted, "M.folder"), "M.folder");

    EXPECT_THAT(names(), ElementsAreArray(sorted));
    EXPECT_FALSE(failed_);
}

TEST_F(FolderContents, holdBrokenLinksButNotTheFolderItselfNorItsParent) {
    fs::create_symlink("nowhere", device_.path() / "link");
    EXPECT_THAT(names(), testing::ElementsAre("link"));
}

TEST_F(FolderContents, areNoneWhereThereIsNoFolder) {
    EXPECT_THAT(platform::contentsOfDirectoryAtPath(device_.path() / "missing", failed_), IsEmpty());
    EXPECT_EQ(failed_, std::errc::no_such_file_or_directory);
    make("file");
    EXPECT_THAT(platform::contentsOfDirectoryAtPath(device_.path() / "file", failed_), IsEmpty());
    EXPECT_EQ(failed_, std::errc::not_a_directory);
}

} // namespace

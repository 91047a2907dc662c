#include "platform/ui/UIImage.h"

#include "tests/support/TestName.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace {

using platform::UIImage;
namespace fs = std::filesystem;

struct ImageFiles : testing::Test {
    fs::path folder = fs::path(testing::TempDir()) / tests::testName();
    void SetUp() override {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    void TearDown() override { fs::remove_all(folder); }
};

const fs::path resources = fs::path(LUMORA_SOURCE) / "resources";

TEST_F(ImageFiles, KnowTheirSizeInPointsAndTheirSharperTwin) {
    const auto icon = UIImage::imageWithContentsOfFile(resources / "mail.png");
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(icon->size(), (platform::CGSize{29, 29}));
    EXPECT_EQ(icon->encoded(1).size(), fs::file_size(resources / "mail.png"));
    EXPECT_EQ(icon->encoded(2).size(), fs::file_size(resources / "mail@2x.png"));
}

TEST_F(ImageFiles, WithoutATwinServeEveryScale) {
    fs::copy(resources / "mail.png", folder / "alone.png");
    const auto icon = UIImage::imageWithContentsOfFile(folder / "alone.png");
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(&icon->encoded(1), &icon->encoded(3));
}

TEST_F(ImageFiles, OfJpegAreRead) {
    // Start of image, an application segment of 4 bytes, a baseline frame header: 8 bits, 7 high, 9 wide.
    const std::string jpeg("\xFF\xD8\xFF\xE0\x00\x04\x01\x02\xFF\xC0\x00\x0B\x08\x00\x07\x00\x09\x01\x01\x11\x00", 21);
    std::ofstream(folder / "icon.jpg", std::ios::binary) << jpeg;
    const auto icon = UIImage::imageWithContentsOfFile(folder / "icon.jpg");
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(icon->size(), (platform::CGSize{9, 7}));
}

TEST_F(ImageFiles, ThatAreMissingOrNoPictureYieldNoImage) {
    std::ofstream(folder / "text.png") << "not a picture";
    std::ofstream(folder / "empty.png").flush();
    EXPECT_EQ(UIImage::imageWithContentsOfFile(folder / "missing.png"), nullptr);
    EXPECT_EQ(UIImage::imageWithContentsOfFile(folder / "text.png"), nullptr);
    EXPECT_EQ(UIImage::imageWithContentsOfFile(folder / "empty.png"), nullptr);
    EXPECT_EQ(UIImage::imageWithContentsOfFile({}), nullptr);
}

} // namespace

#include "platform/services/UIDevice.h"

#include "tests/support/DeviceFolder.h"

#include <gtest/gtest.h>

#include <sys/utsname.h>

namespace {

using platform::UIDevice;

class UIDeviceTest : public ::testing::Test {
  protected:
    std::string versionWith(const std::string& releaseFile) {
        folder.write(releaseFile, "/etc/os-release");
        return UIDevice({folder.path() / "etc/os-release", folder.path() / "usr/lib/os-release"}).systemVersion();
    }
    static std::string kernel() {
        utsname names{};
        uname(&names);
        return names.release;
    }
    tests::DeviceFolder folder;
};

TEST_F(UIDeviceTest, TellsTheVersionOfTheReleaseFileHoweverItIsQuoted) {
    EXPECT_EQ(versionWith("ID=x\nVERSION_ID=7.0.4\nNAME=y\n"), "7.0.4");
    EXPECT_EQ(versionWith("VERSION_ID=\"12\""), "12");
    EXPECT_EQ(versionWith("VERSION_ID='12 \"x\"'\r\n"), "12 \"x\"");
    EXPECT_EQ(versionWith("VERSION_ID=\"a\\\"b\"\n"), "a\"b");
    EXPECT_EQ(versionWith("#VERSION_ID=1\nVERSION_ID=2  \n"), "2");
}

TEST_F(UIDeviceTest, ReadsTheSecondFileOnlyWhereThereIsNoFirst) {
    folder.write("VERSION_ID=3\n", "/usr/lib/os-release");
    EXPECT_EQ(UIDevice({folder.path() / "etc/os-release", folder.path() / "usr/lib/os-release"}).systemVersion(), "3");
    EXPECT_EQ(versionWith("VERSION_ID=4\n"), "4");
}

TEST_F(UIDeviceTest, TellsTheKernelsReleaseWhereNoVersionIsNamed) {
    EXPECT_EQ(UIDevice({folder.path() / "none"}).systemVersion(), kernel());
    EXPECT_EQ(versionWith("NAME=rolling\nVERSION_ID=\n"), kernel());
}

TEST_F(UIDeviceTest, KnowsThisDevice) {
    EXPECT_FALSE(UIDevice::currentDevice().systemVersion().empty());
}

} // namespace

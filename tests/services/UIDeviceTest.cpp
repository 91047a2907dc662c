#include "platform/services/UIDevice.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <sys/utsname.h>

namespace {

using platform::UIDevice;

TEST(UIDevice, TellsTheVersionThatTheReleaseFileNames) {
    std::ifstream file("/etc/os-release");
    std::string line;
    while (std::getline(file, line) && !line.starts_with("VERSION_ID=")) {
    }
    ASSERT_TRUE(file) << "Debian's testing releases name none";
    EXPECT_EQ(line, "VERSION_ID=\"" + UIDevice::currentDevice().systemVersion() + "\"");
}

TEST(UIDevice, TellsTheKernelsReleaseWhereNoVersionIsNamed) {
    utsname names{};
    uname(&names);
    EXPECT_EQ(UIDevice("NO_SUCH_FACT").systemVersion(), names.release);
}

} // namespace

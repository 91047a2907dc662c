#pragma once

#include "tests/support/DeviceFolder.h"
#include "tests/support/KeptEnvironment.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace tests {

inline constexpr const char* appListPath = "/Library/MobileSubstrate/DynamicLibraries/AppList.dylib";

/// A device root of the test's own, in which it installs an application-list library.
struct InstalledLibrary : testing::Test {
    KeptEnvironment environment;
    DeviceFolder device;
    std::filesystem::path file = device.path() / (appListPath + 1);

    /// Each test loads one copy of its own, since a library that was loaded once stays.
    void install(const std::filesystem::path& built) const {
        std::filesystem::remove(file);
        device.install(built, appListPath);
    }
    /// Installs the odd one, with one of the oddities that OddAppList.c names.
    void installOdd(const char* oddity) const {
        install(ODD_APPLIST);
        setenv("ODD_APPLIST", oddity, 1);
    }
};

} // namespace tests

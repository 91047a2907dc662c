#pragma once

#include "tests/support/KeptEnvironment.h"
#include "tests/support/TestName.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace tests {

inline constexpr const char* appListPath = "/Library/MobileSubstrate/DynamicLibraries/AppList.dylib";

/// A device root of the test's own, in which it installs an application-list library.
struct InstalledLibrary : testing::Test {
    KeptEnvironment environment;
    static inline int installed = 0;
    std::filesystem::path root =
        std::filesystem::path(testing::TempDir()) / ("services-" + testName() + std::to_string(++installed));
    std::filesystem::path file = root / std::filesystem::path(appListPath).relative_path();

    void SetUp() override {
        std::filesystem::remove_all(root);
        std::filesystem::create_directories(file.parent_path());
        setenv("LUMORA_ROOT", root.c_str(), 1);
        setenv("XDG_CACHE_HOME", (root / "cache").c_str(), 1);
    }
    void TearDown() override { std::filesystem::remove_all(root); }

    /// Each test loads a copy of its own, since a library that was loaded once stays.
    void install(const std::filesystem::path& built) const { std::filesystem::copy_file(built, file); }
};

} // namespace tests

#pragma once

#include <gtest/gtest.h>
#include <string>

namespace tests {

/// Names files of the test that is running: tests of one program run side by side in processes of their own.
inline std::string testName() {
    return testing::UnitTest::GetInstance()->current_test_info()->name();
}

} // namespace tests

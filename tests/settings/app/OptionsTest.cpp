#include "settings/app/Options.h"

#include "platform/foundation/LoadProbe.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

TEST(Options, LeaveAPageTimeForAPlugInThatNeverAnswers) {
    EXPECT_GE(std::chrono::duration<double>(settings::Options().timeout), 2 * platform::ProbeLimits().clock);
}

} // namespace

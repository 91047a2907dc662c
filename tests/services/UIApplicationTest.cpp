#include "platform/services/UIApplication.h"

#include "tests/support/Home.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using platform::NSURL;
using platform::UIApplication;
using ::testing::ElementsAre;

TEST(UIApplication, HandsAnAddressToTheProgramRegisteredForItsScheme) {
    tests::Home home;
    home.addRecorder("viewer");
    home.registerFor("twitter", "viewer.desktop", "viewer --open %u");
    EXPECT_TRUE(UIApplication::sharedApplication().openURL(*NSURL::URLWithString("twitter://user?screen_name=a")));
    EXPECT_THAT(home.argumentsOf("viewer"), ElementsAre("--open", "twitter://user?screen_name=a"));
}

TEST(UIApplication, DoesNothingForASchemeThatNobodyTakes) {
    tests::Home home;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(UIApplication::sharedApplication().openURL(*NSURL::URLWithString("twitter://user?screen_name=a")));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(UIApplication, DoesNothingWhenTheRegisteredProgramIsGone) {
    tests::Home home;
    const auto viewer = home.addRecorder("viewer");
    home.registerFor("twitter", "viewer.desktop", "viewer %u");
    std::filesystem::remove(viewer);
    EXPECT_FALSE(UIApplication::sharedApplication().openURL(*NSURL::URLWithString("twitter://user")));
}

TEST(UIApplication, DoesNothingWhereTheFoldersOfApplicationsHaveNoEnd) {
    tests::Home home;
    home.addRecorder("viewer");
    home.registerFor("twitter", "viewer.desktop", "viewer %u");
    const auto applications = home.path() / "data/applications";
    for (const char* name : {"a", "b"})
        std::filesystem::create_directory_symlink(".", applications / name);
    EXPECT_FALSE(UIApplication::sharedApplication().openURL(*NSURL::URLWithString("twitter://user")));
}

} // namespace

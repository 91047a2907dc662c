#include "pages/LumoraPreferences.h"

#include "tests/pages/ExpectedRows.h"
#include "tests/pages/OpenPage.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <syslog.h>
#include <vector>

namespace {

struct Logged {
    int priority;
    std::string message;
};
std::vector<Logged> systemLog;

[[gnu::format(printf, 2, 0)]] void takeLogged(int priority, const char* format, std::va_list arguments) {
    if (char* message = nullptr; vasprintf(&message, format, arguments) >= 0) {
        systemLog.push_back({priority, message});
        std::free(message);
    }
}

} // namespace

// The system log of this program: the platform library finds it before the C library's, hardened or not.
extern "C" [[gnu::visibility("default"), gnu::format(printf, 3, 4)]] void __syslog_chk(int priority, int /*level*/,
                                                                                       const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    takeLogged(priority, format, arguments);
    va_end(arguments);
}
extern "C" [[gnu::visibility("default")]] void syslog(int priority, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    takeLogged(priority, format, arguments);
    va_end(arguments);
}

namespace {

using lumora::LumoraPreferences;
using testing::MatchesRegex;
using tests::openPage;
using tests::rowOf;

TEST(RootPage, HasFifteenRowsInOrder) {
    const auto root = openPage<LumoraPreferences>();
    ASSERT_NE(root, nullptr);
    const auto rows = root->specifiers();
    ASSERT_EQ(rows->size(), 15U);
    const auto contactFooter = rows->at(12)->property("footerText");
    ASSERT_TRUE(contactFooter.text()); // what it says is the maker's own affair
    tests::expectRows(*root, {
                                 tests::group("General"),
                                 tests::toggle("Enable Lumora", "kTweakEnabled"),
                                 tests::page("Apps", "AppsController"),
                                 tests::group("Lock Sleep Timer"),
                                 tests::options("Sleep After", "kSleepTime",
                                                {"5 Seconds", "10 Seconds", "15 Seconds", "20 Seconds", "30 Seconds",
                                                 "60 Seconds", "Never"},
                                                {5, 10, 15, 20, 30, 60, 3600}),
                                 tests::toggle("Disable For AppViews", "kSleepDisabledForAppViews"),
                                 tests::group("Options"),
                                 tests::page("App Views", "PluginsListController"),
                                 tests::page("Lock Screen Settings", "LSSettingsController"),
                                 tests::toggle("Hide Notifications On Tap", "kNotificationsHideOnTap"),
                                 tests::group("Changes"),
                                 tests::page("Change Log", "ChangeLogController"),
                                 tests::group("Contact", std::string(*contactFooter.text())),
                                 tests::button("@nevo_lumora"),
                                 tests::button("support@nevo.example"),
                             });
    EXPECT_TRUE(rows->at(13)->action);
    EXPECT_TRUE(rows->at(14)->action);
}

TEST(RootPage, LogsItsWholeDictionaryEachTimeItAppears) {
    const auto page = openPage<LumoraPreferences>({{"kTweakEnabled", true}, {"kSleepTime", 5}, {"other", "100%s"}});
    rowOf(*page, "kSleepTime")->performSetter(20);
    const std::string settings = "\\{\n    kSleepTime = 20;\n    kTweakEnabled = 1;\n    opening = [0-9]+;\n"
                                 "    other = \"100%s\";\n\\}";
    for (int appearance = 0; appearance < 2; ++appearance) {
        systemLog.clear();
        testing::internal::CaptureStderr();
        page->viewWillAppear(true);
        EXPECT_THAT(testing::internal::GetCapturedStderr(), MatchesRegex(".*" + settings + "\n"));
        ASSERT_EQ(systemLog.size(), 1U);
        EXPECT_THAT(systemLog.front().message, MatchesRegex(settings));
        EXPECT_EQ(systemLog.front().priority, LOG_USER | LOG_NOTICE);
    }
}

} // namespace

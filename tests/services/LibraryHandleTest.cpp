#include "platform/services/ALApplicationList.h"

#include "tests/services/InstalledLibrary.h"

#include <chrono>
#include <fstream>
#include <optional>
#include <string>
#include <utility>

namespace {

using platform::ALApplicationList;
using platform::LibraryHandle;
using platform::openLibraries;
using platform::openLibrary;
using tests::appListPath;

using LibraryHandles = tests::InstalledLibrary;

TEST_F(LibraryHandles, AreEmptyWhenThereIsNoLibrary) {
    testing::internal::CaptureStderr();
    {
        const LibraryHandle handle = openLibrary(appListPath);
        EXPECT_FALSE(handle);
        EXPECT_EQ(openLibraries(), 0);
        EXPECT_EQ(ALApplicationList::sharedApplicationList(), nullptr);
    }
    EXPECT_EQ(openLibraries(), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(LibraryHandles, AreEmptyForFilesThatAreNoWholeLibrary) {
    testing::internal::CaptureStderr();
    install(FAKE_APPLIST);
    std::filesystem::resize_file(file, 4096);
    EXPECT_FALSE(openLibrary(appListPath));
    std::ofstream(file) << "text";
    EXPECT_FALSE(openLibrary(appListPath));
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    EXPECT_FALSE(openLibrary(appListPath));
    EXPECT_EQ(openLibraries(), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(LibraryHandles, AreEmptyForALibraryThatEndsItsProcessUntilThereIsAnother) {
    for (const char* moment : {"load", "shared", "applications", "icon"}) {
        installOdd(moment);
        EXPECT_FALSE(openLibrary(appListPath)) << moment;
        unsetenv("ODD_APPLIST");
        EXPECT_FALSE(openLibrary(appListPath)) << moment << ", without another try";
    }
    install(ODD_APPLIST);
    EXPECT_TRUE(openLibrary(appListPath)) << "though it would call a function that no library has";
}

TEST_F(LibraryHandles, AreEmptyForALibraryThatTakesTooLongForThisProcess) {
    using namespace std::chrono_literals;
    for (const std::string moment : {"hanging-shared", "hanging-icon", "looping-load", "looping-applications"}) {
        const bool hangs = moment.starts_with("hanging");
        const platform::ProbeLimits limits{hangs ? 1s : 60s, hangs ? 60s : 1s};
        installOdd(moment.c_str());
        EXPECT_FALSE(openLibrary(appListPath, limits)) << moment;
        unsetenv("ODD_APPLIST");
        EXPECT_FALSE(openLibrary(appListPath)) << moment << ", without another try";
    }
}

TEST_F(LibraryHandles, AreCounted) {
    install(FAKE_APPLIST);
    std::optional<LibraryHandle> first = openLibrary(appListPath);
    std::optional<LibraryHandle> second = openLibrary(appListPath);
    EXPECT_TRUE(*first);
    EXPECT_TRUE(*second);
    EXPECT_EQ(openLibraries(), 2);
    first.reset();
    EXPECT_EQ(openLibraries(), 1);
    EXPECT_NE(ALApplicationList::sharedApplicationList(), nullptr);
    second.reset();
    EXPECT_EQ(openLibraries(), 0);
}

TEST_F(LibraryHandles, TakeTheClassWithThemWhenTheLastIsClosed) {
    install(FAKE_APPLIST);
    std::optional<LibraryHandle> handle = openLibrary(appListPath);
    ALApplicationList* list = ALApplicationList::sharedApplicationList();
    ASSERT_NE(list, nullptr);
    handle.reset();
    EXPECT_EQ(ALApplicationList::sharedApplicationList(), nullptr);
    handle = openLibrary(appListPath);
    EXPECT_EQ(ALApplicationList::sharedApplicationList(), list);
}

TEST_F(LibraryHandles, HaveOnlyTheClassOfTheLibraryItself) {
    install(BORROWING_APPLIST);
    const LibraryHandle handle = openLibrary(appListPath);
    ASSERT_TRUE(handle) << "with the library that it stands on";
    EXPECT_EQ(ALApplicationList::sharedApplicationList(), nullptr);
}

TEST_F(LibraryHandles, CanBeMovedAndAreClosedOnce) {
    install(FAKE_APPLIST);
    {
        LibraryHandle empty;
        EXPECT_FALSE(empty);
        LibraryHandle opened = openLibrary(appListPath);
        empty = std::move(opened);
        EXPECT_TRUE(empty);
        const LibraryHandle last(std::move(empty));
        EXPECT_TRUE(last);
        EXPECT_EQ(openLibraries(), 1);
    }
    EXPECT_EQ(openLibraries(), 0);
}

} // namespace

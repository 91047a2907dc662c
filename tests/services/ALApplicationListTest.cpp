#include "platform/services/ALApplicationList.h"

#include "tests/services/InstalledLibrary.h"

#include <dlfcn.h>

namespace {

using platform::ALApplicationList;
using platform::LibraryHandle;
using platform::openLibrary;
using platform::UIImageRef;
using tests::appListPath;
using Names = std::unordered_map<std::string, std::string>;

using ApplicationLists = tests::InstalledLibrary;

TEST_F(ApplicationLists, NameEveryApplication) {
    install(FAKE_APPLIST);
    setenv("FAKE_APPLIST_COUNT", "10000", 1);
    const LibraryHandle library = openLibrary(appListPath);
    ALApplicationList* list = ALApplicationList::sharedApplicationList();
    ASSERT_NE(list, nullptr);
    const Names names = list->applications();
    EXPECT_EQ(names.size(), 10000);
    EXPECT_EQ(names.at("fake.00000"), "Application 00000");
    EXPECT_EQ(names.at("fake.09999"), "Application 09999");
}

TEST_F(ApplicationLists, GiveIconsOfBothResolutions) {
    install(FAKE_APPLIST);
    setenv("FAKE_APPLIST_COUNT", "10", 1);
    const LibraryHandle library = openLibrary(appListPath);
    ALApplicationList* list = ALApplicationList::sharedApplicationList();
    ASSERT_NE(list, nullptr);
    const UIImageRef icon = list->iconOfSize(29, "fake.00009");
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(icon->size(), (platform::CGSize{29, 29}));
    constexpr std::size_t widthAt = 19; // the lowest byte of the width in a PNG file's header
    EXPECT_EQ(icon->encoded(1).at(widthAt), 29);
    EXPECT_EQ(icon->encoded(2).at(widthAt), 58);
}

TEST_F(ApplicationLists, HaveNoIconForStrangers) {
    install(FAKE_APPLIST);
    setenv("FAKE_APPLIST_COUNT", "10", 1);
    const LibraryHandle library = openLibrary(appListPath);
    ALApplicationList* list = ALApplicationList::sharedApplicationList();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->iconOfSize(29, "fake.00010"), nullptr);
    EXPECT_EQ(list->iconOfSize(29, ""), nullptr);
    void* loaded = dlopen(file.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(*static_cast<unsigned*>(dlsym(loaded, "fakeAppListIconCalls")), 2);
    EXPECT_EQ(*static_cast<unsigned*>(dlsym(loaded, "fakeAppListApplicationsCalls")), 0);
    dlclose(loaded);
}

TEST_F(ApplicationLists, AreNotThereWhenTheLibraryIsOfAnotherVersion) {
    install(ODD_APPLIST);
    setenv("ODD_APPLIST", "version", 1);
    const LibraryHandle library = openLibrary(appListPath);
    EXPECT_TRUE(library);
    EXPECT_EQ(ALApplicationList::sharedApplicationList(), nullptr);
}

TEST_F(ApplicationLists, AreNotThereWhenTheLibraryHasNone) {
    install(ODD_APPLIST);
    setenv("ODD_APPLIST", "list", 1);
    const LibraryHandle library = openLibrary(appListPath);
    EXPECT_TRUE(library);
    EXPECT_EQ(ALApplicationList::sharedApplicationList(), nullptr);
}

TEST_F(ApplicationLists, AreNotThereWhenTheClassDoesNotAnswer) {
    install(ODD_APPLIST);
    setenv("ODD_APPLIST", "class", 1);
    const LibraryHandle library = openLibrary(appListPath);
    EXPECT_TRUE(library);
    EXPECT_EQ(ALApplicationList::sharedApplicationList(), nullptr);
}

TEST_F(ApplicationLists, AreEmptyWhenTheyDoNotAnswer) {
    install(ODD_APPLIST);
    setenv("ODD_APPLIST", "entries", 1);
    const LibraryHandle library = openLibrary(appListPath);
    ALApplicationList* list = ALApplicationList::sharedApplicationList();
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->applications().empty());
    EXPECT_EQ(list->iconOfSize(29, "good"), nullptr);
}

TEST_F(ApplicationLists, LeaveOutWhatIsNoTextOrNoPicture) {
    install(ODD_APPLIST);
    const LibraryHandle library = openLibrary(appListPath);
    ALApplicationList* list = ALApplicationList::sharedApplicationList();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->applications(), (Names{{"good", "Güte"}, {"empty.name", ""}}));
    for (const char* identifier : {"null", "empty", "text", "nowhere", "half"})
        EXPECT_EQ(list->iconOfSize(29, identifier), nullptr) << identifier;
}

} // namespace

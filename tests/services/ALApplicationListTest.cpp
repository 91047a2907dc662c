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

struct ApplicationLists : tests::InstalledLibrary {
    /// What the library gives that is installed.
    ALApplicationList* opened() {
        library = openLibrary(appListPath);
        EXPECT_TRUE(library);
        return ALApplicationList::sharedApplicationList();
    }

    LibraryHandle library;
};

TEST_F(ApplicationLists, NameEveryApplication) {
    std::string lines;
    for (int i = 0; i < 10'000; ++i)
        lines += "fake." + std::to_string(i) + "\tApplication " + std::to_string(i) + "\n";
    device.write(lines, std::filesystem::path(appListPath).replace_filename("applications.txt"));
    install(FAKE_APPLIST);
    ALApplicationList* list = opened();
    ASSERT_NE(list, nullptr);
    const Names names = list->applications();
    EXPECT_EQ(names.size(), 10000);
    EXPECT_EQ(names.at("fake.0"), "Application 0");
    EXPECT_EQ(names.at("fake.9999"), "Application 9999");
}

TEST_F(ApplicationLists, GiveIconsOfBothResolutions) {
    install(FAKE_APPLIST);
    ALApplicationList* list = opened();
    ASSERT_NE(list, nullptr);
    const UIImageRef icon = list->iconOfSize(29, "fake.9");
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(icon->size(), (platform::CGSize{29, 29}));
    constexpr std::size_t widthAt = 19; // the lowest byte of the width in a PNG file's header
    EXPECT_EQ(icon->encoded(1).at(widthAt), 29);
    EXPECT_EQ(icon->encoded(2).at(widthAt), 58);
}

TEST_F(ApplicationLists, HaveNoIconForStrangers) {
    install(FAKE_APPLIST);
    ALApplicationList* list = opened();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->iconOfSize(29, "plain.stranger"), nullptr);
    EXPECT_EQ(list->iconOfSize(29, ""), nullptr);
    void* loaded = dlopen(file.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(*static_cast<unsigned*>(dlsym(loaded, "fakeAppListIconCalls")), 2);
    EXPECT_EQ(*static_cast<unsigned*>(dlsym(loaded, "fakeAppListApplicationsCalls")), 0);
    dlclose(loaded);
}

struct OddLibraries : ApplicationLists, testing::WithParamInterface<const char*> {};

TEST_P(OddLibraries, GiveNoList) {
    installOdd(GetParam());
    EXPECT_EQ(opened(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Faulty, OddLibraries, testing::Values("version", "list", "class"));

TEST_F(ApplicationLists, AreEmptyWhenTheyDoNotAnswer) {
    installOdd("entries");
    ALApplicationList* list = opened();
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->applications().empty());
    EXPECT_EQ(list->iconOfSize(29, "good"), nullptr);
}

TEST_F(ApplicationLists, LeaveOutWhatIsNoTextOrNoPicture) {
    install(ODD_APPLIST);
    ALApplicationList* list = opened();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->applications(), (Names{{"good", "Güte"}, {"empty.name", ""}}));
    for (const char* identifier : {"null", "empty", "text", "nowhere", "half"})
        EXPECT_EQ(list->iconOfSize(29, identifier), nullptr) << identifier;
}

} // namespace

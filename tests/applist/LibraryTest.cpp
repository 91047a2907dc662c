#include "applist/AppList.h"
#include "applist/DataFolders.h"
#include "tests/applist/Desktop.h"

#include <dlfcn.h>
#include <map>

namespace {

using tests::Desktop;
using tests::entryNamed;
using tests::write;
using Names = std::map<std::string, std::string>;
namespace fs = std::filesystem;

/// The library as its users meet it, in its place in a device root.
struct Library : tests::FolderTest {
    fs::path file = folder / "Library/MobileSubstrate/DynamicLibraries/AppList.dylib";
    const ALApplicationListClass* table = nullptr;
    ALSharedList* list = nullptr;

    void SetUp() override {
        fs::create_directories(file.parent_path());
        fs::copy_file(APPLIST, file);
        void* library = dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << dlerror();
        table = static_cast<const ALApplicationListClass*>(dlsym(library, AL_APPLICATION_LIST_SYMBOL));
        ASSERT_NE(table, nullptr);
        ASSERT_EQ(table->version, AL_APPLICATION_LIST_VERSION);
        list = table->sharedApplicationList();
        ASSERT_NE(list, nullptr);
    }
    void TearDown() override {
        fs::remove_all(Desktop::userData());
        fs::remove_all(Desktop::systemData());
    }

    [[nodiscard]] Names names() const {
        Names found;
        table->applications(
            list,
            [](const char* identifier, const char* name, void* context) {
                EXPECT_TRUE(static_cast<Names*>(context)->emplace(identifier, name).second) << identifier;
            },
            &found);
        return found;
    }

    [[nodiscard]] fs::path icon(double size, double scale, const char* identifier) const {
        fs::path found;
        table->iconFileOfSize(
            list, size, scale, identifier,
            [](const char* path, void* context) { *static_cast<fs::path*>(context) = path; }, &found);
        return found;
    }
};

TEST_F(Library, ListsApplicationsOfTheUserOfTheSystemAndOfItsDevice) {
    write(Desktop::userData() / "applications/all.desktop", entryNamed("User's"));
    write(Desktop::systemData() / "applications/all.desktop", entryNamed("System's"));
    write(Desktop::systemData() / "applications/both.desktop", entryNamed("System's"));
    for (const char* name : {"all", "both", "one"})
        write(folder / "usr/share/applications" / (std::string(name) + ".desktop"), entryNamed("Device's"));
    EXPECT_EQ(names(), (Names{{"all", "User's"}, {"both", "System's"}, {"one", "Device's"}}));
    EXPECT_EQ(table->sharedApplicationList(), list);
}

TEST_F(Library, FindsIconsOfTheDesktopsThemeAndOfItsDevice) {
    const std::string theme = "[Icon Theme]\nName=T\nDirectories=32\n[32]\nSize=32\n";
    write(Desktop::systemData() / "icons/desktop-theme/index.theme", theme);
    write(Desktop::systemData() / "icons/desktop-theme/32/both.png", tests::png(32, 32, 0xFF0000FF));
    write(folder / "usr/share/icons/hicolor/index.theme", theme);
    write(folder / "usr/share/icons/hicolor/32/both.png", tests::png(32, 32, 0x00FF00FF));
    write(folder / "usr/share/icons/hicolor/32/device.png", tests::png(32, 32, 0x0000FFFF));
    for (const char* name : {"both", "device", "neither"})
        write(folder / "usr/share/applications" / (std::string(name) + ".desktop"),
              entryNamed(name, "Icon=" + std::string(name) + "\n"));
    EXPECT_EQ(icon(29, 2, "both"), Desktop::systemData() / "icons/desktop-theme/32/both.png");
    EXPECT_EQ(icon(29, 1, "device"), folder / "usr/share/icons/hicolor/32/device.png");
    EXPECT_EQ(icon(29, 1, "neither"), "");
    EXPECT_EQ(icon(29, 1, "stranger"), "");
    EXPECT_EQ(icon(29, 1, nullptr), "");
    EXPECT_EQ(table->iconOfSize, nullptr) << "it decodes nothing itself";
}

TEST_F(Library, CanBeAskedFromWithinItsAnswers) {
    for (const char* name : {"a", "b", "c"})
        write(folder / "usr/share/applications" / (std::string(name) + ".desktop"), entryNamed(name));
    struct Asking {
        const Library& library;
        std::size_t visits = 0;
    } asking{*this};
    table->applications(
        list,
        [](const char* identifier, const char*, void* context) {
            auto& self = *static_cast<Asking*>(context);
            fs::remove(self.library.folder / "usr/share/applications" / (std::string(identifier) + ".desktop"));
            EXPECT_EQ(self.library.names().size(), 3 - ++self.visits);
        },
        &asking);
    EXPECT_EQ(asking.visits, 3);
}

TEST(TheDeviceRoot, IsFoundFromTheLibrarysOwnPath) {
    EXPECT_EQ(applist::deviceRootOfLibrary("/a/device/Library/MobileSubstrate/DynamicLibraries/AppList.dylib"),
              "/a/device");
    EXPECT_EQ(applist::deviceRootOfLibrary("/a/./b/../Library/MobileSubstrate/DynamicLibraries/AppList.dylib"), "/a");
    EXPECT_EQ(applist::deviceRootOfLibrary("/Library/MobileSubstrate/DynamicLibraries/AppList.dylib"), "/");
    EXPECT_EQ(applist::deviceRootOfLibrary("/usr/lib/AppList.dylib"), "");
    EXPECT_EQ(applist::deviceRootOfLibrary("/a/Library/Other/DynamicLibraries/AppList.dylib"), "");
}

} // namespace

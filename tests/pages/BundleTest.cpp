#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/FileContents.h"
#include "platform/foundation/NSBundle.h"
#include "platform/preferences/PSListController.h"
#include "platform/ui/UIImageView.h"
#include "tests/pages/RecordingTweak.h"
#include "tests/support/TestName.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

using platform::NSBundle;
using platform::PSListController;
using platform::UIImageView;
namespace fs = std::filesystem;

const fs::path lumoraBundle = fs::path(LUMORA_TEST_ROOT) / "Library/PreferenceBundles/Lumora.bundle";

/// A folder that looks like Lumora.bundle, to be broken.
struct BrokenBundle : testing::Test {
    fs::path folder = fs::path(testing::TempDir()) / (tests::testName() + ".bundle");
    void SetUp() override {
        fs::remove_all(folder);
        fs::copy(lumoraBundle, folder);
    }
    void TearDown() override { fs::remove_all(folder); }
    std::string errorOfLoading() const {
        const platform::Result<void> loaded = NSBundle::bundleWithPath(folder)->load();
        return loaded ? "" : loaded.error();
    }
};

TEST_F(BrokenBundle, CutShortIsRefusedBeforeItIsMapped) {
    // All of these end within the code; what lies behind it, for a debugger, nobody maps.
    for (const std::uintmax_t length : {40'000U, 4096U, 64U}) {
        fs::resize_file(folder / "Lumora", length);
        EXPECT_NE(errorOfLoading().find("cannot be loaded: it is cut short"), std::string::npos) << length;
    }
    for (const std::uintmax_t length : {10U, 0U}) { // which the loader itself refuses
        fs::resize_file(folder / "Lumora", length);
        EXPECT_NE(errorOfLoading(), "") << length;
    }
}

TEST_F(BrokenBundle, ThatIsNoFolderIsNoBundle) {
    EXPECT_EQ(NSBundle::bundleWithPath(folder / "Info.plist"), nullptr);
    EXPECT_EQ(NSBundle::bundleWithPath(folder / "nothing"), nullptr);
}

TEST(LumoraBundle, FindsResourcesOnlyInsideItself) {
    const auto bundle = NSBundle::bundleWithPath(lumoraBundle);
    ASSERT_NE(bundle, nullptr);
    EXPECT_EQ(bundle->pathForResource("mail", "png"), lumoraBundle / "mail.png");
    EXPECT_EQ(bundle->pathForResource("mail", "jpg"), fs::path());
    EXPECT_EQ(bundle->pathForResource("../Lumora.bundle/mail", "png"), fs::path());
    EXPECT_EQ(bundle->pathForResource("", ""), fs::path());
}

TEST(LumoraBundleDeathTest, HasNoPrincipalClassBeforeItIsLoaded) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process in which nobody has loaded it
    EXPECT_EXIT(_exit(NSBundle::bundleWithPath(lumoraBundle)->principalClass() ? 1 : 0), testing::ExitedWithCode(0),
                "");
}

/// Loaded, beside a tweak that answers.
std::shared_ptr<NSBundle> loadedBundle() {
    tests::RecordingTweak::shared();
    auto bundle = NSBundle::bundleWithPath(lumoraBundle);
    const platform::Result<void> loaded = bundle->load();
    EXPECT_TRUE(loaded) << loaded.error();
    return bundle;
}

std::shared_ptr<PSListController> pageOf(platform::Class pageClass) {
    return pageClass ? std::dynamic_pointer_cast<PSListController>(pageClass->make()) : nullptr;
}

TEST(LumoraBundle, LoadsAndItsRootPageFindsItsIconsInIt) {
    const auto bundle = loadedBundle();
    EXPECT_TRUE(bundle->load()) << "a second time is no matter";
    const auto root = pageOf(bundle->principalClass());
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(bundle->principalClass()->name, "LumoraPreferences");
    const auto rows = root->specifiers();
    ASSERT_EQ(rows->size(), 15U);
    for (const auto& [button, name] : {std::pair(13U, "twitter"), std::pair(14U, "mail")}) {
        const auto icon = rows->at(button)->imageProperty("iconImage");
        ASSERT_NE(icon, nullptr);
        EXPECT_EQ(icon->size(), (platform::CGSize{29, 29}));
        EXPECT_EQ(icon->encoded(1), platform::dataWithContentsOfFile(lumoraBundle / (name + std::string(".png"))))
            << name;
        EXPECT_EQ(icon->encoded(2), platform::dataWithContentsOfFile(lumoraBundle / (name + std::string("@2x.png"))))
            << name;
    }
    const PSListController& page = *root;
    EXPECT_EQ(NSBundle::bundleForClass(typeid(page))->bundlePath(), lumoraBundle);
}

const UIImageView* imageIn(const platform::UIView& view) {
    if (const auto* image = dynamic_cast<const UIImageView*>(&view)) return image;
    for (const auto& subview : view.subviews())
        if (const auto* image = imageIn(*subview)) return image;
    return nullptr;
}

TEST(LumoraBundle, HasTheMapOfItsColourPage) {
    const auto bundle = loadedBundle();
    const auto page = pageOf(platform::NSClassFromString("ColorPickerController"));
    ASSERT_NE(page, nullptr);
    page->view()->setFrame(platform::CGRectMake(0, 0, 390, 760));
    page->viewWillAppear(true);
    const UIImageView* field = imageIn(*page->view());
    ASSERT_NE(field, nullptr);
    ASSERT_NE(field->image(), nullptr);
    EXPECT_EQ(field->image()->encoded(1).size(), fs::file_size(lumoraBundle / "colormap.png"));
    EXPECT_EQ(field->frame(), platform::CGRectMake(20, 20, 350, 535));
}

} // namespace

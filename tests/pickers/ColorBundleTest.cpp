#include "platform/foundation/NSBundle.h"
#include "platform/preferences/PSListController.h"
#include "platform/ui/UIImageView.h"
#include "tests/pages/RecordingTweak.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>

namespace {

namespace fs = std::filesystem;
using platform::NSBundle;
using platform::UIImageView;
using platform::UIView;

const UIImageView* imageIn(const UIView& view) {
    if (const auto* image = dynamic_cast<const UIImageView*>(&view)) return image;
    for (const auto& subview : view.subviews())
        if (const auto* image = imageIn(*subview)) return image;
    return nullptr;
}

TEST(LumoraBundle, HasTheMapOfItsColourPage) {
    tests::RecordingTweak::shared();
    const auto folder = fs::path(LUMORA_TEST_ROOT) / "Library/PreferenceBundles/Lumora.bundle";
    const auto bundle = NSBundle::bundleWithPath(folder);
    ASSERT_NE(bundle, nullptr);
    const platform::Result<void> loaded = bundle->load();
    ASSERT_TRUE(loaded) << loaded.error();
    const platform::Class colorClass = platform::NSClassFromString("ColorPickerController");
    ASSERT_NE(colorClass, nullptr);
    const auto page = std::dynamic_pointer_cast<platform::PSListController>(colorClass->make());
    ASSERT_NE(page, nullptr);
    page->view()->setFrame(platform::CGRectMake(0, 0, 390, 760));
    page->viewWillAppear(true);
    const UIImageView* field = imageIn(*page->view());
    ASSERT_NE(field, nullptr);
    ASSERT_NE(field->image(), nullptr);
    EXPECT_EQ(field->image()->encoded(1).size(), fs::file_size(folder / "colormap.png"));
    EXPECT_EQ(field->frame(), platform::CGRectMake(20, 20, 350, 535));
}

} // namespace

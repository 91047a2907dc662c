#include "pickers/ColorMapping.h"
#include "pickers/ColorPicker.h"

#include "tests/pickers/Fingers.h"
#include "tests/support/BundleFile.h"

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <memory>

namespace {

namespace fs = std::filesystem;
using lumora::ColorPicker;
using platform::CGRectMake;
using platform::make;
using platform::UIColor;

const fs::path kMap = fs::path(LUMORA_SOURCE) / "resources/colormap.png";

/// The picture that is shipped.
class ColorMap : public testing::Test {
  protected:
    void SetUp() override {
        picture_.reset(gdk_pixbuf_new_from_file(kMap.c_str(), nullptr));
        ASSERT_NE(picture_, nullptr);
        ASSERT_EQ(gdk_pixbuf_get_n_channels(picture_.get()), 3) << "opaque everywhere";
        width = gdk_pixbuf_get_width(picture_.get());
        height = gdk_pixbuf_get_height(picture_.get());
    }
    std::array<int, 3> pixel(int x, int y) const {
        const guint8* bytes = gdk_pixbuf_read_pixels(picture_.get()) +
                              std::ptrdiff_t{y} * gdk_pixbuf_get_rowstride(picture_.get()) + std::ptrdiff_t{3} * x;
        return {bytes[0], bytes[1], bytes[2]};
    }
    /// By how much a pixel is away from a colour, in levels of 255: where it differs most.
    double distance(int x, int y, const UIColor& color) const {
        const auto [red, green, blue] = pixel(x, y);
        return std::max({std::abs(red - 255 * color.red()), std::abs(green - 255 * color.green()),
                         std::abs(blue - 255 * color.blue())});
    }

    int width = 0;
    int height = 0;

  private:
    struct Unreference {
        void operator()(GdkPixbuf* picture) const { g_object_unref(picture); }
    };
    std::unique_ptr<GdkPixbuf, Unreference> picture_;
};

TEST_F(ColorMap, ShowsInEveryPixelWhatATouchInItsCentreChooses) {
    const auto field = CGRectMake(0, 0, width, height);
    double worst = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const auto [hue, saturation] = lumora::hueSaturationAt({x + 0.5, y + 0.5}, field);
            worst = std::max(worst, distance(x, y, *UIColor::colorWithHue(hue, saturation, 1, 1)));
        }
    EXPECT_LE(worst, 0.5 + 1e-9) << "rounding, and nothing else";
}

TEST_F(ColorMap, IsRedAtBothSidesOfTheTopAndWhiteAlongTheBottom) {
    // The pixel in a corner is half a pixel away from it.
    const double half = 255 * std::max(6 * 0.5 / width, 0.5 / height) + 0.5;
    const auto red = UIColor::colorWithRed(1, 0, 0, 1);
    EXPECT_LE(distance(0, 0, *red), half);
    EXPECT_LE(distance(width - 1, 0, *red), half);
    EXPECT_LE(distance(width / 2, 0, *UIColor::colorWithRed(0, 1, 1, 1)), half);
    for (int x = 0; x < width; ++x) {
        EXPECT_LE(distance(x, height - 1, *UIColor::whiteColor()), half) << x;
        EXPECT_LE(distance(x, 0, *UIColor::colorWithHue((x + 0.5) / width, 1, 1, 1)), half) << x;
    }
    for (int y = 0; y < height; ++y) {
        const auto edge = UIColor::colorWithHue(0, 1 - (y + 0.5) / height, 1, 1);
        EXPECT_LE(distance(0, y, *edge), half) << y;
        EXPECT_LE(distance(width - 1, y, *edge), half) << y;
    }
}

TEST_F(ColorMap, IsFineEnoughToBeStretchedOverAFieldAndSmallEnoughToShip) {
    EXPECT_GE(width, 700) << "a field of 350 points on a screen with two pixels a point";
    EXPECT_GE(height, 256) << "from one row to the next no component changes by more than a level";
    EXPECT_LE(fs::file_size(kMap), 20'000U);
}

class ColorMapResource : public testing::Test {
  protected:
    static std::shared_ptr<ColorPicker> picker() {
        return make<ColorPicker>(CGRectMake(0, 0, 320, 345), UIColor::colorWithHue(0, 1, 1, 1), nullptr);
    }

    tests::BundleFile file_{typeid(ColorPicker), "colormap.png"};
};

TEST_F(ColorMapResource, IsStretchedOverTheField) {
    fs::copy_file(kMap, file_.path());
    const auto field = picker()->hueSatImage();
    ASSERT_NE(field->image(), nullptr);
    EXPECT_EQ(field->image()->encoded(2).size(), fs::file_size(kMap));
    EXPECT_EQ(field->frame(), CGRectMake(20, 20, 280, 255));
}

TEST_F(ColorMapResource, LeavesTheFieldEmptyAndInUseWhenItIsMissing) {
    const auto page = make<platform::UIView>(CGRectMake(0, 0, 320, 345));
    const auto without = picker();
    page->addSubview(without);
    EXPECT_EQ(without->hueSatImage()->image(), nullptr);
    EXPECT_EQ(without->hueSatImage()->frame(), CGRectMake(20, 20, 280, 255));
    without->touchesBegan(tests::touchesAt({{160, 20}}), {});
    EXPECT_EQ(*without->color(), *UIColor::colorWithHue(0.5, 1, 1, 1));
}

} // namespace

#include "platform/ui/UIColor.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace {

using namespace platform;
using HSB = UIColor::HSB;

constexpr double kRounding = 1e-13;

/// One component of a colour by the textbook's other formula, which has no sectors: n is 5 for red, 3 for green and 1
/// for blue.
double component(double n, const HSB& hsb) {
    const double k = std::fmod(n + hsb.hue * 6, 6);
    return hsb.brightness - hsb.brightness * hsb.saturation * std::max(0.0, std::min({k, 4 - k, 1.0}));
}

void expectTextbook(const UIColor& color, const HSB& hsb) {
    EXPECT_NEAR(color.red(), component(5, hsb), kRounding) << hsb.hue << " " << hsb.saturation << " " << hsb.brightness;
    EXPECT_NEAR(color.green(), component(3, hsb), kRounding);
    EXPECT_NEAR(color.blue(), component(1, hsb), kRounding);
}

UIColorRef made(const HSB& hsb) {
    return UIColor::colorWithHue(hsb.hue, hsb.saturation, hsb.brightness, hsb.alpha);
}

TEST(UIColor, IsExactAtTheCornersOfTheColourCircle) {
    constexpr double corners[][4] = {{0, 1, 0, 0},   {1 / 6.0, 1, 1, 0}, {1 / 3.0, 0, 1, 0},
                                     {0.5, 0, 1, 1}, {2 / 3.0, 0, 0, 1}, {5 / 6.0, 1, 0, 1}};
    for (const auto& [hue, red, green, blue] : corners) {
        const auto color = UIColor::colorWithHue(hue, 1, 1, 1);
        EXPECT_EQ(*color, *UIColor::colorWithRed(red, green, blue, 1)) << hue;
        EXPECT_EQ(color->getHue(), (HSB{hue, 1, 1, 1})) << hue;
    }
    EXPECT_EQ(*UIColor::colorWithHue(1, 1, 1, 1), *UIColor::colorWithRed(1, 0, 0, 1)) << "red again";
    EXPECT_EQ(*UIColor::colorWithHue(0.7, 0, 1, 1), *UIColor::colorWithRed(1, 1, 1, 1)) << "white has no hue";
    EXPECT_EQ(*UIColor::colorWithHue(0.7, 1, 0, 1), *UIColor::colorWithRed(0, 0, 0, 1)) << "nor has black";
}

TEST(UIColor, IsMadeFromHueSaturationAndBrightnessByTheStandardConversion) {
    constexpr int steps = 60; // hues on the turns and between them
    for (int h = 0; h <= steps; ++h)
        for (int s = 0; s <= 20; ++s)
            for (int b = 0; b <= 20; ++b) {
                const HSB hsb{h / double(steps), s / 20.0, b / 20.0, 1};
                expectTextbook(*made(hsb), hsb);
            }
}

TEST(UIColor, GivesBackTheHueSaturationAndBrightnessThatItWasMadeFrom) {
    for (int h = 0; h < 97; ++h)
        for (int s = 1; s <= 20; ++s)
            for (int b = 1; b <= 20; ++b) {
                const HSB hsb{h / 97.0, s / 20.0, b / 20.0, 0.5};
                const HSB again = made(hsb)->getHue();
                EXPECT_NEAR(again.hue, hsb.hue, kRounding);
                EXPECT_NEAR(again.saturation, hsb.saturation, kRounding);
                EXPECT_EQ(again.brightness, hsb.brightness);
                EXPECT_EQ(again.alpha, 0.5);
            }
}

TEST(UIColor, IsReadAsHueSaturationAndBrightnessByTheStandardConversion) {
    constexpr double steps = 24;
    for (int r = 0; r <= steps; ++r)
        for (int g = 0; g <= steps; ++g)
            for (int b = 0; b <= steps; ++b) {
                const auto color = UIColor::colorWithRed(r / steps, g / steps, b / steps, 1);
                const HSB hsb = color->getHue();
                expectTextbook(*color, hsb);
                EXPECT_EQ(hsb.brightness, std::max({r, g, b}) / steps);
                EXPECT_TRUE(hsb.hue >= 0 && hsb.hue < 1) << hsb.hue;
                EXPECT_TRUE(hsb.saturation >= 0 && hsb.saturation <= 1) << hsb.saturation;
            }
}

TEST(UIColor, WhoseHueIsRoundedUpToTheWholeCircleIsRed) {
    EXPECT_EQ(UIColor::colorWithRed(1, 0, 1e-17, 1)->getHue().hue, 0);
}

TEST(UIColor, ThatIsGreyHasNeitherHueNorSaturation) {
    for (const double level : {0.0, 0.1, 1 / 3.0, 0.5, 1.0}) {
        EXPECT_EQ(UIColor::colorWithRed(level, level, level, 1)->getHue(), (HSB{0, 0, level, 1}));
        EXPECT_EQ(UIColor::colorWithWhite(level, 0.25)->getHue(), (HSB{0, 0, level, 0.25}));
    }
}

TEST(UIColor, TakesComponentsOutOfRangeAsTheNearestInIt) {
    EXPECT_EQ(*UIColor::colorWithHue(-1, 2, 7, 3), *UIColor::colorWithHue(0, 1, 1, 1));
    EXPECT_EQ(*UIColor::colorWithHue(NAN, NAN, NAN, NAN), *UIColor::colorWithHue(0, 0, 0, 0));
    EXPECT_EQ(*UIColor::colorWithHue(INFINITY, INFINITY, INFINITY, INFINITY), *UIColor::colorWithHue(1, 1, 1, 1));
}

TEST(UIColor, KnowsItsModelAndItsComponents) {
    const auto grey = UIColor::colorWithWhite(0.5, 0.3);
    EXPECT_EQ(static_cast<int>(grey->colorSpaceModel()), 0);
    EXPECT_EQ(grey->components(), (std::vector{0.5, 0.3}));
    const auto color = UIColor::colorWithRed(0.1, 0.2, 0.3, 0.4);
    EXPECT_EQ(static_cast<int>(color->colorSpaceModel()), 1);
    EXPECT_EQ(color->components(), (std::vector{0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ(UIColor::colorWithHue(0, 0, 0.5, 1)->colorSpaceModel(), CGColorSpaceModel::rgb);
}

TEST(UIColor, IsEqualOnlyWithinItsModel) {
    EXPECT_EQ(*UIColor::colorWithWhite(0.5, 1), *UIColor::colorWithWhite(0.5, 1));
    EXPECT_NE(*UIColor::colorWithWhite(0.5, 1), *UIColor::colorWithWhite(0.5, 0.9));
    EXPECT_NE(*UIColor::colorWithWhite(0.5, 1), *UIColor::colorWithRed(0.5, 0.5, 0.5, 1));
    EXPECT_EQ(*UIColor::colorWithRed(0.5, 0.5, 0.5, 1), *UIColor::colorWithHue(0, 0, 0.5, 1));
}

TEST(UIColor, OfTheSystemIsOneObjectEach) {
    EXPECT_EQ(UIColor::blackColor(), UIColor::blackColor());
    EXPECT_EQ(UIColor::blackColor()->components(), (std::vector{0.0, 1.0}));
    EXPECT_EQ(UIColor::whiteColor()->components(), (std::vector{1.0, 1.0}));
}

} // namespace

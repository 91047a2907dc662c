#include "pickers/ColorMapping.h"

#include <gtest/gtest.h>

namespace {

using lumora::brightnessAt;
using lumora::HueSaturation;
using lumora::hueSaturationAt;
using lumora::pointOf;
using platform::CGPoint;
using platform::CGRect;
using platform::CGRectMake;

constexpr CGRect kField = CGRectMake(20, 24, 280, 256);
constexpr CGRect kBar = CGRectMake(20, 300, 280, 30);

struct Place {
    CGPoint point;
    HueSaturation color;
};
constexpr Place kPlaces[] = {
    {{20, 24}, {0, 1}},         // top left
    {{160, 24}, {0.5, 1}},      // top
    {{300, 24}, {1, 1}},        // top right
    {{20, 152}, {0, 0.5}},      // left
    {{160, 152}, {0.5, 0.5}},   // middle
    {{300, 152}, {1, 0.5}},     // right
    {{20, 280}, {0, 0}},        // bottom left
    {{160, 280}, {0.5, 0}},     // bottom
    {{300, 280}, {1, 0}},       // bottom right
    {{90, 88}, {0.25, 0.75}},   // a quarter from the corner
    {{-120, 408}, {-0.5, -0.5}} // outside: nothing is held back here
};

TEST(ColorMapping, GivesHueFromLeftToRightAndSaturationFromBottomToTop) {
    for (const auto& [point, color] : kPlaces)
        EXPECT_EQ(hueSaturationAt(point, kField), color) << point.x << " " << point.y;
}

TEST(ColorMapping, PutsEachHueAndSaturationWhereATouchWouldChooseIt) {
    for (const auto& [point, color] : kPlaces)
        EXPECT_EQ(pointOf(color, kField), point) << color.hue << " " << color.saturation;
}

TEST(ColorMapping, GivesBrightnessFromTheRightToTheLeft) {
    for (const double y : {300.0, 315.0, 330.0, -7.0}) { // whatever the height
        EXPECT_EQ(brightnessAt({20, y}, kBar), 1);
        EXPECT_EQ(brightnessAt({90, y}, kBar), 0.75);
        EXPECT_EQ(brightnessAt({160, y}, kBar), 0.5);
        EXPECT_EQ(brightnessAt({300, y}, kBar), 0);
    }
}

TEST(ColorMapping, PutsEachBrightnessHalfwayUpTheBar) {
    EXPECT_EQ(pointOf(1, kBar), (CGPoint{20, 315}));
    EXPECT_EQ(pointOf(0.75, kBar), (CGPoint{90, 315}));
    EXPECT_EQ(pointOf(0.5, kBar), (CGPoint{160, 315}));
    EXPECT_EQ(pointOf(0, kBar), (CGPoint{300, 315}));
}

TEST(ColorMapping, PutsAColourWithoutValuesInTheLowerLeftCorner) {
    EXPECT_EQ(pointOf(HueSaturation{}, kField), (CGPoint{20, 280}));
}

TEST(ColorMapping, LeadsBackToWhereItCameFrom) {
    constexpr CGRect field = CGRectMake(20, 20, 350.5, 533.25);
    for (int i = 0; i <= 97; ++i)
        for (int j = 0; j <= 97; ++j) {
            const HueSaturation color{i / 97.0, j / 97.0};
            const HueSaturation again = hueSaturationAt(pointOf(color, field), field);
            EXPECT_NEAR(again.hue, color.hue, 1e-14);
            EXPECT_NEAR(again.saturation, color.saturation, 1e-14);
            EXPECT_NEAR(brightnessAt(pointOf(color.hue, field), field), color.hue, 1e-14);
        }
}

} // namespace

#include "tests/pickers/Picker.h"

#include <cmath>

using namespace tests;

namespace {

double before(double edge) {
    return std::nextafter(edge, 0);
}

struct Touched {
    CGPoint point;
    double hue;
    double saturation;
};

TEST_F(Picker, ChoosesHueAndSaturationByATouchInTheField) {
    place(hsb(0, 1, 1));
    const double right = before(300);
    const double bottom = before(275);
    const double third = 20 + 280 / 3.0;
    for (const auto& [point, hue, saturation] :
         {Touched{{20, 20}, 0, 1}, Touched{{20, 147.5}, 0, 0.5}, Touched{{20, bottom}, 0, 1 - (bottom - 20) / 255},
          Touched{{160, 20}, 0.5, 1}, Touched{{right, 20}, (right - 20) / 280, 1},
          Touched{{right, bottom}, (right - 20) / 280, 1 - (bottom - 20) / 255},
          Touched{{90.5, 84}, 70.5 / 280, 1 - 64.0 / 255},
          Touched{{third, third}, (third - 20) / 280, 1 - (third - 20) / 255}}) {
        touch({point});
        EXPECT_EQ(picker->getHSB(), dictionary(hue, saturation, 1)) << point.x << " " << point.y;
        EXPECT_EQ(*picker->color(), *hsb(hue, saturation, 1));
        expectMarks(point, {20, 310}); // exactly where the finger is
    }
    EXPECT_LT((right - 20) / 280, 1) << "a hue of 1 is never chosen";
    EXPECT_GT(1 - (bottom - 20) / 255, 0) << "nor is a saturation of 0";
}

TEST_F(Picker, ChoosesBrightnessByATouchInTheBar) {
    place(hsb(0.25, 0.5, 0.75));
    const double right = before(300);
    const double third = 20 + 280 / 3.0;
    for (const double y : {295.0, 310.0, before(325)})
        for (const auto& [x, brightness] : {std::pair{20.0, 1.0},
                                            {160.0, 0.5},
                                            {right, 1 - (right - 20) / 280},
                                            {230.0, 0.25},
                                            {third, 1 - (third - 20) / 280}}) {
            touch({{x, y}});
            EXPECT_EQ(picker->getHSB(), dictionary(0.25, 0.5, brightness)) << x << " " << y;
            EXPECT_EQ(*picker->color(), *hsb(0.25, 0.5, brightness));
            expectMarks({90, 147.5}, {x, 310});
        }
    EXPECT_GT(1 - (right - 20) / 280, 0) << "a brightness of 0 is never chosen";
}

TEST_F(Picker, DoesNothingForATouchInNeither) {
    const auto color = hsb(0.25, 0.5, 0.75);
    place(color);
    const auto gradient = picker->gradientView()->gradient();
    for (const CGPoint point : {CGPoint{before(20), 100}, CGPoint{100, before(20)}, CGPoint{300, 100}, // the field
                                CGPoint{300, 20}, CGPoint{100, 275}, CGPoint{20, 275},                 //
                                CGPoint{100, 285}, CGPoint{100, before(295)},                          // the gap
                                CGPoint{before(20), 300}, CGPoint{300, 300}, CGPoint{100, 325},        // the bar
                                CGPoint{90, 293}, CGPoint{90, 327}, // the indicator, where it stands out
                                CGPoint{0, 0}, CGPoint{-50, 100}, CGPoint{100, 5000}, CGPoint{NAN, NAN}})
        touch({point});
    EXPECT_EQ(picker->color(), color);
    EXPECT_EQ(picker->getHSB(), dictionary(0.25, 0.5, 0.75));
    EXPECT_EQ(picker->gradientView()->gradient(), gradient);
    expectMarks({90, 147.5}, {90, 310});
    EXPECT_TRUE(reported.empty());
}

TEST_F(Picker, TakesFingersThatMoveAsItTakesThoseThatComeDown) {
    place(hsb(0, 1, 1));
    fingers.down({{160, 20}});
    EXPECT_EQ(picker->getHSB(), dictionary(0.5, 1, 1));
    fingers.move({{90, 147.5}});
    EXPECT_EQ(picker->getHSB(), dictionary(0.25, 0.5, 1));
    fingers.move({{90, 285}});
    EXPECT_EQ(reported.size(), 2U) << "in the gap nothing happens";
    fingers.move({{160, 310}});
    EXPECT_EQ(picker->getHSB(), dictionary(0.25, 0.5, 0.5)) << "in the bar by then";
    fingers.up({{20, 20}});
    EXPECT_EQ(picker->getHSB(), dictionary(0.25, 0.5, 0.5)) << "a finger that leaves changes nothing";
    EXPECT_EQ(reported.size(), 3U);
}

TEST_F(Picker, TakesFingersThatComeDownOnTheMarks) {
    place(hsb(0.25, 0.5, 0.75));
    fingers.down({{91, 147.5}});
    EXPECT_EQ(picker->getHSB(), dictionary(71 / 280.0, 0.5, 0.75));
    fingers.down({{91, 310}});
    EXPECT_EQ(picker->getHSB(), dictionary(71 / 280.0, 0.5, 1 - 71 / 280.0));
}

TEST_F(Picker, CountsPointsFromItsOwnCorner) {
    place(hsb(0, 1, 1));
    picker->setFrame(CGRectMake(10, 75, 320, 345));
    fingers.down({{170, 95}});
    EXPECT_EQ(picker->getHSB(), dictionary(0.5, 1, 1));
}

TEST_F(Picker, TakesTheFingersOfOneEventInTheirOrder) {
    place(hsb(0, 1, 1));
    const CGPoint one{90, 20};
    const CGPoint two{160, 20};
    touch({one, two});
    ASSERT_EQ(reported.size(), 2U);
    EXPECT_EQ(*reported[0], *hsb(0.25, 1, 1));
    EXPECT_EQ(*reported[1], *hsb(0.5, 1, 1));
    EXPECT_EQ(picker->color(), reported[1]) << "the last one stays";
    touch({two, one});
    ASSERT_EQ(reported.size(), 3U) << "the first of them is where the colour is already";
    EXPECT_EQ(*picker->color(), *hsb(0.25, 1, 1));
    expectMarks(one, {20, 310});
}

TEST_F(Picker, TakesFingersInFieldAndBarAtOnce) {
    place(hsb(0, 1, 1));
    fingers.down({{90, 20}, {160, 310}});
    ASSERT_EQ(reported.size(), 2U);
    EXPECT_EQ(*reported[0], *hsb(0.25, 1, 1));
    EXPECT_EQ(*reported[1], *hsb(0.25, 1, 0.5));
    fingers.move({{160, 20}, {20, 310}});
    ASSERT_EQ(reported.size(), 4U);
    EXPECT_EQ(*reported[2], *hsb(0.5, 1, 0.5));
    EXPECT_EQ(*reported[3], *hsb(0.5, 1, 1));
    expectMarks({160, 20}, {20, 310});
}

TEST_F(Picker, ShowsTheColourAtFullBrightnessWhileAFingerIsInTheField) {
    place(hsb(0, 1, 0.25));
    touch({{90, 147.5}});
    EXPECT_EQ(*fill(), *hsb(0.25, 0.5, 1));
    EXPECT_EQ(picker->gradientView()->gradient()->stops().front(), (platform::CGGradient::Stop{0, 0.75, 1, 0.5, 1}));
}

TEST_F(Picker, DrawsTheBarAnewForATouchInTheFieldOnly) {
    place(hsb(0.25, 0.5, 0.75));
    page->displayIfNeeded();
    const auto color = picker->gradientView()->color();
    const auto gradient = picker->gradientView()->gradient();
    const auto drawing = picker->gradientView()->drawing();
    ASSERT_NE(drawing, nullptr);
    const auto filled = picker->crossHairs()->backgroundColor();
    touch({{160, 310}, {20, 300}});
    page->displayIfNeeded();
    EXPECT_EQ(picker->gradientView()->color(), color);
    EXPECT_EQ(picker->gradientView()->gradient(), gradient);
    EXPECT_EQ(picker->gradientView()->drawing(), drawing);
    EXPECT_EQ(picker->crossHairs()->backgroundColor(), filled);
    EXPECT_EQ(picker->brightnessIndicator()->backgroundColor(), filled);
    touch({{100, 100}});
    page->displayIfNeeded();
    EXPECT_NE(picker->gradientView()->drawing(), drawing);
}

TEST_F(Picker, ReportsATouchOnceTheMarksShowIt) {
    for (const auto& [former, point] : {std::pair(hsb(0, 1, 0.5), CGPoint{90, 147.5}),      // in the field
                                        std::pair(hsb(0.25, 0.5, 1), CGPoint{160, 296})}) { // in the bar
        place(former);
        int reports = 0;
        picker->setDidChangeColorBlock([&](const UIColorRef& chosen) {
            ++reports;
            EXPECT_EQ(chosen, picker->color());
            EXPECT_EQ(*chosen, *hsb(0.25, 0.5, 0.5));
            EXPECT_EQ(picker->getHSB(), dictionary(0.25, 0.5, 0.5));
            EXPECT_EQ(*fill(), *hsb(0.25, 0.5, 1));
            expectMarks({90, 147.5}, {160, 310});
        });
        touch({point});
        EXPECT_EQ(reports, 1) << point.y;
    }
}

TEST_F(Picker, ReportsAColourThatIsSetWithItsHueAndSaturationAndTheFormerBrightness) {
    place(hsb(0.25, 0.5, 0.75));
    const auto former = picker->gradientView()->color();
    const auto next = hsb(0.5, 1, 0.5);
    int reports = 0;
    picker->setDidChangeColorBlock([&](const UIColorRef& chosen) {
        ++reports;
        EXPECT_EQ(chosen, next);
        EXPECT_EQ(picker->color(), next);
        EXPECT_EQ(picker->getHSB(), dictionary(0.5, 1, 0.75));
        EXPECT_EQ(picker->gradientView()->color(), former) << "nothing of it is shown yet";
        expectMarks({90, 147.5}, {90, 310});
    });
    picker->setColor(next);
    EXPECT_EQ(reports, 1);
    EXPECT_EQ(picker->getHSB(), dictionary(0.5, 1, 0.5));
    EXPECT_EQ(*fill(), *hsb(0.5, 1, 1));
    expectMarks({160, 20}, {160, 310});
}

TEST_F(Picker, ReportsOnlyAColourThatDiffers) {
    const auto color = hsb(0.25, 0.5, 0.75);
    place(color);
    picker->setColor(color);
    picker->setColor(hsb(0.25, 0.5, 0.75));
    EXPECT_TRUE(reported.empty());
    EXPECT_EQ(picker->color(), color) << "an equal one is not even stored";
    touch({{90, 147.5}});
    EXPECT_TRUE(reported.empty()) << "nor is it when a finger chooses it";
    picker->setColor(hsb(0.5, 0.5, 0.75));
    picker->setColor(hsb(0.5, 0.5, 0.75));
    EXPECT_EQ(reported.size(), 1U);
    picker->setColor(nullptr);
    EXPECT_EQ(reported.size(), 1U);
}

TEST_F(Picker, StoresAGreyAsAnRgbColourWithoutAlpha) {
    place(hsb(0.25, 0.5, 0.75));
    picker->setColor(UIColor::colorWithWhite(0.5, 0.3));
    ASSERT_EQ(reported.size(), 1U);
    EXPECT_EQ(*reported[0], *hsb(0, 0, 0.5));
    EXPECT_EQ(picker->color(), reported[0]);
    EXPECT_EQ(picker->getHSB(), dictionary(0, 0, 0.5));
    expectMarks({20, 275}, {160, 310});
    picker->setColor(UIColor::colorWithWhite(0.5, 0.3));
    EXPECT_EQ(reported.size(), 2U) << "what is stored is of another model than a grey, so that it differs again";
}

TEST_F(Picker, StoresAnyOtherColourWithItsAlpha) {
    place(nullptr);
    const auto color = UIColor::colorWithRed(0.5, 0.25, 0.25, 0.3);
    picker->setColor(color);
    EXPECT_EQ(picker->color(), color);
    EXPECT_EQ(picker->getHSB(), dictionary(0, 0.5, 0.5));
}

TEST_F(Picker, ChangesWithoutAnyoneToReportTo) {
    place(hsb(0.25, 0.5, 0.75));
    picker->setDidChangeColorBlock(nullptr);
    touch({{160, 20}});
    picker->setColor(hsb(0, 1, 1));
    EXPECT_EQ(*picker->color(), *hsb(0, 1, 1));
    EXPECT_TRUE(reported.empty());
}

TEST_F(Picker, LetsTheBlockTakeItselfAway) {
    place(hsb(0.25, 0.5, 0.75));
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> seen = held;
    picker->setDidChangeColorBlock([this, counted = std::move(held)](const UIColorRef&) {
        picker->setDidChangeColorBlock(nullptr);
        ++*counted;
    });
    touch({{160, 20}});
    EXPECT_TRUE(seen.expired());
    touch({{100, 20}});
    EXPECT_EQ(*picker->color(), *hsb(80 / 280.0, 1, 0.75));
}

} // namespace

#include "pickers/ColorPicker.h"

#include "tests/pickers/Colors.h"
#include "tests/pickers/Fingers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

namespace {

using lumora::ColorPicker;
using platform::CGPoint;
using platform::CGRectMake;
using platform::Dictionary;
using platform::make;
using platform::UIColor;
using platform::UIColorRef;
using platform::UIView;
using tests::dictionary;
using tests::hsb;
using tests::touchesAt;

double before(double edge) {
    return std::nextafter(edge, 0);
}

/// A control of 320 by 345 points at the corner of its page: the field covers x 20 to 300 and y 20 to 275, the bar x 20
/// to 300 and y 295 to 325.
struct Picker : testing::Test {
    std::shared_ptr<UIView> page = make<UIView>(CGRectMake(0, 0, 320, 500));
    std::shared_ptr<ColorPicker> picker;
    std::vector<UIColorRef> reported;
    tests::Fingers fingers{page};

    std::shared_ptr<ColorPicker> made(UIColorRef color) {
        return make<ColorPicker>(CGRectMake(0, 0, 320, 345), std::move(color),
                                 [this](const UIColorRef& chosen) { reported.push_back(chosen); });
    }
    void place(UIColorRef color) {
        picker = made(std::move(color));
        page->addSubview(picker);
    }
    void touch(const std::vector<CGPoint>& points) const { picker->touchesBegan(touchesAt(points), {}); }
    void expectMarks(CGPoint crossHairs, CGPoint indicator) const {
        EXPECT_EQ(picker->crossHairs()->center(), crossHairs);
        EXPECT_EQ(picker->brightnessIndicator()->center(), indicator);
    }
    UIColorRef fill() const {
        EXPECT_EQ(picker->brightnessIndicator()->backgroundColor(), picker->crossHairs()->backgroundColor());
        EXPECT_EQ(*picker->gradientView()->color(), *picker->crossHairs()->backgroundColor());
        return picker->gradientView()->color();
    }
};

// -- made, placed, laid out --

TEST_F(Picker, IsMadeWithItsColourAsItIsAndNothingElse) {
    const auto grey = UIColor::colorWithWhite(0.5, 0.3);
    picker = made(grey);
    EXPECT_EQ(picker->frame(), CGRectMake(0, 0, 320, 345));
    EXPECT_EQ(picker->color(), grey);
    EXPECT_EQ(picker->getHSB(), dictionary(0, 0, 0));
    EXPECT_TRUE(picker->subviews().empty());
    EXPECT_TRUE(picker->accessibilityElements().empty());
    EXPECT_TRUE(reported.empty());
    EXPECT_EQ(made(nullptr)->color(), nullptr);
}

TEST_F(Picker, ShowsItsColourWhenItIsPlacedAndReportsNothing) {
    const auto color = hsb(0.25, 0.5, 0.75);
    place(color);
    expectMarks({90, 147.5}, {90, 310});
    EXPECT_EQ(*fill(), *hsb(0.25, 0.5, 1));
    EXPECT_EQ(picker->color(), color);
    EXPECT_EQ(picker->getHSB(), dictionary(0.25, 0.5, 0.75));
    EXPECT_TRUE(reported.empty());
}

TEST_F(Picker, WithoutAColourShowsBlack) {
    place(nullptr);
    EXPECT_EQ(picker->color(), UIColor::blackColor());
    EXPECT_EQ(picker->getHSB(), dictionary(0, 0, 0));
    expectMarks({20, 275}, {300, 310});
    EXPECT_EQ(*fill(), *hsb(0, 0, 1));
    EXPECT_TRUE(reported.empty());
}

TEST_F(Picker, HandsOutItsColourInTheOrderOfHueSaturationBrightness) {
    place(hsb(0.25, 0.5, 0.75));
    std::vector<std::string> keys;
    for (const auto& [key, value] : picker->getHSB()) {
        keys.push_back(key);
        EXPECT_EQ(value.kind(), platform::Value::Kind::real);
    }
    EXPECT_EQ(keys, (std::vector<std::string>{"h", "s", "b"}));
}

TEST_F(Picker, HasAFieldAboveABar) {
    place(nullptr);
    const UIView& field = *picker->hueSatImage();
    EXPECT_EQ(field.frame(), CGRectMake(20, 20, 280, 255));
    EXPECT_EQ(field.autoresizingMask(), 18U);
    const UIView& bar = *picker->gradientView();
    EXPECT_EQ(bar.frame(), CGRectMake(20, 295, 280, 30));
    EXPECT_EQ(bar.autoresizingMask(), 10U);
    for (const UIView* view : {&field, &bar}) {
        EXPECT_EQ(view->layer().borderWidth, 0.5);
        EXPECT_EQ(view->layer().cornerRadius, 2.0);
        EXPECT_EQ(view->layer().borderColor, UIColor::blackColor());
        EXPECT_EQ(view->layer().borderColor, ColorPicker::_defaultTintColor());
        EXPECT_TRUE(view->clipsToBounds());
        EXPECT_EQ(view->layer().shadowOpacity, 0);
    }
}

TEST_F(Picker, HasARoundMarkForTheFieldAndABarForTheBar) {
    place(nullptr);
    const UIView& cross = *picker->crossHairs();
    EXPECT_EQ(cross.bounds(), CGRectMake(0, 0, 28, 28));
    EXPECT_EQ(cross.layer().cornerRadius, 14);
    const UIView& indicator = *picker->brightnessIndicator();
    EXPECT_EQ(indicator.bounds(), CGRectMake(0, 0, 5, 40));
    EXPECT_EQ(indicator.layer().cornerRadius, 0);
    EXPECT_EQ(indicator.frame().origin.y, 290) << "5 points above the bar and below it";
    for (const UIView* view : {&cross, &indicator}) {
        EXPECT_EQ(view->autoresizingMask(), 0U);
        EXPECT_EQ(view->layer().borderColor, UIColor::whiteColor());
        EXPECT_EQ(view->layer().borderWidth, 0.5);
        EXPECT_EQ(view->layer().shadowColor, UIColor::blackColor());
        EXPECT_EQ(view->layer().shadowOffset, (platform::CGSize{0, 0}));
        EXPECT_EQ(view->layer().shadowRadius, 0.5);
        EXPECT_EQ(view->layer().shadowOpacity, 1.0);
    }
}

TEST_F(Picker, MakesItsMarksInPlacesOfTheirOwn) {
    picker = made(nullptr);
    EXPECT_EQ(picker->crossHairs()->frame(), CGRectMake(160, 172.5, 28, 28));
    EXPECT_EQ(picker->crossHairs()->backgroundColor(), nullptr);
    EXPECT_EQ(picker->brightnessIndicator()->frame(), CGRectMake(140, 291, 5, 40));
    EXPECT_EQ(picker->brightnessIndicator()->backgroundColor(), UIColor::whiteColor());
}

TEST_F(Picker, MakesAMarkAboveWhatItMarks) {
    picker = made(nullptr);
    const auto indicator = picker->brightnessIndicator();
    EXPECT_EQ(picker->subviews(), (std::vector<std::shared_ptr<UIView>>{picker->gradientView(), indicator}));
    const auto cross = picker->crossHairs();
    const std::vector<std::shared_ptr<UIView>> all{picker->gradientView(), indicator, picker->hueSatImage(), cross};
    EXPECT_EQ(picker->subviews(), all);
    page->addSubview(picker);
    EXPECT_EQ(picker->subviews(), all) << "each is made once";
}

TEST_F(Picker, PutsTheFieldBehindTheBarWhenItIsPlaced) {
    place(nullptr);
    EXPECT_EQ(picker->subviews(),
              (std::vector<std::shared_ptr<UIView>>{picker->hueSatImage(), picker->crossHairs(), picker->gradientView(),
                                                    picker->brightnessIndicator()}));
}

TEST_F(Picker, PutsAViewThatHasNoParentBackInItsPlace) {
    place(nullptr);
    const auto field = picker->hueSatImage();
    const auto cross = picker->crossHairs();
    const auto bar = picker->gradientView();
    const auto indicator = picker->brightnessIndicator();
    using Views = std::vector<std::shared_ptr<UIView>>;
    indicator->removeFromSuperview();
    cross->removeFromSuperview();
    EXPECT_EQ(picker->subviews(), (Views{field, bar}));
    EXPECT_EQ(picker->brightnessIndicator(), indicator);
    EXPECT_EQ(picker->crossHairs(), cross);
    EXPECT_EQ(picker->subviews(), (Views{field, cross, bar, indicator}));
    field->removeFromSuperview();
    cross->removeFromSuperview();
    EXPECT_EQ(picker->crossHairs(), cross) << "which needs the field";
    EXPECT_EQ(picker->subviews(), (Views{bar, indicator, field, cross}));
}

TEST_F(Picker, TakesTheViewsThatItIsGiven) {
    picker = made(hsb(0.25, 0.5, 0.75));
    const auto field = make<platform::UIImageView>(CGRectMake(0, 0, 100, 100));
    const auto bar = make<lumora::BrightnessView>(CGRectMake(0, 100, 100, 10));
    const auto cross = make<UIView>(CGRectMake(0, 0, 10, 10));
    const auto indicator = make<UIView>(CGRectMake(0, 0, 10, 10));
    picker->setHueSatImage(field);
    picker->setGradientView(bar);
    picker->setCrossHairs(cross);
    picker->setBrightnessIndicator(indicator);
    EXPECT_TRUE(picker->subviews().empty());
    page->addSubview(picker);
    EXPECT_EQ(picker->subviews(), (std::vector<std::shared_ptr<UIView>>{field, cross, bar, indicator}));
    expectMarks({25, 50}, {25, 105});
}

TEST_F(Picker, LeavesAViewThatHasAnotherParentThere) {
    picker = made(nullptr);
    const auto cross = make<UIView>();
    page->addSubview(cross);
    picker->setCrossHairs(cross);
    page->addSubview(picker);
    EXPECT_EQ(picker->crossHairs()->superview(), page.get());
}

TEST_F(Picker, FollowsItsSizeWithFieldAndBarAndPlacesTheMarksAnew) {
    place(hsb(0.25, 0.5, 0.75));
    for (const auto& frame : {CGRectMake(3, 4, 640, 345), CGRectMake(0, 0, 320, 600), CGRectMake(0, 0, 200.3, 130.3)}) {
        picker->setFrame(frame);
        const auto [width, height] = frame.size;
        EXPECT_EQ(picker->gradientView()->frame(), CGRectMake(20, height - 50, width - 40, 30)) << "by its mask";
        picker->layoutIfNeeded();
        EXPECT_EQ(picker->hueSatImage()->frame(), CGRectMake(20, 20, width - 40, height - 90));
        EXPECT_EQ(picker->gradientView()->frame(), CGRectMake(20, height - 50, width - 40, 30));
        expectMarks({20 + (width - 40) / 4, 20 + (height - 90) / 2}, {20 + (width - 40) / 4, height - 50 + 15});
        EXPECT_EQ(picker->crossHairs()->frame().size, (platform::CGSize{28, 28}));
        EXPECT_EQ(picker->brightnessIndicator()->frame().size, (platform::CGSize{5, 40}));
    }
    EXPECT_TRUE(reported.empty());
}

TEST_F(Picker, PutsFieldAndBarWhereTheyBelongAtEachLayout) {
    place(nullptr);
    picker->layoutIfNeeded();
    picker->hueSatImage()->setFrame(CGRectMake(1, 2, 3, 4));
    picker->gradientView()->setFrame(CGRectMake(1, 2, 3, 4));
    picker->setNeedsLayout();
    picker->layoutIfNeeded();
    EXPECT_EQ(picker->hueSatImage()->frame(), CGRectMake(20, 20, 280, 255));
    EXPECT_EQ(picker->gradientView()->frame(), CGRectMake(20, 295, 280, 30));
}

TEST_F(Picker, CanBeLaidOutBeforeItIsPlacedAndHasAColour) {
    picker = made(nullptr);
    picker->layoutIfNeeded();
    expectMarks({20, 275}, {300, 310});
    EXPECT_EQ(picker->color(), nullptr);
}

TEST_F(Picker, KeepsTheHueOfABlackWhileItStays) {
    place(nullptr);
    touch({{160, 147.5}});
    picker->setNeedsLayout();
    picker->layoutIfNeeded();
    expectMarks({160, 147.5}, {300, 310});
    EXPECT_EQ(picker->getHSB(), dictionary(0.5, 0.5, 0));
}

TEST_F(Picker, ReadsItsColourAnewOnEveryMoveToAnotherViewOrNone) {
    place(nullptr);
    touch({{160, 147.5}});
    reported.clear();
    picker->crossHairs()->setHidden(true);
    picker->brightnessIndicator()->setHidden(true);
    picker->removeFromSuperview();
    EXPECT_FALSE(picker->crossHairs()->isHidden());
    EXPECT_FALSE(picker->brightnessIndicator()->isHidden());
    EXPECT_EQ(picker->getHSB(), dictionary(0, 0, 0)) << "a black has no hue of its own";
    expectMarks({20, 275}, {300, 310});
    EXPECT_EQ(*fill(), *hsb(0, 0, 1));
    EXPECT_EQ(picker->subviews().size(), 4U);
    EXPECT_TRUE(reported.empty());
}

// -- touches --

struct Touched {
    CGPoint point;
    double first;  ///< hue, or brightness
    double second; ///< saturation
};

TEST_F(Picker, ChoosesHueAndSaturationByATouchInTheField) {
    place(hsb(0, 1, 1));
    const double right = before(300);
    const double bottom = before(275);
    for (const auto& [point, hue, saturation] :
         {Touched{{20, 20}, 0, 1}, Touched{{20, 147.5}, 0, 0.5}, Touched{{20, bottom}, 0, 1 - (bottom - 20) / 255},
          Touched{{160, 20}, 0.5, 1}, Touched{{right, 20}, (right - 20) / 280, 1},
          Touched{{right, bottom}, (right - 20) / 280, 1 - (bottom - 20) / 255},
          Touched{{90.5, 84}, 70.5 / 280, 1 - 64.0 / 255}}) {
        touch({point});
        EXPECT_EQ(picker->getHSB(), dictionary(hue, saturation, 1)) << point.x << " " << point.y;
        EXPECT_EQ(*picker->color(), *hsb(hue, saturation, 1));
        expectMarks(point, {20, 310});
    }
    EXPECT_LT((right - 20) / 280, 1) << "a hue of 1 is never chosen";
    EXPECT_GT(1 - (bottom - 20) / 255, 0) << "nor is a saturation of 0";
}

TEST_F(Picker, ChoosesBrightnessByATouchInTheBar) {
    place(hsb(0.25, 0.5, 0.75));
    const double right = before(300);
    for (const double y : {295.0, 310.0, before(325)})
        for (const auto& [x, brightness] :
             {std::pair{20.0, 1.0}, {160.0, 0.5}, {right, 1 - (right - 20) / 280}, {230.0, 0.25}}) {
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

TEST_F(Picker, PutsTheMarkExactlyWhereTheFingerIs) {
    place(hsb(0, 1, 1));
    const CGPoint point{20 + 280 / 3.0, 20 + 255 / 7.0};
    touch({point});
    EXPECT_EQ(picker->crossHairs()->center(), point);
    touch({{20 + 280 / 3.0, 300.1}});
    EXPECT_EQ(picker->brightnessIndicator()->center(), (CGPoint{20 + 280 / 3.0, 310}));
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

TEST_F(Picker, LeavesTheColoursOfTheBarWhileAFingerIsInIt) {
    place(hsb(0.25, 0.5, 0.75));
    page->displayIfNeeded();
    const auto color = picker->gradientView()->color();
    const auto gradient = picker->gradientView()->gradient();
    const auto drawing = picker->gradientView()->drawing();
    const auto filled = picker->crossHairs()->backgroundColor();
    touch({{160, 310}, {20, 300}});
    page->displayIfNeeded();
    EXPECT_EQ(picker->gradientView()->color(), color);
    EXPECT_EQ(picker->gradientView()->gradient(), gradient);
    EXPECT_EQ(picker->gradientView()->drawing(), drawing);
    EXPECT_EQ(picker->crossHairs()->backgroundColor(), filled);
    EXPECT_EQ(picker->brightnessIndicator()->backgroundColor(), filled);
}

TEST_F(Picker, DrawsTheBarAnewAfterATouchInTheField) {
    place(hsb(0.25, 0.5, 0.75));
    page->displayIfNeeded();
    const auto drawing = picker->gradientView()->drawing();
    ASSERT_NE(drawing, nullptr);
    touch({{100, 100}});
    page->displayIfNeeded();
    EXPECT_NE(picker->gradientView()->drawing(), drawing);
}

// -- what is reported, and when --

TEST_F(Picker, ReportsATouchInTheFieldOnceTheMarksShowIt) {
    place(hsb(0, 1, 0.5));
    int reports = 0;
    picker->setDidChangeColorBlock([&](const UIColorRef& chosen) {
        ++reports;
        EXPECT_EQ(chosen, picker->color());
        EXPECT_EQ(*chosen, *hsb(0.25, 0.5, 0.5));
        EXPECT_EQ(picker->getHSB(), dictionary(0.25, 0.5, 0.5));
        EXPECT_EQ(*fill(), *hsb(0.25, 0.5, 1));
        expectMarks({90, 147.5}, {160, 310});
    });
    touch({{90, 147.5}});
    EXPECT_EQ(reports, 1);
}

TEST_F(Picker, ReportsATouchInTheBarOnceTheMarkShowsIt) {
    place(hsb(0.25, 0.5, 1));
    int reports = 0;
    picker->setDidChangeColorBlock([&](const UIColorRef& chosen) {
        ++reports;
        EXPECT_EQ(chosen, picker->color());
        EXPECT_EQ(picker->getHSB(), dictionary(0.25, 0.5, 0.5));
        expectMarks({90, 147.5}, {160, 310});
    });
    touch({{160, 296}});
    EXPECT_EQ(reports, 1);
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

// -- the rest --

TEST_F(Picker, RecoloursItsFramesAndTheBarsMarkAndKeepsItsOwnTint) {
    place(nullptr);
    const auto tint = hsb(0.1, 1, 1);
    const auto filled = picker->crossHairs()->backgroundColor();
    picker->setTintColor(tint);
    EXPECT_EQ(picker->hueSatImage()->layer().borderColor, tint);
    EXPECT_EQ(picker->gradientView()->layer().borderColor, tint);
    EXPECT_EQ(picker->brightnessIndicator()->backgroundColor(), tint);
    EXPECT_EQ(picker->crossHairs()->backgroundColor(), filled);
    EXPECT_EQ(picker->tintColor(), nullptr);
}

TEST_F(Picker, FillsItsMarksAnewAtEachLayout) {
    place(hsb(0.25, 0.5, 0.75));
    picker->setTintColor(hsb(0.1, 1, 1));
    picker->setNeedsLayout();
    picker->layoutIfNeeded();
    EXPECT_EQ(*fill(), *hsb(0.25, 0.5, 1));
}

TEST_F(Picker, TellsAssistiveToolsOfItsThreeQuantities) {
    place(hsb(0.25, 0.5, 0.75));
    touch({{160, 20}, {230, 310}});
    using Elements = std::vector<platform::UIAccessibilityElement>;
    EXPECT_EQ(picker->accessibilityElements(),
              (Elements{{"Hue and Saturation",
                         CGRectMake(20, 20, 280, 255),
                         {{"Hue", 0.5, false, false}, {"Saturation", 1, true, true}}},
                        {"Brightness", CGRectMake(20, 295, 280, 30), {{"Brightness", 0.25, false, true}}}}));
}

} // namespace

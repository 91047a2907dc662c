#include "tests/pickers/Picker.h"

using namespace tests;

namespace {

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
    EXPECT_EQ(picker->subviews(), (Views{picker->gradientView(), indicator}));
    const auto cross = picker->crossHairs();
    const Views all{picker->gradientView(), indicator, picker->hueSatImage(), cross};
    EXPECT_EQ(picker->subviews(), all);
    page->addSubview(picker);
    EXPECT_EQ(picker->subviews(), all) << "each is made once";
}

TEST_F(Picker, PutsAViewThatHasNoParentBackInItsPlace) {
    place(nullptr);
    const auto field = picker->hueSatImage();
    const auto cross = picker->crossHairs();
    const auto bar = picker->gradientView();
    const auto indicator = picker->brightnessIndicator();
    EXPECT_EQ(picker->subviews(), (Views{field, cross, bar, indicator})) << "the field behind the bar";
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
    EXPECT_EQ(picker->subviews(), (Views{field, cross, bar, indicator}));
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

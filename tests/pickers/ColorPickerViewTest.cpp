#include "pickers/ColorPickerView.h"
#include "pages/ColorPickerController.h"

#include "platform/foundation/Class.h"
#include "tests/pages/OpenPage.h"
#include "tests/pickers/Colors.h"
#include "tests/pickers/Fingers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cfenv>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace {

using lumora::ColorPicker;
using lumora::ColorPickerController;
using lumora::ColorPickerView;
using platform::CGPoint;
using platform::CGRect;
using platform::CGRectMake;
using platform::Dictionary;
using platform::make;
using platform::UIButton;
using platform::UIColor;
using platform::UIColorRef;
using platform::UIView;
using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using tests::dictionary;
using tests::hsb;
using tests::RecordingTweak;

Dictionary stored(double hue, double saturation, double brightness) {
    return {{"kLSBlurColor", dictionary(hue, saturation, brightness)}};
}

Value change(double hue, double saturation, double brightness) {
    return Dictionary{{"key", "kLSBlurColor"}, {"object", dictionary(hue, saturation, brightness)}};
}

/// The middle of a theme's button, on a page of 320 by 480 points.
CGPoint theme(int index) {
    return {(index + 0.5) * 320 / 7, 450};
}

/// A page of 320 by 480 points unless it says otherwise: its field covers x 20 to 300 and y 95 to 350, its bar y 370 to
/// 400.
struct ColorPage : testing::Test {
    RecordingTweak& tweak = RecordingTweak::shared();
    std::shared_ptr<ColorPickerController> page = make<ColorPickerController>();
    std::shared_ptr<tests::Fingers> fingers;

    void open(Dictionary settings, const CGRect& frame = CGRectMake(0, 0, 320, 480)) {
        tests::giveSettings<ColorPickerView>(std::move(settings));
        page->view()->setFrame(frame);
        appear();
        tweak.waitUntilIdle();
    }
    void appear() {
        page->viewWillAppear(true);
        fingers = std::make_shared<tests::Fingers>(page->view());
    }
    ColorPickerView& view() const { return dynamic_cast<ColorPickerView&>(*page->view()); }
    ColorPicker& picker() const { return *view().pickerView(); }
    UIColorRef preview() const { return view().preview()->backgroundColor(); }
    UIView& strip() const { return *view().subviews().at(2); }
};

// -- what it shows --

TEST_F(ColorPage, IsCalledColorAndSavesTheColourOfTheBlur) {
    open({});
    EXPECT_EQ(page->title(), "Color");
    EXPECT_EQ(page->navigationItem()->title, "Color");
    EXPECT_EQ(view().identifier(), "kLSBlurColor");
    EXPECT_NE(platform::NSClassFromString("ColorPickerController"), nullptr);
}

TEST_F(ColorPage, ShowsTheStoredColour) {
    open(stored(0.5, 1, 1));
    EXPECT_EQ(*preview(), *UIColor::colorWithRed(0, 1, 1, 1));
    EXPECT_EQ(picker().color(), preview());
    EXPECT_EQ(picker().crossHairs()->center(), (CGPoint{160, 20})) << "the middle of the field's top edge";
    EXPECT_EQ(picker().brightnessIndicator()->center(), (CGPoint{20, 310}));
    EXPECT_THAT(tweak.changes(), IsEmpty());
}

TEST_F(ColorPage, ShowsBlackWhenNothingIsStored) {
    open({});
    EXPECT_EQ(*preview(), *hsb(0, 0, 0));
    EXPECT_EQ(picker().crossHairs()->center(), (CGPoint{20, 275}));
    EXPECT_EQ(picker().brightnessIndicator()->center(), (CGPoint{300, 310}));
    EXPECT_THAT(tweak.changes(), IsEmpty());
}

TEST_F(ColorPage, ReadsWhatIsNoNumberAsZero) {
    const std::vector<std::pair<Value, UIColorRef>> colors{
        {Dictionary{{"b", 0.5}}, hsb(0, 0, 0.5)},
        {Dictionary{{"h", "0.5"}, {"s", true}, {"b", 1}}, hsb(0, 1, 1)}, // numbers are of every kind
        {"red", hsb(0, 0, 0)},
    };
    for (const auto& [given, shown] : colors) {
        open({{"kLSBlurColor", given}});
        EXPECT_EQ(*preview(), *shown) << description(given);
    }
}

TEST_F(ColorPage, TakesStoredNumbersOutOfRangeAsTheNearestInIt) {
    std::feclearexcept(FE_OVERFLOW);
    open(stored(-1e300, 1e300, INFINITY));
    EXPECT_EQ(*preview(), *hsb(0, 1, 1));
    EXPECT_EQ(std::fetestexcept(FE_OVERFLOW), 0) << "they were narrowed before they were bounded";
}

TEST_F(ColorPage, ReadsInSinglePrecisionAndSavesInDouble) {
    open(stored(0.61, 0.75, 0.94));
    const double hue = 0.61F;
    ASSERT_NE(hue, 0.61);
    EXPECT_EQ(*preview(), *hsb(hue, 0.75F, 0.94F));
    EXPECT_NEAR(picker().currentHue(), hue, 1e-12);
    fingers->tap({160, 385});
    EXPECT_THAT(tweak.changes(), ElementsAre(change(picker().currentHue(), picker().currentSaturation(), 0.5)));
}

TEST_F(ColorPage, HasAPreviewBehindTheControlAndAStripOfThemesInFront) {
    open({});
    EXPECT_EQ(view().frame(), CGRectMake(0, 0, 320, 480));
    EXPECT_EQ(*view().backgroundColor(), *UIColor::colorWithRed(0.922, 0.922, 0.945, 1.0));
    ASSERT_EQ(view().subviews().size(), 3U);
    EXPECT_EQ(view().subviews()[0], view().preview());
    EXPECT_EQ(view().subviews()[1], view().pickerView());
    EXPECT_EQ(view().preview()->frame(), CGRectMake(0, 0, 320, 150));
    EXPECT_EQ(picker().frame(), CGRectMake(0, 75, 320, 345));
    EXPECT_EQ(picker().backgroundColor(), nullptr) << "the preview shows through";
    EXPECT_EQ(strip().frame(), CGRectMake(0, 420, 320, 60));
    for (const UIView* shaded : {view().preview().get(), &strip()}) {
        EXPECT_EQ(shaded->layer().shadowColor, UIColor::blackColor());
        EXPECT_EQ(shaded->layer().shadowOffset, (platform::CGSize{0, 0}));
        EXPECT_EQ(shaded->layer().shadowRadius, 1.0);
        EXPECT_EQ(shaded->layer().shadowOpacity, 1.0);
        EXPECT_EQ(shaded->autoresizingMask(), 0U);
    }
}

TEST_F(ColorPage, CountsItsFramesOriginForTheControlOnly) {
    open({}, CGRectMake(10, 64, 390, 700));
    EXPECT_EQ(view().preview()->frame(), CGRectMake(0, 0, 390, 150));
    EXPECT_EQ(picker().frame(), CGRectMake(10, 139, 390, 565));
    EXPECT_EQ(strip().frame(), CGRectMake(0, 640, 390, 60));
}

// -- the themes --

TEST_F(ColorPage, OffersSevenColours) {
    const auto colors = ColorPickerView::themes();
    ASSERT_EQ(colors.size(), 7U);
    const std::array<UIColorRef, 7> exactly{hsb(0.5, 1, 1),        hsb(0.61, 0.75, 0.94), hsb(0.72, 0.95, 1),
                                            hsb(0.28, 0.78, 0.83), hsb(0.16, 1, 1),       hsb(0, 1, 0.69),
                                            hsb(0.88, 0.73, 1)};
    const std::array<std::array<int, 3>, 7> expected{
        {{0, 255, 255}, {60, 121, 240}, {90, 13, 255}, {99, 212, 47}, {255, 245, 0}, {176, 0, 0}, {255, 69, 203}}};
    for (std::size_t i = 0; i < 7; ++i) {
        EXPECT_EQ(*colors[i], *exactly.at(i)) << i;
        const auto level = [](double component) { return static_cast<int>(std::lround(component * 255)); };
        const UIColor& color = *colors[i];
        EXPECT_EQ((std::array{level(color.red()), level(color.green()), level(color.blue())}), expected.at(i)) << i;
        EXPECT_EQ(color.alpha(), 1);
        EXPECT_EQ(color.colorSpaceModel(), platform::CGColorSpaceModel::rgb);
    }
    EXPECT_NE(ColorPickerView::themes()[0], colors[0]) << "made anew each time";
}

TEST_F(ColorPage, DividesTheStripEvenlyAmongItsButtons) {
    open({});
    const auto colors = ColorPickerView::themes();
    ASSERT_EQ(strip().subviews().size(), 7U);
    const double width = static_cast<float>(320.0 / 7);
    double left = 0;
    for (std::size_t i = 0; i < 7; ++i) {
        const auto& button = dynamic_cast<UIButton&>(*strip().subviews()[i]);
        EXPECT_EQ(button.frame(), CGRectMake(left, 0, width, 60)) << i;
        EXPECT_EQ(button.tag(), static_cast<int>(i));
        EXPECT_EQ(*button.backgroundColor(), *colors[i]);
        EXPECT_EQ(button.layer().borderWidth, 0);
        EXPECT_TRUE(button.subviews().empty());
        left += width;
    }
    EXPECT_NEAR(left, 320, 1e-4);
    EXPECT_NE(width, 320.0 / 7);
}

TEST_F(ColorPage, RoundsTheSizeOfAButtonToSinglePrecision) {
    open({});
    const auto odd = view().themesView(CGRectMake(1, 2, 390.1, 33.3));
    EXPECT_EQ(odd->frame(), CGRectMake(1, 2, 390.1, 33.3));
    ASSERT_EQ(odd->subviews().size(), 7U);
    for (const auto& button : odd->subviews())
        EXPECT_EQ(button->frame().size, (platform::CGSize{static_cast<float>(390.1 / 7), 33.3F}));
    EXPECT_EQ(odd->subviews()[1]->frame().origin, (CGPoint{static_cast<float>(390.1 / 7), 0}));
}

TEST_F(ColorPage, NamesTheColoursOfItsButtons) {
    open({});
    std::vector<std::string> names;
    for (const auto& button : strip().subviews())
        names.push_back(button->accessibilityElements().at(0).label);
    EXPECT_THAT(names, ElementsAre("Cyan", "Blue", "Violet", "Green", "Yellow", "Dark Red", "Pink"));
}

TEST_F(ColorPage, ShowsATappedThemeAndSavesItsBrightnessAtTheNextTouch) {
    open(stored(0, 1, 1));
    fingers->tap(theme(5));
    EXPECT_EQ(*preview(), *hsb(0, 1, 0.69));
    EXPECT_EQ(picker().crossHairs()->center(), (CGPoint{20, 20}));
    EXPECT_NEAR(picker().brightnessIndicator()->center().x, 20 + 0.31 * 280, 1e-9);
    EXPECT_THAT(tweak.changes(), ElementsAre(change(0, 1, 1))) << "with the former brightness";
    fingers->tap({160, 95});
    EXPECT_THAT(tweak.changes(), ElementsAre(change(0, 1, 1), change(0.5, 1, 0.69)));
}

TEST_F(ColorPage, SendsAThemeOnceAndNotTheStoredOne) {
    open(stored(0.5, 1, 1));
    fingers->tap(theme(0));
    EXPECT_THAT(tweak.changes(), IsEmpty());
    fingers->tap(theme(1));
    fingers->tap(theme(1));
    EXPECT_EQ(tweak.changes().size(), 1U);
}

TEST_F(ColorPage, LeavesTheColourWhenATouchOfAThemeEndsElsewhere) {
    open(stored(0.25, 1, 1));
    fingers->down({theme(0)});
    fingers->move({{160, 200}});
    fingers->up({{160, 200}});
    EXPECT_EQ(*preview(), *hsb(0.25, 1, 1));
    EXPECT_THAT(tweak.changes(), IsEmpty());
}

// -- what it saves --

TEST_F(ColorPage, SavesAndShowsEachMoveOfAFinger) {
    open(stored(0, 1, 1));
    fingers->down({{90, 222.5}});
    EXPECT_EQ(*preview(), *hsb(0.25, 0.5, 1));
    fingers->move({{160, 222.5}});
    fingers->move({{160, 385}});
    EXPECT_EQ(*preview(), *hsb(0.5, 0.5, 0.5));
    fingers->up({{160, 385}});
    EXPECT_THAT(tweak.changes(),
                UnorderedElementsAre(change(0.25, 0.5, 1), change(0.5, 0.5, 1), change(0.5, 0.5, 0.5)));
}

TEST_F(ColorPage, SendsNothingForMovesOutsideFieldAndBar) {
    open(stored(0, 1, 1));
    fingers->down({{90, 222.5}});
    for (const CGPoint outside : {CGPoint{10, 222.5}, CGPoint{90, 80}, CGPoint{90, 360}, CGPoint{90, 410},
                                  CGPoint{300, 222.5}, CGPoint{90, 470}, CGPoint{-100, 2000}})
        fingers->move({outside});
    fingers->up({{160, 222.5}});
    EXPECT_THAT(tweak.changes(), ElementsAre(change(0.25, 0.5, 1)));
    EXPECT_EQ(*preview(), *hsb(0.25, 0.5, 1));
}

TEST_F(ColorPage, SendsKeyAndObjectWithHueSaturationAndBrightnessInThatOrder) {
    open(stored(0, 1, 1));
    fingers->tap({160, 222.5});
    const auto keys = [](const Value& value) {
        std::vector<std::string> found;
        for (const auto& [key, entry] : *value.dictionary())
            found.push_back(key);
        return found;
    };
    const Value message = tweak.waitForChanges(1).at(0);
    EXPECT_THAT(keys(message), ElementsAre("key", "object"));
    EXPECT_THAT(keys(message["object"]), ElementsAre("h", "s", "b"));
    for (const char* key : {"h", "s", "b"})
        EXPECT_EQ(message["object"][key].kind(), Value::Kind::real) << key;
}

TEST_F(ColorPage, SavesUnderTheIdentifierThatItIsGiven) {
    open(stored(0, 1, 1));
    view().setIdentifier("another");
    fingers->tap({160, 95});
    EXPECT_THAT(tweak.changes(),
                ElementsAre(Value(Dictionary{{"key", "another"}, {"object", dictionary(0.5, 1.0, 1.0)}})));
}

TEST_F(ColorPage, ShowsWhatItHasSavedWhenItAppearsAgain) {
    open(stored(0, 1, 1));
    fingers->tap({160, 222.5});
    tweak.waitForChanges(1);
    tweak.holdAnswers(true); // so that what it has itself is what counts
    appear();
    EXPECT_EQ(*preview(), *hsb(0.5, 0.5, 1));
    EXPECT_EQ(picker().crossHairs()->center(), (CGPoint{160, 147.5}));
    tweak.holdAnswers(false);
    EXPECT_EQ(tweak.changes().size(), 1U);
}

// -- what becomes of it --

TEST_F(ColorPage, LetsGoOfItsViewOnEachNewAppearance) {
    open(stored(0, 1, 1));
    const std::weak_ptr<UIView> first = page->view();
    const std::weak_ptr<ColorPicker> firstPicker = view().pickerView();
    appear();
    EXPECT_TRUE(first.expired());
    EXPECT_TRUE(firstPicker.expired());
    const std::weak_ptr<UIView> second = page->view();
    fingers->tap({160, 222.5});
    EXPECT_EQ(*preview(), *hsb(0.5, 0.5, 1)) << "the new one goes on saving";
    EXPECT_EQ(tweak.changes().size(), 1U);
    appear();
    EXPECT_TRUE(second.expired());
}

TEST_F(ColorPage, LetsGoOfItsViewWhenItGoes) {
    open(stored(0, 1, 1));
    const std::weak_ptr<UIView> shown = page->view();
    const std::weak_ptr<ColorPicker> shownPicker = view().pickerView();
    page.reset();
    EXPECT_TRUE(shown.expired());
    EXPECT_TRUE(shownPicker.expired());
}

TEST_F(ColorPage, HoldsItsViewByTheChangeBlock) {
    open(stored(0, 1, 1));
    const std::weak_ptr<UIView> shown = page->view();
    const std::shared_ptr<ColorPicker> held = view().pickerView();
    page->setView(nullptr);
    EXPECT_FALSE(shown.expired());
    held->touchesBegan(tests::touchesAt({{160, 95}}), {});
    EXPECT_EQ(tweak.changes().size(), 1U);
    page.reset();
    EXPECT_TRUE(shown.expired()) << "the page cuts the block, whoever else may hold the control";
    held->touchesBegan(tests::touchesAt({{100, 95}}), {});
    EXPECT_EQ(tweak.changes().size(), 1U);
}

TEST_F(ColorPage, RestoresTheStoredComponentsAsTheyStandAndSendsThemOnce) {
    // A black, whose hue its colour does not have; and no number of single precision.
    open(stored(0.1, 0.9, 0.0));
    const auto state = view().undoState();
    fingers->tap(theme(6));
    tweak.waitForChanges(1);
    tweak.setSettings({});
    view().restore(state);
    EXPECT_THAT(tweak.waitForChanges(1), ElementsAre(change(0.1, 0.9, 0.0)));
    EXPECT_EQ(view().pickerView()->getHSB(), dictionary(0.1, 0.9, 0.0));
    EXPECT_EQ(*view().preview()->backgroundColor(), *ColorPickerView::h(0.1, 0.9, 0.0));
    EXPECT_EQ(tweak.changes().size(), 1U);
}

} // namespace

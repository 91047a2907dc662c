#include "tests/lockscreen/SampleDevice.h"

#include "lockscreen/LookDocument.h"
#include "json/Json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace lumora;
using namespace tests;
using platform::CGRectMake;
using platform::Dictionary;
using platform::List;
using platform::Value;
using testing::ElementsAre;

namespace {

Dictionary withApps(std::vector<Dictionary::Entry> others = {}) {
    others.emplace_back(kTweakEnabled, true);
    others.emplace_back(kAppsEnabled, List{"org.lumora.samples.Phone", "org.example.gone", "org.lumora.samples.Mail"});
    return Dictionary(std::move(others));
}

State on(Surface surface) {
    State state;
    state.surface = surface;
    return state;
}

} // namespace

TEST(Look, LeavesOutApplicationsThatAreNotInstalledAndKeepsTheOrder) {
    const Look look = lookOf(withApps(), sampleDevice(), on(Surface::apps));
    ASSERT_EQ(look.icons.size(), 2U);
    EXPECT_EQ(look.icons[0].identifier, "org.lumora.samples.Phone");
    EXPECT_EQ(look.icons[1].badge.text, "99+");
    EXPECT_THAT(look.stages, ElementsAre(Surface::notices, Surface::apps));
}

TEST(Look, HasNoStageForAppsWithoutAny) {
    EXPECT_THAT(lookOf(Dictionary{{kTweakEnabled, true}}, sampleDevice(), State()).stages,
                ElementsAre(Surface::notices));
}

TEST(Look, PutsIconsThatDoNotFitOnFurtherPages) {
    Dictionary settings =
        withApps({{kAppsPerRow, 1.4}, {kLSDateFontSize, 150}, {kLSDateOffset, 50}, {kAppIconSize, 90}});
    settings.set(kAppsEnabled, List{"org.lumora.samples.Phone", "org.lumora.samples.Mail", "org.lumora.samples.Books"});
    State state = on(Surface::apps);
    const auto visible = [&] {
        const Look look = lookOf(settings, sampleDevice(), state);
        EXPECT_EQ(look.pages, 2);
        return std::vector{look.icons[0].visible, look.icons[1].visible, look.icons[2].visible};
    };
    EXPECT_THAT(visible(), ElementsAre(true, true, false));
    state.page = 1;
    EXPECT_THAT(visible(), ElementsAre(false, false, true));
}

TEST(Look, MakesAClockSmallerThatIsTooWide) {
    const Look look = lookOf(withApps({{kLSDateFontSize, 150}}), sampleDevice(), State());
    EXPECT_EQ(look.clock.size, 150);
    EXPECT_NEAR(look.clock.drawnSize, 358 / 2.5, 1e-9); // five characters of half their size
}

TEST(Look, DrawsADateSmallerThatWouldLieOverTheIcons) {
    Device lying = sampleDevice(true);
    const Dictionary large = withApps({{kLSDateFontSize, 150}, {kLSDateSubtitleFontSize, 50}, {kLSDateOffset, 50}});
    const Look look = lookOf(large, lying, on(Surface::apps));
    EXPECT_LT(look.clock.drawnSize, 110);
    EXPECT_NEAR(look.clock.drawnSize / look.subtitle.size, 3, 1e-9) << "both";
    EXPECT_LT(look.subtitle.frame.origin.y + look.subtitle.frame.size.height, look.iconView.frame.origin.y);
    EXPECT_EQ(lookOf(withApps(), lying, on(Surface::apps)).clock.drawnSize, 87.5);
}

TEST(Look, MakesRoomForASecondLineOfTheSubtitle) {
    const auto rows = [](const std::string& subtitle) {
        const Look look = lookOf(withApps({{kLSDateSubtitle, subtitle},
                                           {kLSDateFontSize, 150},
                                           {kLSDateSubtitleFontSize, 40},
                                           {kAppsPerRow, 1},
                                           {kAppIconSize, 90}}),
                                 sampleDevice(), on(Surface::apps));
        EXPECT_LT(look.subtitle.frame.origin.y + look.subtitle.frame.size.height, look.iconView.frame.origin.y);
        return look.subtitle.frame.size.height / (40 * 1.22);
    };
    EXPECT_EQ(std::lround(rows("short")), 1);
    EXPECT_EQ(std::lround(rows("many words that take a second line")), 2);
}

TEST(Look, TellsOnThePasscodeViewThatItTakesNoKeys) {
    State state = on(Surface::passcode);
    const Look usual = lookOf(withApps(), sampleDevice(), state);
    state.blocked = true;
    const Look blocked = lookOf(withApps(), sampleDevice(), state);
    EXPECT_EQ(blocked.passcode.title.text, "Try Again in a Moment");
    EXPECT_LT(blocked.keys[0].opacity, usual.keys[0].opacity);
    EXPECT_EQ(blocked.keys[0].frame, usual.keys[0].frame);
}

TEST(Look, ShadesTheSharpPictureBehindThePasscodeWhereItHasTo) {
    const Dictionary hidden = withApps({{kLSPasscodeBlurHidden, true}});
    Device device = sampleDevice();
    EXPECT_EQ(lookOf(hidden, device, on(Surface::passcode)).keys[0].shade, ShadeLook()) << "on black";
    std::vector<float> stripes(200);
    for (std::size_t i = 0; i < stripes.size(); i += 2)
        stripes[i] = 1;
    device.picture = device.blurred = Luminance(1, stripes.size(), stripes);
    const Look look = lookOf(hidden, device, on(Surface::passcode));
    for (const Mark* mark : {static_cast<const Mark*>(&look.passcode.cancel), static_cast<const Mark*>(&look.keys[9])})
        for (const double behind : {0.0, 1.0}) {
            const double ground = laidOver(behind, mark->shade.color, mark->shade.opacity);
            EXPECT_GE(contrast(ground, luminanceOf(mark->color)), 4.5);
        }
    EXPECT_FALSE(look.passcode.tint.visible);
}

TEST(Look, DrawsAFontThatIsMissingAsTheDefault) {
    EXPECT_EQ(lookOf(withApps({{kLSDateFontName, "DejaVuSans"}}), sampleDevice(), State()).clock.font, "DejaVuSans");
    EXPECT_EQ(lookOf(withApps({{kLSDateFontName, "Gone"}}), sampleDevice(), State()).subtitle.font, "Default");
}

TEST(Look, ShowsTheSlideHintOnOneLine) {
    const Look look = lookOf(withApps({{kSlideToUnlockText, "come\non\u2028in\t!"}}), sampleDevice(), State());
    EXPECT_EQ(look.slideHint.text, "come on in !");
}

TEST(Look, KeepsTheBatteryAtItsPlaceWithoutTheStatusBar) {
    const Look all = lookOf(withApps(), sampleDevice(), State());
    const Look battery =
        lookOf(withApps({{kLSStatusBarHidden, true}, {kAlwaysShowBattery, true}}), sampleDevice(), State());
    EXPECT_FALSE(battery.statusBar.visible);
    EXPECT_EQ(battery.battery, all.battery);
    EXPECT_FALSE(lookOf(withApps({{kLSStatusBarHidden, true}}), sampleDevice(), State()).battery.visible);
}

TEST(Look, MakesAKeypadThatDoesNotFitSmallerAsAWhole) {
    const Dictionary settings = withApps({{kLSPButtonDiam, 15}, {kLSPButtonSpacingH, 3}, {kLSPButtonSpacingV, 3}});
    const Look look = lookOf(settings, sampleDevice(), on(Surface::passcode));
    const auto& first = look.keys[0].frame;
    const auto& second = look.keys[1].frame;
    const double gap = second.origin.x - first.origin.x - first.size.width;
    EXPECT_LT(first.size.width, 90);
    EXPECT_NEAR(gap / first.size.width, 60.0 / 90, 1e-9);
}

TEST(Look, TintsThePasscodeInTheChosenColour) {
    const Dictionary settings = withApps({{kLSBlurColorEnabled, true},
                                          {kLSPTintOpacity, 0.5},
                                          {kLSBlurColor, Dictionary{{"h", 1.0 / 3}, {"s", 1.0}, {"b", 0.5}}}});
    const Look look = lookOf(settings, sampleDevice(), on(Surface::passcode));
    EXPECT_NEAR(look.passcode.tint.color.green, 0.5, 1e-9);
    EXPECT_NEAR(look.passcode.tint.color.red, 0, 1e-9);
    EXPECT_NEAR(look.passcode.tint.opacity, 0.31, 1e-9);
}

TEST(Look, GivesTextsACornerOfContrastOnAnyPicture) {
    for (const float luminance : {0.F, 0.1F, 0.2F, 0.3F, 0.5F, 1.F}) {
        Device device = sampleDevice();
        device.picture = device.blurred = Luminance(1, 1, {luminance});
        const Look look = lookOf(withApps(), device, State());
        const NoticeLook& notice = look.notices.items[0];
        const double surface = laidOver(luminance, notice.tint, notice.tintOpacity);
        EXPECT_GE(contrast(surface, luminanceOf(notice.title.color)), 4.5) << luminance;
        EXPECT_GE(contrast(luminance, luminanceOf(look.clock.color)), 3) << luminance;
    }
}

TEST(Look, IsAsLargeAsTheScreenAllows) {
    Device device = sampleDevice();
    device.size = {780, 1688};
    const Look large = lookOf(withApps(), device, State());
    const Look small = lookOf(withApps(), sampleDevice(), State());
    EXPECT_EQ(large.slideHint.frame.origin.y, 2 * small.slideHint.frame.origin.y);
    EXPECT_EQ(large.clock.size, 2 * small.clock.size);
}

TEST(Look, NamesWhatDiffers) {
    Look before = lookOf(withApps(), sampleDevice(), on(Surface::apps));
    Look after = before;
    after.icons[1].frame.origin.x += 1;
    after.clock.drawnSize = 3;
    EXPECT_THAT(diff(before, after), ElementsAre("clock.drawnSize", "icons[1].frame"));
    after.icons.pop_back();
    EXPECT_THAT(diff(before, after), ElementsAre("clock.drawnSize", "icons"));
}

TEST(Look, IsADocumentWithoutAnyPasscode) {
    State state = on(Surface::passcode);
    state.typed = "97";
    const Dictionary settings = withApps({{kAutoUnlockPasscode, "9753"}, {kAutoUnlockWidgetPasscode, "9753"}});
    const Look look = lookOf(settings, sampleDevice(false, "9753"), state);
    const std::string text = platform::description(documentOf(look)) + platform::description(documentOf(state));
    EXPECT_EQ(text.find("97"), std::string::npos) << text;
    EXPECT_EQ(documentOf(state)["typed"], Value(2));
    EXPECT_EQ(documentOf(look)["stages"], Value(List{"N", "A"}));
    EXPECT_EQ(documentOf(look)["passcode"]["title"]["text"], Value("Enter Passcode"));
    EXPECT_EQ(documentOf(look)["keys"].list()->size(), 10U);
}

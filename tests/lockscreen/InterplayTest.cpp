#include "tests/lockscreen/SampleDevice.h"

#include <gtest/gtest.h>

#include <random>

using namespace lumora;
using namespace tests;
using platform::CGRect;
using platform::Dictionary;
using platform::List;
using platform::Value;

namespace {

bool overlap(const CGRect& a, const CGRect& b) {
    constexpr double touching = 1e-6;
    return a.origin.x + a.size.width > b.origin.x + touching && b.origin.x + b.size.width > a.origin.x + touching &&
           a.origin.y + a.size.height > b.origin.y + touching && b.origin.y + b.size.height > a.origin.y + touching;
}

void expectOnScreen(const Part& part, const Device& device, const char* what) {
    if (!part.visible) return;
    EXPECT_GE(part.frame.origin.x, -1e-6) << what;
    EXPECT_GE(part.frame.origin.y, -1e-6) << what;
    EXPECT_LE(part.frame.origin.x + part.frame.size.width, device.size.width + 1e-6) << what;
    EXPECT_LE(part.frame.origin.y + part.frame.size.height, device.size.height + 1e-6) << what;
}

void expectSound(const Look& look, const Device& device) {
    for (const auto& [part, what] :
         std::initializer_list<std::pair<const Part*, const char*>>{{&look.clock, "clock"},
                                                                    {&look.subtitle, "subtitle"},
                                                                    {&look.slideHint, "slideHint"},
                                                                    {&look.camera, "camera"},
                                                                    {&look.iconView, "iconView"},
                                                                    {&look.appView, "appView"},
                                                                    {&look.notices, "notices"},
                                                                    {&look.pageDots, "pageDots"},
                                                                    {&look.passcode.title, "title"},
                                                                    {&look.passcode.emergency, "emergency"},
                                                                    {&look.passcode.cancel, "cancel"},
                                                                    {&look.passcode.blur, "blur"}})
        expectOnScreen(*part, device, what);
    for (const Part* date : std::initializer_list<const Part*>{&look.clock, &look.subtitle})
        for (const auto& [below, what] :
             std::initializer_list<std::pair<const Part*, const char*>>{{&look.notices, "notices"},
                                                                        {&look.iconView, "iconView"},
                                                                        {&look.appView, "appView"},
                                                                        {&look.slideHint, "slideHint"}})
            EXPECT_FALSE(date->visible && below->visible && overlap(date->frame, below->frame)) << what;
    for (std::size_t i = 0; i < look.keys.size(); ++i) {
        expectOnScreen(look.keys[i], device, "key");
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_FALSE(overlap(look.keys[i].frame, look.keys[j].frame)) << i << " and " << j;
        EXPECT_FALSE(look.keys[i].visible && overlap(look.keys[i].frame, look.passcode.cancel.frame));
    }
    for (std::size_t i = 0; i < look.icons.size(); ++i) {
        const IconLook& icon = look.icons[i];
        expectOnScreen(icon, device, "icon");
        EXPECT_LE(icon.picture.frame.size.width, icon.frame.size.width);
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_FALSE(icon.visible && look.icons[j].visible && overlap(icon.frame, look.icons[j].frame))
                << i << " and " << j;
    }
}

/// A value of the right kind as a rule, and within its bounds half of the time.
Value randomValue(const KeyEntry& entry, std::mt19937& random) {
    const auto below = [&](int end) { return std::uniform_int_distribution(0, end - 1)(random); };
    if (below(20) == 0) return "of another kind";
    if (entry.stock.boolean()) return below(2) == 0;
    if (entry.bounds) {
        const double span = entry.bounds->most - entry.bounds->least;
        const double beyond = below(2) == 0 ? span : 0;
        return std::uniform_real_distribution(entry.bounds->least - beyond, entry.bounds->most + beyond)(random);
    }
    if (entry.stock.text()) return std::string(static_cast<std::size_t>(below(300)), 'm');
    if (entry.stock.dictionary())
        return Dictionary{{"h", below(11) / 10.0}, {"s", below(11) / 10.0}, {"b", below(11) / 10.0}};
    return entry.scene.shown;
}

} // namespace

TEST(Interplay, LeavesNothingOffTheScreenAndNothingOverAnotherWithAnySettings) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int i = 0; i < 10'000 && !testing::Test::HasFailure(); ++i) {
        Dictionary settings;
        for (const KeyEntry& entry : keyTable())
            settings.set(entry.key, randomValue(entry, random));
        settings.set(kTweakEnabled, true);
        const Device device = sampleDevice(i % 2 == 1);
        State state;
        state.surface = std::array{Surface::notices, Surface::apps, Surface::appView, Surface::passcode}.at(
            static_cast<std::size_t>(i / 2 % 4));
        expectSound(lookOf(settings, device, state), device);
    }
}

TEST(Interplay, KeepsTheKeypadOnScreenWithEverySizeAndGap) {
    for (const double diameter : {-20.0, -15.0, 0.0, 15.0, 20.0})
        for (const double across : {-1.0, 0.0, 1.0, 3.0, 4.0})
            for (const double down : {-1.0, 0.0, 1.0, 3.0, 4.0})
                for (const bool landscape : {false, true}) {
                    State state;
                    state.surface = Surface::passcode;
                    const Device device = sampleDevice(landscape);
                    const Dictionary settings{{kTweakEnabled, true},
                                              {kLSPButtonDiam, diameter},
                                              {kLSPButtonSpacingH, across},
                                              {kLSPButtonSpacingV, down}};
                    expectSound(lookOf(settings, device, state), device);
                }
}

TEST(Interplay, MovesNoIconWhenTheDateGoes) {
    const Dictionary settings{
        {kTweakEnabled, true}, {kAppsEnabled, List{"org.lumora.samples.Phone"}}, {kLSDateOffset, 50}};
    Dictionary without = settings;
    without.set(kDateViewDisabled, true);
    State state;
    state.surface = Surface::apps;
    EXPECT_EQ(lookOf(settings, sampleDevice(), state).icons, lookOf(without, sampleDevice(), state).icons);
}

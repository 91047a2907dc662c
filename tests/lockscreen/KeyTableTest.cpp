#include "tests/lockscreen/AllowedPaths.h"
#include "tests/lockscreen/SampleDevice.h"

#include "tweak/Defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace lumora;
using namespace tests;
using platform::Dictionary;
using platform::List;
using platform::Value;

namespace {

/// Values of a key to look at: both booleans, both bounds and one beyond each, some of other kinds, none at all.
std::vector<Value> samplesOf(const KeyEntry& entry) {
    std::vector<Value> samples{nullptr,     "text",           List{1, "a"}, std::numeric_limits<double>::quiet_NaN(),
                               entry.stock, entry.scene.shown};
    if (entry.stock.boolean()) samples.insert(samples.end(), {true, false, 1});
    if (entry.bounds) {
        const auto [least, most] = *entry.bounds;
        samples.insert(samples.end(), {least, most, least - 1, most + 1, 1e300, -1e300});
    }
    return samples;
}

Dictionary settingsOf(const Scene& scene, bool on) {
    Dictionary settings = scene.others;
    settings.set(kTweakEnabled, on);
    return settings;
}

Dictionary with(Dictionary settings, std::string_view key, const Value& value) {
    if (value.isNil())
        settings.remove(key);
    else
        settings.set(key, value);
    return settings;
}

Player played(const Scene& scene, const Dictionary& settings, bool landscape) {
    Player player(settings, sampleDevice(landscape, scene.passcode ? "1234" : ""));
    player.behaviour.show(scene.surface, player.now);
    player.play(scene.events);
    return player;
}

/// One key after the other, named by it.
class EachKey : public testing::TestWithParam<std::size_t> {
  protected:
    const KeyEntry& entry = keyTable()[GetParam()];
};

} // namespace

TEST(KeyTable, HasEveryKeyOfTheTweakOnceWithItsDefaultAndItsBounds) {
    ASSERT_EQ(keyTable().size(), knownSettings().size());
    for (const Setting& setting : knownSettings()) {
        const KeyEntry* entry = findKey(setting.key);
        ASSERT_NE(entry, nullptr) << setting.key;
        EXPECT_EQ(entry->stock, setting.key == kTweakEnabled ? Value(false) : setting.byDefault) << setting.key;
        ASSERT_EQ(entry->bounds.has_value(), setting.bounds.has_value()) << setting.key;
        if (!entry->bounds) continue;
        EXPECT_EQ(entry->bounds->least, setting.bounds->least) << setting.key;
        EXPECT_EQ(entry->bounds->most, setting.bounds->most) << setting.key;
    }
}

TEST(KeyTable, DrawsAllKeysAsStockWhileTheTweakIsOff) {
    Dictionary settings;
    for (const KeyEntry& entry : keyTable())
        settings.set(entry.key, entry.scene.shown);
    settings.set(kTweakEnabled, false);
    for (const bool landscape : {false, true})
        EXPECT_EQ(
            diff(lookOf(settings, sampleDevice(landscape), State()), lookOf({}, sampleDevice(landscape), State())),
            std::vector<std::string>());
}

TEST_P(EachKey, ChangesOnlyWhatTheTableAllows) {
    for (const bool landscape : {false, true})
        for (const bool on : {true, false}) {
            const Dictionary settings = settingsOf(entry.scene, on);
            const Player stock =
                played(entry.scene, with(settings, entry.key, entry.key == kTweakEnabled ? Value(on) : entry.stock),
                       landscape);
            for (const Value& sample : samplesOf(entry)) {
                if (!entry.line.empty()) continue; // such a key changes where its gestures lead
                const Player player = played(entry.scene, with(settings, entry.key, sample), landscape);
                if (player.surface() != stock.surface()) continue; // its stage is gone
                for (const std::string& path : diff(stock.look(), player.look())) {
                    EXPECT_TRUE(on || entry.key == kTweakEnabled) << path;
                    EXPECT_TRUE(isAllowed(entry, path)) << path << " with " << description(sample);
                }
            }
        }
}

TEST_P(EachKey, IsSeenInItsScene) {
    const Dictionary settings = settingsOf(entry.scene, true);
    const Player stock = played(entry.scene, with(settings, entry.key, entry.stock), entry.scene.landscape);
    const Player shown = played(entry.scene, with(settings, entry.key, entry.scene.shown), entry.scene.landscape);
    if (entry.line.empty()) {
        EXPECT_THAT(diff(stock.look(), shown.look()), testing::Not(testing::IsEmpty()));
        return;
    }
    const std::string line = std::string(entry.line) + "\n";
    EXPECT_NE(stock.log.find(line) != std::string::npos, shown.log.find(line) != std::string::npos)
        << stock.log << "\nand\n"
        << shown.log;
}

INSTANTIATE_TEST_SUITE_P(KeyTable, EachKey, testing::Range(std::size_t{0}, keyTable().size()),
                         [](const auto& one) { return std::string(keyTable()[one.param].key); });

#include "profiles/Differences.h"
#include "profiles/MakeProfile.h"
#include "profiles/ReadProfile.h"
#include "tests/foundation/RandomValue.h"
#include "tweak/Defaults.h"

#include <gtest/gtest.h>

using namespace profiles;
using platform::Dictionary;
using platform::List;
using platform::Value;

namespace {

/// A value that a setting of the tweak takes.
Value valueFor(const lumora::Setting& setting, std::mt19937_64& random) {
    const auto fraction = [&] { return static_cast<double>(random() % 1001) / 1000; };
    const Value& model = setting.byDefault;
    if (model.boolean()) return random() % 2 == 0;
    if (model.isNumber()) return random() % 2 == 0 ? Value(static_cast<int>(random() % 100)) : Value(fraction() * 100);
    if (model.text()) return "24680 \u8a9e" + std::to_string(random() % 3);
    if (model.dictionary()) return Dictionary{{"h", fraction()}, {"s", fraction()}, {"b", fraction()}};
    List list;
    for (auto i = random() % 5; i > 0; --i)
        list.emplace_back("org.app." + std::to_string(random() % 9));
    return list;
}

Dictionary randomSettings(std::mt19937_64& random) {
    Dictionary changed;
    for (const lumora::Setting& setting : lumora::knownSettings())
        if (random() % 2 == 0) changed.set(setting.key, valueFor(setting, random));
    RandomValue values(static_cast<unsigned>(random()));
    for (auto i = random() % 10; i > 0; --i)
        changed.set("org.plugin." + std::to_string(i), values.next(2, false));
    return lumora::withDefaults(changed);
}

/// What a tweak has after it has been sent all changes, and how many these are.
std::size_t take(const Profile& profile, Dictionary& settings) {
    const auto changes = changesBy(profile.settings, settings);
    for (const Difference& change : changes)
        settings.set(change.key, *change.after);
    return changes.size();
}

} // namespace

TEST(RoundTrip, GivesTheSameSettingsElsewhereAndOnceIsEnough) {
    const unsigned seed = std::random_device{}();
    std::mt19937_64 random(seed);
    for (int turn = 0; turn < 300; ++turn) {
        const Dictionary settings = randomSettings(random);
        const MadeProfile made = makeProfile(settings, {}, {});
        const auto text = writeProfile(made.profile);
        ASSERT_TRUE(text) << "seed " << seed << ": " << text.error();
        const auto read = readProfile(text.value());
        ASSERT_TRUE(read) << "seed " << seed << ": " << read.error();
        for (const Remark& remark : read.value().remarks)
            EXPECT_EQ(remark.kind, Remark::Kind::beyond) << "seed " << seed << ": " << remark.text;

        Dictionary elsewhere = randomSettings(random);
        EXPECT_LE(take(read.value().profile, elsewhere), made.profile.settings.size());
        EXPECT_EQ(take(read.value().profile, elsewhere), 0U) << "seed " << seed;
        std::vector<std::string> keys;
        for (const auto& [key, value] : made.profile.settings)
            keys.push_back(key);
        if (keys.empty()) continue;
        const MadeProfile again = makeProfile(elsewhere, {.changedOnly = false, .keys = keys}, {});
        EXPECT_TRUE(differences(made.profile.settings, again.profile.settings).empty()) << "seed " << seed;
    }
}

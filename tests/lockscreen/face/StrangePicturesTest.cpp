// Settings that no page makes.

#include "lockscreen/KeyTable.h"
#include "tests/lockscreen/face/Scenery.h"

#include <gmock/gmock.h>

#include <chrono>

namespace {

using namespace lumora;
using namespace tests;
using platform::Dictionary;
using platform::List;
using platform::Value;

constexpr double kAsLongAsAtMost = 20;
constexpr std::array kSurfaces{Surface::notices, Surface::apps, Surface::appView, Surface::passcode};

Dictionary everyNumber(double number) {
    Dictionary settings = enhanced();
    for (const KeyEntry& entry : keyTable())
        if (entry.stock.isNumber()) settings.set(entry.key, number);
    settings.set(kLSBlurColorEnabled, true);
    settings.set(kLSBlurColor, Dictionary{{"h", number}, {"s", number}, {"b", number}});
    return settings;
}

Dictionary everyText(const std::string& text) {
    return enhanced({{kLSDateSubtitle, text}, {kSlideToUnlockText, text}, {kLSDateFontName, text}});
}

std::string repeated(const std::string& text, std::size_t times) {
    std::string all;
    for (std::size_t i = 0; i < times; ++i)
        all += text;
    return all;
}

/// Names of parts, with those that none of them may lie under.
void expectNoOverlap(const Look& look) {
    std::vector<std::pair<std::string, QRectF>> parts;
    const Value document = documentOf(look);
    eachVisible(document, "", [&](const std::string& path, const Value& part) {
        const bool isIcon = path.starts_with("icons[") && path.ends_with("]");
        const bool isNotice = path.starts_with("notices.items[") && path.ends_with("]");
        const bool isKey = path.starts_with("keys[");
        const bool isText = path == "passcode.title" || path == "passcode.emergency" || path == "passcode.cancel";
        const bool isFoot = path == "slideHint" || path == "camera" || path == "pageDots" || path == "bottomGrabber";
        const bool isDate = path == "clock" || path == "subtitle";
        const bool isPane = path == "appView";
        if (isIcon || isNotice || isKey || isText || isFoot || isDate || isPane)
            parts.emplace_back(path, frameOf(part));
    });
    for (std::size_t i = 0; i < parts.size(); ++i)
        for (std::size_t j = 0; j < i; ++j) {
            const auto& [one, frame] = parts[i];
            const auto& [other, otherFrame] = parts[j];
            const QRectF common = frame & otherFrame;
            EXPECT_TRUE(common.width() < 1 || common.height() < 1) << one << " and " << other;
        }
}

class Strange : public testing::TestWithParam<std::pair<const char*, Dictionary>> {};

/// Draws every surface, upright and in landscape, and returns how long that takes.
double drawAll(const Dictionary& settings) {
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    for (const platform::CGSize size : {platform::CGSize{390, 844}, platform::CGSize{844, 390}})
        for (const Surface surface : kSurfaces) {
            Options options = upright();
            options.phone.size = size;
            options.surface = surface;
            const Taken screen = taken(options, settings);
            EXPECT_EQ(screen.picture.size(), QSize(static_cast<int>(size.width), static_cast<int>(size.height)));
            expectNoOverlap(screen.look);
        }
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

TEST_P(Strange, SettingsAreDrawnInTime) {
    static const double normal = [] {
        drawAll(enhanced()); // brings icons and fonts
        return drawAll(enhanced());
    }();
    EXPECT_LE(drawAll(GetParam().second) / normal, kAsLongAsAtMost);
}

List manyApplications() {
    List applications;
    for (int i = 0; i < 10'000; ++i) {
        applications.push_back((*settingOfApps().list())[static_cast<std::size_t>(i) % 8]);
        applications.emplace_back("no.such.application" + std::to_string(i));
    }
    return applications;
}

INSTANTIATE_TEST_SUITE_P(
    , Strange,
    testing::Values(std::pair("AllHuge", everyNumber(1e300)), std::pair("AllDeep", everyNumber(-1e300)),
                    std::pair("AllMinusNought", everyNumber(-0.0)), std::pair("AllTiny", everyNumber(1e-300)),
                    std::pair("LongWord", everyText(std::string(65'536, 'w'))),
                    std::pair("LongText", everyText(repeated("lake ", 13'108))),
                    std::pair("RightToLeft", everyText("\u05d0\u05d2\u05dd \u202e\u0634\u0644\u0648\u0645 abc")),
                    std::pair("Combining", everyText("e" + repeated("\u0301", 2'000))),
                    std::pair("Emoji", everyText(repeated("\U0001F468\u200D\U0001F469\u200D\U0001F467", 200))),
                    std::pair("Controls", everyText("a\n\r\t\x01\x7f\u2028\u2029\u0085z")),
                    std::pair("BrokenUnicode", everyText("\xff\xfe\xc0\x80 lake \xed\xa0\x80")),
                    std::pair("ManyApplications", enhanced({{kAppsEnabled, manyApplications()}})),
                    std::pair("OneColumn", enhanced({{kAppsPerRow, 1},
                                                     {kAppIconSize, 90},
                                                     {kLSDateFontSize, 150},
                                                     {kLSDateSubtitleFontSize, 50},
                                                     {kLSDateOffset, 50}}))),
    [](const auto& one) { return std::string(one.param.first); });

} // namespace

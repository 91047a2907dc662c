#include "tweak/Defaults.h"

#include "link/PreferenceKeys.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

using platform::Dictionary;
using platform::List;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

bool isFiniteNumber(const Value& value) {
    return value.isNumber() && std::isfinite(value.doubleValue());
}

bool isListOfTexts(const Value& value) {
    const List* list = value.list();
    return list && std::ranges::all_of(*list, [](const Value& entry) { return entry.text() != nullptr; });
}

/// Hue, saturation and brightness.
bool isColor(const Value& value) {
    const auto isComponent = [&](std::string_view name) {
        const Value component = value[name];
        // Written so that "not a number" is no component either.
        return component.isNumber() && component.doubleValue() >= 0 && component.doubleValue() <= 1;
    };
    const Dictionary* color = value.dictionary();
    return color && color->size() == 3 && isComponent("h") && isComponent("s") && isComponent("b");
}

bool hasText(const Value& value) {
    if (const List* list = value.list()) return std::ranges::any_of(*list, hasText);
    if (const Dictionary* dictionary = value.dictionary())
        return std::ranges::any_of(*dictionary, [](const auto& entry) { return hasText(entry.second); });
    return (value.text() && !value.text()->empty()) || value.data();
}

} // namespace

const std::vector<Setting>& knownSettings() {
    static const auto& settings = *new std::vector<Setting>{
        // The first page
        {kTweakEnabled, true},
        {kSleepTime, 10, {{5, 3600}}},
        {kSleepDisabledForAppViews, false},
        {kNotificationsHideOnTap, false},
        // Lockscreen apps
        {kAppsEnabled, List{}},
        {kAppsPerRow, 4, {{1, 5}}},
        {kAppsPerRowLandscape, 6, {{1, 7}}},
        {kAppBadgesEnabled, true},
        {kAppLabelsEnabled, true},
        {kAppRoundedEnabled, false},
        {kAppIconOpacity, 1.0, {{0, 1}}},
        {kAppIconSize, 70.0, {{50, 90}}},
        {kIconViewBlurEnabled, true},
        {kSwitchTapAndLongHold, false},
        {kLongHoldForPluginApps, false},
        {kAlwaysReturnToLSEnabled, false},
        // Auto-unlock
        {kAutoUnlockEnabled, false},
        {kAutoUnlockPasscode, "", {}, true},
        {kFullAutoUnlockEnabled, false},
        {kAutoUnlockPasscodeConfirm, "", {}, true},
        {kAutoUnlockNotifications, false},
        {kAUNotificationsOnMainThread, false},
        {kAUAppsDisabled, List{}},
        // App views
        {kWidgetsEnabled, true},
        {kAppViewsEnabled, List{}},
        {kAutoUnlockWidgetPasscode, "", {}, true},
        // Lock screen
        {kLSStatusBarHidden, false},
        {kGrabbersDisabled, false},
        {kCameraGrabberDisabled, false},
        {kSlideToUnlockDisabled, false},
        {kAlwaysShowBattery, false},
        {kSlideToUnlockText, ""},
        // Passcode view
        {kLSPasscodeBlurHidden, false},
        {kLSPasscodeButtonsHidden, false},
        {kLSPasscodeTitleHidden, false},
        {kLSBlurColorEnabled, false},
        {kLSBlurColor, Dictionary{{"h", 0.6}, {"s", 0.75}, {"b", 0.9}}},
        {kLSBlurCutoffEnabled, false},
        {kLSPBlurOpacity, 1.0, {{0, 1}}},
        {kLSPTintOpacity, 1.0, {{0, 1}}},
        {kLSPButtonDiam, 0.0, {{-15, 15}}},
        {kLSPButtonSpacingH, 1.0, {{0, 3}}},
        {kLSPButtonSpacingV, 1.0, {{0, 3}}},
        // Date view
        {kDateViewDisabled, false},
        {kLSDateSubtitleHidden, false},
        {kLSDateSubtitle, ""},
        {kLSDateFontName, "Default"},
        {kLSDateFontSize, 87.5, {{10, 150}}},
        {kLSDateSubtitleFontSize, 18.0, {{5, 50}}},
        {kLSDateOffset, 0.0, {{-10, 50}}},
    };
    return settings;
}

const Setting* findSetting(std::string_view key) {
    const auto& settings = knownSettings();
    const auto found = std::ranges::find(settings, key, &Setting::key);
    return found == settings.end() ? nullptr : &*found;
}

bool isSecure(std::string_view key) {
    const Setting* setting = findSetting(key);
    return setting && setting->secure;
}

bool mayBeSecret(std::string_view key, const Value& value) {
    return hasText(value) && !findSetting(key);
}

Dictionary withDefaults(const Dictionary& changed) {
    Dictionary settings;
    for (const Setting& setting : knownSettings()) {
        const Value* value = changed.find(setting.key);
        settings.set(setting.key, value ? *value : setting.byDefault);
    }
    for (const auto& [key, value] : changed)
        if (!findSetting(key)) settings.set(key, value);
    return settings;
}

std::string_view wantedBy(const Setting& setting) {
    switch (setting.byDefault.kind()) {
    case Value::Kind::boolean:
        return "true or false";
    case Value::Kind::integer:
    case Value::Kind::real:
        return "a finite number";
    case Value::Kind::text:
        return "a text";
    case Value::Kind::list:
        return "a list of texts";
    default:
        return R"(a colour {"h", "s", "b"} of numbers from 0 to 1)";
    }
}

Result<void> canHave(const Setting& setting, const Value& value) {
    const Value& model = setting.byDefault;
    const bool sameKind = value.kind() == model.kind() || (value.isNumber() && model.isNumber());
    const bool fits = sameKind && (model.isNumber()     ? isFiniteNumber(value)
                                   : model.list()       ? isListOfTexts(value)
                                   : model.dictionary() ? isColor(value)
                                                        : true);
    if (fits) return {};
    // A value of the right kind has wrong contents, and naming its kind would only puzzle.
    return Result<void>::failure("takes " + std::string(wantedBy(setting)) +
                                 (sameKind ? "" : ", not " + std::string(kindName(value.kind()))));
}

std::string beyondItsPage(const Setting& setting, const Value& value) {
    if (!setting.bounds || !value.isNumber()) return {};
    const auto [least, most] = *setting.bounds;
    if (value.doubleValue() >= least && value.doubleValue() <= most) return {};
    return "the page sets " + setting.key + " from " + std::to_string(least) + " to " + std::to_string(most);
}

std::string_view kindName(Value::Kind kind) {
    static constexpr std::array<std::string_view, 9> names{"nil",  "a boolean", "an integer", "a real",      "a text",
                                                           "data", "a date",    "a list",     "a dictionary"};
    return names.at(static_cast<std::size_t>(kind)); // in the order of the kinds
}

} // namespace lumora

#include "lockscreen/KeyTable.h"

#include "link/PreferenceKeys.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

using platform::Dictionary;
using platform::List;
using platform::Value;

namespace lumora {
namespace {

constexpr const char* kPhone = "org.lumora.samples.Phone";
constexpr const char* kMessages = "org.lumora.samples.Messages";
constexpr const char* kWeather = "org.lumora.samples.Weather"; // the application of an App View

/// Four applications, one of which an App View belongs to.
const Value& apps() {
    static const auto& value = *new Value(List{kPhone, kMessages, "org.lumora.samples.Music", kWeather});
    return value;
}
const Value& views() {
    static const auto& value = *new Value(List{"org.lumora.plugins.weather", "org.lumora.plugins.clock"});
    return value;
}

/// What they show is private.
const Value& secureViews() {
    static const auto& value = *new Value(List{"org.lumora.plugins.notes"});
    return value;
}

Dictionary with(std::initializer_list<Dictionary::Entry> others) {
    return {others};
}
Dictionary withApps(std::vector<Dictionary::Entry> others = {}) {
    others.emplace_back(kAppsEnabled, apps());
    return Dictionary(std::move(others));
}
Dictionary withViews(std::vector<Dictionary::Entry> others = {}) {
    others.emplace_back(kAppViewsEnabled, views());
    return withApps(std::move(others));
}
/// Everything that auto-unlock asks for, but for one key.
Dictionary withUnlock(std::string_view but) {
    Dictionary settings = withApps({{kAutoUnlockEnabled, true},
                                    {kAutoUnlockPasscode, "1234"},
                                    {kFullAutoUnlockEnabled, true},
                                    {kAutoUnlockPasscodeConfirm, "1234"}});
    settings.remove(but);
    return settings;
}

std::vector<KeyEntry> makeTable() {
    constexpr auto none = std::nullopt;
    using Bounds = KeyEntry::Bounds;
    const Scene anywhere{.surface = Surface::apps, .shown = true, .others = withApps()};
    const auto scene = [](Surface surface, Value shown, Dictionary others = {}, std::string events = {}) {
        return Scene{surface, std::move(shown), std::move(others), std::move(events)};
    };
    const auto onApps = [&](Value shown, std::vector<Dictionary::Entry> others = {}, std::string events = {}) {
        return scene(Surface::apps, std::move(shown), withApps(std::move(others)), std::move(events));
    };
    const auto onPasscode = [&](Value shown, std::initializer_list<Dictionary::Entry> others = {}) {
        return scene(Surface::passcode, std::move(shown), with(others));
    };
    Scene landscape = onApps(3);
    landscape.landscape = true;
    Scene home = scene(Surface::apps, true, withApps(), "tap icons[0]\nhome");
    home.passcode = false;

    const std::vector<std::string_view> ground{"passcode", "keys", "statusBar", "battery"}; // of the passcode's texts

    return {
        // The first page
        {kTweakEnabled, false, none, {""}, onApps(true)},
        {kSleepTime, 10, Bounds{5, 3600}, {"sleepVeil"}, scene(Surface::notices, 5, {}, "wait 4")},
        {kSleepDisabledForAppViews, false, none, {"sleepVeil"}, scene(Surface::appView, true, withViews(), "wait 9")},
        {kNotificationsHideOnTap, false, none, {"notices"}, scene(Surface::notices, true, {}, "tap")},
        // Lockscreen apps
        {kAppsEnabled,
         List{},
         none,
         {"stages", "pages", "pageDots", "iconView", "icons"},
         scene(Surface::apps, apps())},
        {kAppsPerRow, 4, Bounds{1, 5}, {"pages", "iconView", "icons"}, onApps(3)},
        {kAppsPerRowLandscape, 6, Bounds{1, 7}, {"pages", "iconView", "icons"}, landscape},
        {kAppBadgesEnabled, true, none, {"icons"}, onApps(false)},
        {kAppLabelsEnabled, true, none, {"pages", "iconView", "icons"}, onApps(false)},
        {kAppRoundedEnabled, false, none, {"icons", "notices"}, onApps(true)},
        {kAppIconOpacity, 1.0, Bounds{0, 1}, {"icons"}, onApps(0.3)},
        {kAppIconSize, 70.0, Bounds{50, 90}, {"pages", "iconView", "icons"}, onApps(50.0)},
        {kIconViewBlurEnabled, true, none, {"iconView", "icons"}, onApps(false)},
        {kSwitchTapAndLongHold,
         false,
         none,
         {},
         scene(Surface::apps, true, withViews(), "tap icons[3]"),
         "-> shows org.lumora.plugins.weather"},
        {kLongHoldForPluginApps,
         false,
         none,
         {},
         scene(Surface::apps, true, withViews(), "tap icons[3]"),
         "-> shows org.lumora.plugins.weather"},
        {kAlwaysReturnToLSEnabled, false, none, {}, home, "-> lock screen"},
        // Auto-unlock
        {kAutoUnlockEnabled,
         false,
         none,
         {},
         scene(Surface::apps, true, withUnlock(kAutoUnlockEnabled), "tap icons[0]"),
         "-> unlocked"},
        {kAutoUnlockPasscode,
         "",
         none,
         {},
         scene(Surface::apps, "1234", withUnlock(kAutoUnlockPasscode), "tap icons[0]"),
         "-> unlocked"},
        {kFullAutoUnlockEnabled,
         false,
         none,
         {},
         scene(Surface::apps, true, withUnlock(kFullAutoUnlockEnabled), "tap icons[0]"),
         "-> unlocked"},
        {kAutoUnlockPasscodeConfirm,
         "",
         none,
         {},
         scene(Surface::apps, "1234", withUnlock(kAutoUnlockPasscodeConfirm), "tap icons[0]"),
         "-> unlocked"},
        {kAutoUnlockNotifications,
         false,
         none,
         {},
         scene(Surface::notices, true, withUnlock(""), "swipe notices.items[0] 0.4\nwait 1"),
         "-> unlocked"},
        {kAUNotificationsOnMainThread,
         false,
         none,
         {},
         scene(
             Surface::notices, true,
             [] {
                 Dictionary s = withUnlock("");
                 s.set(kAutoUnlockNotifications, true);
                 return s;
             }(),
             "swipe notices.items[0] 0.4\nwait 1"),
         "-> swiped away\n-> unlocked"},
        {kAUAppsDisabled,
         List{},
         none,
         {},
         scene(Surface::apps, List{kPhone}, withUnlock(""), "tap icons[0]"),
         "-> asks for the passcode"},
        // App Views
        {kWidgetsEnabled, true, none, {"stages", "pageDots", "appView"}, scene(Surface::apps, false, withViews())},
        {kAppViewsEnabled,
         List{},
         none,
         {"stages", "pageDots", "appView"},
         scene(Surface::appView, views(), withApps())},
        {kAutoUnlockWidgetPasscode,
         "",
         none,
         {"appView"},
         scene(Surface::appView, "1234", withApps({{kAppViewsEnabled, secureViews()}}))},
        // Lock screen
        {kLSStatusBarHidden, false, none, {"statusBar", "battery"}, anywhere},
        {kGrabbersDisabled, false, none, {"topGrabber", "bottomGrabber"}, anywhere},
        {kCameraGrabberDisabled, false, none, {"camera"}, scene(Surface::notices, true)},
        {kSlideToUnlockDisabled, false, none, {"slideHint"}, scene(Surface::notices, true)},
        {kAlwaysShowBattery,
         false,
         none,
         {"battery"},
         scene(Surface::notices, true, with({{kLSStatusBarHidden, true}}))},
        {kSlideToUnlockText, "", none, {"slideHint"}, scene(Surface::notices, "come on in")},
        // Passcode view
        {kLSPasscodeBlurHidden, false, none, ground, onPasscode(true)},
        {kLSPasscodeButtonsHidden, false, none, {"passcode.emergency", "passcode.cancel"}, onPasscode(true)},
        {kLSPasscodeTitleHidden, false, none, {"passcode", "keys"}, onPasscode(true)},
        {kLSBlurColorEnabled, false, none, ground,
         onPasscode(true, {{kLSBlurColor, Dictionary{{"h", 0.0}, {"s", 1.0}, {"b", 0.8}}}})},
        {kLSBlurColor, Dictionary{{"h", 0.6}, {"s", 0.75}, {"b", 0.9}}, none, ground,
         onPasscode(Dictionary{{"h", 0.3}, {"s", 0.9}, {"b", 0.6}}, {{kLSBlurColorEnabled, true}})},
        {kLSBlurCutoffEnabled, false, none, ground, onPasscode(true)},
        {kLSPBlurOpacity, 1.0, Bounds{0, 1}, ground, onPasscode(0.2)},
        {kLSPTintOpacity, 1.0, Bounds{0, 1}, ground, onPasscode(0.1)},
        {kLSPButtonDiam, 0.0, Bounds{-15, 15}, {"passcode", "keys"}, onPasscode(-15.0)},
        {kLSPButtonSpacingH, 1.0, Bounds{0, 3}, {"passcode", "keys"}, onPasscode(0.0)},
        {kLSPButtonSpacingV, 1.0, Bounds{0, 3}, {"passcode", "keys"}, onPasscode(0.0)},
        // Date view
        {kDateViewDisabled, false, none, {"clock", "subtitle"}, anywhere},
        {kLSDateSubtitleHidden, false, none, {"subtitle"}, anywhere},
        {kLSDateSubtitle,
         "",
         none,
         {"subtitle", "pages", "iconView", "icons", "notices"}, // a second line takes room
         onApps("Lake is calm")},
        {kLSDateFontName,
         "Default",
         none,
         {"clock", "subtitle", "pages", "iconView", "icons", "notices"},
         onApps("DejaVuSans")},
        {kLSDateFontSize,
         87.5,
         Bounds{10, 150},
         {"clock", "subtitle", "pages", "iconView", "icons", "notices"},
         onApps(40.0)},
        {kLSDateSubtitleFontSize,
         18.0,
         Bounds{5, 50},
         {"clock", "subtitle", "pages", "iconView", "icons", "notices"},
         onApps(30.0)},
        {kLSDateOffset,
         0.0,
         Bounds{-10, 50},
         {"clock", "subtitle", "pages", "iconView", "icons", "notices"},
         onApps(30.0)},
    };
}

bool isColor(const Value& value) {
    const auto isComponent = [&](std::string_view name) {
        const Value component = value[name];
        return component.isNumber() && std::isfinite(component.doubleValue());
    };
    return isComponent("h") && isComponent("s") && isComponent("b");
}

/// Whether a value is of the kind of the stock.
bool isOfItsKind(const Value& value, const Value& stock) {
    if (stock.isNumber()) return value.isNumber() && std::isfinite(value.doubleValue());
    if (stock.dictionary()) return isColor(value);
    return value.kind() == stock.kind();
}

} // namespace

const std::vector<KeyEntry>& keyTable() {
    static const auto& table = *new std::vector<KeyEntry>(makeTable());
    return table;
}

const KeyEntry* findKey(std::string_view key) {
    static const auto& places = *[] {
        auto* all = new std::unordered_map<std::string_view, const KeyEntry*>;
        for (const KeyEntry& entry : keyTable())
            all->emplace(entry.key, &entry);
        return all;
    }();
    const auto found = places.find(key);
    return found == places.end() ? nullptr : found->second;
}

Style::Style(const Dictionary& settings) : settings_(settings) {
    on_ = settings[kTweakEnabled].boolean().value_or(false);
}

Value Style::value(std::string_view key) const {
    const KeyEntry* entry = findKey(key);
    if (!entry) return nullptr;
    const Value* set = on_ ? settings_.find(key) : nullptr;
    return set && isOfItsKind(*set, entry->stock) ? *set : entry->stock;
}

double Style::number(std::string_view key) const {
    const KeyEntry* entry = findKey(key);
    const double number = value(key).doubleValue();
    return entry && entry->bounds ? std::clamp(number, entry->bounds->least, entry->bounds->most) : number;
}

int Style::count(std::string_view key) const {
    return static_cast<int>(std::lround(number(key)));
}

std::string Style::text(std::string_view key) const {
    const Value found = value(key);
    return found.text() ? std::string(*found.text()) : std::string();
}

std::vector<std::string> Style::texts(std::string_view key) const {
    std::vector<std::string> texts;
    const Value found = value(key);
    if (const List* list = found.list())
        for (const Value& entry : *list)
            if (entry.text()) texts.emplace_back(*entry.text());
    return texts;
}

Color Style::color(std::string_view key) const {
    const Value found = value(key);
    const auto component = [&](std::string_view name) { return std::clamp(found[name].doubleValue(), 0.0, 1.0); };
    const double hue = component("h") * 6;
    const double brightness = component("b");
    const double least = brightness * (1 - component("s"));
    // Each component is full for a third of the circle, around its own place.
    const auto at = [&](double place) {
        const double distance = std::abs(std::remainder(hue - place, 6.0));
        return least + (brightness - least) * std::clamp(2 - distance, 0.0, 1.0);
    };
    return {at(0), at(2), at(4)};
}

} // namespace lumora

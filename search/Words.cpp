#include "search/Words.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace search {
namespace {

struct WordsLine {
    std::string_view of; ///< a preference key or a page class
    const char* words;   ///< with commas between them
};

constexpr std::array kWordsTable{
    // Root page
    WordsLine{"kTweakEnabled", "turn on, turn off, switch on, disable, activate"},
    WordsLine{"kSleepTime", "screen timeout, auto-lock, standby, screen off, display off"},
    WordsLine{"kSleepDisabledForAppViews", "keep awake, stay on"},
    WordsLine{"kNotificationsHideOnTap", "alerts, notices, messages, privacy"},
    WordsLine{"ChangeLogController", "what's new, version, release notes, history, updates"},
    // Apps
    WordsLine{"AppsController", "applications, programs, icons, shortcuts"},
    WordsLine{"AppsListController", "applications, programs, order, sort, favourites, favorites"},
    WordsLine{"kAppsPerRow", "columns, grid"},
    WordsLine{"kAppsPerRowLandscape", "columns, grid, sideways, rotated, horizontal"},
    WordsLine{"kAppBadgesEnabled", "unread, count, number, dot"},
    WordsLine{"kAppLabelsEnabled", "names, titles, captions, text"},
    WordsLine{"kAppRoundedEnabled", "circle, shape, corners"},
    WordsLine{"kAppIconOpacity", "brightness, transparency, fade, alpha, see-through"},
    WordsLine{"kAppIconSize", "scale, large, small, bigger, smaller, zoom"},
    WordsLine{"kIconViewBlurEnabled", "frosted, glass, backdrop"},
    WordsLine{"kSwitchTapAndLongHold", "press, touch, gesture, hold"},
    WordsLine{"kLongHoldForPluginApps", "press, touch, gesture, plugin"},
    WordsLine{"kAlwaysReturnToLSEnabled", "home button, back"},
    // Lock Screen Settings
    WordsLine{"LSSettingsController", "lockscreen, hide, appearance"},
    WordsLine{"kLSStatusBarHidden", "signal, top bar, carrier"},
    WordsLine{"kGrabbersDisabled", "handles, control centre, control center, pull, lines"},
    WordsLine{"kCameraGrabberDisabled", "photo, picture, handle"},
    WordsLine{"kDateViewDisabled", "clock, time, calendar, day"},
    WordsLine{"kLSDateSubtitleHidden", "clock, day, weekday"},
    WordsLine{"kSlideToUnlockDisabled", "swipe, unlock text"},
    WordsLine{"kAlwaysShowBattery", "charge, power, percent"},
    WordsLine{"kLSDateSubtitle", "date format, weekday, custom text"},
    WordsLine{"kSlideToUnlockText", "swipe, custom text, label"},
    // Auto-Unlock
    WordsLine{"AutoUnlockController", "automatic, without passcode, bypass"},
    WordsLine{"AUAppsListController", "applications, exceptions, excluded, whitelist"},
    WordsLine{"kAutoUnlockEnabled", "automatic, skip passcode"},
    WordsLine{"kAutoUnlockPasscode", "PIN, code, password, secret"},
    WordsLine{"kAutoUnlockPasscodeConfirm", "PIN, code, password, repeat"},
    WordsLine{"kFullAutoUnlockEnabled", "automatic, always"},
    WordsLine{"kAutoUnlockNotifications", "alerts, notices, messages"},
    WordsLine{"kAUNotificationsOnMainThread", "alerts, compatibility, slow"},
    // Passcode View
    WordsLine{"LSPasscodeSettings", "PIN, code, password, keypad, number pad"},
    WordsLine{"ColorPickerController", "colour, hue, tint, palette, shade"},
    WordsLine{"kLSPasscodeBlurHidden", "frosted, glass, backdrop"},
    WordsLine{"kLSPasscodeButtonsHidden", "keypad, digits, number pad, invisible"},
    WordsLine{"kLSPasscodeTitleHidden", "heading, label"},
    WordsLine{"kLSBlurColorEnabled", "colour, tint, shade"},
    WordsLine{"kLSBlurCutoffEnabled", "edge, limit"},
    WordsLine{"kLSPBlurOpacity", "brightness, transparency, strength, fade, alpha"},
    WordsLine{"kLSPTintOpacity", "brightness, transparency, strength, fade, alpha, colour"},
    WordsLine{"kLSPButtonDiam", "size, width, large, small, radius"},
    WordsLine{"kLSPButtonSpacingH", "gap, distance, margin, sideways"},
    WordsLine{"kLSPButtonSpacingV", "gap, distance, margin, up and down"},
    // Date View
    WordsLine{"LSDateViewSettings", "clock, time, calendar"},
    WordsLine{"FontViewController", "typeface, lettering, type"},
    WordsLine{"kLSDateFontSize", "clock, large, small, bigger, smaller, text"},
    WordsLine{"kLSDateSubtitleFontSize", "large, small, bigger, smaller, text"},
    WordsLine{"kLSDateOffset", "position, move, height, up, down"},
    // App Views
    WordsLine{"PluginsListController", "widgets, plug-ins, plugins, extensions, add-ons"},
    WordsLine{"PluginsListViewController", "widgets, plug-ins, order, sort, add, remove"},
    WordsLine{"kWidgetsEnabled", "widgets, plug-ins, extensions"},
    WordsLine{"kAutoUnlockWidgetPasscode", "PIN, code, password, secure, private"},
};

} // namespace

std::vector<std::string> furtherWords(std::string_view keyOrPage) {
    std::vector<std::string> words;
    const auto* const line = std::ranges::find(kWordsTable, keyOrPage, &WordsLine::of);
    if (line == kWordsTable.end()) return words;
    std::istringstream list(line->words);
    for (std::string word; std::getline(list >> std::ws, word, ',');)
        words.push_back(word);
    return words;
}

} // namespace search

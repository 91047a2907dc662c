#pragma once

/// The preference keys: each names one setting of the tweak, is the identifier of the rows that edit it, and travels as
/// the "key" of an "updateSettings" message. Every key is spelled here and nowhere else.
namespace lumora {

#define LUMORA_PREFERENCE_KEY(key) inline constexpr const char* key = #key

// Root page
LUMORA_PREFERENCE_KEY(kTweakEnabled);
LUMORA_PREFERENCE_KEY(kSleepTime);
LUMORA_PREFERENCE_KEY(kSleepDisabledForAppViews);
LUMORA_PREFERENCE_KEY(kNotificationsHideOnTap);

// Lockscreen Apps page
LUMORA_PREFERENCE_KEY(kAppsPerRow);
LUMORA_PREFERENCE_KEY(kAppsPerRowLandscape);
LUMORA_PREFERENCE_KEY(kAppBadgesEnabled);
LUMORA_PREFERENCE_KEY(kAppLabelsEnabled);
LUMORA_PREFERENCE_KEY(kAppRoundedEnabled);
LUMORA_PREFERENCE_KEY(kAppIconOpacity);
LUMORA_PREFERENCE_KEY(kAppIconSize);
LUMORA_PREFERENCE_KEY(kIconViewBlurEnabled); // on the Passcode View page too
LUMORA_PREFERENCE_KEY(kSwitchTapAndLongHold);
LUMORA_PREFERENCE_KEY(kLongHoldForPluginApps);
LUMORA_PREFERENCE_KEY(kAlwaysReturnToLSEnabled);

// Lock Screen Settings page
LUMORA_PREFERENCE_KEY(kLSStatusBarHidden);
LUMORA_PREFERENCE_KEY(kGrabbersDisabled);
LUMORA_PREFERENCE_KEY(kCameraGrabberDisabled);
LUMORA_PREFERENCE_KEY(kDateViewDisabled);     // on the Date View page too
LUMORA_PREFERENCE_KEY(kLSDateSubtitleHidden); // on the Date View page too
LUMORA_PREFERENCE_KEY(kSlideToUnlockDisabled);
LUMORA_PREFERENCE_KEY(kAlwaysShowBattery);
LUMORA_PREFERENCE_KEY(kLSDateSubtitle); // on the Date View page too
LUMORA_PREFERENCE_KEY(kSlideToUnlockText);

// Auto-Unlock page
LUMORA_PREFERENCE_KEY(kAutoUnlockEnabled);
LUMORA_PREFERENCE_KEY(kAutoUnlockPasscode);
LUMORA_PREFERENCE_KEY(kFullAutoUnlockEnabled);
LUMORA_PREFERENCE_KEY(kAutoUnlockPasscodeConfirm);
LUMORA_PREFERENCE_KEY(kAutoUnlockNotifications);
LUMORA_PREFERENCE_KEY(kAUNotificationsOnMainThread);

// Passcode View page
LUMORA_PREFERENCE_KEY(kLSPasscodeBlurHidden);
LUMORA_PREFERENCE_KEY(kLSPasscodeButtonsHidden);
LUMORA_PREFERENCE_KEY(kLSPasscodeTitleHidden);
LUMORA_PREFERENCE_KEY(kLSBlurColorEnabled);
LUMORA_PREFERENCE_KEY(kLSBlurCutoffEnabled);
LUMORA_PREFERENCE_KEY(kLSPBlurOpacity);
LUMORA_PREFERENCE_KEY(kLSPTintOpacity);
LUMORA_PREFERENCE_KEY(kLSPButtonDiam);
LUMORA_PREFERENCE_KEY(kLSPButtonSpacingH);
LUMORA_PREFERENCE_KEY(kLSPButtonSpacingV);

// Date View page
LUMORA_PREFERENCE_KEY(kLSDateFontSize);
LUMORA_PREFERENCE_KEY(kLSDateSubtitleFontSize);
LUMORA_PREFERENCE_KEY(kLSDateOffset);

// App Views page
LUMORA_PREFERENCE_KEY(kWidgetsEnabled);
LUMORA_PREFERENCE_KEY(kAutoUnlockWidgetPasscode);

// Lists and pickers
LUMORA_PREFERENCE_KEY(kAppViewsEnabled);
LUMORA_PREFERENCE_KEY(kAppsEnabled);
LUMORA_PREFERENCE_KEY(kAUAppsDisabled);
LUMORA_PREFERENCE_KEY(kLSDateFontName);
LUMORA_PREFERENCE_KEY(kLSBlurColor);

#undef LUMORA_PREFERENCE_KEY

} // namespace lumora

"""What a person finds on each page of rows, written down once more: these tables are a second opinion on the program's
own, so nothing here is taken from it.

    PAGES["LSDateViewSettings"][5]   # the row of a page, from its top: a slider with its key and its bounds
"""
from functools import partial
from typing import NamedTuple

CELLS = {"group": 0, "link": 1, "options": 2, "slider": 5, "switch": 6, "text": 7, "field": 8, "secure": 12,
         "button": 13}


class Row(NamedTuple):
    """One row. What stands in it depends on its kind, a name of CELLS."""
    kind: str
    name: str = ""  # a field's is its placeholder; a slider's the text above it, which is also read out for it
    key: str = None
    footer: str = ""
    low: float = None
    high: float = None
    titles: tuple = ()
    values: tuple = ()
    page: str = None


def group(header="", footer=""):
    return [Row("group", header, footer=footer)]


def row(kind, name, key=None):
    return [Row(kind, name, key)]


switch, field, secure, button = (partial(row, kind) for kind in ("switch", "field", "secure", "button"))


def link(name, page):
    return [Row("link", name, page=page)]


def options(name, key, titles, values):
    return [Row("options", name, key, titles=tuple(titles), values=tuple(values))]


def slider(text, key, low, high):
    return [Row("text", text), Row("slider", text, key, low=low, high=high)]


ROOT_PAGE = [
    group("General"),
    switch("Enable Lumora", "kTweakEnabled"),
    link("Apps", "AppsController"),
    group("Lock Sleep Timer"),
    options("Sleep After", "kSleepTime", values=(5, 10, 15, 20, 30, 60, 3600),
            titles=("5 Seconds", "10 Seconds", "15 Seconds", "20 Seconds", "30 Seconds", "60 Seconds", "Never")),
    switch("Disable For AppViews", "kSleepDisabledForAppViews"),
    group("Options"),
    link("App Views", "PluginsListController"),
    link("Lock Screen Settings", "LSSettingsController"),
    switch("Hide Notifications On Tap", "kNotificationsHideOnTap"),
    group("Changes"),
    link("Change Log", "ChangeLogController"),
    group("Contact", "Questions, ideas and problem reports are welcome."),
    button("@nevo_lumora"),
    button("support@nevo.example"),
]
APPS = [
    group("Lockscreen Apps"),
    link("Apps", "AppsListController"),
    link("Auto-Unlock", "AutoUnlockController"),
    group("Options"),
    options("Apps Per Row", "kAppsPerRow", titles="12345", values=range(1, 6)),
    options("Apps Per Row In Landscape", "kAppsPerRowLandscape", titles="1234567", values=range(1, 8)),
    switch("Badges", "kAppBadgesEnabled"),
    switch("Labels", "kAppLabelsEnabled"),
    switch("Round Icons", "kAppRoundedEnabled"),
    group(),
    slider("Opacity (1.0)", "kAppIconOpacity", 0, 1),
    slider("Size (70)", "kAppIconSize", 50, 90),
    group(),
    switch("Blur Icon View Background", "kIconViewBlurEnabled"),
    switch("Open Apps With Long Hold", "kSwitchTapAndLongHold"),
    switch("Long Hold For Plugin Apps Only", "kLongHoldForPluginApps"),
    switch("Always Return To Lock Screen", "kAlwaysReturnToLSEnabled"),
    group(footer='Enable "Open App With Long Hold" to open the app with a long hold and open app view plugins with a '
                 'tap.'),
    group(footer='Enable "Long Hold For Plugin Apps Only" to open apps with associated plugins with a long hold and '
                 'all other apps with a tap.'),
    group(footer='Enable "Always Return To Lock Screen" to always return to the lockscreen when the home button is '
                 'clicked after opening an app from Lumora, even when the device does not have a passcode.'),
]
AUTO_UNLOCK = [
    group("Auto-Unlock", "Enable and enter your passcode to temporarily unlock the device when opening apps from "
                         "Lumora. Device will relock if the home button is pressed."),
    switch("Enable Auto-Unlock", "kAutoUnlockEnabled"),
    secure("Passcode", "kAutoUnlockPasscode"),
    group(footer="Enable to fully unlock your device when opening apps from Lumora. Please confirm your passcode to "
                 "enable this feature."),
    switch("Fully Unlock Device", "kFullAutoUnlockEnabled"),
    secure("Passcode", "kAutoUnlockPasscodeConfirm"),
    group(footer="Swipe notifications to temporarily unlock the LockScreen. Auto-Unlock must be enabled and passcode "
                 "must be entered above for this feature to work."),
    switch("Auto Unlock Notifications", "kAutoUnlockNotifications"),
    group(footer="Enable to run the notification auto unlock on the main thread. This will cause a slight delay in the "
                 "notification unlock, but is more stable. If you are not experiencing any issues with notification "
                 "auto unlock, you can leave this disabled."),
    switch("Unlock on Main Thread", "kAUNotificationsOnMainThread"),
    group(footer="If you don't want all your apps in lumora to auto-unlock, specify them here."),
    link("Auto-Unlock Apps", "AUAppsListController"),
]
LOCK_SCREEN = [
    group("Hide Lock Screen View Items", "On = Hidden"),
    switch("Status Bar", "kLSStatusBarHidden"),
    switch("Top/Bottom Grabbers", "kGrabbersDisabled"),
    switch("Camera Grabber", "kCameraGrabberDisabled"),
    switch("Date View", "kDateViewDisabled"),
    switch("Date Subtitle", "kLSDateSubtitleHidden"),
    switch("Slide To Unlock", "kSlideToUnlockDisabled"),
    group(footer="Keeps the battery visible when the status bar is hidden"),
    switch("Always Show Battery", "kAlwaysShowBattery"),
    group("Settings"),
    link("Passcode View", "LSPasscodeSettings"),
    link("Date View", "LSDateViewSettings"),
    group(),
    field("Date Subtitle Text", "kLSDateSubtitle"),
    field("Slide To Unlock Text", "kSlideToUnlockText"),
]
PASSCODE_VIEW = [
    group("Hide Items", "On = Hidden"),
    switch("Passcode Blur", "kLSPasscodeBlurHidden"),
    switch("Emergency & Cancel", "kLSPasscodeButtonsHidden"),
    switch("Status Title", "kLSPasscodeTitleHidden"),
    group("Settings"),
    switch("Custom Blur Color", "kLSBlurColorEnabled"),
    link("Blur Color", "ColorPickerController"),
    switch("Blur Cutoff", "kLSBlurCutoffEnabled"),
    slider("Blur Opacity (1)", "kLSPBlurOpacity", 0, 1),
    slider("Tint Opacity (1)", "kLSPTintOpacity", 0, 1),
    group(),
    switch("Enable Blur For Icon View", "kIconViewBlurEnabled"),
    group(),
    slider("Button Diameter Offset (0)", "kLSPButtonDiam", -15, 15),
    slider("Button Horizontal Spacing (1.0)", "kLSPButtonSpacingH", 0, 3),
    slider("Button Vertical Spacing (1.0)", "kLSPButtonSpacingV", 0, 3),
]
DATE_VIEW = [
    group("Hide Items", "On = Hidden"),
    switch("Date View", "kDateViewDisabled"),
    switch("Date Subtitle", "kLSDateSubtitleHidden"),
    group("Settings"),
    link("Date View Font", "FontViewController"),
    slider("Time Font Size (87.5)", "kLSDateFontSize", 10, 150),
    slider("Date Subtitle Font Size (18)", "kLSDateSubtitleFontSize", 5, 50),
    slider("Date View Offset (0)", "kLSDateOffset", -10, 50),
    group(),
    field("Date Subtitle Text", "kLSDateSubtitle"),
]
APP_VIEWS = [
    group(footer="If your device has a passcode, insert here to use secure App Views. See footer note for more info."),
    switch("Enable App Views", "kWidgetsEnabled"),
    secure("Passcode", "kAutoUnlockWidgetPasscode"),
    group("App Views"),
    link("Select Plugins", "PluginsListViewController"),
    group("Settings"),
    link("Notes", "NotesPage"),
    link("Weather", "WeatherPage"),
    group(footer="Tap and hold onto an App View's associated application to reveal the App View"),
    group(),
    group(footer="What is a secure App View and why does Lumora require my passcode to use it?"),
    group(footer='If your device is locked with a passcode, the lockscreen requires the passcode before it will allow '
                 'Lumora to render "secure" or "private" views (SMS, Mail, Facebook, Twitter) on the Lock Screen. If '
                 'your device does not have a passcode you can leave the passcode field above empty.'),
]
NOTES = [
    group("List", "The note at the top is the one that the App View opens with."),
    options("Sort By", "org.lumora.plugins.notes.order", titles=("Date Edited", "Date Created", "Title"),
            values=("edited", "created", "title")),
    field("Title for New Notes", "org.lumora.plugins.notes.title"),
    group("Text"),
    slider("Text Size", "org.lumora.plugins.notes.textSize", 9, 30),
    group("Privacy", "Locked notes show their title only until the device is unlocked."),
    switch("Hide Locked Notes", "org.lumora.plugins.notes.hideLocked"),
]
WEATHER = [
    group("Temperature", "Temperatures are rounded to whole degrees."),
    options("Units", "org.lumora.plugins.weather.units", titles=("Celsius", "Fahrenheit", "Kelvin"),
            values=("celsius", "fahrenheit", "kelvin")),
    group("Forecast", "The forecast begins with the current hour."),
    switch("Show Tomorrow", "org.lumora.plugins.weather.tomorrow"),
    slider("Hours Ahead", "org.lumora.plugins.weather.hours", 1, 24),
]

PAGES = {page: sum(rows, []) for page, rows in {
    "LumoraPreferences": ROOT_PAGE, "AppsController": APPS, "AutoUnlockController": AUTO_UNLOCK,
    "LSSettingsController": LOCK_SCREEN, "LSPasscodeSettings": PASSCODE_VIEW, "LSDateViewSettings": DATE_VIEW,
    "PluginsListController": APP_VIEWS, "NotesPage": NOTES, "WeatherPage": WEATHER}.items()}

# The pages that are one list, one picture or one text, by their titles; everything_views_test.py is about them.
VIEWS = {"AppsListController": "Apps", "PluginsListViewController": "Plugins",
         "AUAppsListController": "Auto-Unlock Apps", "FontViewController": "Fonts", "ColorPickerController": "Color",
         "ChangeLogController": "Change Log"}


def stored_before():
    """A value for each key, other than those a tweak begins with wherever there are more than two."""
    rows = {known.key: known for page in PAGES.values() for known in page if known.key}
    return {key: {"switch": number % 2 == 0,
                  "slider": (known.low + (known.high - known.low) / 4) if known.kind == "slider" else None,
                  "options": known.values[-1] if known.values else None,
                  "field": "before", "secure": "0000"}[known.kind]
            for number, (key, known) in enumerate(rows.items())}

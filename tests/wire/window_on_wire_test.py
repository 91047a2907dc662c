#!/usr/bin/python3
"""The whole Settings application on a tweak of another language: it shows the same as on lumora-tweak, and what is
changed in its window arrives on that tweak's disk, with the kind that docs/ports.md names.

    PYTHONPATH=tests dbus-run-session -- tests/wire/window_on_wire_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import os
import sys
import unittest

import pyatspi

from harness import forms
from harness.spoken import LINK, OPTION, SWITCH, Spoken
from harness.tweak import Tweak
from harness.window import Windows

PAGES = ("AUAppsListController", "AppsController", "AppsListController", "AutoUnlockController", "ChangeLogController",
         "ColorPickerController", "FontViewController", "LSDateViewSettings", "LSPasscodeSettings",
         "LSSettingsController", "LumoraPreferences", "PluginsListController", "PluginsListViewController")
COLOUR = {"h": 0.25, "s": 0.5, "b": 0.75}
APPS = ["test.one", "test.two", "test.three"]
CHANGED = {"kTweakEnabled": False, "kSleepTime": 60, "kAppsPerRow": 2, "kAppIconOpacity": 0.25, "kAppIconSize": 82.5,
           "kLSPButtonDiam": -7.5, "kLSDateSubtitle": "EEEE – 𝄞", "kSlideToUnlockText": "open", "kLSBlurColor": COLOUR,
           "kAutoUnlockPasscode": "1234", "kAppsEnabled": APPS, "kAUAppsDisabled": ["test.two"],
           "org.lumora.plugins.weather.tomorrow": False}


class SameTest(Windows):
    """Pages on the one tweak and on the other, with the same settings."""

    def shown_on_both(self, show):
        """What show() says on lumora-tweak with some settings changed, and then on a tweak that has the same ones."""
        real = self.start_tweak()
        for key, value in CHANGED.items():
            self.assertIsNone(self.client.set(key, value))
        settings = self.client.settings()
        self.assertEqual(settings | CHANGED, settings)
        on_real = show()
        self.end(real)
        with Tweak(self.ports, settings) as tweak:
            on_own = show()
            self.assertEqual(tweak.changes, [], "showing a page changes nothing")
        return on_real, on_own

    def test_prints_the_same_rows_of_every_page(self):
        def rows():
            printed = {page: self.settings("--rows", page, DISPLAY="") for page in PAGES}
            for page, result in printed.items():
                self.assertEqual(result.returncode, 0, result.stderr)
                self.assertIn(page, result.stdout)
            return {page: result.stdout for page, result in printed.items()}
        on_real, on_own = self.shown_on_both(rows)
        self.maxDiff = None
        self.assertIn("test.three", on_own["AppsListController"])
        for page in PAGES:
            self.assertEqual(on_real[page], on_own[page])

    def test_draws_the_same_pictures_of_every_page(self):
        def pictures():
            folder = os.path.join(self.folder, "tour")
            toured = self.settings("--tour", folder)
            self.assertEqual(toured.returncode, 0, toured.stderr)
            found = {}
            for name in sorted(os.listdir(folder)):
                path = os.path.join(folder, name)
                with open(path, "rb") as file:
                    found[name] = file.read()
                os.unlink(path)
            return found
        on_real, on_own = self.shown_on_both(pictures)
        pages = {name.rsplit("-", 2)[0] for name in on_own}
        self.assertLessEqual({*PAGES, "NotesPage", "WeatherPage", "PSListItemsController-SleepAfter"}, pages)
        self.assertEqual(on_real.keys(), on_own.keys())
        self.assertEqual([name for name in on_own if on_own[name] != on_real[name]], [])


class ChangesTest(Spoken):
    """What is changed in the window, on the disk of the tweak."""

    def start_tweak(self):
        self.kept = os.path.join(self.folder, "settings.json")
        with open(self.kept, "w", encoding="utf-8") as file:
            file.write(forms.dump({"kTweakEnabled": True, "kAppIconSize": 70.0, "kAppsEnabled": APPS}))
        self.start_ready(sys.executable, "-m", "harness.tweak", "--settings", self.kept)

    def stored(self, key):
        with open(self.kept, encoding="utf-8") as file:
            return forms.load(file.read()).get(key)

    def expect_stored(self, key, value):
        """Of the same kind, too."""
        self.expect_soon(lambda: repr(self.stored(key)), repr(value))

    def open(self, page, role, name):
        """A page on which something is shown, and that."""
        window = self.open_window("--page", page)
        return window, self.named(window, role, name)

    def test_switch_arrives_as_a_boolean(self):
        window, switch = self.open("AppsController", SWITCH, "Round Icons")
        self.act(switch, "Toggle")
        self.expect_stored("kAppRoundedEnabled", True)
        self.act(self.named(window, SWITCH, "Round Icons"), "Toggle")
        self.expect_stored("kAppRoundedEnabled", False)

    def test_slider_arrives_as_a_real_even_at_a_whole_number(self):
        window, slider = self.open("AppsController", pyatspi.ROLE_SLIDER, "Size (70)")
        slider.queryValue().currentValue = 90
        self.expect_stored("kAppIconSize", 90.0)
        self.named(window, pyatspi.ROLE_SLIDER, "Size (70)").queryValue().currentValue = 62.5
        self.expect_stored("kAppIconSize", 62.5)

    def test_field_arrives_as_a_text(self):
        window, field = self.open("LSSettingsController", pyatspi.ROLE_TEXT, "Slide To Unlock Text")
        place = field.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        self.xdotool("mousemove", str(place.x + 100), str(place.y + place.height // 2), "click", "1")
        self.xdotool("key", "--window", window.id, "1", "2", "Return")
        self.expect_stored("kSlideToUnlockText", "12")
        self.xdotool("key", "--window", window.id, "BackSpace", "BackSpace", "Return")
        self.expect_stored("kSlideToUnlockText", "")

    def test_option_arrives_as_an_integer(self):
        window, link = self.open("AppsController", LINK, "Apps Per Row")
        self.act(link, "Press")
        self.act(self.named(window, OPTION, "3"), "Press")
        self.expect_stored("kAppsPerRow", 3)

    def test_moved_row_arrives_as_a_list_of_texts(self):
        window, row = self.open("AppsListController", pyatspi.ROLE_LIST_ITEM, "test.one")
        self.act(row, "Increase")
        self.expect_stored("kAppsEnabled", ["test.two", "test.one", "test.three"])
        self.xdotool("key", "--window", window.id, "alt+Down", "alt+Down")
        self.expect_stored("kAppsEnabled", ["test.two", "test.three"])

    def test_font_arrives_as_its_name(self):
        window, _ = self.open("FontViewController", pyatspi.ROLE_RADIO_BUTTON, "Default")
        name, row = next((name, row) for name, row in self.spoken(window, pyatspi.ROLE_RADIO_BUTTON).items()
                         if name != "Default")
        self.act(row, "Press")
        self.expect_stored("kLSDateFontName", name)
        self.act(self.named(window, pyatspi.ROLE_RADIO_BUTTON, "Default"), "Press")
        self.expect_stored("kLSDateFontName", "Default")

    def test_colour_arrives_as_three_reals(self):
        window, theme = self.open("ColorPickerController", pyatspi.ROLE_PUSH_BUTTON, "Cyan")
        self.act(theme, "Press")
        self.expect_stored("kLSBlurColor", {"h": 0.5, "s": 1.0, "b": 0.0})
        self.named(window, pyatspi.ROLE_SLIDER, "Brightness").queryValue().currentValue = 0.75
        self.expect_stored("kLSBlurColor", {"h": 0.5, "s": 1.0, "b": 0.75})

    def test_key_of_a_plug_in_arrives_like_any_other(self):
        window, link = self.open("PluginsListController", LINK, "Weather")
        self.act(link, "Press")
        self.act(self.named(window, SWITCH, "Show Tomorrow"), "Toggle")
        self.expect_stored("org.lumora.plugins.weather.tomorrow", False)


if __name__ == "__main__":
    unittest.main()

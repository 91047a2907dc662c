#!/usr/bin/python3
"""The whole Settings application on a tweak of another language: it shows the same as on lumora-tweak, and what is
changed in its window arrives on that tweak's disk, with the kind that docs/ports.md names.

    PYTHONPATH=tests dbus-run-session -- tests/wire/window_on_wire_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import sys
import tempfile
import unittest
from pathlib import Path

import pyatspi

from harness import forms
from harness.spoken import Spoken
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
            return {page: self.settings("--rows", page, status=0, DISPLAY="").stdout for page in PAGES}
        on_real, on_own = self.shown_on_both(rows)
        self.maxDiff = None
        self.assertIn("test.three", on_own["AppsListController"])
        for page in PAGES:
            self.assertIn(page, on_own[page])
            self.assertEqual(on_real[page], on_own[page])

    def test_draws_the_same_pictures_of_every_page(self):
        def pictures():
            folder = Path(tempfile.mkdtemp(dir=self.folder))
            self.settings("--tour", folder, status=0)
            return {path.name: path.read_bytes() for path in folder.iterdir()}
        on_real, on_own = self.shown_on_both(pictures)
        pages = {name.rsplit("-", 2)[0] for name in on_own}
        self.assertLessEqual({*PAGES, "NotesPage", "WeatherPage", "PSListItemsController-SleepAfter"}, pages)
        self.assertEqual(on_real.keys(), on_own.keys())
        self.assertEqual([name for name in on_own if on_own[name] != on_real[name]], [])


class ChangesTest(Spoken):
    """What is changed in the window, on the disk of the tweak."""

    def start_tweak(self):
        self.kept = self.write("settings.json", forms.dump({"kAppIconSize": 70.0}))
        self.start_ready(sys.executable, "-m", "harness.tweak", "--settings", self.kept)

    def stored(self, key):
        return forms.load(Path(self.kept).read_text(encoding="utf-8")).get(key)

    def expect_stored(self, key, value):
        """Of the same kind, too."""
        self.expect_soon(lambda: repr(self.stored(key)), repr(value))

    def test_slider_arrives_as_a_real_even_at_a_whole_number(self):
        window = self.open_window("--page", "AppsController")
        for value in (90, 62.5):
            self.named(window, pyatspi.ROLE_SLIDER, "Size (70)").queryValue().currentValue = value
            self.expect_stored("kAppIconSize", float(value))

    def test_field_arrives_as_a_text(self):
        window = self.open_window("--page", "LSSettingsController")
        self.click(self.named(window, pyatspi.ROLE_TEXT, "Slide To Unlock Text"))
        self.keys(window, "1", "2", "Return")
        self.expect_stored("kSlideToUnlockText", "12")
        self.keys(window, "BackSpace", "BackSpace", "Return")
        self.expect_stored("kSlideToUnlockText", "")


if __name__ == "__main__":
    unittest.main()

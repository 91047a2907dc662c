#!/usr/bin/python3
"""What the tweak keeps and files hold, in the real window: defaults, profiles and the history.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/kept_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import json
import os
import unittest
from pathlib import Path

import pyatspi

from harness.spoken import BUTTON, LINK, SWITCH, Spoken
from harness.tweak import Tweak
from harness.waiting import eventually, settled

ALERT, BOX, FIELD, LABEL = pyatspi.ROLE_ALERT, pyatspi.ROLE_CHECK_BOX, pyatspi.ROLE_TEXT, pyatspi.ROLE_LABEL
LINE, SLIDER = pyatspi.ROLE_MENU_ITEM, pyatspi.ROLE_SLIDER
PASSCODE = "planted4711"


class Kept(Spoken):
    def start_tweak(self, *options, **more):
        self.tweak = super().start_tweak(*options, **more)

    def expect_said(self, window, words):
        eventually(lambda: any(words in said for said in self.spoken(window, ALERT)), words)

    def expect_stored(self, key, value):
        self.expect_soon(lambda: self.stored(key), value)

    def open_row_menu(self, window, title):
        place = self.extents(self.named(window, SWITCH, title))
        self.click_at(place.x + 30, place.y + place.height // 2, button=3)
        self.named(window, LINE, "Copy Value")

    def open_row_menu_with(self, window, title, line):
        """The defaults come some time after the rows."""
        def there():
            self.open_row_menu(window, title)
            found = line in self.spoken(window, LINE)
            if not found:
                self.close_row_menu(window)
            return found
        eventually(there, line)

    def close_row_menu(self, window):
        self.keys(window, "Escape")
        self.expect_soon(lambda: "Copy Value" in self.spoken(window, LINE), False)

    def open_menu(self, window):
        self.press_button(window, "More")

    def choose(self, window, line):
        self.open_menu(window)
        self.act(self.named(window, LINE, line), "Press")

    def texts(self, window):
        return "\n".join(self.spoken(window, LABEL))

    def with_another_tweak(self, settings):
        """One without any further message."""
        self.end(self.tweak)
        return Tweak(self.ports, settings)


class ResetTest(Kept):
    def test_sets_a_row_to_its_default_and_takes_that_back(self):
        self.set("kAppBadgesEnabled", False)
        window = self.open_window("--page", "AppsController")
        self.open_row_menu_with(window, "Badges", "Reset to Default")
        self.act(self.named(window, LINE, "Reset to Default"), "Press")
        self.expect_stored("kAppBadgesEnabled", True)
        self.expect_said(window, "“Badges” has its default")
        self.press_button(window, "Undo")
        self.expect_stored("kAppBadgesEnabled", False)

    def test_is_not_offered_of_what_has_its_default(self):
        self.set("kAppLabelsEnabled", False)
        window = self.open_window("--page", "AppsController")
        self.open_row_menu_with(window, "Labels", "Reset to Default")
        self.close_row_menu(window)
        self.open_row_menu(window, "Badges")
        self.assertNotIn("Reset to Default", self.spoken(window, LINE))

    def test_names_the_row_beside_the_page_that_is_open(self):
        self.set("kLSStatusBarHidden", True)
        window = self.open_root_page("--size", "1000x844")
        for link in ("Lock Screen Settings", "Passcode View"):
            self.click(self.named(window, LINK, link))
        self.named(window, pyatspi.ROLE_PANEL, "Passcode View")
        self.open_row_menu_with(window, "Status Bar", "Reset to Default")
        self.act(self.named(window, LINE, "Reset to Default"), "Press")
        self.expect_said(window, "“Status Bar” has its default")

    def test_is_not_offered_by_a_tweak_that_tells_no_defaults(self):
        with self.with_another_tweak({"kTweakEnabled": True, "kAppBadgesEnabled": False}):
            window = self.open_window("--page", "AppsController")
            self.open_row_menu(window, "Badges")
            self.assertNotIn("Reset to Default", self.spoken(window, LINE))
            self.expect_to_close(window)


class ProfileTest(Kept):
    def profile(self, settings):
        return self.write("mine.json", json.dumps({"lumora": 1, "name": "Mine", "settings": settings}))

    def test_shows_what_it_would_change_and_changes_what_is_chosen_as_one(self):
        for key in ("kAppBadgesEnabled", "kAppLabelsEnabled", "kAppRoundedEnabled"):
            self.set(key, True)
        file = self.profile({"kAppBadgesEnabled": False, "kAppLabelsEnabled": False, "kAppRoundedEnabled": True,
                             "kAutoUnlockPasscode": PASSCODE, "kNoSuchKey": 1, "kAppIconSize": "large"})
        window = self.open_root_page("--profile", file)
        self.named(window, BUTTON, "Apply 2")
        notes = eventually(lambda: self.texts(window), "what is left out")
        for words in ("1 passcode was left out: kAutoUnlockPasscode", "no setting \"kNoSuchKey\"", "kAppIconSize takes"):
            self.assertIn(words, notes)
        self.assertNotIn(PASSCODE, notes)
        self.assertIs(self.stored("kAppBadgesEnabled"), True)
        self.act(self.named(window, BOX, "Labels"), "Press")
        self.press_button(window, "Apply 1")
        self.expect_stored("kAppBadgesEnabled", False)
        self.expect_said(window, "“Mine” is applied")
        self.assertIs(self.stored("kAppLabelsEnabled"), True)
        self.expect_soon(lambda: "Apply 1" in self.spoken(window, BUTTON), False)
        self.choose(window, "Undo “Mine”")
        self.expect_stored("kAppBadgesEnabled", True)

    def test_is_seen_on_the_lock_screen_before_anything_is_changed(self):
        profile = self.profile({"kAppsEnabled": ["org.lumora.samples.Phone"], "kAppBadgesEnabled": False})
        window = self.open_window("--columns", "1", "--size", "1260x900", "--profile", profile)
        self.named(window, BUTTON, "Apply 2")
        eventually(lambda: any(name.startswith("Ines") for name in self.spoken(window, BUTTON)), "the notices")
        self.act(self.named(window, BUTTON, "Next"), "Press")  # from the notices
        self.named(window, BUTTON, "Phone")
        self.assertIsNone(self.stored("kAppsEnabled"))
        self.press_button(window, "Cancel")
        self.expect_soon(lambda: "Phone" in self.spoken(window, BUTTON), False)
        self.assertIsNone(self.stored("kAppsEnabled"))

    def test_pages_that_were_open_show_it(self):
        self.set("kAppBadgesEnabled", True)
        window = self.open_root_page("--profile", self.profile({"kAppBadgesEnabled": False}))
        self.press_button(window, "Apply 1")
        self.expect_stored("kAppBadgesEnabled", False)
        self.act(self.named(window, LINK, "Apps"), "Press")
        self.expect_soon(lambda: self.has_state(self.named(window, SWITCH, "Badges"), pyatspi.STATE_CHECKED), False)

    def test_of_fifty_settings_takes_fifty_messages_at_most(self):
        known = {key: value for key, value in self.defaults().items() if "Passcode" not in key}
        wanted = {key: not value for key, value in known.items() if type(value) is bool}
        wanted |= {key: value + 1 for key, value in known.items() if type(value) in (int, float)}
        self.assertGreater(len(wanted), 30)
        wanted |= {f"org.example.key{i}": i for i in range(50 - len(wanted))}
        with self.with_another_tweak(dict(known)) as tweak:
            window = self.open_root_page("--profile", self.profile(wanted))
            self.press_button(window, "Apply 50")
            eventually(lambda: len(tweak.changes) >= 50, "all changes")
            self.assertEqual({key: tweak.settings[key] for key in wanted}, wanted)
            self.expect_said(window, "“Mine” is applied")
            self.assertEqual(len(tweak.changes), 50)
            self.expect_to_close(window)

    def defaults(self):
        return json.loads(self.lumoractl("list").stdout)

    def test_what_is_no_profile_is_told_by_name(self):
        window = self.open_root_page("--profile", self.write("mine.json", "[1, 2"))
        self.expect_said(window, "“mine.json” cannot be opened: ")

    def field_of_dialog(self, window):
        """The toolkit's dialog has the one for the filter beneath it."""
        fields = [item for application in self.applications(window) for item in self.find(
            application, lambda it: it.getRole() == FIELD and self.has_state(it, pyatspi.STATE_SHOWING))]
        return min(fields, key=lambda item: self.extents(item).y, default=None)

    def test_is_saved_without_passcodes(self):
        self.set("kAppBadgesEnabled", False)
        self.set("kAutoUnlockPasscode", PASSCODE)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(self.folder)
        window = self.open_root_page()
        file = Path(self.folder, "saved.json")
        self.choose(window, "Save Profile…")
        self.click(eventually(lambda: self.field_of_dialog(window), "the field for the name"))
        self.keys(window, "ctrl+a")
        self.type(window, file.name)
        self.keys(window, "Tab")  # by which the toolkit takes the name
        self.click(self.named(window, BUTTON, "Save"))
        eventually(file.exists, "the file")
        self.expect_said(window, "“saved.json” has 1 setting")
        written = file.read_text(encoding="utf-8")
        self.assertNotIn(PASSCODE, written)
        self.assertEqual(json.loads(written)["settings"], {"kAppBadgesEnabled": False})
        self.assertEqual(json.loads(written)["omitted"], ["kAutoUnlockPasscode"])


class HistoryTest(Kept):
    def open_history(self):
        window = self.open_root_page()
        self.choose(window, "History…")
        self.named(window, SLIDER, "Time")
        return window

    def expect_focus(self, window, name):
        eventually(lambda: any(it.name == name for application in self.applications(window) for it in self.find(
            application, lambda it: self.has_state(it, pyatspi.STATE_FOCUSED))), f"the focus on {name}")

    def changes(self, window):
        return list(self.spoken(window, pyatspi.ROLE_LIST_ITEM))

    def test_lists_changes_and_takes_one_back_alone(self):
        for key, value in (("kAppBadgesEnabled", False), ("kAppLabelsEnabled", False), ("kAutoUnlockPasscode", PASSCODE)):
            self.set(key, value)
        window = self.open_history()
        eventually(lambda: any(change.startswith("Badges, On → Off, ") for change in self.changes(window)), "the change")
        self.assertNotIn(PASSCODE, "\n".join(self.changes(window)))
        self.press_button(window, "Undo “Badges”")
        self.expect_stored("kAppBadgesEnabled", True)
        self.assertIs(self.stored("kAppLabelsEnabled"), False)
        eventually(lambda: any(change.startswith("Badges, Off → On, ") for change in self.changes(window)), "the new change")
        self.press_button(window, "Done")
        self.expect_soon(lambda: "Done" in self.spoken(window, BUTTON), False)
        self.choose(window, "Undo “Badges”")
        self.expect_stored("kAppBadgesEnabled", False)

    def test_goes_back_in_time_without_changing_anything_until_it_is_restored(self):
        for key in ("kAppBadgesEnabled", "kAppLabelsEnabled"):
            self.set(key, False)
        self.set("kAutoUnlockPasscode", PASSCODE)
        window = self.open_history()
        self.named(window, SLIDER, "Time").queryValue().currentValue = 0
        self.named(window, BUTTON, "Restore 2")
        self.assertIs(self.stored("kAppBadgesEnabled"), False)
        self.press_button(window, "Restore 2")
        self.expect_stored("kAppBadgesEnabled", True)
        self.expect_stored("kAppLabelsEnabled", True)
        self.assertEqual(self.stored("kAutoUnlockPasscode"), PASSCODE)
        self.expect_said(window, "The settings are as they were")
        self.expect_soon(lambda: "Done" in self.spoken(window, BUTTON), False)
        self.choose(window, "Undo “Before all changes that are known”")
        self.expect_stored("kAppBadgesEnabled", False)
        self.expect_stored("kAppLabelsEnabled", False)

    def test_has_a_lock_screen_of_its_own_while_there_is_no_other(self):
        self.set("kAppBadgesEnabled", False)
        window = self.open_history()

        def screens():
            return [self.extents(screen).height for application in self.applications(window) for screen in self.find(
                application, lambda it: it.name == "Lock screen" and self.has_state(it, pyatspi.STATE_SHOWING))]
        eventually(lambda: len(screens()) == 1 and screens()[0] < 400, "the small one")
        self.xdotool("key", "ctrl+l")  # not sent to the window, which has not the focus any more when they are up
        eventually(lambda: len(screens()) == 1 and screens()[0] > 600, "the large one alone")

    def test_leaves_escape_to_the_lock_screen_beside_it(self):
        self.set("kAppBadgesEnabled", False)
        window = self.open_root_page("--size", "1260x900")
        self.choose(window, "History…")
        self.named(window, SLIDER, "Time")
        self.expect_focus(window, "Time")
        self.keys(window, "F6")
        self.expect_focus(window, "Lock screen")
        self.keys(window, "Escape")
        self.assertIn("Time", settled(lambda: self.spoken(window, SLIDER), "the sliders"))
        self.keys(window, "F6")
        self.expect_focus(window, "Time")
        self.keys(window, "Escape")
        self.expect_soon(lambda: "Time" in self.spoken(window, SLIDER), False)

    def test_is_not_offered_by_a_tweak_without_it(self):
        with self.with_another_tweak({"kTweakEnabled": True}):
            window = self.open_root_page()
            self.open_menu(window)
            self.named(window, LINE, "Open Profile…")
            self.assertNotIn("History…", self.spoken(window, LINE))
            self.expect_to_close(window)

    def test_stands_on_the_first_page_alone(self):
        window = self.open_window("--page", "AppsController")
        self.named(window, SWITCH, "Badges")
        self.open_menu(window)
        self.named(window, LINE, "Lock Screen")
        for line in ("History…", "Open Profile…", "Save Profile…"):
            self.assertNotIn(line, self.spoken(window, LINE))


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/python3
"""What is changed in the real window is taken back there, and the tweak has what it had.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/undo_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import unittest

import pyatspi

from harness.spoken import BUTTON, LINK, SWITCH, Spoken
from harness.waiting import eventually

ALERT, BOX, FIELD = pyatspi.ROLE_ALERT, pyatspi.ROLE_CHECK_BOX, pyatspi.ROLE_TEXT
LINE = pyatspi.ROLE_MENU_ITEM
SHOWN = ["test.one", "test.two"]


class UndoTest(Spoken):
    def focus(self, window):
        return [item.name for application in self.applications(window)
                for item in self.find(application, lambda it: self.has_state(it, pyatspi.STATE_FOCUSED))]

    def flip(self, window, name):
        self.act(self.named(window, SWITCH, name), "Press")

    def choose(self, window, line):
        self.keys(window, "F10")
        self.act(self.named(window, LINE, line), "Press")

    def expect_stored(self, key, value):
        self.expect_soon(lambda: self.stored(key), value)

    def expect_said(self, window, words):
        eventually(lambda: words in self.spoken(window, ALERT), words)

    def test_takes_a_switch_back_and_flips_it_again_by_keys(self):
        self.set("kAppBadgesEnabled", True)
        window = self.open_window("--page", "AppsController")
        self.flip(window, "Badges")
        self.expect_stored("kAppBadgesEnabled", False)
        self.keys(window, "ctrl+z")
        self.expect_stored("kAppBadgesEnabled", True)
        self.expect_said(window, "“Badges” is as it was")
        eventually(lambda: "Badges" in self.focus(window), "the focus on the row")
        self.keys(window, "ctrl+shift+z")
        self.expect_stored("kAppBadgesEnabled", False)

    def test_goes_to_the_page_of_the_change(self):
        self.set("kAppBadgesEnabled", True)
        window = self.open_root_page()
        self.act(self.named(window, LINK, "Apps"), "Press")
        self.flip(window, "Badges")
        self.expect_stored("kAppBadgesEnabled", False)
        self.keys(window, "Escape")
        self.named(window, LINK, "Lock Screen Settings")
        self.choose(window, "Undo “Badges”")
        self.expect_stored("kAppBadgesEnabled", True)
        eventually(lambda: "Badges" in self.focus(window), "the focus on the row")

    def test_a_field_takes_back_what_is_typed_in_it(self):
        self.set("kSlideToUnlockText", "before")
        window = self.open_window("--page", "LSSettingsController")
        field = self.named(window, FIELD, "Slide To Unlock Text")
        self.click(field)
        self.keys(window, "ctrl+a")
        self.type(window, "typed")
        self.keys(window, "Return")
        self.expect_stored("kSlideToUnlockText", "typed")
        self.keys(window, "ctrl+z", "Return")
        self.expect_stored("kSlideToUnlockText", "before")

    def test_a_moved_row_is_told_with_a_button_that_moves_it_back(self):
        self.set("kAppsEnabled", SHOWN)
        window = self.open_window("--page", "AppsListController")
        eventually(lambda: {*SHOWN} <= self.rows(window).keys(), "the rows")
        self.act(self.named(window, self.ROW, "test.one"), "Move down")
        self.expect("kAppsEnabled", SHOWN[::-1])
        self.expect_said(window, "Moved test.one")
        self.press_button(window, "Undo")
        self.expect("kAppsEnabled", SHOWN)

    def test_reverts_what_is_chosen_of_a_page(self):
        for key in ("kAppBadgesEnabled", "kAppLabelsEnabled"):
            self.set(key, True)
        window = self.open_window("--page", "AppsController")
        for name in ("Badges", "Labels"):
            self.flip(window, name)
        self.expect_stored("kAppLabelsEnabled", False)
        self.choose(window, "Revert Page…")
        self.named(window, BUTTON, "Revert 2")
        self.act(self.named(window, BOX, "Labels"), "Press")
        self.press_button(window, "Revert 1")
        self.expect_stored("kAppBadgesEnabled", True)
        self.assertIs(self.stored("kAppLabelsEnabled"), False)

    def test_marks_what_differs_from_when_the_page_was_opened_if_wanted(self):
        self.set("kAppBadgesEnabled", True)
        window = self.open_window("--page", "AppsController")

        def marked():
            return [name for name, item in self.spoken(window, SWITCH).items() if "since the page" in item.description]
        self.flip(window, "Badges")
        self.expect_stored("kAppBadgesEnabled", False)
        self.assertEqual(marked(), [])
        self.choose(window, "Mark Changes")
        self.expect_soon(marked, ["Badges"])
        self.keys(window, "ctrl+z")
        eventually(lambda: not marked(), "the end of the mark")
        self.expect_to_close(window)
        window = self.open_window("--page", "AppsController")
        self.flip(window, "Labels")
        self.expect_soon(marked, ["Labels"])

    def test_the_sheet_of_differences_has_all_keys_until_it_is_closed(self):
        self.set("kAppBadgesEnabled", True)
        window = self.open_window("--page", "AppsController")
        self.flip(window, "Badges")
        self.expect_stored("kAppBadgesEnabled", False)
        self.choose(window, "Revert Page…")
        self.named(window, BUTTON, "Revert 1")
        self.keys(window, "ctrl+z", "ctrl+f", "F10", "Escape")
        self.expect_soon(lambda: "Revert 1" in self.spoken(window, BUTTON), False)
        self.named(window, BUTTON, "More")
        self.assertIs(self.stored("kAppBadgesEnabled"), False)
        self.keys(window, "ctrl+z")
        self.expect_stored("kAppBadgesEnabled", True)


if __name__ == "__main__":
    unittest.main()

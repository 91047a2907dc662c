#!/usr/bin/python3
"""What holds of every page as assistive tools find it.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/spoken_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import unittest

import pyatspi

from everything_pages import PAGES, VIEWS
from harness.spoken import BUTTON, SWITCH, Spoken, role_of
from harness.waiting import eventually

HEADING, LABEL, PARAGRAPH, SLIDER = (
    pyatspi.ROLE_HEADING, pyatspi.ROLE_LABEL, pyatspi.ROLE_PARAGRAPH, pyatspi.ROLE_SLIDER)
# What only holds others together.
AROUND = (pyatspi.ROLE_APPLICATION, pyatspi.ROLE_FRAME, pyatspi.ROLE_LAYERED_PANE)


class PagesTest(Spoken):
    def all(self, window):
        """Everything in the window, with what is not seen."""
        return [item for application in self.applications(window) for item in self.find(application, lambda it: True)]

    def is_shown(self, item):
        return self.has_state(item, pyatspi.STATE_SHOWING)

    def open_page(self, page):
        """One of a plug-in opens by its link only."""
        plugin = page.removesuffix("Page") if page in ("NotesPage", "WeatherPage") else None
        window = self.open_window("--page", "PluginsListController" if plugin else page)
        if plugin:
            self.press_button(window, plugin)
        eventually(lambda: [pane for pane in self.all(window) if pane.getRole() == pyatspi.ROLE_PANEL
                            and self.is_shown(pane) and pane.childCount > 0 and plugin in (None, pane.name)], page)
        return window

    def expect_sound(self, window):
        for item in self.all(window):
            role, name = item.getRole(), item.name
            with self.subTest(role=item.getRoleName(), name=name):
                if self.is_shown(item) and role not in AROUND:
                    self.assertTrue(name.strip(), "has a name")
                if role in (LABEL, HEADING, PARAGRAPH):
                    self.assertFalse(self.has_state(item, pyatspi.STATE_FOCUSABLE), "is read, not used")
                if role in (LABEL, HEADING, PARAGRAPH):
                    self.assertEqual(self.text_of(item), name)
                if role == SLIDER:
                    value = item.queryValue()
                    self.assertGreater(value.minimumIncrement, 0)
                    self.assertLessEqual(value.minimumIncrement, (value.maximumValue - value.minimumValue) / 10)
                if role in (BUTTON, SWITCH, SLIDER, pyatspi.ROLE_TEXT, pyatspi.ROLE_RADIO_BUTTON, pyatspi.ROLE_LINK):
                    self.assertTrue(self.has_state(item, pyatspi.STATE_FOCUSABLE), "is used")

    def test_everything_has_a_name_labels_are_read_and_sliders_tell_their_step(self):
        for page in (*PAGES, *VIEWS):
            with self.subTest(page):
                window = self.open_page(page)
                self.expect_sound(window)
                window.kill()
                window.wait()

    def test_sliders_of_rows_tell_the_step_of_their_keys(self):
        window = self.open_page("LSDateViewSettings")
        size = self.named(window, SLIDER, "Time Font Size (87.5)").queryValue()
        self.assertEqual((size.minimumValue, size.maximumValue, size.minimumIncrement), (10, 150, 5))

    def test_links_are_links_or_buttons_where_the_toolkit_knows_no_better(self):
        window = self.open_page("LumoraPreferences")
        links = [row.name for row in PAGES["LumoraPreferences"] if row.kind in ("link", "options")]
        eventually(lambda: set(links) <= self.spoken(window, BUTTON).keys(), links)

    def test_the_change_log_is_paragraphs_with_headings(self):
        window = self.open_page("ChangeLogController")
        told = [(item.getRole(), item.name) for item in self.all(window) if item.getRole() in (HEADING, PARAGRAPH)]
        headings = [name for role, name in told if role == HEADING]
        self.assertLessEqual({"Lumora 1.0", "Fonts", "Lumora 0.2"}, set(headings))
        self.assertGreater(len(told), 2 * len(headings) - 4)
        self.assertFalse([name for role, name in told if role == HEADING and name.startswith("•")])
        self.assertTrue(all(name.startswith("•") for role, name in told if role == PARAGRAPH))

    def test_behind_a_dialog_nothing_can_be_used(self):
        self.environment["LUMORA_SENDMAIL"] = self.add_script("transport", "cat > /dev/null")
        window = self.open_root_page()
        self.press_button(window, "support@nevo.example")
        dialog = self.named(window, pyatspi.ROLE_DIALOG, "New Message")
        self.assertTrue(self.has_state(dialog, pyatspi.STATE_MODAL))
        inside = [item.name for item in self.find(dialog, lambda it: it.getRole() != pyatspi.ROLE_DIALOG)]
        self.assertLessEqual({"New Message", "Cancel", "Send", "To", "Subject", "Message", "Save Draft"}, set(inside))
        around = [(item.getRoleName(), item.name) for item in self.all(window)
                  if self.has_state(item, pyatspi.STATE_ENABLED) and role_of(item) not in AROUND]
        within = [(item.getRoleName(), item.name) for item in self.find(dialog, lambda it: True)
                  if self.has_state(item, pyatspi.STATE_ENABLED)]
        self.assertEqual(sorted(around), sorted(within))
        self.press_button(window, "Cancel")
        eventually(lambda: "New Message" not in self.spoken(window, pyatspi.ROLE_DIALOG), "the dialog to go")
        self.assertTrue(self.has_state(self.named(window, SWITCH, "Enable Lumora"), pyatspi.STATE_ENABLED))


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/python3
"""Pages of rows in the real window, by keyboard and by mouse, and what the tweak has then.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/rows_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import unittest

import pyatspi

from harness.display import HEIGHT, WIDTH
from harness.spoken import LINK, OPTION, SWITCH, Spoken
from harness.waiting import eventually

FIELD, HEADING, LABEL, SLIDER = pyatspi.ROLE_TEXT, pyatspi.ROLE_HEADING, pyatspi.ROLE_LABEL, pyatspi.ROLE_SLIDER
ALERT = pyatspi.ROLE_ALERT


class RowsTest(Spoken):
    def focus(self, window):
        """The name of what has it."""
        return next((name for role in (SWITCH, LINK, OPTION, SLIDER, FIELD)
                     for name, item in self.spoken(window, role).items()
                     if self.has_state(item, pyatspi.STATE_FOCUSED)), None)

    def expect_focus(self, window, name):
        self.expect_soon(lambda: self.focus(window), name)

    def expect_title(self, window, title):
        eventually(lambda: title in self.spoken(window, HEADING), title)

    def go(self, window, key, name):
        """By that key from control to control."""
        seen = []
        while (now := self.focus(window)) != name:
            self.assertNotIn(now, seen)
            seen += [now] if now else []
            self.keys(window, key)
            eventually(lambda: self.focus(window) not in (None, now), f"the focus after {now}")

    def expect_stored(self, key, value):
        self.expect_soon(lambda: self.stored(key), value)

    # -- by keyboard --

    def test_reads_a_page_to_its_end_and_back(self):
        window = self.open_window("--page", "PluginsListController", "--size", f"{WIDTH}x400")
        last = "If your device is locked"

        def is_read():
            """What is not in view is not told as shown."""
            places = [self.extents(item) for name, item in self.spoken(window, LABEL).items() if name.startswith(last)]
            return [place.y + place.height <= 400 for place in places] == [True]
        first = self.named(window, SWITCH, "Enable App Views")
        top = self.extents(first).y
        self.assertFalse(is_read())

        def read(key, is_there):
            def press():
                self.keys(window, key)
                return is_there()
            eventually(press, f"the end by {key}")
        for down, up in (("Down", "Up"), ("Next", "Prior"), ("End", "Home")):
            read(down, is_read)
            read(up, lambda: self.extents(first).y == top)
        self.assertIsNone(self.stored("kWidgetsEnabled"), "reading changes nothing")

    def test_leads_the_focus_into_a_page_and_back_to_its_row(self):
        window = self.open_root_page()
        self.go(window, "Down", "Apps")
        self.keys(window, "Return")
        self.expect_title(window, "Apps")
        self.expect_focus(window, "Apps")
        self.go(window, "Down", "Auto-Unlock")
        self.keys(window, "Return")
        self.expect_focus(window, "Enable Auto-Unlock")
        self.keys(window, "Escape")
        self.expect_focus(window, "Auto-Unlock")
        self.keys(window, "alt+Left")
        self.expect_title(window, "Lumora")
        self.expect_focus(window, "Apps")

    def test_focuses_nothing_on_a_page_that_the_mouse_opens(self):
        window = self.open_root_page()
        self.click(self.named(window, LINK, "Apps"))
        self.named(window, SWITCH, "Badges")
        self.assertIsNone(self.focus(window))
        self.keys(window, "Down")
        self.expect_focus(window, "Apps")

    def test_chooses_among_options_from_the_chosen_one(self):
        self.set("kSleepTime", 15)
        window = self.open_root_page()
        self.go(window, "Down", "Sleep After")
        self.keys(window, "Return")
        self.expect_focus(window, "15 Seconds")
        self.keys(window, "Down", "Down")
        self.expect_focus(window, "30 Seconds")
        self.assertEqual(self.stored("kSleepTime"), 15)
        self.keys(window, "space")
        self.expect_stored("kSleepTime", 30)
        self.keys(window, "Escape")
        self.expect_focus(window, "Sleep After")

    def test_takes_back_what_was_typed_before_it_goes_back(self):
        self.set("kSlideToUnlockText", "before")
        window = self.open_root_page()
        self.press_button(window, "Lock Screen Settings")
        field = self.named(window, FIELD, "Slide To Unlock Text")
        self.act(field, "SetFocus")
        self.expect_focus(window, "Slide To Unlock Text")
        self.keys(window, "End")
        self.type(window, " and after")
        self.expect_soon(lambda: self.text_of(field), "before and after")
        self.keys(window, "Escape")
        self.expect_soon(lambda: self.text_of(field), "before")
        self.assertTrue(self.has_state(field, pyatspi.STATE_FOCUSED))
        self.keys(window, "Escape")
        self.expect_title(window, "Lumora")
        self.expect_to_close(window)
        self.assertEqual(self.stored("kSlideToUnlockText"), "before")

    def test_tells_of_caps_lock_beside_a_passcode(self):
        window = self.open_window("--page", "PluginsListController")
        self.named(window, SWITCH, "Enable App Views")
        self.keys(window, "Tab", "Tab")
        self.expect_focus(window, "Passcode")
        self.addCleanup(self.xdotool, "key", "Caps_Lock")
        self.xdotool("key", "Caps_Lock", "a")
        self.named(window, ALERT, "Caps Lock")
        self.xdotool("key", "Caps_Lock", "a")
        eventually(lambda: "Caps Lock" not in self.spoken(window, ALERT), "the end of it")
        self.xdotool("key", "Caps_Lock")

    # -- sliders --

    def open_size(self):
        window = self.open_window("--page", "AppsController")
        return window, self.named(window, SLIDER, "Size (70)")

    def test_stores_the_number_that_a_drag_shows(self):
        window, slider = self.open_size()
        place = self.extents(slider)
        x, y = place.x + place.width // 2, place.y + place.height // 2
        self.xdotool("mousemove", x, y, "mousedown", 1, "mousemove", x + 20, y, "mousemove", x + 57, y, "mouseup", 1)
        eventually(lambda: self.stored("kAppIconSize") is not None, "the size at the tweak")
        stored = self.stored("kAppIconSize")
        self.assertEqual(stored, round(stored, 1))
        self.expect_soon(lambda: slider.queryValue().currentValue, stored)

    def test_steps_by_round_numbers(self):
        self.set("kAppIconSize", 66.507937)
        window, slider = self.open_size()
        self.act(slider, "SetFocus")
        for key, stored in (("Right", 68.0), ("shift+Right", 68.2), ("Left", 68.0), ("Prior", 76.0)):
            self.keys(window, key)
            self.expect_stored("kAppIconSize", stored)

    def test_takes_a_number_that_is_typed_beside_it(self):
        window, slider = self.open_size()
        place = self.extents(slider)
        self.click_at(place.x + place.width + 30, place.y + place.height // 2)
        self.expect_focus(window, "Size (70)")
        self.type(window, "61.25")
        self.keys(window, "Return")
        eventually(lambda: self.stored("kAppIconSize") in (61.2, 61.3), "the number as it is shown")
        self.assertEqual(slider.queryValue().currentValue, self.stored("kAppIconSize"))

    # -- by mouse --

    def test_scrolls_by_the_bar_that_the_mouse_grabs(self):
        window = self.open_window("--page", "AppsController")
        first = self.named(window, LINK, "Apps")
        top = self.extents(first).y
        x = WIDTH - 5
        self.xdotool("mousemove", x, 80)
        self.xdotool("mousedown", 1)
        for y in range(100, HEIGHT, 60):
            self.xdotool("mousemove", x, y)
        eventually(lambda: self.extents(first).y < top - 100, "the page to scroll")
        self.xdotool("mousemove", x, 60, "mouseup", 1)
        self.expect_soon(lambda: self.extents(first).y, top)


if __name__ == "__main__":
    unittest.main()

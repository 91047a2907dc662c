#!/usr/bin/python3
"""The lock screen beside the pages and in a window of its own.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/lockscreen_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import struct
import unittest
from types import SimpleNamespace

import pyatspi

from harness import wire
from harness.display import BAR
from harness.faulty import FaultyTweak, sound
from harness.spoken import BUTTON, LINK, SWITCH, Spoken
from harness.waiting import eventually, settled

PANE, SLIDER = pyatspi.ROLE_PANEL, pyatspi.ROLE_SLIDER
LOCK_SCREEN = "Lock screen, preview"
WIDE = 1260, 900
NARROW = 1100, 900


class LockScreen(Spoken):
    def start_tweak(self, *options, **more):
        self.tweak = super().start_tweak(*options, **more)

    def open_wide(self, *options):
        window = self.open_window("--columns", "1", "--size", "{}x{}".format(*WIDE), *options)
        eventually(lambda: self.has_notices(window), "the notices")
        self.xdotool("windowfocus", "--sync", window.id)
        return window

    def has_notices(self, window):
        return any(name.startswith("Ines") for name in self.spoken(window, BUTTON))

    def panes(self, window):
        """Where what fills the window's height below the bar is from left to right, by its name."""
        return {name: (place.x, place.x + place.width) for name, place in
                ((name, self.extents(item)) for name, item in self.spoken(window, PANE).items()) if place.y <= BAR}

    def expect_panes(self, window, *names, width):
        """They stand side by side and fill the window."""
        def stand():
            panes = self.panes(window)
            edges = [edge for name in names for edge in panes.get(name, ())]
            return set(panes) == set(names) and edges[0] == 0 and edges[-1] == width and edges[1:-1:2] == edges[2:-1:2]
        eventually(stand, f"{names} within {width}")

    def title_of(self, window):
        return self.xdotool("getwindowname", window.id).strip().removesuffix(" — Settings")

    def ink(self, window):
        """How many pixels are white where the clock stands."""
        left, right = self.panes(window)[LOCK_SCREEN]
        with self.display.screen() as (_, _, line):
            return sum(min(pixel[:3]) > 240 for y in range(150, 240)
                       for pixel in struct.iter_unpack("4B", line(y)[4 * left + 400:4 * right - 400]))


class PlaceTest(LockScreen):
    def test_stands_beside_the_page_where_there_is_room(self):
        window = self.open_wide()
        self.expect_panes(window, "Lumora", LOCK_SCREEN, width=WIDE[0])
        self.keys(window, "ctrl+l")
        self.expect_panes(window, "Lumora", width=WIDE[0])
        self.keys(window, "ctrl+l")
        self.expect_panes(window, "Lumora", LOCK_SCREEN, width=WIDE[0])
        self.xdotool("windowsize", "--sync", window.id, *NARROW)
        self.expect_panes(window, "Lumora", width=NARROW[0])
        self.assertEqual(self.windows(window), [window.id])


class OwnWindowTest(LockScreen):
    def test_opens_in_one_window_of_its_own_where_there_is_none(self):
        window = self.open_root_page("--columns", "1", "--size", "{}x{}".format(*NARROW))
        self.expect_panes(window, "Lumora", width=NARROW[0])
        self.keys(window, "ctrl+l")
        own = eventually(lambda: set(self.windows(window)) - {window.id}, "another window").pop()
        self.assertIn("Lock Screen", self.xdotool("getwindowname", own))
        eventually(lambda: LOCK_SCREEN in self.spoken(window, PANE), "the lock screen")
        self.keys(window, "ctrl+l")
        self.assertEqual(set(settled(lambda: self.windows(window), "windows")), {window.id, own})
        self.close(SimpleNamespace(id=own))
        self.expect_soon(lambda: self.windows(window), [window.id])
        self.xdotool("windowfocus", window.id)
        self.keys(window, "ctrl+l")
        eventually(lambda: len(self.windows(window)) == 2, "yet another window")
        self.xdotool("windowsize", "--sync", window.id, *WIDE)
        self.expect_soon(lambda: self.windows(window), [window.id])
        self.expect_panes(window, "Lumora", LOCK_SCREEN, width=WIDE[0])

    def test_closes_with_the_window(self):
        window = self.open_root_page()
        self.keys(window, "ctrl+l")
        eventually(lambda: len(self.windows(window)) == 2, "another window")
        self.expect_to_close(window)


class LooksTest(LockScreen):
    def test_turns_to_what_is_edited(self):
        self.set("kTweakEnabled", True)
        self.set("kAppsEnabled", ["org.lumora.samples.Phone"])
        window = self.open_wide("--page", "AppsController")
        self.assertNotIn("Phone", self.spoken(window, BUTTON))
        self.act(self.named(window, SWITCH, "Badges"), "Toggle")
        self.named(window, BUTTON, "Phone")
        self.expect_soon(lambda: self.has_notices(window), False)


class KeysTest(LockScreen):
    def test_has_keys_of_its_own(self):
        window = self.open_wide("--page", "AppsController")
        self.named(window, LINK, "Auto-Unlock")

        def focused_in_pane():
            return [item.name for item in self.find(self.named(window, PANE, LOCK_SCREEN),
                                                    lambda item: self.has_state(item, pyatspi.STATE_FOCUSED))]
        self.keys(window, "F6")
        eventually(focused_in_pane, "the focus in the lock screen")
        self.keys(window, "Escape")
        self.keys(window, "shift+Tab")
        eventually(lambda: "Menu of the preview" in focused_in_pane(), "the focus on its button")
        self.keys(window, "Return")
        eventually(lambda: "Sleep Now" in self.spoken(window, pyatspi.ROLE_MENU_ITEM), "the menu")
        self.keys(window, "Escape")
        eventually(lambda: "Sleep Now" not in self.spoken(window, pyatspi.ROLE_MENU_ITEM), "the end of the menu")
        self.assertEqual(self.title_of(window), "Apps")
        self.keys(window, "F6")
        eventually(lambda: not focused_in_pane(), "the focus on the page")
        self.keys(window, "Escape")
        self.expect_soon(lambda: self.title_of(window), "Lumora")
        self.assertIsNone(window.poll())


class HandTest(LockScreen):
    def test_shows_the_number_under_a_hand_before_the_tweak_hears_of_it(self):
        self.end(self.tweak)
        with FaultyTweak(self.ports, sound) as tweak:
            window = self.open_wide("--page", "LSDateViewSettings")
            place = self.extents(self.named(window, SLIDER, "Time Font Size (87.5)"))
            x, y = place.x + place.width // 2, place.y + place.height // 2
            before = settled(lambda: self.ink(window), "the clock before its picture")
            self.addCleanup(self.xdotool, "mouseup", 1)
            self.xdotool("mousemove", x, y, "mousedown", 1, "mousemove", x - 20, y, "mousemove", place.x + 60, y)
            eventually(lambda: self.ink(window) < before / 2, "a smaller clock")
            self.assertEqual(tweak.visits(wire.UPDATE_SETTINGS), 0)
            self.xdotool("mouseup", 1)
            eventually(lambda: tweak.visits(wire.UPDATE_SETTINGS) == 1, "the change at the tweak")
            # This tweak keeps nothing, so after a while the clock is as it was; the minute may be another.
            eventually(lambda: self.ink(window) > before * 0.7, "the clock as the tweak has it")
            self.expect_to_close(window)


if __name__ == "__main__":
    unittest.main()

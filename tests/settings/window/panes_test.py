#!/usr/bin/python3
"""The list and the page side by side.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/panes_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import unittest

import pyatspi

from harness.display import Display
from harness.spoken import LINK, SWITCH, Spoken
from harness.waiting import eventually

PANE, SLIDER = pyatspi.ROLE_PANEL, pyatspi.ROLE_SLIDER
LINE = pyatspi.ROLE_MENU_ITEM
DIVIDER = "Width of the list"


class Panes(Spoken):
    def open_wide(self, *options, size="1000x844"):
        window = self.open_root_page("--size", size, *options)
        self.named(window, LINK, "Apps")
        return window

    def pane_edges(self, window):
        """Where each pane begins and ends, by its name."""
        return {name: (place.x, place.x + place.width) for name, place in
                ((name, self.extents(item)) for name, item in self.spoken(window, PANE).items())}

    def expect_panes(self, window, **edges):
        self.expect_soon(lambda: self.pane_edges(window), edges)

    def focused(self, window):
        return [item.name for application in self.applications(window)
                for item in self.find(application, lambda it: self.has_state(it, pyatspi.STATE_FOCUSED))]

    def expect_focus(self, window, name):
        eventually(lambda: name in self.focused(window), f"the focus on {name}")

    def choose(self, window, line):
        self.keys(window, "F10")
        self.act(self.named(window, LINE, line), "Press")

    def size_of(self, window):
        place = self.run_program("xdotool", "getwindowgeometry", "--shell", window.id).stdout
        found = dict(line.split("=") for line in place.split())
        return int(found["WIDTH"]), int(found["HEIGHT"])


class ColumnsTest(Panes):
    def test_a_row_opens_beside_its_list_and_stays_selected(self):
        window = self.open_wide()
        self.expect_panes(window, Lumora=(0, 390))
        self.click(self.named(window, LINK, "Apps"))
        self.expect_panes(window, Lumora=(0, 390), Apps=(390, 1000))
        apps = eventually(lambda: next((item for application in self.applications(window) for item in self.find(
            application, lambda it: it.name == "Apps" and self.has_state(it, pyatspi.STATE_SELECTED))), None), "the row")
        self.assertEqual(self.extents(apps).x, 16)
        self.click(self.named(window, LINK, "Change Log"))
        self.expect_panes(window, **{"Lumora": (0, 390), "Change Log": (390, 1000)})
        self.keys(window, "Escape")
        self.expect_panes(window, Lumora=(0, 390))

    def test_a_change_in_the_list_leaves_it_alone(self):
        window = self.open_wide()
        self.click(self.named(window, LINK, "Lock Screen Settings"))
        self.click(self.named(window, LINK, "Passcode View"))
        self.expect_panes(window, **{"Lock Screen Settings": (0, 390), "Passcode View": (390, 1000)})
        self.click(self.named(window, SWITCH, "Status Bar"))
        self.expect_panes(window, **{"Lock Screen Settings": (0, 390)})
        self.click(self.named(window, LINK, "Passcode View"))
        self.expect_panes(window, **{"Lock Screen Settings": (0, 390), "Passcode View": (390, 1000)})
        self.press_button(window, "Back")
        self.expect_panes(window, **{"Lumora": (0, 390), "Lock Screen Settings": (390, 1000)})

    def test_a_smaller_window_shows_the_page_alone(self):
        window = self.open_wide()
        self.click(self.named(window, LINK, "Apps"))
        self.expect_panes(window, Lumora=(0, 390), Apps=(390, 1000))
        for size, edges in (((719, 844), {"Apps": (0, 719)}), ((720, 479), {"Apps": (0, 720)}),
                            ((720, 480), {"Lumora": (0, 320), "Apps": (320, 720)})):
            with self.subTest(size):
                self.xdotool("windowsize", "--sync", window.id, *size)
                self.expect_panes(window, **edges)


class KeysTest(Panes):
    def test_lead_from_pane_to_pane(self):
        window = self.open_wide()
        self.xdotool("windowfocus", "--sync", window.id)
        self.click(self.named(window, LINK, "Apps"))
        self.expect_panes(window, Lumora=(0, 390), Apps=(390, 1000))
        self.keys(window, "ctrl+2", "Down")
        eventually(lambda: self.focused(window), "a focus")
        there = self.focused(window)
        self.keys(window, "F6")
        eventually(lambda: self.focused(window) not in ([], there), "the list")
        here = self.focused(window)
        for key, wanted in (("shift+F6", there), ("ctrl+1", here), ("ctrl+2", there), ("F6", here)):
            with self.subTest(key):
                self.keys(window, key)
                self.expect_soon(lambda: self.focused(window), wanted)


class DividerTest(Panes):
    def test_is_dragged_and_remembered(self):
        window = self.open_wide()
        self.click(self.named(window, LINK, "Apps"))
        self.expect_panes(window, Lumora=(0, 390), Apps=(390, 1000))
        self.xdotool("mousemove", 390, 500, "mousedown", 1, "mousemove", 370, 500, "mousemove", 350, 500, "mouseup", 1)
        self.expect_panes(window, Lumora=(0, 350), Apps=(350, 1000))
        self.expect_to_close(window)
        window = self.open_wide()
        self.expect_panes(window, Lumora=(0, 350))

    def test_is_moved_by_keys_and_assistive_tools(self):
        window = self.open_wide()
        value = self.named(window, SLIDER, DIVIDER).queryValue()
        self.assertEqual((value.minimumValue, value.currentValue, value.maximumValue), (320, 390, 390))
        value.currentValue = 340
        self.expect_panes(window, Lumora=(0, 340))
        self.named(window, SLIDER, DIVIDER).queryComponent().grabFocus()
        self.expect_focus(window, DIVIDER)
        self.keys(window, "Right")
        self.expect_panes(window, Lumora=(0, 350))
        self.keys(window, "Home")
        self.expect_panes(window, Lumora=(0, 320))


class MenuTest(Panes):
    def test_chooses_columns_and_is_remembered(self):
        window = self.open_wide()
        self.choose(window, "One Column")
        self.expect_panes(window, Lumora=(0, 1000))
        self.expect_to_close(window)
        window = self.open_wide()
        self.expect_panes(window, Lumora=(0, 1000))
        self.press_button(window, "More")
        one = self.named(window, LINE, "One Column")
        self.assertTrue(self.has_state(one, pyatspi.STATE_CHECKED))
        self.xdotool("windowfocus", "--sync", window.id)
        self.expect_focus(window, "Open Profile…")  # the first line that there is a use for
        self.keys(window, *["Down"] * 4, "Return")
        self.expect_panes(window, Lumora=(0, 390))

    def test_closes_by_escape_and_goes_nowhere(self):
        window = self.open_wide()
        self.click(self.named(window, LINK, "Apps"))
        self.expect_panes(window, Lumora=(0, 390), Apps=(390, 1000))
        self.keys(window, "F10")
        self.named(window, LINE, "Two Columns")
        self.keys(window, "Escape")
        self.expect_soon(lambda: self.spoken(window, LINE), {})
        self.expect_panes(window, Lumora=(0, 390), Apps=(390, 1000))

    def test_offers_no_columns_without_room_for_them(self):
        window = self.open_wide(size="700x844")
        self.keys(window, "F10")
        self.named(window, LINE, "Lock Screen")
        self.assertNotIn("Two Columns", self.spoken(window, LINE))
        self.keys(window, "Escape")


class FirstSizeTest(Panes):
    def open_on(self, screen):
        self.kept_size.unlink(missing_ok=True)
        self.display = Display("-screen", "0", screen + "x24")
        self.addCleanup(self.display.stop)
        self.environment["DISPLAY"] = self.display.name
        window = self.open_window()
        self.named(window, LINK, "Apps")
        return window

    def test_has_room_for_all_panes_on_a_desktop(self):
        window = self.open_on("1600x1000")
        self.assertEqual(self.size_of(window), (1240, 900))
        eventually(lambda: {"Lumora", "Lock screen, preview"} <= set(self.pane_edges(window)), "the panes")
        self.expect_to_close(window)

    def test_has_room_for_all_panes_on_a_small_desktop_too(self):
        window = self.open_on("1280x1024")
        self.assertEqual(self.size_of(window), (1240, 900))
        self.expect_to_close(window)

    def test_has_room_for_list_and_page_on_a_smaller_one(self):
        window = self.open_on("1152x864")
        self.assertEqual(self.size_of(window), (1000, 844))
        self.expect_to_close(window)

    def test_fills_the_screen_of_a_phone(self):
        window = self.open_on("360x720")
        self.assertEqual(self.size_of(window), (360, 720))
        self.expect_to_close(window)


if __name__ == "__main__":
    unittest.main()

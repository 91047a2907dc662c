#!/usr/bin/python3
"""The colour page in the real window: what a drag, a theme, a key and an assistive tool send, message by message.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/colors_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import unittest

import pyatspi

from harness.display import BAR, HEIGHT, WIDTH
from harness.spoken import Spoken
from harness.tweak import Tweak
from harness.waiting import eventually

# In the window, at its first size: the picker fills the page from 75 points below its top to the strip of themes.
FIELD = (20, BAR + 75 + 20, WIDTH - 40, HEIGHT - BAR - 75 - 60 - 90)


def near(colour, components):
    return all(abs(colour[name] - value) < 1e-6 for name, value in components.items())


class ColorsTest(Spoken):
    def start_tweak(self):
        """Each test has one that remembers what it is sent."""

    def open_page(self, colour):
        settings = {"kLSBlurColor": colour} if colour else {}
        self.tweak = self.enterContext(Tweak(self.ports, settings))
        self.xdotool("mousemove", 1200, 1000)
        window = self.open_window("--page", "ColorPickerController")
        eventually(lambda: "Brightness" in self.sliders(window), "the colour control")
        return window

    def sliders(self, window):
        return self.spoken(window, pyatspi.ROLE_SLIDER)

    def colours(self):
        changes = list(self.tweak.changes)
        self.assertEqual({key for key, _ in changes} - {"kLSBlurColor"}, set())
        for _, colour in changes:
            self.assertEqual(list(colour), ["h", "s", "b"])
            self.assertTrue(all(type(component) is float for component in colour.values()), colour)
        return [colour for _, colour in changes]

    def wait_for(self, count):
        eventually(lambda: len(self.tweak.changes) >= count, f"{count} messages")
        return self.colours()

    def all_colours(self, window):
        """Those that come before the window ends: it waits for the messages that are under way."""
        self.expect_to_close(window)
        return self.colours()

    @staticmethod
    def in_field(x, y):
        """Hue and saturation at a point of the window."""
        left, top, width, height = FIELD
        return (x - left) / width, 1 - (y - top) / height

    def tap_theme(self, index):
        self.click_at(round((index + 0.5) * WIDTH / 7), HEIGHT - 30)

    def test_sends_each_colour_of_a_slow_drag_across_the_field_exactly_once(self):
        self.open_page({"h": 0.0, "s": 0.0, "b": 1.0})
        path = [(FIELD[0] + 10 * step, FIELD[1] + 7 * step) for step in range(30)]
        self.xdotool("mousemove", *path[0], "mousedown", 1)
        self.wait_for(1)
        for count, (x, y) in enumerate(path[1:], 2):
            self.xdotool("mousemove", x, y)
            self.wait_for(count)
        self.xdotool("mouseup", 1)
        self.assertEqual([(colour["h"], colour["s"]) for colour in self.colours()],
                         [self.in_field(x, y) for x, y in path])
        self.assertEqual({colour["b"] for colour in self.colours()}, {1.0})

    def test_sends_each_colour_of_a_fast_drag_exactly_once(self):
        window = self.open_page({"h": 0.0, "s": 0.0, "b": 1.0})
        path = [(FIELD[0] + step, FIELD[1] + step) for step in range(1, FIELD[2])]
        self.xdotool("mousemove", *path[0], "mousedown", 1)
        self.wait_for(1)
        # So many that the window cannot draw between them, and so few that no message is given up.
        for begin in range(1, len(path), 25):
            moves = path[begin:begin + 25]
            self.xdotool(*(word for x, y in moves for word in ("mousemove", x, y)))
            self.wait_for(begin + len(moves))
        self.xdotool("mouseup", 1)
        # In some order: messages may overtake each other.
        self.assertEqual(sorted((colour["h"], -colour["s"]) for colour in self.all_colours(window)),
                         [(h, -s) for h, s in map(self.in_field, *zip(*path))])

    def test_sends_nothing_for_moves_outside_of_the_field_and_the_bar(self):
        self.open_page({"h": 0.5, "s": 0.5, "b": 1.0})
        left, top, width, height = FIELD
        self.xdotool("mousemove", left + 5, top + height - 5, "mousedown", 1)
        self.wait_for(1)
        for x, y in ((left + 5, top + height), (left + 5, top + height + 10), (5, top + height + 19), (2, top + 50)):
            self.xdotool("mousemove", x, y)
        self.xdotool("mousemove", left + 6, top + 50, "mouseup", 1)
        self.assertEqual([(colour["h"], colour["s"]) for colour in self.wait_for(2)],
                         [self.in_field(left + 5, top + height - 5), self.in_field(left + 6, top + 50)])

    def test_stores_the_old_brightness_with_a_theme_and_previews_the_theme_in_full(self):
        self.open_page({"h": 0.5, "s": 1.0, "b": 1.0})
        eventually(lambda: self.display.color_at(WIDTH // 2, BAR + 10) == "#00ffff", "the preview of what is stored")
        self.tap_theme(5)
        self.assertEqual(self.wait_for(1), [{"h": 0.0, "s": 1.0, "b": 1.0}])
        eventually(lambda: self.display.color_at(WIDTH // 2, BAR + 10) == "#b00000", "the dark red preview")

    def test_opens_on_black_with_nothing_stored(self):
        window = self.open_page(None)
        eventually(lambda: self.display.color_at(WIDTH // 2, BAR + 10) == "#000000", "the black preview")
        self.assertEqual([self.sliders(window)[name].queryValue().currentValue
                          for name in ("Hue", "Saturation", "Brightness")], [0, 0, 0])
        self.tap_theme(0)
        self.assertEqual(self.wait_for(1), [{"h": 0.5, "s": 1.0, "b": 0.0}])
        self.assertEqual(len(self.all_colours(window)), 1, "opening the page sends nothing")

    def test_moves_the_marks_by_keyboard(self):
        window = self.open_page({"h": 0.5, "s": 0.5, "b": 0.5})
        expected = []
        for keys, h, s, b in ((("Tab", "Right"), 0.51, 0.5, 0.5), (("shift+Left",), 0.41, 0.5, 0.5),
                              (("Up",), 0.41, 0.51, 0.5), (("shift+Down",), 0.41, 0.41, 0.5),
                              (("Tab", "shift+Right"), 0.41, 0.41, 0.4), (("Tab", "space"), 0.5, 1, 0.4)):
            self.keys(window, *keys)
            expected.append({"h": h, "s": s, "b": b})
            colours = self.wait_for(len(expected))
            self.assertTrue(all(near(*pair) for pair in zip(colours, expected)), colours)

    def test_takes_values_from_assistive_tools_and_tells_of_them(self):
        window = self.open_page({"h": 0.5, "s": 0.5, "b": 0.5})
        told = []
        self.listen(lambda event: told.append(event.source.name), "object:property-change:accessible-value")
        self.sliders(window)["Brightness"].queryValue().currentValue = 0.75
        self.assertTrue(near(self.wait_for(1)[0], {"h": 0.5, "s": 0.5, "b": 0.75}), self.colours())
        self.await_told(lambda: "Brightness" in told, "the new value")
        self.assertAlmostEqual(self.sliders(window)["Brightness"].queryValue().currentValue, 0.75, delta=0.002)
        self.sliders(window)["Saturation"].queryValue().currentValue = 0.25
        self.assertTrue(near(self.wait_for(2)[1], {"h": 0.5, "s": 0.25, "b": 0.75}), self.colours())
        self.act(self.sliders(window)["Hue"], "Increase")
        self.assertTrue(near(self.wait_for(3)[2], {"h": 0.51, "s": 0.25, "b": 0.75}), self.colours())


if __name__ == "__main__":
    unittest.main()

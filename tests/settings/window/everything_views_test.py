#!/usr/bin/python3
"""Every row of every list, every font, every colour: the pages that are one view, in the real window, used by pointer,
keyboard and assistive tool, and looked up on the tweak's disk.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/everything_views_test.py [-v] BUILD

Needs what spoken.py needs, and fontTools.
"""
import os
import unittest
from pathlib import Path

import pyatspi
from gi.repository import GLib

from everything import WAYS, Control, Everything
from harness.display import BAR, HEIGHT, WIDTH
from harness.make_fonts import make_fonts
from harness.programs import ROOT
from harness.waiting import eventually


class Table(Everything):
    """A page of one table. Only rows in view exist."""

    def order(self):
        """All rows from the top, by what is read out for them."""
        raise NotImplementedError

    def open_table(self, page):
        window = self.open_window("--page", page)
        eventually(lambda: self.rows(window), "the rows")
        return window

    def titles(self, page):
        """Of the rows of each section."""
        return [[row["title"] for row in section["rows"]] for section in self.printed(page)["sections"]]

    def bring(self, window, name, around=0):
        """Turns the wheel until a row and so much around it are in view, or the page has come to its end."""
        notches = []

        def is_there():
            rows = self.rows(window)
            if name not in rows:
                shown = next((other for other in self.order() if other in rows), None)
                if shown:
                    self.turn_wheel(self.order().index(name) < self.order().index(shown))
                return False
            y = self.where_it_stands(rows[name], name)
            if y is None:
                return False
            if BAR + around <= y <= HEIGHT - 40 - around or notches[-2:] == [y] * 2:
                return rows[name]
            notches.append(y)
            self.turn_wheel(y < HEIGHT / 2)
            return False
        return eventually(is_there, f"{name} in view")

    def where_it_stands(self, item, name):
        """None when it goes meanwhile."""
        places = []

        def stands():
            try:
                places.append(self.extents(item).y if item.name == name else None)
            except GLib.Error:
                places.append(None)
            return places[-1] is None or len(places) >= 5 and len(set(places[-5:])) == 1
        eventually(stands, f"{name} to stand still")
        return places[-1]

    def focus_row(self, window, name):
        """By keyboard."""
        if not self.focused(window):
            self.keys(window, "Tab")
        [now] = eventually(lambda: self.focused(window), "the focus on a row")
        order = self.order()
        by = order.index(name) - order.index(now)
        if name in (order[0], order[-1]):
            self.keys(window, "Home" if name == order[0] else "End")
        elif by:
            self.keys(window, *["Down" if by > 0 else "Up"] * abs(by))
        eventually(lambda: self.focused(window) == [name], f"the focus on {name}, not {self.focused(window)}")
        return self.rows(window)[name]


class Lists:
    """The tests, for one page of a list."""

    page = key = None
    saved = 0  # the section of which the key is the list
    lists = None
    prefix = "org.lumora.samples."

    def identifiers(self, names):
        return [self.prefix + name for name in names]

    def order(self):
        return sum(self.lists, [])

    def test_moves_every_row_by_pointer_keyboard_and_assistive_tool(self):
        self.assertEqual(self.titles(self.page), self.lists)
        self.ways = {}
        self.moved = set()
        window = self.open_table(self.page)
        enabled, disabled = map(list, self.lists)
        for number, name in enumerate(disabled + enabled):
            by = -1 if name in self.lists[1] or name == self.lists[0][-1] != self.order()[0] else +1
            for turn in range(2):  # there and back
                self.move(window, name, -by if turn else by, WAYS[(2 * number + turn) % 3])
        for way in WAYS:
            self.move(window, self.lists[1][0], -1, way)
            self.move(window, self.lists[0][0], +1, way)
            self.move(window, self.lists[0][-1], +1, way)
        for by in (+1, -1):
            for way in WAYS:
                self.move(window, self.lists[1][0], by, way)
        self.assertEqual(self.moved, set(self.order()))
        self.assertEqual(self.ways, {(start, end): set(WAYS) for start in (0, 1) for end in (0, 1)})

    def move(self, window, name, by, way):
        """By one place; from the end of a section that is to the other one."""
        start = 0 if name in self.lists[0] else 1
        at = self.lists[start].index(name) + by
        end = start if 0 <= at < len(self.lists[start]) else 1 - start
        if end != start:
            at = 0 if end == 1 else len(self.lists[0])
        written = os.stat(self.settings_file).st_mtime_ns
        if way == "pointer":
            self.bring(window, name, around=100)  # what is moved over has its place, and the page stands still
            self.drag(window, name, self.height_for(window, name, by, end != start))
        elif way == "keyboard":
            self.focus_row(window, name)
            self.keys(window, "alt+Down" if by > 0 else "alt+Up")
        else:
            self.act(self.bring(window, name), "Move down" if by > 0 else "Move up")
        self.lists[start].remove(name)
        self.lists[end].insert(at, name)
        eventually(lambda: os.stat(self.settings_file).st_mtime_ns != written, f"the move of {name} at the tweak")
        self.expect_stored(self.key, self.identifiers(self.lists[self.saved]))
        place = f"Position {at + 1} of {len(self.lists[end])} in {('Enabled', 'Disabled')[end]}."
        eventually(lambda: name in (rows := self.rows(window)) and rows[name].description.startswith(place),
                   f"{name} at {place}")
        self.moved.add(name)
        self.ways.setdefault((start, end), set()).add(way)

    def height_for(self, window, name, by, to_other_section):
        """Where the middle of a row is to be dropped. What is beneath a row that is out has moved up by one."""
        order = self.order()
        next_to = order.index(name) + by
        if not 0 <= next_to < len(order) or to_other_section and not self.lists[0 if by < 0 else 1]:
            return self.place(window, name).y + by * 120
        other = self.place(window, order[next_to])
        if not to_other_section:
            return other.y + other.height // 2
        return other.y + (-other.height // 2 if by > 0 else other.height * 3 // 2)


APPS = ["Books", "Browser", "Calculator", "Calendar", "Camera", "Clock", "Contacts", "Files", "Fitness", "Keys", "Mail",
        "Maps", "Messages", "Music", "Notes", "Phone", "Photos", "Podcasts", "Recorder", "Reminders", "Shares",
        "Terminal", "Translator", "Videos", "Weather"]


class AppsTest(Lists, Table):
    page, key = "AppsListController", "kAppsEnabled"

    def setUp(self):
        chosen = ["Weather", "Books", "Mail", "Clock"]
        self.lists = [chosen, [app for app in APPS if app not in chosen]]
        self.before = {self.key: self.identifiers(self.lists[0])}
        super().setUp()


class AutoUnlockAppsTest(Lists, Table):
    page, key, saved = "AUAppsListController", "kAUAppsDisabled", 1

    def setUp(self):
        chosen = ["Weather", "Books", "Mail", "Clock", "Phone", "Files", "Keys"]
        self.lists = [["Weather", "Mail", "Phone", "Keys"], ["Books", "Clock", "Files"]]
        self.before = {"kAppsEnabled": self.identifiers(chosen),
                       self.key: self.identifiers(["Files", "Books", "Clock"])}
        super().setUp()

    def tearDown(self):
        self.expect_stored("kAppsEnabled", self.before["kAppsEnabled"])
        super().tearDown()


class AppViewsTest(Lists, Table):
    page, key, prefix = "PluginsListViewController", "kAppViewsEnabled", "org.lumora.plugins."

    def identifiers(self, names):
        return [self.prefix + name.lower() for name in names]

    def setUp(self):
        self.lists = [["Weather"], ["Clock", "Music", "Notes"]]
        self.before = {self.key: self.identifiers(self.lists[0])}
        super().setUp()


class FontsTest(Table):
    ROW = pyatspi.ROLE_RADIO_BUTTON
    key = "kLSDateFontName"
    names = ["Default"] + [f"Many{number:04}-Regular" for number in range(30)]
    before = {key: names[7]}

    def setUp(self):
        super().setUp()
        fonts = os.path.join(self.folder, "fonts")
        make_fonts(fonts, "many=30")
        self.environment["FONTCONFIG_FILE"] = fonts + "/fonts.conf"

    def order(self):
        return self.names

    def choose(self, window, name, way, key):
        if way == "keyboard":
            self.focus_row(window, name)
            self.keys(window, key)
        elif way == "pointer":
            row = self.bring(window, name)
            self.turn_wheel_to(row)
            self.click(row)
        else:
            self.act(self.bring(window, name), "Press")
        self.expect_stored(self.key, name)
        eventually(lambda: self.marked(window) == [name], f"the mark of {name}, not {self.marked(window)}")

    def test_chooses_every_font(self):
        self.assertEqual(self.titles("FontViewController"), [self.names])
        window = self.open_table("FontViewController")
        eventually(lambda: self.marked(window) == [self.before[self.key]], "the mark of what is stored")
        for number, name in enumerate(self.names):
            self.choose(window, name, WAYS[number % 3], ("space", "Return")[number // 3 % 2])


class ColorsTest(Everything):
    key = "kLSBlurColor"
    before = {key: {"h": 0.25, "s": 0.5, "b": 0.75}}
    # Hue, saturation, and the brightness that a theme leaves behind for what is chosen next.
    themes = {"Cyan": (0.5, 1.0, 1.0), "Blue": (0.61, 0.75, 0.94), "Violet": (0.72, 0.95, 1.0),
              "Green": (0.28, 0.78, 0.83), "Yellow": (0.16, 1.0, 1.0), "Dark Red": (0.0, 1.0, 0.69),
              "Pink": (0.88, 0.73, 1.0)}

    def open_page(self):
        window = self.open_window("--page", "ColorPickerController")
        self.find_control(window, self.slider("Brightness"))
        return window

    @staticmethod
    def slider(name):
        return Control(pyatspi.ROLE_SLIDER, name, "Brightness" if name == "Brightness" else "Hue and Saturation")

    def expect_color(self, h, s, b, delta=1e-6):
        def is_stored():
            color = self.stored(self.key)
            return list(color) == ["h", "s", "b"] and all(
                isinstance(color[name], float) and abs(color[name] - value) < delta
                for name, value in (("h", h), ("s", s), ("b", b)))
        try:
            eventually(is_stored, f"the colour {h}, {s}, {b}")
        except AssertionError as never:
            raise AssertionError(f"{never}, not {self.stored(self.key)}") from None

    def expect_near(self, h, s, b):
        """What the keyboard and assistive tools choose is a place that can be touched: the nearest one."""
        self.expect_color(h, s, b, 0.005)

    def test_chooses_every_theme(self):
        window = self.open_page()
        shown = [control.name for control, _ in self.items(window) if control.role == pyatspi.ROLE_PUSH_BUTTON]
        self.assertEqual(shown, list(self.themes))
        brightness = self.before[self.key]["b"]
        for way in WAYS:
            for number, (name, (h, s, b)) in enumerate(self.themes.items()):
                self.press(window, Control(pyatspi.ROLE_PUSH_BUTTON, name, ""), way, ("space", "Return")[number % 2])
                self.expect_color(h, s, brightness)
                brightness = b

    def test_chooses_at_the_corners_and_in_the_middle_of_the_field(self):
        window = self.open_page()
        hue, saturation = (self.find_control(window, self.slider(name)) for name in ("Hue", "Saturation"))
        field = self.extents(hue)
        # The right and the lower edge lie outside of the field.
        for x, y in ((0, 0), (field.width - 1, 0), (field.width - 1, field.height - 1), (0, field.height - 1),
                     (field.width // 2, field.height // 2)):
            self.click_at(field.x + x, field.y + y)
            self.expect_color(x / field.width, 1 - y / field.height, 0.75)

        self.focus_by_keyboard(window, self.slider("Hue"))
        # Around the field; at its ends the keys have no further effect.
        for keys, h, s in ((["Home"] + ["shift+Up"] * 10, 0, 1), (["End"], 1, 1), (["shift+Down"] * 10, 1, 0),
                           (["Home"], 0, 0), (["shift+Right"] * 5 + ["shift+Up"] * 5, 0.5, 0.5)):
            self.keys(window, *keys)
            self.expect_near(h, s, 0.75)

        before = 0.5
        for h, s in ((0, 0), (1, 0), (1, 1), (0, 1), (0.5, 0.5)):
            hue.queryValue().currentValue = h
            self.expect_near(h, before, 0.75)  # messages keep no order, so the next one waits for this
            saturation.queryValue().currentValue = s
            self.expect_near(h, s, 0.75)
            before = s

    def test_chooses_at_the_ends_and_in_the_middle_of_the_bar(self):
        window = self.open_page()
        brightness = self.find_control(window, self.slider("Brightness"))
        bar = self.extents(brightness)
        for x, y in ((0, 0), (bar.width - 1, bar.height - 1), (bar.width // 2, bar.height // 2)):
            self.click_at(bar.x + x, bar.y + y)
            self.expect_color(0.25, 0.5, 1 - x / bar.width)
        self.focus_by_keyboard(window, self.slider("Brightness"))
        for keys, value in ((["Home"], 1), (["End"], 0), (["shift+Left"] * 5, 0.5)):
            self.keys(window, *keys)
            self.expect_near(0.25, 0.5, value)
        for value in (0, 1, 0.5):
            brightness.queryValue().currentValue = value
            self.expect_near(0.25, 0.5, value)


class ChangeLogTest(Everything):
    def test_reads_the_change_log_to_its_end(self):
        text = Path(ROOT, "Library/PreferenceBundles/Lumora.bundle/changelog.txt").read_text(encoding="utf-8")
        window = self.open_window("--page", "ChangeLogController", "--size", "390x400")
        lines = [line for line in text.split("\n") if line.strip()]
        read = lambda: [control for control, _ in self.items(window) if control.name in lines]
        self.expect_soon(lambda: [control.name for control in read()], lines)
        first, label = (next(item for control, item in self.items(window) if control.name == line)
                        for line in (lines[0], lines[-1]))
        self.assertEqual((first.getRole(), label.getRole()), (pyatspi.ROLE_HEADING, pyatspi.ROLE_PARAGRAPH))
        self.assertFalse(self.has_state(label, pyatspi.STATE_EDITABLE))
        self.expect_soon(lambda: (self.extents(label).x, self.extents(label).width), (0, WIDTH))
        top = self.extents(label).y
        self.keys(window, "End")
        eventually(lambda: self.extents(label).y + self.extents(label).height <= 400, "its end by keyboard")
        end = self.extents(label).y
        self.keys(window, "Home")
        eventually(lambda: self.extents(label).y == top, "its beginning by keyboard")

        def turned():
            self.click_at(WIDTH // 2, 200, 5)
            return self.extents(label).y == end
        eventually(turned, "its end by the wheel")


if __name__ == "__main__":
    unittest.main()

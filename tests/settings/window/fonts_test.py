#!/usr/bin/python3
"""The list of fonts in the real programs: a font chosen by mouse, keyboard and assistive action, as the tweak has it then,
and how many font files are opened for it.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/fonts_test.py [-v] BUILD

Needs what spoken.py needs, and fontTools.
"""
import contextlib
import ctypes
import os
import shutil
import struct
import subprocess
import tempfile
import unittest

import pyatspi

from harness.display import BAR, HEIGHT
from harness.make_fonts import make_fonts
from harness.spoken import Spoken
from harness.waiting import eventually

KEY = "kLSDateFontName"
COUNT = 2000


class Watch:
    """Notes which files of a folder are opened."""

    IN_OPEN = 0x20

    def __init__(self, folder):
        libc = ctypes.CDLL(None, use_errno=True)
        self.number = libc.inotify_init1(os.O_NONBLOCK | os.O_CLOEXEC)
        if libc.inotify_add_watch(self.number, folder.encode(), self.IN_OPEN) < 0:
            raise OSError(ctypes.get_errno(), "no watch on " + folder)
        self.opened = set()

    def names(self):
        with contextlib.suppress(BlockingIOError):
            while events := os.read(self.number, 1 << 16):
                while events:
                    end = 16 + struct.unpack_from("iIII", events)[3]
                    self.opened.add(events[16:end].rstrip(b"\0").decode())
                    events = events[end:]
        return self.opened - {""}  # the folder itself

    def close(self):
        os.close(self.number)


def name_of(number):
    return f"Many{number:04}-Regular"


class FontsTest(Spoken):
    ROW = pyatspi.ROLE_RADIO_BUTTON

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.fonts = tempfile.mkdtemp(prefix="fonts-")
        cls.addClassCleanup(shutil.rmtree, cls.fonts, True)
        make_fonts(cls.fonts, f"many={COUNT}")
        subprocess.run(["fc-cache"], env={**os.environ, "FONTCONFIG_FILE": cls.fonts + "/fonts.conf"}, check=True)

    def setUp(self):
        super().setUp()
        self.environment["FONTCONFIG_FILE"] = self.fonts + "/fonts.conf"

    def open_fonts(self, stored=None, *options):
        if stored:
            self.set(KEY, stored)
        window = self.open_window("--page", "FontViewController", *options)
        eventually(lambda: (stored or "Default") in self.rows(window), "the rows")
        return window

    def expect_chosen(self, window, name):
        """At the tweak, on its disk, and in the window."""
        eventually(lambda: self.stored(KEY) == name, f"{name} at the tweak")
        eventually(lambda: self.marked(window) == [name], f"the mark of {name}, not of {self.marked(window)}")

    def click_row(self, window, name):
        self.click(self.named(window, self.ROW, name))

    def test_chooses_a_font_by_mouse(self):
        window = self.open_fonts()
        self.assertEqual(self.marked(window), ["Default"])
        self.click_row(window, name_of(4))
        self.expect_chosen(window, name_of(4))
        self.click_row(window, "Default")
        self.expect_chosen(window, "Default")

    def test_chooses_a_font_by_keyboard(self):
        window = self.open_fonts()
        self.keys(window, "Tab", "Down", "Down", "space")
        self.expect_chosen(window, name_of(1))
        self.keys(window, "Down", "Return")
        self.expect_chosen(window, name_of(2))

    def test_finds_a_font_by_the_letters_of_its_name(self):
        window = self.open_fonts()
        self.keys(window, "Tab", *name_of(1234)[:8].lower())
        eventually(lambda: self.rows(window).keys() == {name_of(1234)}, f"it alone, not {self.rows(window).keys()}")
        self.keys(window, "Down")
        eventually(lambda: self.focused(window) == [name_of(1234)], f"the focus, not on {self.focused(window)}")
        self.keys(window, "space")
        self.expect_chosen(window, name_of(1234))

    def test_chooses_a_font_by_assistive_action(self):
        window = self.open_fonts()
        self.act(self.rows(window)[name_of(3)], "Press")
        self.expect_chosen(window, name_of(3))

    def test_tells_assistive_tools_what_a_row_is(self):
        window = self.open_fonts(name_of(1))
        eventually(lambda: self.marked(window) == [name_of(1)], "the mark")
        row = self.named(window, self.ROW, name_of(1))
        self.assertTrue(self.has_state(row, pyatspi.STATE_FOCUSABLE))
        self.assertEqual(row.description, f"Position 3 of {COUNT + 1} in Fonts.")

    def test_opens_at_the_stored_font_and_goes_on_from_there(self):
        window = self.open_fonts(name_of(1234))
        eventually(lambda: self.marked(window) == [name_of(1234)], "the mark")
        row = self.place(window, name_of(1234))
        self.assertAlmostEqual(row.y + row.height / 2, (HEIGHT + BAR) / 2, delta=2)
        self.keys(window, "Tab", "Down", "space")
        self.expect_chosen(window, name_of(1235))

    def test_marks_default_for_a_font_that_is_gone_and_keeps_it_stored(self):
        self.set(KEY, "Gone-Regular")
        window = self.open_fonts()
        self.assertEqual(self.marked(window), ["Default"])
        self.assertEqual(self.stored(KEY), "Gone-Regular")

    def test_opens_the_fonts_of_the_rows_that_are_shown_and_no_others(self):
        watch = Watch(self.fonts + "/fonts")
        self.addCleanup(watch.close)
        # The toolkit needs a font, which must be none of these.
        self.environment["FONTCONFIG_FILE"] = self.write("fonts.conf", (
            '<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd"><fontconfig>'
            f"<dir>{self.fonts}/fonts</dir><dir>/usr/share/fonts</dir><cachedir>{self.fonts}/cache</cachedir>"
            "<match><edit name='family' mode='prepend' binding='strong'><string>Inter</string></edit></match>"
            "</fontconfig>"))
        subprocess.run(["fc-cache"], env=self.environment, check=True)
        watch.names()
        watch.opened.clear()

        window = self.open_fonts(name_of(1000))

        def shown():
            return {name.removesuffix("-Regular").lower() + ".ttf" for name, row in self.rows(window).items()
                    if name.startswith("Many") and self.is_seen(row)}
        eventually(lambda: len(watch.names()) >= len(shown()) > 0, "the fonts")
        self.assertEqual(watch.names(), shown())
        # A file that is opened too many would be by the frames that come of this.
        self.keys(window, "Tab", "Up")
        self.click_row(window, name_of(1001))
        self.expect_chosen(window, name_of(1001))
        self.assertEqual(watch.names(), shown())

    def is_seen(self, row):
        place = self.extents(row)
        return place.y + place.height > BAR and place.y < HEIGHT


if __name__ == "__main__":
    unittest.main()

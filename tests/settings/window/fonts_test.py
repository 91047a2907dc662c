#!/usr/bin/python3
"""The list of fonts in the real programs: a font chosen by mouse, keyboard and assistive action, as the tweak has it then,
and how many font files are opened for it.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/fonts_test.py [-v] BUILD

Needs what spoken.py needs, and fontTools.
"""
import ctypes
import os
import shutil
import struct
import subprocess
import tempfile
import unittest

import pyatspi

from harness.display import HEIGHT
from harness.make_fonts import make_fonts
from harness.spoken import Spoken
from harness.waiting import eventually

KEY = "kLSDateFontName"
COUNT = 2000


class Watch:
    """Which files of a folder anybody has opened."""

    IN_OPEN = 0x20

    def __init__(self, folder):
        libc = ctypes.CDLL(None, use_errno=True)
        self.number = libc.inotify_init1(os.O_NONBLOCK | os.O_CLOEXEC)
        if libc.inotify_add_watch(self.number, folder.encode(), self.IN_OPEN) < 0:
            raise OSError(ctypes.get_errno(), "no watch on " + folder)
        self.opened = set()

    def names(self):
        try:
            while events := os.read(self.number, 1 << 16):
                at = 0
                while at < len(events):
                    _, _, _, length = struct.unpack_from("iIII", events, at)
                    name = events[at + 16:at + 16 + length].rstrip(b"\0").decode()
                    at += 16 + length
                    if name:
                        self.opened.add(name)
        except BlockingIOError:
            pass
        return self.opened

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
        make_fonts(cls.fonts, f"many={COUNT}")
        subprocess.run(["fc-cache"], env={**os.environ, "FONTCONFIG_FILE": cls.fonts + "/fonts.conf"}, check=True)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.fonts, True)
        super().tearDownClass()

    def setUp(self):
        super().setUp()
        self.environment["FONTCONFIG_FILE"] = self.fonts + "/fonts.conf"

    def open_fonts(self, stored=None, *options):
        if stored:
            self.set(KEY, stored)
        window = self.open_window("--page", "FontViewController", *options)
        eventually(lambda: (stored or "Default") in self.rows(window), "the rows")
        return window

    def marked(self, window):
        return [name for name, row in self.rows(window).items() if row.getState().contains(pyatspi.STATE_CHECKED)]

    def expect_chosen(self, window, name):
        """At the tweak, on its disk, and in the window."""
        eventually(lambda: self.stored(KEY) == name, f"{name} at the tweak")
        eventually(lambda: self.marked(window) == [name], f"the mark of {name}, not of {self.marked(window)}")

    def click(self, window, name):
        row = self.place(window, name)
        self.xdotool("mousemove", str(row.x + 100), str(row.y + row.height // 2), "click", "1")

    def test_chooses_a_font_by_mouse(self):
        window = self.open_fonts()
        self.assertEqual(self.marked(window), ["Default"])
        self.click(window, name_of(4))
        self.expect_chosen(window, name_of(4))
        self.click(window, "Default")
        self.expect_chosen(window, "Default")

    def test_chooses_a_font_by_keyboard(self):
        window = self.open_fonts()
        self.xdotool("key", "--window", window.id, "Tab", "Down", "Down", "space")
        self.expect_chosen(window, name_of(1))
        self.xdotool("key", "--window", window.id, "Down", "Return")
        self.expect_chosen(window, name_of(2))

    def test_chooses_a_font_by_assistive_action(self):
        window = self.open_fonts()
        self.act(self.rows(window)[name_of(3)], "Press")
        self.expect_chosen(window, name_of(3))

    def test_tells_assistive_tools_what_a_row_is(self):
        window = self.open_fonts(name_of(1))
        eventually(lambda: self.marked(window) == [name_of(1)], "the mark")
        row = self.named(window, self.ROW, name_of(1))
        self.assertTrue(row.getState().contains(pyatspi.STATE_FOCUSABLE))
        self.assertEqual(row.description, f"Position 3 of {COUNT + 1} in Fonts.")

    def test_opens_at_the_stored_font_and_goes_on_from_there(self):
        window = self.open_fonts(name_of(1234))
        eventually(lambda: self.marked(window) == [name_of(1234)], "the mark")
        row = self.place(window, name_of(1234))
        bar = 52
        self.assertAlmostEqual(row.y + row.height / 2, (HEIGHT + bar) / 2, delta=2)
        self.xdotool("key", "--window", window.id, "Tab", "Down", "space")
        self.expect_chosen(window, name_of(1235))

    def test_marks_default_for_a_font_that_is_gone_and_keeps_it_stored(self):
        self.set(KEY, "Gone-Regular")
        window = self.open_fonts()
        self.assertEqual(self.marked(window), ["Default"])
        self.assertEqual(self.stored(KEY), "Gone-Regular")

    def test_opens_the_fonts_of_the_rows_that_are_shown_and_no_others(self):
        watch = Watch(self.fonts + "/fonts")
        self.addCleanup(watch.close)
        # The toolkit has to have a font of its own, which is then none of these.
        config = os.path.join(self.folder, "fonts.conf")
        with open(config, "w", encoding="utf-8") as file:
            file.write('<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd"><fontconfig>'
                       f"<dir>{self.fonts}/fonts</dir><dir>/usr/share/fonts</dir><cachedir>{self.fonts}/cache</cachedir>"
                       "<match><edit name='family' mode='prepend' binding='strong'><string>Inter</string></edit></match>"
                       "</fontconfig>")
        self.environment["FONTCONFIG_FILE"] = config
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
        self.xdotool("key", "--window", window.id, "Tab", "Up")
        self.click(window, name_of(1001))
        self.expect_chosen(window, name_of(1001))
        self.assertEqual(watch.names(), shown())

    @staticmethod
    def is_seen(row):
        place = row.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        return place.y + place.height > 52 and place.y < HEIGHT


if __name__ == "__main__":
    unittest.main()

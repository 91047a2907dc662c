#!/usr/bin/python3
"""The window on a Wayland display: that of weston, which draws into memory.

    PYTHONPATH=tests tests/settings/window/wayland_test.py [-v] BUILD

Needs weston and GdkPixbuf.
"""
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import gi
gi.require_version("GdkPixbuf", "2.0")
from gi.repository import GdkPixbuf

from harness.display import BAR
from harness.programs import Programs, program
from harness.waiting import LONG_ENOUGH, eventually


def lines_of(picture):
    """Red, green and blue of each pixel, line by line."""
    picture = GdkPixbuf.Pixbuf.new_from_file(str(picture))
    size, pixels = picture.get_n_channels(), picture.get_pixels()
    starts = range(0, picture.get_rowstride() * picture.get_height(), picture.get_rowstride())
    for line in (pixels[start:start + size * picture.get_width()] for start in starts):
        colours = bytearray(3 * picture.get_width())
        for part in range(3):
            colours[part::3] = line[part::size]
        yield bytes(colours)


class WaylandTest(Programs):
    def setUp(self):
        super().setUp()
        # The path of a socket is short.
        self.runtime = tempfile.mkdtemp(prefix="wayland-")
        self.addCleanup(shutil.rmtree, self.runtime, True)
        self.environment |= {"XDG_RUNTIME_DIR": self.runtime, "WAYLAND_DISPLAY": "lumora"}
        del self.environment["DISPLAY"]
        self.start_tweak()

    def start_weston(self, scale=1):
        """A screen without a seat: no keyboard, no pointer, no finger."""
        weston = self.start("weston", "--backend=headless-backend.so", "--use-pixman", f"--width={500 * scale}",
                            f"--height={1000 * scale}", f"--scale={scale}", "--socket=lumora", "--idle-time=0",
                            "--no-config", "--debug", stderr=subprocess.DEVNULL)
        eventually(lambda: os.path.exists(self.runtime + "/lumora"), "the display")
        return weston

    def open_window(self):
        return self.start(program("lumora-settings"), "--root", self.root, "--light", "--size", "390x844",
                          stderr=subprocess.PIPE)

    def expect_page(self, window, scale=1):
        self.settings("--light", "--grab", self.folder + "/page.png", status=0, DISPLAY="", WAYLAND_DISPLAY="",
                      QT_SCALE_FACTOR=str(scale))
        # The bar of a window has a sign more, for search.
        page = list(lines_of(self.folder + "/page.png"))[BAR * scale:]
        eventually(lambda: self.shows(page) or self.assertIsNone(window.poll(), window.lines.text), "the page")

    def screen(self):
        """The lines of what is on it now."""
        with tempfile.TemporaryDirectory(dir=self.folder) as folder:
            self.run_program("weston-screenshooter", cwd=folder, status=0)
            return list(lines_of(*Path(folder).iterdir()))

    def shows(self, picture):
        """Whether the screen has all of a picture in some place."""
        screen = self.screen()
        for top, line in enumerate(screen):
            left = line.find(picture[0])
            if left >= 0 and all(line[left:left + len(other)] == other
                                 for line, other in zip(screen[top:], picture)):
                return top + len(picture) <= len(screen)
        return False

    def test_shows_the_page_where_there_is_nothing_to_type_or_point_with(self):
        self.start_weston()
        window = self.open_window()
        self.expect_page(window)
        self.end(window)

    def test_draws_as_many_pixels_as_the_screen_has(self):
        for scale in (2, 3):
            with self.subTest(scale=scale):
                weston = self.start_weston(scale)
                window = self.open_window()
                self.expect_page(window, scale)
                self.end(window)
                self.end(weston)

    def test_ends_and_says_why_when_the_display_goes(self):
        weston = self.start_weston()
        window = self.open_window()
        self.expect_page(window)
        weston.kill()
        self.assertNotEqual(window.wait(LONG_ENOUGH), 0)
        self.assertIn("Wayland", window.lines.whole())


if __name__ == "__main__":
    unittest.main()

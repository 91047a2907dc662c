#!/usr/bin/python3
"""The window on Wayland displays that draw into memory: that of weston, and that of sway.

    PYTHONPATH=tests tests/settings/window/wayland_test.py [-v] BUILD

Needs weston, sway, grim and GdkPixbuf.
"""
import os
import shutil
import socket
import subprocess
import tempfile
import unittest
from pathlib import Path

import gi
gi.require_version("GdkPixbuf", "2.0")
from gi.repository import GdkPixbuf

from everything_pages import PAGES, VIEWS
from harness.display import BAR, HEIGHT, WIDTH
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


class OnWayland:
    """What both displays show. Neither has a keyboard, a pointer or a finger."""

    def setUp(self):
        super().setUp()
        # The path of a socket is short.
        self.runtime = tempfile.mkdtemp(prefix="wayland-")
        self.addCleanup(shutil.rmtree, self.runtime, True)
        self.environment |= {"XDG_RUNTIME_DIR": self.runtime, "WAYLAND_DISPLAY": "wayland-1"}
        del self.environment["DISPLAY"]
        self.start_tweak()

    def expect_display(self, name):
        """A socket stands in its place a moment before anybody listens to it."""
        def listens():
            with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as connection:
                return connection.connect_ex(f"{self.runtime}/{name}") == 0
        eventually(listens, "the display")

    def open_window(self, *options):
        return self.start(program("lumora-settings"), "--root", self.root, "--light", "--size", f"{WIDTH}x{HEIGHT}",
                          *options, stderr=subprocess.PIPE)

    def expect_page(self, window, *options, scale=1, size=(WIDTH, HEIGHT)):
        self.settings("--light", "--grab", self.folder + "/page.png", "--size", f"{size[0]}x{size[1]}", *options,
                      status=0, DISPLAY="", WAYLAND_DISPLAY="", QT_SCALE_FACTOR=str(scale))
        # The bar of a window has a sign more, for search or the way back.
        page = list(lines_of(self.folder + "/page.png"))[BAR * scale:]
        eventually(lambda: self.shows(page) or self.assertIsNone(window.poll(), window.lines.text),
                   " ".join(("the page", *options)))

    def screen(self):
        """The lines of what is on it now."""
        with tempfile.TemporaryDirectory(dir=self.folder) as folder:
            self.run_program(*self.shooter, cwd=folder, status=0)
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

    def test_shows_every_page_where_there_is_nothing_to_type_or_point_with(self):
        self.start_display()
        for page in sorted({*PAGES, *VIEWS} - {"NotesPage", "WeatherPage"}):  # which their rows alone open
            window = self.open_window("--page", page)
            self.expect_page(window, "--page", page)
            self.end(window)

    def test_draws_as_many_pixels_as_the_screen_has(self):
        for scale in (2, 3):
            with self.subTest(scale=scale):
                display = self.start_display(scale)
                window = self.open_window()
                self.expect_page(window, scale=scale)
                self.end(window)
                self.end(display)

    def test_ends_and_says_why_when_the_display_goes(self):
        display = self.start_display()
        window = self.open_window()
        self.expect_page(window)
        display.kill()
        self.assertNotEqual(window.wait(LONG_ENOUGH), 0)
        self.assertIn("Wayland", window.lines.whole())


class WestonTest(OnWayland, Programs):
    shooter = ["weston-screenshooter"]

    def start_display(self, scale=1):
        weston = self.start("weston", "--backend=headless-backend.so", "--use-pixman", f"--width={500 * scale}",
                            f"--height={1000 * scale}", f"--scale={scale}", "--socket=wayland-1", "--idle-time=0",
                            "--no-config", "--debug", stderr=subprocess.DEVNULL)
        self.expect_display("wayland-1")
        return weston


class SwayTest(OnWayland, Programs):
    """Gives a window all of its screen."""

    shooter = ["grim", "screen.png"]

    def start_display(self, scale=1):
        self.environment["SWAYSOCK"] = self.runtime + "/sway"
        options = {}
        if os.geteuid() == 0:  # as whom it refuses to run
            options = {"user": "nobody", "group": "nogroup", "extra_groups": []}
            shutil.chown(self.runtime, "nobody", "nogroup")
        sway = self.start("sway", "--config", "/dev/null", stderr=subprocess.DEVNULL, **options, env={
            **self.environment, "WLR_BACKENDS": "headless", "WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1"})
        self.expect_display("sway")
        self.tell(f"output * mode {WIDTH * scale}x{HEIGHT * scale} scale {scale}")
        self.tell("default_border none")
        return sway

    def tell(self, command):
        self.run_program("swaymsg", command, status=0)

    def test_lays_the_page_out_anew_when_the_screen_is_turned(self):
        self.start_display()
        window = self.open_window("--page", "LSDateViewSettings")
        self.expect_page(window, "--page", "LSDateViewSettings")
        for turn, size in (("90", (HEIGHT, WIDTH)), ("normal", (WIDTH, HEIGHT))):
            self.tell(f"output * transform {turn}")
            self.expect_page(window, "--page", "LSDateViewSettings", size=size)


if __name__ == "__main__":
    unittest.main()

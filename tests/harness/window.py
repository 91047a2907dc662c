"""What tests of the window are made of: a display of their own, and the window, opened, tapped and closed.

Needs Xvfb and xdotool. A test that fails leaves a picture of its display in $LUMORA_TEST_PICTURES, if that is set.
"""
import contextlib
import ctypes
import os
import struct
import subprocess
import sys
import unittest
from pathlib import Path

from harness.display import BAR, HEIGHT, WIDTH, Display
from harness.programs import Programs, program
from harness.waiting import LONG_ENOUGH, eventually


class Windows(Programs):
    """A test of the programs that has a display."""

    scheme = ["--light"]  # the option for it; none to follow the desktop

    @classmethod
    def setUpClass(cls):
        cls.display = Display()
        cls.addClassCleanup(cls.display.stop)

    def run(self, result=None):
        """Takes away the picture that an earlier failure of the test has left."""
        if picture := self.picture_of_failure():
            picture.unlink(missing_ok=True)
        return super().run(result)

    def setUp(self):
        super().setUp()
        self.environment["DISPLAY"] = self.display.name
        self.kept_size = Path(self.environment["XDG_STATE_HOME"], "lumora/window-size")
        self.kept_size.parent.mkdir(parents=True)
        self.kept_size.write_text(f"{WIDTH}x{HEIGHT}\n", encoding="ascii")  # or it would depend on the screen

    def _callSetUp(self):
        with self.picture_if_it_fails():
            self.setUp()  # not by way of the base class, behind whose frame a failure would not tell where it was

    def _callTestMethod(self, method):
        with self.picture_if_it_fails():
            method()

    @contextlib.contextmanager
    def picture_if_it_fails(self):
        """Unlike a clean-up, this is still there when the window is, and knows of the failure."""
        try:
            yield
        except unittest.SkipTest:
            raise
        except Exception:
            if path := self.picture_of_failure():
                path.parent.mkdir(parents=True, exist_ok=True)
                self.display.save_picture(path)
                print("A picture of the failure:", path, file=sys.stderr)
            raise

    def picture_of_failure(self):
        """Where it is to be, if anywhere."""
        folder = os.environ.get("LUMORA_TEST_PICTURES")
        return folder and Path(folder, self.id().removeprefix("__main__.") + ".png")

    def open_window(self, *options):
        window = self.start(program("lumora-settings"), "--root", self.root, "--verbose", *self.scheme,
                            *options, stderr=subprocess.PIPE)

        def appeared():
            self.assertIsNone(window.poll(), window.lines.text)
            return self.windows(window)
        window.id = eventually(appeared, "the window")[0]
        self.xdotool("windowmove", window.id, 0, 0)
        self.xdotool("windowfocus", "--sync", window.id)
        return window

    def open_root_page(self, *options):
        """Logs its settings when it appears, and is drawn soon after. A key that comes before that goes nowhere."""
        window = self.open_window(*options)
        eventually(lambda: "kTweakEnabled" in window.lines.text, "the root page")
        eventually(self.shows_a_row, "its first row")
        return window

    def shows_a_row(self):
        """Whether something is written below the bar: the rows stand lower under larger texts."""
        with self.display.screen() as (_, _, line):
            return any(len(set(struct.iter_unpack("4s", line(y)[:4 * WIDTH]))) > 2
                       for y in range(BAR + 20, HEIGHT // 3, 8))

    def windows(self, process):
        return self.xdotool("search", "--pid", str(process.pid), "--onlyvisible").split()

    def xdotool(self, *arguments):
        return self.run_program("xdotool", *map(str, arguments)).stdout

    def click_at(self, x, y, button=1):
        """On the screen, where each window stands in the upper left corner."""
        self.xdotool("mousemove", x, y, "click", button)

    def keys(self, window, *keys):
        self.xdotool("key", "--window", window.id, *keys)

    def hold(self, key):
        """For so long that the display repeats it some times."""
        self.xdotool("keydown", key, "sleep", 1.2, "keyup", key)

    def type(self, window, text):
        self.xdotool("type", "--window", window.id, "--delay", 4, text)

    def expect_to_close(self, window):
        self.close(window)
        self.assertEqual(window.wait(LONG_ENOUGH), 0)

    def close(self, window):
        """Asks the window to close, as a window manager does."""
        xlib = ctypes.CDLL("libX11.so.6")
        xlib.XOpenDisplay.restype = ctypes.c_void_p
        display = ctypes.c_void_p(xlib.XOpenDisplay(self.display.name.encode()))

        class ClientMessage(ctypes.Structure):
            _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                        ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                        ("format", ctypes.c_int), ("data", ctypes.c_long * 5), ("pad", ctypes.c_long * 12)]
        atom = lambda name: xlib.XInternAtom(display, name, 0)
        xlib.XInternAtom.restype = ctypes.c_ulong
        message = ClientMessage(type=33, window=int(window.id), message_type=atom(b"WM_PROTOCOLS"), format=32)
        message.data[0] = atom(b"WM_DELETE_WINDOW")
        xlib.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long, ctypes.c_void_p]
        xlib.XSendEvent(display, int(window.id), 0, 0, ctypes.byref(message))
        xlib.XCloseDisplay(display)

"""What tests of the real programs are made of: a display of their own, a folder, programs that end with the test.

A program that imports this is called with the folder of programs and the device root as its last arguments. Needs Xvfb
and xdotool, and nothing of Python beyond its standard library. A test that fails leaves a picture of its display in
$LUMORA_TEST_PICTURES, if that is set.
"""
import contextlib
import ctypes
import mmap
import os
import plistlib
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import zlib

BINARIES, ROOT = map(os.path.abspath, sys.argv[-2:]) if len(sys.argv) > 2 else (None, None)
# Seconds, for anything that works at all; $LUMORA_TEST_PATIENCE times that where programs are slow.
LONG_ENOUGH = 60 * int(os.environ.get("LUMORA_TEST_PATIENCE", "1"))
WIDTH, HEIGHT = 390, 844
# What a look ends with at something that has just gone from the screen; spoken.py knows what that is.
GONE = []


def eventually(condition, what):
    """Looks again and again at what tells nobody when it changes. A condition is to look for things anew each time."""
    end = time.monotonic() + LONG_ENOUGH
    tick = threading.Event()
    while True:
        try:
            if result := condition():
                return result
        except tuple(GONE):
            pass
        if time.monotonic() > end:
            raise AssertionError(f"never came: {what}")
        tick.wait(0.02)


def program(name):
    return os.path.join(BINARIES, name)


class Lines:
    """What a program writes, readable while it runs."""

    def __init__(self, stream):
        self.text = ""
        self._thread = threading.Thread(target=self._read, args=(stream,), daemon=True)
        self._thread.start()

    def _read(self, stream):
        for line in stream:
            self.text += line
        stream.close()


class Display:
    """An X server without a window manager, for all tests."""

    def __init__(self, *options):
        read, write = os.pipe()
        self.folder = tempfile.mkdtemp(prefix="display-")
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24", "-nolisten", "tcp", "-noreset",
             "-fbdir", self.folder, *options], pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as number:
            self.name = ":" + number.readline().strip()

    @contextlib.contextmanager
    def screen(self):
        """The width and height of what is on the screen, and what gives a line of it: blue, green, red and nothing for
        each pixel. The server keeps them in a file, in the format of xwd."""
        with open(os.path.join(self.folder, "Xvfb_screen0"), "rb") as file, \
                mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ) as screen:
            header = struct.unpack(">25I", screen[:100])
            start, width, height, stride = header[0] + 12 * header[19], header[4], header[5], header[12]
            yield width, height, lambda y: screen[start + y * stride:start + y * stride + 4 * width]

    def color_at(self, x, y):
        with self.screen() as (_, _, line):
            return "#" + line(y)[4 * x:4 * x + 3][::-1].hex()

    def save_picture(self, path):
        """What is on the screen now, as a PNG file."""
        with self.screen() as (width, height, line):
            lines = []
            for y in range(height):
                colours = bytearray(3 * width)
                colours[0::3], colours[1::3], colours[2::3] = line(y)[2::4], line(y)[1::4], line(y)[0::4]
                lines.append(b"\0" + bytes(colours))
        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n")
            for kind, content in ((b"IHDR", struct.pack(">2I5B", width, height, 8, 2, 0, 0, 0)),
                                  (b"IDAT", zlib.compress(b"".join(lines))), (b"IEND", b"")):
                file.write(struct.pack(">I", len(content)) + kind + content +
                           struct.pack(">I", zlib.crc32(kind + content)))

    def stop(self):
        self.process.terminate()
        self.process.wait()
        shutil.rmtree(self.folder, True)


class Limited(unittest.TestCase):
    """A test that fails when it takes too long; where it was, and what it waited for there, is in its traceback."""

    limit = 4 * LONG_ENOUGH

    def run(self, result=None):
        def give_up(*_):
            raise AssertionError(f"waited in vain, after {self.limit} s")
        signal.signal(signal.SIGALRM, give_up)
        signal.setitimer(signal.ITIMER_REAL, self.limit, self.limit)  # again, for what is done at the end
        try:
            return super().run(result)
        finally:
            signal.setitimer(signal.ITIMER_REAL, 0)


class Programs(Limited):
    """A test of the programs."""

    root = ROOT
    scheme = ["--light"]  # the option for it; none to follow the desktop

    @classmethod
    def setUpClass(cls):
        cls.display = Display()

    @classmethod
    def tearDownClass(cls):
        cls.display.stop()

    def run(self, result=None):
        """Takes away the picture that an earlier failure of the test has left."""
        if picture := self.picture_of_failure():
            with contextlib.suppress(FileNotFoundError):
                os.remove(picture)
        return super().run(result)

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="programs-")
        self.addCleanup(shutil.rmtree, self.folder, True)
        self.settings_file = os.path.join(self.folder, "settings.plist")
        self.environment = {
            **{name: value for name, value in os.environ.items()
               if not name.startswith(("QT_", "QSG_", "LUMORA_", "WAYLAND", "DBUS_"))},
            "DISPLAY": self.display.name, "LUMORA_PORTS": os.path.join(self.folder, "ports"),
            "XDG_RUNTIME_DIR": self.folder, "XDG_CACHE_HOME": self.folder + "/cache",
        }
        os.mkdir(self.environment["LUMORA_PORTS"], 0o700)

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
                os.makedirs(os.path.dirname(path), exist_ok=True)
                self.display.save_picture(path)
                print("A picture of the failure:", path, file=sys.stderr)
            raise

    def picture_of_failure(self):
        """Where it is to be, if anywhere."""
        folder = os.environ.get("LUMORA_TEST_PICTURES")
        return folder and os.path.join(folder, self.id().removeprefix("__main__.") + ".png")

    def start(self, *command, **options):
        process = subprocess.Popen(command, env=self.environment, text=True, **options)

        def end():
            process.terminate()  # one that is killed takes along what it has counted, where that is done
            with contextlib.suppress(subprocess.TimeoutExpired):
                process.wait(10)
            process.kill()
            process.wait()
            if process.stdout:
                process.stdout.close()
        self.addCleanup(end)
        return process

    def start_tweak(self, *options):
        tweak = self.start(program("lumora-tweak"), "--settings", self.settings_file, *options, stdout=subprocess.PIPE)
        self.assertIn("ready", tweak.stdout.readline())
        return tweak

    def settings(self, *options, **environment):
        return subprocess.run([program("lumora-settings"), "--root", self.root, *options], text=True, capture_output=True,
                              env={**self.environment, **environment}, timeout=LONG_ENOUGH, check=False)

    def open_window(self, *options):
        window = self.start(program("lumora-settings"), "--root", self.root, *self.scheme, *options, stderr=subprocess.PIPE)
        window.lines = Lines(window.stderr)
        def appeared():
            self.assertIsNone(window.poll(), window.lines.text)
            return self.windows(window)
        window.id = eventually(appeared, "the window")[0]
        self.xdotool("windowmove", window.id, "0", "0")
        self.xdotool("windowfocus", window.id)
        return window

    def open_root_page(self, *options):
        """The root page logs its settings when it appears, and is drawn soon after."""
        window = self.open_window(*options)
        eventually(lambda: "kTweakEnabled" in window.lines.text, "the root page")
        return window

    def windows(self, process):
        return self.xdotool("search", "--pid", str(process.pid), "--onlyvisible").split()

    def xdotool(self, *arguments):
        return subprocess.run(["xdotool", *arguments], text=True, capture_output=True, env=self.environment,
                              check=False).stdout

    def tap(self, window, x, y):
        self.xdotool("mousemove", "--window", window.id, str(x), str(y), "click", "1")

    def stored(self, key):
        """What stands on the disk, read by somebody else's reader."""
        try:
            with open(self.settings_file, "rb") as file:
                return plistlib.load(file).get(key)
        except FileNotFoundError:
            return None

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

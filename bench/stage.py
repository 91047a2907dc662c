"""What benchmarks of windows are made of: a virtual display, looked at and tapped from outside, and programs on it.

    with Stage(build) as stage, stage.settings("--page", "AppsController"):
        began = stage.press(30, 100)
        latency = stage.when(lambda: stage.pixel(30, 100) == "#34c759") - began

The pixels of the display lie in a file, so that looking costs it nothing, and nothing is asked of the programs: all are
measured in the same way. Moments are seconds of time.monotonic().
"""
import contextlib
import ctypes
import os
import shutil
import subprocess
import tempfile
import time

from harness.display import Display
from harness.waiting import LONG_ENOUGH

LOOK = 0.0003  # between two looks: the processor is the program's


class Stage:
    """A display, a folder, a session bus, and the stand-in tweak, which runs already, as it does on a device."""

    def __init__(self, build):
        self.build = os.path.abspath(build)
        self._on_exit = contextlib.ExitStack()

    def __enter__(self):
        with contextlib.ExitStack() as so_far:
            self.folder = tempfile.mkdtemp(prefix="stage-")
            so_far.callback(shutil.rmtree, self.folder, True)
            display = Display("-nocursor")  # it would be drawn into what is looked at
            so_far.callback(display.stop)
            self.width, self.height, self._line = so_far.enter_context(display.screen())
            self._xlib, self._xtest = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXtst.so.6")
            self._xlib.XOpenDisplay.restype = ctypes.c_void_p
            self._connection = ctypes.c_void_p(self._xlib.XOpenDisplay(display.name.encode()))
            so_far.callback(self._xlib.XCloseDisplay, self._connection)
            self.move(self.width - 1, self.height - 1)
            self._blank = self.area(0, 0, self.width, self.height)
            self.environment = {
                **{key: value for key, value in os.environ.items()
                   if not key.startswith(("QT_", "QSG_", "LUMORA_", "WAYLAND", "DBUS_"))},
                "DISPLAY": display.name, "LUMORA_PORTS": self.folder + "/ports", "HOME": self.folder,
                "XDG_RUNTIME_DIR": self.folder}
            os.mkdir(self.folder + "/ports", 0o700)
            bus = so_far.enter_context(self.program(
                "dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address",
                "--address=unix:path=" + self.folder + "/bus", stdout=subprocess.PIPE))
            address = bus.stdout.readline().decode().strip()
            # Some programs do not start without a bus of the system's, whoever is on it.
            self.environment |= {"DBUS_SESSION_BUS_ADDRESS": address, "DBUS_SYSTEM_BUS_ADDRESS": address}
            self.tweak = so_far.enter_context(self.program(
                self.build + "/bin/lumora-tweak", "--settings", self.folder + "/settings.plist",
                stdout=subprocess.PIPE))
            if b"ready" not in self.tweak.stdout.readline():
                raise RuntimeError("lumora-tweak did not start")
            self._on_exit = so_far.pop_all()
        return self

    def __exit__(self, *_):
        self._on_exit.close()

    @contextlib.contextmanager
    def program(self, *command, **options):
        with subprocess.Popen(command, env=self.environment, stderr=subprocess.DEVNULL, **options) as process:
            try:
                yield process
            finally:
                process.kill()
        self.when(lambda: self.area(0, 0, self.width, self.height) == self._blank)

    def settings_command(self, *options, size="390x844"):
        return [self.build + "/bin/lumora-settings", "--root", self.build + "/root", "--light", "--size", size, *options]

    def settings(self, *options, size="390x844"):
        return self.program(*self.settings_command(*options, size=size))

    def lockscreen_command(self, *options):
        return [self.build + "/bin/lumora-lockscreen", "--root", self.build + "/root", *options]

    def lockscreen(self, *options):
        return self.program(*self.lockscreen_command(*options))

    # -- eyes --

    def pixel(self, x, y):
        return "#" + self._line(y)[4 * x:4 * x + 3][::-1].hex()

    def area(self, x, y, width, height, step=1):
        """What is drawn there, to be compared; of every step-th line."""
        return b"".join(self._line(line)[4 * x:4 * (x + width)] for line in range(y, y + height, step))

    def when(self, condition):
        """The moment at which it is first seen to hold."""
        end = time.monotonic() + LONG_ENOUGH
        while not condition():
            if time.monotonic() > end:
                raise RuntimeError("never came to the screen")
            time.sleep(LOOK)
        return time.monotonic()

    def settle(self, *area, still=0.25):
        """Waits until nothing has changed there for so long; the moment since which that is so, to 10 ms."""
        seen, since = self.area(*area), time.monotonic()
        while time.monotonic() < since + still:
            time.sleep(0.01)
            if seen != (seen := self.area(*area)):
                since = time.monotonic()
        return since

    # -- hands: all give the moment at which the display server was told --

    def move(self, x, y):
        return self._fake("Motion", 0, x, y)

    def press(self, x, y):
        self.move(x, y)
        return self._fake("Button", 1, 1)

    def release(self):
        return self._fake("Button", 1, 0)

    def _fake(self, kind, *arguments):
        moment = time.monotonic()
        getattr(self._xtest, f"XTestFake{kind}Event")(self._connection, *arguments, 0)
        self._xlib.XFlush(self._connection)
        return moment

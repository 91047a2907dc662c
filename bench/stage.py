"""What benchmarks of windows are made of: a virtual display, looked at and tapped from outside, and programs on it.

    with Stage(build) as stage, stage.settings("--page", "AppsController"):
        began = stage.press(30, 100)
        latency = stage.when(lambda: stage.pixel(30, 100) == "#34c759") - began

The pixels of the display lie in a file, so that looking costs it nothing, and nothing is asked of the programs: all are
measured in the same way. Places and sizes are in points, moments are seconds of time.monotonic().
"""
import contextlib
import ctypes
import itertools
import os
import shutil
import subprocess
import tempfile
import time
from pathlib import Path

from harness.display import Display
from harness.waiting import LONG_ENOUGH, eventually

LOOK = 0.0003  # between two looks: the processor is the program's


def resident_megabytes(process):
    with open(f"/proc/{process.pid}/statm", encoding="ascii") as file:
        return int(file.read().split()[1]) * os.sysconf("SC_PAGESIZE") / 2**20


class WeakCore:
    """What a program runs in that has 2 ms of processor in every 10 ms, all its threads together."""

    numbers = itertools.count()

    def __init__(self):
        first = Path("/sys/fs/cgroup/cpu")  # of the first version of control groups
        self._group = (first if first.exists() else first.parent) / f"lumora-{os.getpid()}-{next(self.numbers)}"
        limits = {"cpu.cfs_period_us": "10000", "cpu.cfs_quota_us": "2000"} if first.exists() else \
            {"cpu.max": "2000 10000"}
        self._group.mkdir()
        for name, limit in limits.items():
            (self._group / name).write_text(limit, encoding="ascii")

    @classmethod
    def why_not(cls):
        """Why there can be none here; nothing if there can."""
        try:
            cls().remove()
        except OSError as error:
            return error
        return None

    def command(self, command):
        return ["sh", "-c", 'echo $$ >"$0"; exec "$@"', self._group / "cgroup.procs", *command]

    def remove(self):
        """Waits until the last program in it has ended."""
        eventually(lambda: not (self._group / "cgroup.procs").read_text(encoding="ascii"), "the end of all programs")
        self._group.rmdir()


class Stage:
    """A display with so many pixels to a point, a folder, a session bus, and the stand-in tweak, which runs already, as
    it does on a device. Every program has a weak core of its own, or all of the processor."""

    def __init__(self, build, scale=1, weak=False):
        self.build = os.path.abspath(build)
        self._scale, self._weak = scale, weak
        self._on_exit = contextlib.ExitStack()

    def __enter__(self):
        with contextlib.ExitStack() as so_far:
            self.folder = tempfile.mkdtemp(prefix="stage-")
            so_far.callback(shutil.rmtree, self.folder, True)
            # A cursor would be drawn into what is looked at.
            display = Display("-nocursor", "-screen", "0", f"{1280 * self._scale}x{1024 * self._scale}x24")
            so_far.callback(display.stop)
            width, height, self._line = so_far.enter_context(display.screen())
            self.width, self.height = width // self._scale, height // self._scale
            self._xlib, self._xtest = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXtst.so.6")
            self._xlib.XOpenDisplay.restype = ctypes.c_void_p
            self._connection = ctypes.c_void_p(self._xlib.XOpenDisplay(display.name.encode()))
            so_far.callback(self._xlib.XCloseDisplay, self._connection)
            self.move(self.width - 1, self.height - 1)
            self._blank = self.area(0, 0, self.width, self.height)
            self.environment = {
                **{key: value for key, value in os.environ.items()
                   if not key.startswith(("QT_", "QSG_", "LUMORA_", "WAYLAND", "DBUS_"))},
                "DISPLAY": display.name, "QT_SCALE_FACTOR": str(self._scale), "LUMORA_PORTS": self.folder + "/ports", "HOME": self.folder,
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
        with contextlib.ExitStack() as then:
            if self._weak:
                core = WeakCore()
                then.callback(core.remove)
                command = core.command(command)
            process = then.enter_context(subprocess.Popen(command, env=self.environment, stderr=subprocess.DEVNULL,
                                                          **options))
            then.callback(process.kill)
            yield process
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
        return "#" + self._line(y * self._scale)[4 * x * self._scale:][:3][::-1].hex()

    def area(self, x, y, width, height, step=1):
        """What is drawn there, to be compared: one line of pixels of every step-th line of points."""
        left, right = 4 * x * self._scale, 4 * (x + width) * self._scale
        return b"".join(self._line(line * self._scale)[left:right] for line in range(y, y + height, step))

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
        return self._fake("Motion", 0, x * self._scale, y * self._scale)

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

#!/usr/bin/env python3
"""The real programs together: lumora-settings on a display of its own, lumora-tweak, lumoractl.

    programs_test.py [-v] BINARIES DEVICE_ROOT

Needs Xvfb and xdotool, and nothing of Python beyond its standard library.
"""
import ctypes
import json
import os
import plistlib
import resource
import shutil
import struct
import subprocess
import sys
import tempfile
import threading
import time
import unittest

BINARIES, ROOT = map(os.path.abspath, sys.argv[-2:]) if len(sys.argv) > 2 else (None, None)
LONG_ENOUGH = 60  # seconds, for anything that works at all
WIDTH, HEIGHT = 390, 844


def eventually(condition, what):
    """Looks again and again at what tells nobody when it changes."""
    end = time.monotonic() + LONG_ENOUGH
    tick = threading.Event()
    while not (result := condition()):
        if time.monotonic() > end:
            raise AssertionError(f"never came: {what}")
        tick.wait(0.02)
    return result


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

    def __init__(self):
        read, write = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as number:
            self.name = ":" + number.readline().strip()

    def stop(self):
        self.process.terminate()
        self.process.wait()


class Programs(unittest.TestCase):
    """What tests of the programs are made of: a display, a folder, programs that end with the test."""

    @classmethod
    def setUpClass(cls):
        cls.display = Display()

    @classmethod
    def tearDownClass(cls):
        cls.display.stop()

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="programs-")
        self.addCleanup(shutil.rmtree, self.folder, True)
        self.settings_file = os.path.join(self.folder, "settings.plist")
        self.environment = {
            **{name: value for name, value in os.environ.items()
               if not name.startswith(("QT_", "QSG_", "LUMORA_", "WAYLAND", "DBUS_"))},
            "DISPLAY": self.display.name, "LUMORA_PORTS": os.path.join(self.folder, "ports"),
            "XDG_RUNTIME_DIR": self.folder,
        }
        os.mkdir(self.environment["LUMORA_PORTS"], 0o700)

    def start(self, *command, **options):
        process = subprocess.Popen(command, env=self.environment, text=True, **options)

        def end():
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
        return subprocess.run([program("lumora-settings"), "--root", ROOT, *options], text=True, capture_output=True,
                              env={**self.environment, **environment}, timeout=LONG_ENOUGH, check=False)

    def open_window(self, *options):
        window = self.start(program("lumora-settings"), "--root", ROOT, "--light", *options, stderr=subprocess.PIPE)
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


class ProgramsTest(Programs):
    # -- without a window --

    def test_prints_a_page_as_json(self):
        self.start_tweak("--omit", "kNotificationsHideOnTap")
        printed = self.settings("--rows", "LumoraPreferences", DISPLAY="")
        self.assertEqual(printed.returncode, 0, printed.stderr)
        page = json.loads(printed.stdout)
        self.assertEqual(page["page"], "LumoraPreferences")
        self.assertEqual([row["cell"] for row in page["rows"]], [0, 6, 1, 0, 2, 6, 0, 1, 1, 6, 0, 1, 0, 13, 13])
        rows = {row["identifier"]: row for row in page["rows"] if row["identifier"]}
        self.assertIs(rows["kTweakEnabled"]["value"], True)
        self.assertIs(type(rows["kSleepTime"]["value"]), int)
        self.assertEqual(rows["kSleepTime"]["values"], [5, 10, 15, 20, 30, 60, 3600])
        self.assertEqual(rows["kSleepTime"]["detail"], "PSListItemsController")
        self.assertNotIn("value", rows["kNotificationsHideOnTap"])
        self.assertTrue(page["rows"][13]["icon"])

    def test_says_plainly_what_went_wrong(self):
        self.start_tweak()
        for options, why in [(["--rows", "NoSuchPage"], "no page class NoSuchPage"),
                             (["--rows", "LumoraPreferences", "--bundle", "/nowhere"], "no settings bundle at /nowhere"),
                             (["--grab", self.folder + "/none/a.png"], "cannot write the picture"),
                             (["--grab", self.folder + "/a.png", "--page", "NoSuchPage"], "no page class NoSuchPage")]:
            failed = self.settings(*options)
            self.assertEqual(failed.returncode, 1, options)
            self.assertIn(why, failed.stderr)

    def test_says_that_the_tweak_did_not_answer_in_time(self):
        for options in (["--rows", "LumoraPreferences"], ["--grab", self.folder + "/a.png"], ["--tour", self.folder]):
            failed = self.settings("--timeout", "0.3", *options)
            self.assertEqual(failed.returncode, 1, options)
            self.assertIn("timed out waiting for the tweak", failed.stderr)
            self.assertEqual(failed.stdout, "")

    def test_waits_for_an_answer_without_turning(self):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        self.assertEqual(self.settings("--timeout", "4", "--grab", self.folder + "/a.png").returncode, 1)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        self.assertLess(after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime, 1)

    def test_tells_wrong_use_from_failure(self):
        for options in (["--nonsense"], ["--size", "0x0"], ["--size", "wide"], ["--light", "--dark"],
                        ["--grab", "a.png", "--rows", "X"], ["--timeout", "0"], ["stray"]):
            self.assertEqual(self.settings(*options).returncode, 2, options)
        self.assertEqual(self.settings("--help").returncode, 0)
        self.assertRegex(self.settings("--version").stdout, r"^lumora-settings \d+\.\d+\.\d+")

    # -- pictures --

    def assert_is_picture(self, file, width, height):
        with open(file, "rb") as picture:
            head = picture.read(24)
        self.assertEqual(head[:8], b"\x89PNG\r\n\x1a\n")
        self.assertEqual(struct.unpack(">II", head[16:24]), (width, height))

    def test_saves_the_same_picture_of_a_page_each_time_on_any_platform(self):
        self.start_tweak()
        pictures = []
        for number, environment in enumerate([{}, {}, {"DISPLAY": ""}]):
            file = f"{self.folder}/{number}.png"
            saved = self.settings("--grab", file, "--dark", "--size", "500x600", **environment)
            self.assertEqual(saved.returncode, 0, saved.stderr)
            self.assert_is_picture(file, 500, 600)
            with open(file, "rb") as picture:
                pictures.append(picture.read())
        self.assertEqual(pictures[0], pictures[1])
        self.assertEqual(pictures[0], pictures[2])

    def test_takes_a_tour_of_every_page(self):
        self.start_tweak()
        toured = self.settings("--tour", self.folder + "/tour")
        self.assertEqual(toured.returncode, 0, toured.stderr)
        names = set(os.listdir(self.folder + "/tour"))
        pages = ("AUAppsListController", "AppsController", "AppsListController", "AutoUnlockController",
                 "LSDateViewSettings", "LSPasscodeSettings", "LSSettingsController", "LumoraPreferences", "NotesPage",
                 "PSListItemsController-AppsPerRow", "PSListItemsController-AppsPerRowInLandscape",
                 "PSListItemsController-SleepAfter", "PSListItemsController-SortBy", "PSListItemsController-Units",
                 "ChangeLogController", "ColorPickerController", "Composer", "FontViewController", "PluginsListController",
                 "PluginsListViewController", "Waiting", "Waiting-over", "WeatherPage")
        self.assertEqual(names, {f"{page}-{width}-{scheme}.png" for page in pages for width in (320, 390, 1024)
                                 for scheme in ("light", "dark")})
        for name in names:
            self.assert_is_picture(f"{self.folder}/tour/{name}", int(name.split("-")[-2]), 844)
        self.assertIsNone(self.stored("kTweakEnabled"), "a tour changes nothing")

    def test_takes_the_tour_instead_of_opening_a_window_where_there_is_no_display(self):
        self.start_tweak()
        self.environment["DISPLAY"] = ""
        toured = subprocess.run([program("lumora-settings"), "--root", ROOT], text=True, capture_output=True,
                                env=self.environment, cwd=self.folder, timeout=LONG_ENOUGH, check=False)
        self.assertEqual(toured.returncode, 0, toured.stderr)
        self.assertIn("there is no display", toured.stderr)
        self.assertIn("LumoraPreferences-390-light.png", os.listdir(self.folder + "/lumora-tour"))

    # -- the window --

    def test_carries_a_tapped_switch_to_the_tweaks_disk(self):
        self.start_tweak()
        window = self.open_root_page()

        def tapped():
            self.tap(window, WIDTH - 40, 120)
            return eventually(lambda: self.stored("kTweakEnabled") is not None or None, "the change")
        tapped()
        self.assertIs(self.stored("kTweakEnabled"), False)
        value = subprocess.run([program("lumoractl"), "get", "kTweakEnabled"], text=True, capture_output=True,
                               env=self.environment, check=True).stdout
        self.assertEqual(value.strip(), "false")

    def test_carries_a_switch_turned_by_keyboard_to_the_tweaks_disk(self):
        self.start_tweak()
        window = self.open_root_page()
        self.xdotool("key", "--window", window.id, "Tab")
        self.xdotool("key", "--window", window.id, "space")
        eventually(lambda: self.stored("kTweakEnabled") is False, "the change")

    def test_chooses_an_option_and_goes_back_by_keyboard(self):
        self.start_tweak()
        window = self.open_root_page()
        self.tap(window, 100, 260)  # "Sleep After"
        self.tap_until_stored(window, 200, 360, "kSleepTime", 3600)  # "Never"
        self.assertIs(type(self.stored("kSleepTime")), int)
        before = window.lines.text.count("kTweakEnabled")
        self.xdotool("key", "--window", window.id, "Escape")
        eventually(lambda: window.lines.text.count("kTweakEnabled") > before, "the root page again")

    def tap_until_stored(self, window, x, y, key, value):
        """The page that is tapped slides in first."""
        def tap_and_look():
            self.tap(window, x, y)
            return self.stored(key) == value
        eventually(tap_and_look, f"{key} = {value}")

    def test_ends_at_once_when_it_is_closed_while_a_page_blocks(self):
        window = self.open_window()
        self.close(window)
        eventually(lambda: not self.windows(window), "the window to go")
        self.assertEqual(window.wait(LONG_ENOUGH), 0)

    def test_lets_a_change_reach_the_tweak_when_it_is_closed_at_once(self):
        self.start_tweak()
        window = self.open_root_page()
        self.xdotool("key", "--window", window.id, "Tab", "space")
        self.close(window)
        self.assertEqual(window.wait(LONG_ENOUGH), 0)
        self.assertIs(self.stored("kTweakEnabled"), False)

    def test_restarts_in_place_once_no_answer_can_come(self):
        window = self.open_window()

        def restarted():
            # The button takes the focus when it is offered.
            self.xdotool("key", "--window", window.id, "Return")
            return self.windows(window) not in ([], [window.id])
        eventually(restarted, "the restart")
        self.assertIsNone(window.poll(), "the process is the same")
        self.start_tweak()

        def appeared():
            for shown in self.windows(window):
                self.xdotool("windowfocus", shown)
                self.xdotool("key", "--window", shown, "Return")
            return "kTweakEnabled" in window.lines.text
        eventually(appeared, "the root page after a restart")
        self.assertIsNone(window.poll())


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[1:-2]])

#!/usr/bin/python3
"""The lock screen as a person has it: the real program, in a real window, with real tweaks.

    PYTHONPATH=tests dbus-run-session -- tests/lockscreen/window_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import contextlib
import signal
import subprocess
import time
import unittest

import pyatspi

from harness.faulty import FaultyTweak, silent
from harness.programs import Lines, program
from harness.spoken import BUTTON, Spoken
from harness.tweak import Tweak
from harness.waiting import LONG_ENOUGH, eventually

LABEL = pyatspi.ROLE_LABEL
PREFIX = "org.lumora.samples."
APPS = [PREFIX + name for name in ("Books", "Messages", "Weather")]
PASSCODE = "7391"  # no number of a window happens to have its digits
WIDTH, HEIGHT = 430, 924  # of a window that has just opened
HEAD = 44


class LockScreen(Spoken):
    limit = 2 * LONG_ENOUGH

    def start_tweak(self, *words, **options):
        self.tweak = super().start_tweak(*words, **options)
        return self.tweak

    def open(self, *options, width=WIDTH, height=HEIGHT, ready=True):
        window = self.start(program("lumora-lockscreen"), "--root", self.root, "--log", "--time", "2026-11-20T18:36",
                            "--passcode", PASSCODE, *options, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        window.log = Lines(window.stdout)

        def appeared():
            self.assertIsNone(window.poll(), window.lines.text)
            return self.windows(window)
        window.id = eventually(appeared, "the window")[0]
        self.xdotool("windowmove", window.id, 0, 0, "windowsize", window.id, width, height)
        self.xdotool("windowfocus", window.id)
        if ready:
            eventually(lambda: {"slide to unlock", "Wake"} & set(self.names(window)), "the face")
        return window

    def expect_label(self, window, text):
        """Wakes the face, which may fall asleep before a slow machine has looked at it."""
        def look():
            if wake := self.spoken(window, BUTTON).get("Wake"):
                self.act(wake, "Press")
            return text in self.names(window, LABEL)
        eventually(look, text)

    def enable(self):
        self.set("kSleepTime", 3600)
        self.set("kAppsEnabled", APPS)
        self.set("kAppViewsEnabled", ["org.lumora.plugins.weather", "org.lumora.plugins.clock"])

    def expect_log(self, window, *lines):
        """These last, one after the other."""
        wanted = "\n".join(lines) + "\n"
        try:
            eventually(lambda: window.log.text.endswith(wanted), wanted)
        except AssertionError:
            self.assertEqual(window.log.text, wanted)

    def expect_line(self, window, line):
        eventually(lambda: line + "\n" in window.log.text, line)

    def drag(self, x, y, by_x, by_y=0):
        self.xdotool("mousemove", x, y, "mousedown", 1)
        for part in range(1, 5):
            self.xdotool("mousemove", x + by_x * part // 4, y + by_y * part // 4)
        self.xdotool("mouseup", 1)

    def middle(self, window, name):
        place = eventually(lambda: self.still(window, name), name + " to rest")
        return place.x + place.width // 2, place.y + place.height // 2

    def still(self, window, name):
        """Where it is, once it no longer moves."""
        looks = [self.extents(self.named(window, BUTTON, name)) for _ in range(2)]
        same = (looks[0].x, looks[0].y) == (looks[1].x, looks[1].y) and looks[0].x >= 0
        return looks[0] if same else None

    def picture(self):
        with self.display.screen() as (_, _, line):
            return [line(y)[:4 * WIDTH] for y in range(HEIGHT)]

    def told(self, window):
        """All that is shown, in the order in which it is read: roles and names."""
        return [(item.getRole(), item.name) for application in self.applications(window)
                for item in self.find(application, lambda it: self.has_state(it, pyatspi.STATE_SHOWING))]

    def names(self, window, role=BUTTON):
        return [name for found, name in self.told(window) if found == role]


class FollowingTest(LockScreen):
    def test_a_change_is_seen_and_turned_to(self):
        self.enable()
        window = self.open()
        before = self.picture()
        self.set("kAppIconSize", 50)
        self.named(window, BUTTON, "Books")
        self.middle(window, "Books")
        small = self.picture()
        self.assertNotEqual(small, before)
        self.set("kAppIconSize", 90)
        eventually(lambda: self.picture() != small, "the icons to grow")
        self.assertEqual(window.log.text, "", "nobody did anything")

    def test_a_face_that_was_touched_is_left_alone(self):
        self.enable()
        window = self.open()
        self.click_at(200, 400)
        self.expect_line(window, "tap")
        self.set("kAppIconSize", 50)
        self.set("kLSDateSubtitle", "seen")
        eventually(lambda: any("seen" in name for name in self.names(window, LABEL)), "the change")
        self.assertNotIn("Books", self.names(window))

    def test_without_a_tweak_it_says_so_and_comes_back_with_it(self):
        self.set("kLSDateSubtitle", "mine")
        window = self.open()
        self.expect_label(window, "18:36, mine")
        self.tweak.kill()
        self.tweak.wait()
        away = "Lumora is not running. This is the screen without it."
        self.expect_label(window, away)
        self.expect_label(window, "18:36, Friday · 20 November")
        self.start_tweak()
        self.expect_label(window, "18:36, mine")
        eventually(lambda: away not in self.names(window, LABEL), "the line to go")

    def test_a_tweak_that_has_no_followers_is_asked_again_and_again(self):
        self.end(self.tweak)
        with Tweak(self.ports, {"kTweakEnabled": True, "kSleepTime": 3600, "kLSDateSubtitle": "first"}) as strange:
            window = self.open()
            eventually(lambda: "18:36, first" in self.names(window, LABEL), "what it has")
            strange.settings["kLSDateSubtitle"] = "second"
            eventually(lambda: "18:36, second" in self.names(window, LABEL), "what it comes to have")
            self.assertEqual(strange.changes, [])


class EndingTest(LockScreen):
    def endings(self):
        yield "closed", self.close
        yield "SIGTERM", lambda window: window.send_signal(signal.SIGTERM)
        for key in ("ctrl+q", "ctrl+w"):
            # To no window by name: where that went before the key was let go, the key would stay down for good.
            yield key, lambda window, key=key: self.xdotool("key", key)

    def test_it_ends_however_it_is_told_to(self):
        for name, end in self.endings():
            with self.subTest(name):
                window = self.open()
                end(window)
                self.assertEqual(window.wait(LONG_ENOUGH), 0)
                self.assertEqual(window.lines.whole(), "")

    def test_it_ends_while_the_tweak_is_silent(self):
        self.end(self.tweak)
        with FaultyTweak(self.ports, silent):
            for name, end in list(self.endings())[:2]:
                with self.subTest(name):
                    window = self.open()
                    started = time.monotonic()
                    end(window)
                    self.assertEqual(window.wait(LONG_ENOUGH), 0)
                    self.assertLess(time.monotonic() - started, LONG_ENOUGH / 4)


class HandsTest(LockScreen):
    def test_the_log_tells_what_the_mouse_does(self):
        self.enable()
        window = self.open()
        x, y = self.middle(window, "Ines, The ridge is glowing, come outside!, now")
        self.drag(x - 100, y, 200)
        self.expect_line(window, "-> asks for the passcode")
        self.assertRegex(window.log.text, r"^swipe notices\.items\[0\] 0\.\d+\n-> asks for the passcode\n$")
        for digit in PASSCODE:
            self.click_at(*self.middle(window, digit))
        self.expect_log(window, *4 * ["tap keys[•]"], "-> unlocked", "-> opens org.lumora.samples.Messages")
        self.click_at(*self.middle(window, "Home"))
        self.expect_log(window, "home", "-> home screen")
        self.keys(window, "s", "Return")
        self.expect_log(window, "key S", "-> sleeps", "key Enter", "-> wakes")
        self.drag(300, 400, -200)
        self.expect_log(window, "swipe left", "-> stage A")
        x, y = self.middle(window, "Weather")
        self.xdotool("mousemove", x, y, "mousedown", 1)
        self.expect_log(window, "hold icons[2]", "-> shows org.lumora.plugins.weather")
        self.xdotool("mouseup", 1)
        self.drag(200, 600, 0, 150)
        self.expect_log(window, "swipe down", "-> stage A")
        self.click_at(*self.middle(window, "Books"))
        self.expect_log(window, "tap icons[0]", "-> asks for the passcode")
        self.click_at(*self.middle(window, "Cancel"))
        self.expect_log(window, "tap passcode.cancel", "-> back")
        x, y = self.middle(window, "slide to unlock")
        self.drag(x - 60, y, 130)
        self.expect_log(window, "slide", "-> asks for the passcode")
        self.assertNotRegex(window.log.text, f"[{PASSCODE}]]|key [0-9]")

    def test_a_drag_ends_outside_of_the_window_and_a_wheel_does_nothing(self):
        self.enable()
        window = self.open()
        self.click_at(200, 400, 4)
        self.click_at(200, 400, 5)
        self.drag(300, 400, 800, 100)
        self.drag(300, 400, -290)
        self.expect_log(window, "swipe right", "swipe left", "-> stage A")

    def test_gestures_of_a_file_are_played(self):
        self.enable()
        play = self.write("play", "swipe left\nhold icons[2]\nswipe left\n")
        window = self.open("--play", play)
        self.expect_log(window, "swipe left", "-> stage A", "hold icons[2]", "-> shows org.lumora.plugins.weather",
                        "swipe left", "-> shows org.lumora.plugins.clock")
        self.named(window, BUTTON, "Open Clock")

    def test_the_menu_by_mouse_and_by_keys(self):
        self.enable()
        window = self.open()
        self.click_at(*self.middle_of(window, "Menu of the preview"))
        follow = self.named(window, pyatspi.ROLE_MENU_ITEM, "Follow Changes")
        self.assertTrue(self.has_state(follow, pyatspi.STATE_CHECKED))
        self.click(follow)
        eventually(lambda: not self.spoken(window, pyatspi.ROLE_MENU_ITEM), "the menu to close")
        self.keys(window, "Tab", "Return", "Down", "Return")
        eventually(lambda: self.shape(window) > 1, "the phone to lie")
        self.keys(window, "Tab", "Return")
        follow = self.named(window, pyatspi.ROLE_MENU_ITEM, "Follow Changes")
        self.assertFalse(self.has_state(follow, pyatspi.STATE_CHECKED))
        self.keys(window, "Escape")
        eventually(lambda: not self.spoken(window, pyatspi.ROLE_MENU_ITEM), "the menu to close")
        self.assertEqual(window.log.text, "")
        self.keys(window, "Tab", "Return", "Up", "Return")
        self.expect_log(window, "key S", "-> sleeps")
        self.keys(window, "Return")
        self.expect_log(window, "key Enter", "-> wakes")

    def middle_of(self, window, name):
        place = self.extents(self.named(window, BUTTON, name))
        return place.x + place.width // 2, place.y + place.height // 2

    def screen_of(self, window):
        panes = [item for application in self.applications(window) for item in self.find(
            application, lambda it: it.name == "Lock screen" and self.has_state(it, pyatspi.STATE_SHOWING))]
        return self.extents(panes[0]) if panes else None

    def shape(self, window):
        place = self.screen_of(window)
        return place.width / place.height if place else 1

    def test_the_phone_keeps_its_shape_and_its_corners_in_every_window(self):
        window = self.open()
        self.assertRegex(self.xdotool("getwindowname", window.id), "Preview")
        for width, height in ((200, 200), (300, 900), (WIDTH, HEIGHT), (1280, 1000), (1920, 1080)):
            with self.subTest(f"{width}x{height}"):
                self.xdotool("windowsize", window.id, width, height)

                def fits():
                    place = self.screen_of(window)
                    if not place:
                        return None
                    room = min(width - 16, (height - HEAD - 12) * 414 / 868)
                    return abs(place.width - room * 390 / 414) < 3 and place
                place = eventually(fits, "the phone to fit")
                self.assertAlmostEqual(place.width / place.height, 390 / 844, delta=0.01)
                if height <= 1000:
                    corners = [(x, y) for x in (place.x, place.x + place.width - 1)
                               for y in (place.y, place.y + place.height - 1)]
                    eventually(lambda: all(self.display.color_at(*one) == "#15161c" for one in corners), "the rim")


class ToldTest(LockScreen):
    def go(self, window, *names):
        for name in names:
            self.act(self.named(window, BUTTON, name), "Press")

    def test_each_surface_is_told_in_the_order_of_reading_and_nothing_else(self):
        self.enable()
        window = self.open()
        top = [(LABEL, "Nevo, locked"), (LABEL, "Battery 82 %"), (LABEL, "18:36, Friday · 20 November")]
        edges = ["Camera", "Pull down from the top", "Pull up from below"]

        def tells(*buttons, around=top, last=()):
            wanted = [*around, *((BUTTON, name) for name in buttons), *last]
            parts = (LABEL, BUTTON)
            look = lambda: [one for one in self.told(window) if one[0] in parts and "review" not in one[1]]
            self.expect_soon(look, wanted)
        tells("Ines, The ridge is glowing, come outside!, now", "Evening walk, 19:00 – 20:30 · North shore, 18:30",
              "Boathouse, Your key is ready at the front desk, 17:52", "slide to unlock", "Next", *edges)
        self.go(window, "Next")
        tells("Books", "Messages, 3 new", "Weather", "Hold Weather", "slide to unlock", "Next", "Previous", *edges)
        self.go(window, "Next")
        tells("Open Weather", "Close", "Next App View", "Previous App View", "slide to unlock", "Previous", *edges)
        self.go(window, "Close", "slide to unlock")
        tells(*"1234567890", "Emergency", "Cancel", around=top[:2])
        self.go(window, "Cancel", "Books", *PASSCODE)
        tells("Home", around=[(LABEL, "Books, Unlocked")])
        self.keys(window, "s")
        tells("Wake", around=[])
        self.go(window, "Wake")
        self.expect_log(window, "tap", "-> wakes")
        self.named(window, BUTTON, "slide to unlock")

    def test_an_icon_says_what_it_does_and_is_held(self):
        self.enable()
        window = self.open("--surface", "A")
        self.assertEqual(self.named(window, BUTTON, "Weather").description, "tap opens it, hold shows its App View")
        self.assertEqual(self.named(window, BUTTON, "Books").description, "tap opens it")
        self.go(window, "Hold Weather")
        self.expect_log(window, "hold icons[2]", "-> shows org.lumora.plugins.weather")
        self.set("kSwitchTapAndLongHold", True)
        self.go(window, "Close")
        eventually(lambda: self.named(window, BUTTON, "Books").description == "hold opens it", "the change")
        self.go(window, "Hold Books")
        self.expect_log(window, "hold icons[0]", "-> asks for the passcode")

    def test_notices_are_hidden_and_shown_where_a_tap_beside_them_does(self):
        self.enable()
        window = self.open()
        self.assertNotIn("Hide Notices", self.names(window))
        self.set("kNotificationsHideOnTap", True)
        self.go(window, "Hide Notices")
        self.expect_log(window, "tap", "-> hides the notices")
        self.go(window, "Show Notices")
        self.expect_log(window, "tap", "-> shows the notices")

    def test_no_digit_that_is_typed_can_be_read_and_their_number_is_told(self):
        self.enable()
        window = self.open()
        self.go(window, "slide to unlock")
        said = []
        self.listen(lambda event: said.append(event.source.name), "object:property-change:accessible-name")
        for digit in PASSCODE[:-1]:
            self.go(window, digit)
        self.named(window, BUTTON, "Delete")
        counts = [f"{count} of {len(PASSCODE)} digits typed" for count in range(1, len(PASSCODE))]
        self.await_told(lambda: counts[-1] in said, "the number of digits")
        self.assertLessEqual({name for name in said if any(map(str.isdigit, name))}, set(counts))
        texts = []
        for application in self.applications(window):
            for item in self.find(application, lambda it: True):
                texts += [item.name, item.description, *item.get_attributes().values()]
                with contextlib.suppress(NotImplementedError):
                    texts.append(self.text_of(item))
        self.assertFalse([text for text in texts if PASSCODE[:2] in text or PASSCODE[1:3] in text])
        self.go(window, PASSCODE[-1])
        self.expect_log(window, "tap keys[•]", "-> unlocked", "-> home screen")

    def test_everything_about_unlocking_is_done_by_actions(self):
        self.enable()
        window = self.open("--surface", "A")
        asked = ["-> asks for the passcode", *len(PASSCODE) * ["tap keys[•]"], "-> unlocked",
                 "-> opens org.lumora.samples.Books"]
        self.go(window, "Books", *PASSCODE)
        self.expect_log(window, "tap icons[0]", *asked)
        self.go(window, "Home")
        self.expect_log(window, "home", "-> home screen")
        window.kill()
        window.wait()
        for key, value in (("kAutoUnlockEnabled", True), ("kAutoUnlockPasscode", PASSCODE),
                           ("kAutoUnlockNotifications", True), ("kAUAppsDisabled", [APPS[2]])):
            self.set(key, value)
        window = self.open("--surface", "A")
        self.go(window, "Books")
        self.expect_log(window, "tap icons[0]", "-> unlocked for org.lumora.samples.Books alone",
                        "-> opens org.lumora.samples.Books")
        self.go(window, "Home", "Ines, The ridge is glowing, come outside!, now", "Home", "Next", "Weather")
        self.expect_log(window, "tap icons[2]", "-> asks for the passcode")
        self.assertIn("-> opens org.lumora.samples.Messages\n", window.log.text)
        self.set("kFullAutoUnlockEnabled", True)
        self.set("kAutoUnlockPasscodeConfirm", PASSCODE)
        self.go(window, "Cancel", "Books")
        self.expect_log(window, "tap icons[0]", "-> unlocked", "-> opens org.lumora.samples.Books")


if __name__ == "__main__":
    unittest.main()

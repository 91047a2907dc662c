#!/usr/bin/python3
"""The window as such: turned, started twice, opened at a page, closed.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/window_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import json
import os
import signal
import unittest
from pathlib import Path

import pyatspi

from harness import wire
from harness.display import BAR, HEIGHT, WIDTH
from harness.faulty import FaultyTweak, sound
from harness.programs import program
from harness.spoken import BUTTON, LINK, SWITCH, Spoken
from harness.waiting import LONG_ENOUGH, eventually, settled

HEADING = pyatspi.ROLE_HEADING
TEXT = pyatspi.ROLE_TEXT


class Window(Spoken):
    def title_of(self, window):
        """What the navigation bar says, and the desktop."""
        return self.xdotool("getwindowname", window.id).strip().removesuffix(" — Settings")

    def expect_title(self, window, title):
        self.expect_soon(lambda: self.title_of(window), title)

    def size_of(self, window):
        geometry = self.xdotool("getwindowgeometry", "--shell", window.id)
        values = dict(line.split("=") for line in geometry.splitlines())
        return int(values["WIDTH"]), int(values["HEIGHT"])

    def resize(self, window, width, height):
        self.xdotool("windowsize", "--sync", window.id, width, height)


class TurnedTest(Window):
    def test_brings_every_theme_of_the_colour_control_into_reach(self):
        window = self.open_window("--page", "ColorPickerController")
        self.named(window, BUTTON, "Pink")
        for width, height in ((844, 400), (WIDTH, HEIGHT)):
            self.resize(window, width, height)

            def in_reach():
                place = self.extents(self.named(window, BUTTON, "Pink"))
                return place.x > width * 5 // 6 and place.x + place.width <= width and place.y + place.height <= height
            eventually(in_reach, "the last theme in the corner")
            self.set("kLSBlurColor", {"h": 0.0, "s": 0.0, "b": 0.0})
            self.click(self.named(window, BUTTON, "Pink"))
            eventually(lambda: round(self.get("kLSBlurColor")["h"], 2) == 0.88, "the colour")

    def test_asks_the_tweak_once_for_a_page_that_is_made_anew_and_never_for_one_that_follows(self):
        for page, more in (("ColorPickerController", 1), ("PluginsListViewController", 1), ("FontViewController", 0),
                           ("AppsController", 0), ("LumoraPreferences", 0)):
            with self.subTest(page), self.quiet_tweak() as tweak:
                window = self.open_window("--page", page, "--size", f"{WIDTH}x{HEIGHT}")
                asked = self.asked(tweak)
                for size in ((500, 800), (700, 500), (844, 400)):
                    self.resize(window, *size)
                if more:
                    eventually(lambda: tweak.visits(wire.REQUEST_SETTINGS) > asked, "the question")
                self.assertEqual(self.asked(tweak), asked + more)
                self.expect_to_close(window)

    def quiet_tweak(self):
        self.tweak.kill()
        self.tweak.wait(LONG_ENOUGH)
        return FaultyTweak(self.ports, sound)

    def start_tweak(self, *options, **more):
        self.tweak = super().start_tweak(*options, **more)

    @staticmethod
    def asked(tweak):
        """How often, once that does not change any more for a good while."""
        return settled(lambda: tweak.visits(wire.REQUEST_SETTINGS) or None, "an end of questions", times=25)

    def test_puts_a_row_back_that_is_in_the_hand(self):
        window = self.open_window("--page", "PluginsListViewController")
        name = eventually(lambda: sorted(self.rows(window)), "rows")[0]
        before = self.get("kAppViewsEnabled")
        x, y = self.lift(window, name)
        self.xdotool("mousemove", x, y - 60)
        self.resize(window, 844, 600)
        eventually(lambda: self.place(window, name).x > 50, "the row in another place")
        self.xdotool("mouseup", 1)
        self.assertEqual(self.get("kAppViewsEnabled"), before)

    def test_keeps_the_focus_and_what_is_seen(self):
        many = [f"test.{i}" for i in range(60)]
        self.set("kAppViewsEnabled", many)
        window = self.open_window("--page", "PluginsListViewController")
        eventually(lambda: "test.0" in self.rows(window), "the rows")
        self.keys(window, "Next", "Next", "Next")
        focused = settled(lambda: self.focused(window) or None, "the focus")
        self.assertGreater(many.index(focused[0]), 20)
        for width, height in ((844, 400), (WIDTH, HEIGHT)):
            self.resize(window, width, height)
            eventually(lambda: (self.place(window, focused[0]).x > 50) is (width > WIDTH), "the row in another place")
            self.assertEqual(self.focused(window), focused)
            place = self.place(window, focused[0])
            self.assertTrue(BAR <= place.y and place.y + place.height <= height, place.y)


class SecondStartTest(Window):
    def start_again(self, *options, **environment):
        return self.run_program(program("lumora-settings"), "--root", self.root, *options,
                                env={**self.environment, **environment})

    def test_goes_to_its_page_in_the_first_window(self):
        window = self.open_root_page()
        started = self.start_again("--page", "AutoUnlockController")
        self.assertEqual((started.returncode, started.stderr), (0, ""))
        for title in ("Auto-Unlock", "Apps", "Lumora"):
            self.expect_title(window, title)
            if title != "Lumora":
                self.press_button(window, "Back")
        self.assertEqual(self.start_again().returncode, 0)
        self.assertEqual(self.title_of(window), "Lumora")

    def test_hands_on_what_was_typed_before_it_goes_to_another_page(self):
        window = self.open_window("--page", "AutoUnlockController")
        self.click(self.named(window, TEXT, "Passcode"))
        self.keys(window, "1", "2", "3")
        self.assertEqual(self.start_again("--page", "AppsController").returncode, 0)
        eventually(lambda: "123" in map(self.stored, ("kAutoUnlockPasscode", "kAutoUnlockPasscodeConfirm")), "the text")

    def test_offers_its_profile_in_the_first_window(self):
        window = self.open_root_page()
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(self.folder)
        for name, page in (("a.json", []), ("b.json", ["--page", "AppsController"])):
            Path(name).write_text(json.dumps({"lumora": 1, "name": name, "settings": {"kAppBadgesEnabled": False}}),
                                  encoding="utf-8")
            started = self.start_again("--profile", name, *page)
            self.assertEqual((started.returncode, started.stderr), (0, ""))
            self.named(window, HEADING, name)
            self.press_button(window, "Cancel")
            self.expect_soon(lambda: "Cancel" in self.spoken(window, BUTTON), False)
        self.expect_title(window, "Apps")

    def test_says_that_there_is_no_such_page(self):
        window = self.open_root_page()
        started = self.start_again("--page", "NoSuchPage")
        self.assertEqual((started.returncode, started.stderr),
                         (1, "lumora-settings: there is no page class NoSuchPage\n"))
        self.assertEqual(self.title_of(window), "Lumora")

    def test_prints_and_draws_by_itself(self):
        self.open_root_page()
        self.assertIn('"AppsController"', self.start_again("--rows", "AppsController").stdout)
        picture = Path(self.folder, "a.png")
        self.assertEqual(self.start_again("--grab", picture).returncode, 0)
        self.assertTrue(picture.read_bytes().startswith(b"\x89PNG"))

    def test_opens_a_window_of_its_own_for_another_device_or_tweak_or_once_the_first_has_gone(self):
        first = self.open_root_page()
        self.make_root()
        other = self.open_root_page()
        self.assertNotEqual(first.id, other.id)
        self.expect_to_close(other)
        self.expect_to_close(self.open_root_page())
        self.expect_to_close(self.open_root_page())
        self.assertIsNone(first.poll())

    def test_opens_a_window_of_its_own_without_a_session_bus(self):
        self.open_root_page()
        del self.environment["DBUS_SESSION_BUS_ADDRESS"]
        self.open_root_page()


class KeysTest(Window):
    def test_closes_by_its_keys(self):
        for key in "wq":  # not sent to the window, which is gone before they are up
            window = self.open_root_page()
            self.xdotool("keydown", "ctrl", "keydown", key, "keyup", key, "keyup", "ctrl")
            self.assertEqual(window.wait(LONG_ENOUGH), 0)

    def test_goes_back_by_the_button_of_a_mouse(self):
        window = self.open_window("--page", "AutoUnlockController")
        for title in ("Auto-Unlock", "Apps", "Lumora"):
            self.expect_title(window, title)
            self.click_at(WIDTH // 2, HEIGHT // 2, 8)
        self.named(window, SWITCH, "Enable Lumora")

    def test_goes_back_one_page_by_a_key_that_is_held(self):
        window = self.open_window("--page", "AutoUnlockController")
        self.named(window, SWITCH, "Enable Auto-Unlock")
        self.hold("Escape")
        self.assertEqual(settled(lambda: self.title_of(window), "the title"), "Apps")

    def test_opens_one_page_by_a_double_click(self):
        window = self.open_root_page()
        place = self.extents(self.named(window, LINK, "Apps"))
        self.press_button(window, "Apps")
        self.expect_title(window, "Apps")
        links = [self.extents(self.named(window, LINK, name)) for name in ("Apps", "Auto-Unlock")]
        y = place.y + place.height // 2
        self.assertTrue(any(link.y < y < link.y + link.height for link in links), "a link where the other one was")
        self.press_button(window, "Back")
        settled(lambda: self.extents(self.named(window, LINK, "Change Log")).x, "the page that slides back")
        self.xdotool("mousemove", WIDTH // 2, y, "click", "--repeat", 2, "--delay", 120, 1)
        self.expect_title(window, "Apps")
        self.assertEqual(settled(lambda: self.title_of(window), "the title", times=30), "Apps")
        self.xdotool("click", 1)  # which is no part of the double click
        self.expect_title(window, "Auto-Unlock")


class ClosingTest(Window):
    def test_hands_on_what_was_typed_when_it_is_terminated(self):
        window = self.open_window("--page", "AutoUnlockController")
        self.click(self.named(window, TEXT, "Passcode"))
        self.keys(window, "1", "2", "3")
        eventually(lambda: self.text_of(self.named(window, TEXT, "Passcode")) == "•••", "the text")
        window.send_signal(signal.SIGTERM)
        self.assertEqual(window.wait(LONG_ENOUGH), 0)
        self.assertIn("123", [self.stored(key) for key in ("kAutoUnlockPasscode", "kAutoUnlockPasscodeConfirm")])

    def test_keeps_its_size_for_the_next_start(self):
        window = self.open_root_page()
        self.assertEqual(self.size_of(window), (WIDTH, HEIGHT))
        self.resize(window, 500, 600)
        self.expect_to_close(window)
        window = self.open_root_page("--size", "400x700")
        self.assertEqual(self.size_of(window), (400, 700))
        self.expect_to_close(window)
        window = self.open_root_page()
        self.assertEqual(self.size_of(window), (500, 600))

    def test_ignores_what_is_no_size_of_a_window(self):
        kept = Path(self.environment["XDG_STATE_HOME"], "lumora/window-size")
        for content in (b"", b"wide", b"10x10", b"1e9x844", b"\0" * 1000, b"500x600" * 100, None):
            with self.subTest(content):
                if content is None:
                    kept.unlink()
                    os.mkfifo(kept)
                else:
                    kept.write_bytes(content)
                window = self.open_root_page()
                self.assertEqual(self.size_of(window), (1240, 900))
                self.expect_to_close(window)


if __name__ == "__main__":
    unittest.main()

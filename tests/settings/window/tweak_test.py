#!/usr/bin/python3
"""A tweak that is not there, goes or comes back, as the user of the real window sees it.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/tweak_test.py [-v] BUILD
"""
import os
import socket
import unittest

import pyatspi

from harness import wire
from harness.spoken import LINK, SWITCH, Spoken
from harness.waiting import LONG_ENOUGH, eventually

ALERT = pyatspi.ROLE_ALERT
BUTTON = pyatspi.ROLE_PUSH_BUTTON
HEADING = pyatspi.ROLE_HEADING

AWAY = "Lumora is not running. Changes are not being kept."
LOST = "Changes that were made while Lumora was not running are lost."


class TweakTest(Spoken):
    def start_tweak(self, *options, **more):
        self.tweak = super().start_tweak(*options, **more)

    def stop_tweak(self):
        self.tweak.kill()
        self.tweak.wait(LONG_ENOUGH)

    def start_silent_tweak(self):
        """One that takes connections, and no more."""
        for name in (wire.UPDATE_SETTINGS, wire.REQUEST_SETTINGS):
            os.unlink(wire.socket_path(self.ports, name))
            listening = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
            self.addCleanup(listening.close)
            listening.bind(wire.socket_path(self.ports, name))
            listening.listen()

    def press(self, window, role, name):
        self.act(self.named(window, role, name), "Press")

    def is_on(self, window, name):
        return self.named(window, SWITCH, name).getState().contains(pyatspi.STATE_CHECKED)

    def test_opens_the_page_by_itself_when_the_tweak_comes(self):
        self.stop_tweak()
        window = self.open_window()
        self.named(window, ALERT, "Lumora is not running")
        self.assertEqual(self.spoken(window, SWITCH), {})
        self.start_tweak()
        self.named(window, SWITCH, "Enable Lumora")
        self.assertNotIn("Lumora is not running", self.spoken(window, ALERT))
        self.assertIsNone(window.poll(), "the process is the same")

    def test_begins_anew_where_the_user_was(self):
        window = self.open_root_page()
        self.press(window, LINK, "Apps")
        self.named(window, SWITCH, "Badges")
        self.stop_tweak()
        self.named(window, ALERT, AWAY)
        self.press(window, LINK, "Auto-Unlock")  # never opened before, so it waits
        self.named(window, ALERT, "Lumora is not running")
        self.start_tweak()
        self.named(window, SWITCH, "Enable Auto-Unlock")
        for title in ("Apps", "Lumora"):
            self.press(window, BUTTON, "Back")
            self.named(window, HEADING, title)

    def test_tells_a_tweak_that_does_not_answer_from_one_that_is_not_there(self):
        self.stop_tweak()
        self.start_silent_tweak()
        window = self.open_window()
        self.named(window, ALERT, "Lumora does not answer")
        self.press(window, BUTTON, "Details")
        self.named(window, pyatspi.ROLE_LABEL, f"Message: requestTweakSettings\nPorts: {self.ports}")
        for name in (wire.UPDATE_SETTINGS, wire.REQUEST_SETTINGS):
            os.unlink(wire.socket_path(self.ports, name))
        self.named(window, ALERT, "Lumora is not running")
        self.start_tweak()
        self.named(window, SWITCH, "Enable Lumora")

    def test_says_that_changes_are_not_kept_and_reads_what_is_true_afterwards(self):
        window = self.open_root_page()
        self.stop_tweak()
        self.named(window, ALERT, AWAY)
        self.press(window, SWITCH, "Enable Lumora")
        eventually(lambda: not self.is_on(window, "Enable Lumora"), "the switch, under the user's hand")
        self.start_tweak()
        self.named(window, ALERT, LOST)
        self.assertFalse(self.is_on(window, "Enable Lumora"), "nothing changes by itself")
        self.press(window, BUTTON, "Reload")
        eventually(lambda: self.is_on(window, "Enable Lumora"), "what the tweak has")
        eventually(lambda: LOST not in self.spoken(window, ALERT), "the end of the notice")
        self.press(window, BUTTON, "More")
        self.named(window, pyatspi.ROLE_MENU_ITEM, "Lock Screen")
        self.assertNotIn("Undo “Enable Lumora”", self.spoken(window, pyatspi.ROLE_MENU_ITEM))

    def test_says_nothing_more_when_nothing_was_changed_meanwhile(self):
        window = self.open_root_page()
        self.stop_tweak()
        self.named(window, ALERT, AWAY)
        self.start_tweak()
        eventually(lambda: not self.spoken(window, ALERT), "the end of the notice")

    def test_reads_a_page_anew_by_its_key(self):
        window = self.open_root_page()
        self.press(window, LINK, "Apps")
        self.named(window, SWITCH, "Badges")
        self.assertTrue(self.is_on(window, "Badges"))
        self.set("kAppBadgesEnabled", False)
        self.xdotool("key", "--window", window.id, "F5")
        eventually(lambda: not self.is_on(window, "Badges"), "the new value")
        self.press(window, BUTTON, "Back")
        self.named(window, HEADING, "Lumora")

    def test_says_why_there_is_no_bundle(self):
        window = self.open_window("--bundle", self.folder)
        self.named(window, ALERT, "Settings cannot open")
        self.close(window)
        self.assertEqual(window.wait(LONG_ENOUGH), 1)


if __name__ == "__main__":
    unittest.main()

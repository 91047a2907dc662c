#!/usr/bin/python3
"""The buttons that stand on no page, each by pointer, keyboard and assistive tool in the real window: those of the
composer and of its question, the one that leads back, the one that restarts.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/everything_buttons_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import contextlib
import unittest
from pathlib import Path

import pyatspi
from gi.repository import GLib

from everything import BACK, WAYS, Control, Everything
from everything_pages import PAGES
from harness.spoken import BUTTON
from harness.waiting import eventually, settled

SUPPORT = "support@nevo.example"
QUESTION = "Keep what was written?"


class Buttons(Everything):
    def focus_on(self, window):
        """The name of what has it."""
        return next((item.name for role in (BUTTON, pyatspi.ROLE_TEXT) for item in self.spoken(window, role).values()
                     if self.has_state(item, pyatspi.STATE_FOCUSED)), None)

    def use(self, window, name, way, key="Return"):
        def middle():
            """Each look is for the button that is there now."""
            if button := self.spoken(window, BUTTON).get(name):
                place = self.extents(button)
                return place.x + place.width // 2, place.y + place.height // 2
            return None
        place = settled(middle, f"{name} in its place")
        if way == "pointer":
            self.click_at(*place)
        elif way == "keyboard":
            self.lead_focus(window, "shift+Tab", lambda: eventually(lambda: self.focus_on(window), "the focus"), name)
            self.keys(window, key)
        else:
            self.press_button(window, name)


class ComposerTest(Buttons):
    def setUp(self):
        super().setUp()
        self.take_mail()
        self.drafts = Path(self.home, "lumora/drafts")

    def compose(self, window, text=""):
        self.press_button(window, SUPPORT)
        eventually(lambda: self.focus_on(window) == "Message", "the composer")
        if text:
            self.keys(window, "ctrl+End")
            self.type(window, text)
            eventually(lambda: text in self.message(window), "what was typed")

    def message(self, window):
        return self.text_of(self.named(window, pyatspi.ROLE_TEXT, "Message"))

    def is_asking(self, window):
        return QUESTION in self.spoken(window, pyatspi.ROLE_ALERT)

    def expect_gone(self, window):
        eventually(lambda: "New Message" not in self.spoken(window, pyatspi.ROLE_HEADING), "the composer to go")

    def expect_one(self, window, sent=None, draft=None):
        """Gone without a trace but for a text that was sent, or kept."""
        self.expect_gone(window)
        if sent:
            eventually(self.sent.exists, "the message")
        files = [path for path in (self.sent, *self.drafts.glob("*")) if path.exists()]
        self.assertEqual([path == self.sent for path in files], [True] if sent else [False] if draft else [])
        for path in files:
            self.assertIn(sent or draft, path.read_text(encoding="utf-8"))
            path.unlink()

    def test_ends_by_each_of_its_buttons(self):
        window = self.open_window()
        for way in WAYS:
            for key in ("Return", "space") if way == "keyboard" else ("",):
                self.compose(window)
                self.use(window, "Send", way, key)
                self.expect_one(window, sent=SUPPORT)
                self.compose(window)
                self.use(window, "Save Draft", way, key)
                self.expect_one(window, draft=SUPPORT)
                self.compose(window)
                self.use(window, "Cancel", way, key)
                self.expect_one(window)

    def test_asks_and_is_answered_by_each_button(self):
        window = self.open_window()
        for way in WAYS:
            self.compose(window, " Yes.")
            self.use(window, "Cancel", way)
            eventually(lambda: self.is_asking(window), QUESTION)
            self.use(window, "Continue Editing", way)
            eventually(lambda: not self.is_asking(window), "the question to go")
            self.assertIn(" Yes.", self.message(window))
            self.keys(window, "Escape")
            eventually(lambda: self.is_asking(window), QUESTION)
            self.use(window, "Delete Draft", way)
            self.expect_one(window)
            self.compose(window, " No.")
            self.keys(window, "Escape")
            eventually(lambda: self.is_asking(window), QUESTION)
            self.use(window, "Save Draft", way)
            self.expect_one(window, draft=" No.")


class BackTest(Everything):
    def test_goes_back_by_the_button_itself(self):
        window = self.open_window()
        root = eventually(lambda: self.title(window), "the title")
        first = Control(pyatspi.ROLE_HEADING, PAGES["AutoUnlockController"][0].name, "")
        for way, key in (("pointer", ""), ("keyboard", "Return"), ("keyboard", "space"), ("assistive", "")):
            for link in ("Apps", "Auto-Unlock"):
                self.act(eventually(lambda: next((item for control, item in self.items(window)
                                                  if control.name == link), None), link), "Press")
            self.find_control(window, first)
            for _ in range(2):
                title = self.title(window)
                if way == "keyboard":
                    eventually(lambda: self.items(window), "the page")
                    self.focus_by_keyboard(window, BACK)
                self.go_back(window, way, key)
                eventually(lambda: self.title(window) not in (None, title) and self.page(window), "the page before")
            self.assertEqual(self.title(window), root)


class RestartTest(Buttons):
    def start_tweak(self, *options):
        """One that does not answer."""
        tweak = super().start_tweak(*options)
        tweak.kill()
        tweak.wait()

    def has_gone(self, item):
        try:
            return not self.has_state(item, pyatspi.STATE_SHOWING)
        except GLib.Error:
            return True

    def shown_as_other_than(self, process, title):
        """The window of the process that has another title. One that goes meanwhile has none."""
        return next((shown for shown in self.windows(process)
                     if self.xdotool("getwindowname", shown).strip() not in ("", title)), None)

    def test_restarts_by_its_button(self):
        window = self.open_window()
        for way, key in (("pointer", ""), ("keyboard", "Return"), ("keyboard", "space"), ("assistive", "")):
            eventually(lambda: self.focus_on(window) == "Try Again", "the button")
            # The new window may get the number of the old one, but has a title of its own.
            self.xdotool("set_window", "--name", "before", window.id)
            button = self.named(window, BUTTON, "Try Again")
            # The program may end before it has answered an assistive tool; any other error counts.
            with contextlib.suppress(*[GLib.Error] if way == "assistive" else []):
                self.use(window, "Try Again", way, key)
            eventually(lambda: self.has_gone(button), "the end of the former program")
            window.id = eventually(lambda: self.shown_as_other_than(window, "before"), "the restart")
            self.assertIsNone(window.poll(), "the process is the same")
            self.xdotool("windowmove", window.id, 0, 0)
            self.xdotool("windowfocus", window.id)


if __name__ == "__main__":
    unittest.main()

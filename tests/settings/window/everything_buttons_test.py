#!/usr/bin/python3
"""The buttons that stand on no page, each by pointer, keyboard and assistive tool in the real window: those of the
composer and of its question, the one that leads back, the one that restarts.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/everything_buttons_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import contextlib
import os
import unittest

import pyatspi
from gi.repository import GLib

from everything import BACK, WAYS, Control, Everything
from everything_pages import PAGES
from harness.waiting import eventually, settled

BUTTON = pyatspi.ROLE_PUSH_BUTTON
SUPPORT = "support@nevo.example"
QUESTION = "Keep what was written?"


class Buttons(Everything):
    def button(self, window, name):
        return self.named(window, BUTTON, name)

    def with_focus(self, window):
        return next((item for role in (BUTTON, pyatspi.ROLE_TEXT) for item in self.spoken(window, role).values()
                     if self.has_state(item, pyatspi.STATE_FOCUSED)), None)

    def place_of(self, window, name):
        """Where a button stands still; each look is for the button that is there now."""
        def place():
            if button := self.spoken(window, BUTTON).get(name):
                found = self.extents(button)
                return found.x, found.y, found.width, found.height
            return None
        return settled(place, f"{name} in its place")

    def use(self, window, name, way, key="Return"):
        x, y, width, height = self.place_of(window, name)
        if way == "pointer":
            self.xdotool("mousemove", str(x + width // 2), str(y + height // 2), "click", "1")
        elif way == "keyboard":
            self.lead_focus_to(window, name)
            self.keys(window, key)
        else:
            self.act(self.button(window, name), "Press")

    def lead_focus_to(self, window, name):
        seen = []
        while (now := eventually(lambda: self.with_focus(window), "the focus").name) != name:
            self.assertNotIn(now, seen, f"the keyboard does not lead to {name}")
            seen.append(now)
            self.keys(window, "shift+Tab")
            eventually(lambda: (item := self.with_focus(window)) and item.name != now, f"the focus before {now}")


class ComposerTest(Buttons):
    def setUp(self):
        super().setUp()
        self.sent = os.path.join(self.folder, "sent")
        self.drafts = os.path.join(self.home, "lumora/drafts")
        self.environment["LUMORA_SENDMAIL"] = self.add_program("transport", f"cat > {self.sent}.new\n"
                                                               f"mv {self.sent}.new {self.sent}")

    def compose(self, window, text=""):
        self.act(self.button(window, SUPPORT), "Press")
        eventually(lambda: (item := self.with_focus(window)) and item.name == "Message", "the composer")
        if text:
            self.keys(window, "ctrl+End")
            self.type(window, text)
            eventually(lambda: text in self.message(window), "what was typed")

    def message(self, window):
        text = self.named(window, pyatspi.ROLE_TEXT, "Message").queryText()
        return text.getText(0, text.characterCount)

    def is_asking(self, window):
        return QUESTION in self.spoken(window, pyatspi.ROLE_ALERT)

    def expect_gone(self, window):
        eventually(lambda: "New Message" not in self.spoken(window, pyatspi.ROLE_HEADING), "the composer to go")

    def expect_one(self, window, sent=None, draft=None):
        """Gone without a trace but for a text that was sent, or kept."""
        self.expect_gone(window)
        found = {}
        if sent:
            eventually(lambda: os.path.exists(self.sent), "the message")
        for kind, path in (("sent", self.sent), *(("draft", os.path.join(self.drafts, name))
                                                  for name in os.listdir(self.drafts))):
            if os.path.exists(path):
                with open(path, encoding="utf-8") as file:
                    found[kind] = file.read()
                os.remove(path)
        self.assertEqual(set(found), {"sent"} if sent else {"draft"} if draft else set())
        for text in filter(None, (sent, draft)):
            self.assertIn(text, "".join(found.values()))

    def test_ends_by_each_of_its_buttons(self):
        os.makedirs(self.drafts)
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
        os.makedirs(self.drafts)
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

    def test_restarts_by_its_button(self):
        window = self.open_window()
        for way, key in (("pointer", ""), ("keyboard", "Return"), ("keyboard", "space"), ("assistive", "")):
            # The new window may get the number of the old one, but has a title of its own.
            self.xdotool("set_window", "--name", "before", window.id)
            eventually(lambda: (item := self.with_focus(window)) and item.name == "Restart Settings", "the button")
            button = self.button(window, "Restart Settings")
            # The program may end before it has answered an assistive tool, and only that is no matter.
            with contextlib.suppress(*[GLib.Error] if way == "assistive" else []):
                self.use(window, "Restart Settings", way, key)
            eventually(lambda: self.has_gone(button), "the end of the former program")
            titles = lambda: [self.xdotool("getwindowname", shown).strip() for shown in self.windows(window)]
            eventually(lambda: titles() not in ([], [""], ["before"]), "the restart")
            self.assertIsNone(window.poll(), "the process is the same")
            window.id = self.windows(window)[0]
            self.xdotool("windowmove", window.id, "0", "0")
            self.xdotool("windowfocus", window.id)


if __name__ == "__main__":
    unittest.main()

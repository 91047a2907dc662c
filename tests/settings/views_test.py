#!/usr/bin/python3
"""Pages that host a view, in the real programs, as assistive tools see them.

    dbus-run-session -- views_test.py [-v] BINARIES DEVICE_ROOT

Needs what spoken.py needs.
"""
import os
import re
import sys
import unittest

import pyatspi
from gi.repository import GLib

from spoken import Spoken
from window import ROOT, WIDTH, eventually


class ChangeLogTest(Spoken):
    def test_reads_the_text_out(self):
        bundle = os.path.join(ROOT, "Library/PreferenceBundles/Lumora.bundle")
        with open(os.path.join(bundle, "changelog.txt"), encoding="utf-8") as file:
            text = file.read()
        window = self.open_window("--page", "ChangeLogController")
        shown = eventually(lambda: self.spoken(window, pyatspi.ROLE_LABEL).get(text), "the text")
        place = shown.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        self.assertEqual((place.x, place.width), (0, WIDTH))
        self.assertFalse(shown.getState().contains(pyatspi.STATE_EDITABLE))


class SecureFieldTest(Spoken):
    def test_tells_of_what_is_typed_in_dots_only(self):
        window = self.open_window("--page", "AutoUnlockController")
        self.xdotool("mousemove", "1200", "1000")
        eventually(lambda: "Passcode" in self.spoken(window, pyatspi.ROLE_TEXT), "the field")
        told = []
        listen = lambda event: told.append((event.type.name, event.source.name, event.any_data))
        names = ("object:text-changed", "object:property-change", "object:state-changed:focused")
        pyatspi.Registry.registerEventListener(listen, *names)
        self.addCleanup(pyatspi.Registry.deregisterEventListener, listen, *names)
        place = self.spoken(window, pyatspi.ROLE_TEXT)["Passcode"].queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        self.xdotool("mousemove", str(place.x + 100), str(place.y + place.height // 2), "click", "1")
        self.xdotool("key", "--window", window.id, "q", "7", "x", "Return", "shift+Tab")

        def has_told_of_the_next_focus():
            GLib.MainContext.default().iteration(False)
            return any(kind == "object:state-changed:focused" and name != "Passcode" for kind, name, _ in told)
        eventually(has_told_of_the_next_focus, "the focus on another control, after all that was told of the text")
        text = self.spoken(window, pyatspi.ROLE_TEXT)["Passcode"].queryText()
        self.assertEqual(text.getText(0, text.characterCount), "•••")
        for kind, _, what in told:
            self.assertFalse(isinstance(what, str) and re.search("[q7x]", what), (kind, what))
        eventually(lambda: "q7x" in map(self.stored, ("kAutoUnlockPasscode", "kAutoUnlockPasscodeConfirm")),
                   "the passcode at the tweak")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[1:-2]])

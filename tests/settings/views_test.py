#!/usr/bin/python3
"""Pages that host a view, in the real programs, as assistive tools see them.

    dbus-run-session -- views_test.py [-v] BINARIES DEVICE_ROOT

Needs what lists_test.py needs.
"""
import os
import sys
import unittest

import pyatspi

from lists_test import Spoken
from programs_test import ROOT, WIDTH, eventually


class ChangeLogTest(Spoken):
    def test_reads_the_text_out(self):
        with open(os.path.join(ROOT, "Library/PreferenceBundles/Lumora.bundle/changelog.txt"), encoding="utf-8") as file:
            text = file.read()
        window = self.open_window("--page", "ChangeLogController")
        shown = eventually(lambda: self.spoken(window, pyatspi.ROLE_LABEL).get(text), "the text")
        place = shown.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        self.assertEqual((place.x, place.width), (0, WIDTH))
        self.assertFalse(shown.getState().contains(pyatspi.STATE_EDITABLE))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[1:-2]])

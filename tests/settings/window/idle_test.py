#!/usr/bin/python3
"""What the programs do while nothing happens: nothing.

    PYTHONPATH=tests tests/settings/window/idle_test.py [-v] BUILD

Needs Xvfb and xdotool.
"""
import unittest

from harness.waiting import settled
from harness.wakeups import wakeups
from harness.window import Windows

SECONDS = 10
FEW = 3  # wake-ups of a process in that time, for what a busy machine does late


class IdleTest(Windows):
    def expect_to_sleep(self, process, most=FEW):
        """Once it has not woken up for some seconds: what it does by itself after its start is done by then."""
        settled(lambda: not wakeups(process, 1) or None, "rest", times=3)
        found = wakeups(process, SECONDS)
        self.assertLessEqual(sum(found.values()), most, found)

    def test_the_window_sleeps_on_every_kind_of_page_and_the_tweak_beside_it(self):
        tweak = self.start_tweak()
        for page in ("LumoraPreferences", "AppsListController", "ColorPickerController", "ChangeLogController"):
            with self.subTest(page):
                window = self.open_window("--page", page)
                self.expect_to_sleep(window)
                self.end(window)
        self.expect_to_sleep(tweak)


if __name__ == "__main__":
    unittest.main()

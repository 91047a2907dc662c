#!/usr/bin/python3
"""How much room a finger has on everything that can be pressed, on every page.

    PYTHONPATH=tests tests/settings/window/targets_test.py [-v] BUILD

Needs what strange_test.py needs.
"""
import unittest

from strange_test import Strange, settings


class TargetsTest(Strange):
    def test_everything_that_can_be_pressed_has_room_for_a_finger(self):
        self.look("targets", settings(), size=100, at=["targets"])


if __name__ == "__main__":
    unittest.main()

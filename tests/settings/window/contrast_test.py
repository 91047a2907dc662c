#!/usr/bin/python3
"""What stands out from its ground: texts, signs and the edges of controls, in the pictures of every page.

    PYTHONPATH=tests tests/settings/window/contrast_test.py [-v] BUILD

Needs what strange_test.py needs.
"""
import unittest

from strange_test import Strange, settings


class ContrastTest(Strange):
    def test_everything_stands_out_light_and_dark_and_more_so_if_asked_to(self):
        """Fields are empty, so that their placeholders are seen. The page of the colour control has colours of its own."""
        passcodes = ("kAutoUnlockPasscode", "kAutoUnlockPasscodeConfirm", "kAutoUnlockWidgetPasscode", "kLSDateSubtitle")
        answered = settings(**{key: "" for key in passcodes}, kTweakEnabled=True, kLSStatusBarHidden=True, kSleepTime=10)
        self.look("contrast", answered, size=100, at=["contrast"], left_out=["ColorPickerController"],
                  widths=["320", "390", "1000"])


if __name__ == "__main__":
    unittest.main()

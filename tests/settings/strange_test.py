#!/usr/bin/python3
"""Every page on settings, names and titles of any kind: it opens, nothing overlaps and nothing is cut off.

    strange_test.py [-v] Few|All BINARIES DEVICE_ROOT

A program looks at the pages, in several sizes of the window and of texts: layout_tour. Its pictures of those that it
complains of are left in $LUMORA_TEST_PICTURES, if that is set.
"""
import os
import plistlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "wire"))

from tweak import Tweak
from window import BINARIES, LONG_ENOUGH, ROOT, program
from wire import Date

BOOLEANS = """kTweakEnabled kSleepDisabledForAppViews kNotificationsHideOnTap kAppBadgesEnabled kAppLabelsEnabled
    kAppRoundedEnabled kIconViewBlurEnabled kSwitchTapAndLongHold kLongHoldForPluginApps kAlwaysReturnToLSEnabled
    kLSStatusBarHidden kGrabbersDisabled kCameraGrabberDisabled kDateViewDisabled kLSDateSubtitleHidden
    kSlideToUnlockDisabled kAlwaysShowBattery kAutoUnlockEnabled kFullAutoUnlockEnabled kAutoUnlockNotifications
    kAUNotificationsOnMainThread kLSPasscodeBlurHidden kLSPasscodeButtonsHidden kLSPasscodeTitleHidden
    kLSBlurColorEnabled kLSBlurCutoffEnabled kWidgetsEnabled""".split()
NUMBERS = """kSleepTime kAppsPerRow kAppsPerRowLandscape kAppIconOpacity kAppIconSize kLSPBlurOpacity kLSPTintOpacity
    kLSPButtonDiam kLSPButtonSpacingH kLSPButtonSpacingV kLSDateFontSize kLSDateSubtitleFontSize kLSDateOffset""".split()
TEXTS = """kLSDateSubtitle kSlideToUnlockText kAutoUnlockPasscode kAutoUnlockPasscodeConfirm kAutoUnlockWidgetPasscode
    kLSDateFontName""".split()
LISTS = ["kAppViewsEnabled", "kAppsEnabled", "kAUAppsDisabled"]
COLOUR = "kLSBlurColor"
KEYS = BOOLEANS + NUMBERS + TEXTS + LISTS + [COLOUR]

TEXT_CASES = {
    "one long word": "Donaudampfschiff" * 625,
    "many words": "a few words and then " * 476,
    "right to left": "شاشة القفل " * 12,
    "right to left and left to right": "Lumora قفل 123 (Lock) " * 6,
    "emoji": "🔒👩‍👩‍👧‍👦🏳️‍🌈👍🏽" * 20,
    "combining marks": "Z͑ͫ̓ͪ̂ͫ̽͏̴̙̤̞͉͚̯̞̠͍A̴̵̜̰͔ͫ͗͢L̠ͨͧͩ͘G̴̻͈͍͔̹̑͗̎̅͛́Ǫ̵̹̻̝̳͂̌̌͘!" * 4,
    "tall scripts": "ནམ་མཁའ། สวัสดี ཧྨ" * 6,
    "lines": "one\ntwo\r\nthree\u2028four\u2029five\n\n\n",
    "nothing but space": " \t\u00a0\u200b\u3000",
    "invisible": "\u202e\u2066\u200f\u200d\ufeff\u00ad",
    "markup": "<b>bold</b> &amp; <img src='x'>" * 3,
}
# A text in a message can have one; the name of a plug-in ends there.
NUL = "be\0fore" * 3
VALUE_CASES = {
    "text": "strange", "a long text": TEXT_CASES["many words"], "number": 7, "boolean": True, "list": ["a", 1],
    "no entries": [], "dictionary": {"a": "b"}, "data": b"\0\xff", "date": Date(0.0),
    "null": None, "huge number": 2**63 - 1, "huge negative number": -2**63, "not a number": float("nan"),
    "infinity": float("inf"), "negative infinity": float("-inf"), "largest real": 1.7976931348623157e308,
    "least real": 5e-324, "real": 0.1 + 0.2,
}
LIST_CASES = {
    "no entries": [], "no texts": [1, True, 0.5, b"data", [], {}, None], "empty texts": ["", " "],
    "each twice": ["org.lumora.samples.Mail", "org.lumora.samples.Mail", "org.lumora.plugins.clock"] * 2,
    "5,000 entries": [f"org.example.Application{number}" for number in range(5000)],
    "one of all kinds": list(TEXT_CASES.values()),
}


def settings(**changes):
    """Plain settings, but for some."""
    plain = {key: False for key in BOOLEANS} | {key: 20 for key in NUMBERS} | {key: "text" for key in TEXTS}
    plain |= {"kAppViewsEnabled": [], "kAppsEnabled": ["org.lumora.samples.Mail"], "kAUAppsDisabled": []}
    return plain | {COLOUR: {"h": 0.5, "s": 0.5, "b": 0.5}} | changes


class Strange(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="strange-")
        self.addCleanup(shutil.rmtree, self.folder, True)
        self.pictures = os.environ.get("LUMORA_TEST_PICTURES", os.path.join(self.folder, "pictures"))

    def device(self, names):
        """A device root with plug-ins and applications of these names beside the samples."""
        root = os.path.join(self.folder, "root")
        shutil.copytree(ROOT, root, symlinks=True, dirs_exist_ok=True)
        for number, name in enumerate(names):
            bundle = os.path.join(root, f"Library/Nevo/Lumora/Plugins/Strange{number}.bundle")
            os.makedirs(bundle)
            shutil.copy(os.path.join(BINARIES, "strange", "StrangePlugin"), bundle)
            with open(os.path.join(bundle, "Info.plist"), "wb") as file:
                plistlib.dump({"CFBundleExecutable": "StrangePlugin", "NSPrincipalClass": "Strange"}, file)
            with open(os.path.join(bundle, "name.txt"), "w", encoding="utf-8", newline="") as file:
                file.write(name)
            title = re.sub(r"[\r\n\\]", " ", name)
            application = os.path.join(root, f"usr/share/applications/org.example.Strange{number}.desktop")
            with open(application, "w", encoding="utf-8") as file:
                file.write(f"[Desktop Entry]\nType=Application\nName={title}\nExec=true\n")
        return root

    def look(self, called, answered, root=ROOT, sizes=(100, 200)):
        """Opens every page, and expects nothing to be said about them."""
        for size in sizes:
            with self.subTest(called, text_size=size):
                name = re.sub(r"\W+", "-", f"{called} {size}")
                pictures = os.path.join(self.pictures, "strange", name)
                os.makedirs(pictures, exist_ok=True)
                home = tempfile.mkdtemp(dir=self.folder)
                environment = {key: value for key, value in os.environ.items()
                               if not key.startswith(("QT_", "QSG_", "LUMORA_", "XDG_", "WAYLAND", "DBUS_"))}
                environment |= {"HOME": home, "XDG_DATA_DIRS": home, "XDG_DATA_HOME": home, "XDG_RUNTIME_DIR": home,
                                "LUMORA_PORTS": home, "LC_ALL": "C.UTF-8", "QT_QPA_PLATFORM": "offscreen",
                                "QT_QUICK_BACKEND": "software", "QSG_RENDER_LOOP": "threaded", "QT_SCALE_FACTOR": "1"}
                with Tweak(home, answered) as tweak:
                    tour = subprocess.run([program("layout_tour"), root, pictures, str(size)], env=environment,
                                          capture_output=True, timeout=2 * LONG_ENOUGH, check=False)
                    self.assertEqual(tweak.changes, [], "looking changes nothing")
                said = tour.stdout.decode(errors="replace")
                self.assertEqual(said, "", f"see the pictures in {pictures}")
                self.assertEqual(tour.returncode, 0, tour.stderr.decode(errors="replace")[-2000:])


class Few(Strange):
    """What fits into half a minute."""

    def test_plain_settings(self):
        self.look("plain", settings(), sizes=(100, 200, 300))

    def test_no_settings(self):
        self.look("no settings", {}, sizes=(100,))

    def test_texts_where_numbers_belong(self):
        self.look("few wrong", {key: TEXT_CASES["many words"][:1000] for key in KEYS}, sizes=(200,))

    def test_names_of_all_kinds(self):
        names = [text[:150] for text in TEXT_CASES.values()][::2]
        self.look("few names", settings(kLSDateSubtitle=NUL), self.device(names), sizes=(200,))


class All(Strange):
    def test_any_value_for_every_key(self):
        for called, value in VALUE_CASES.items():
            self.look(f"all are {called}", {key: value for key in KEYS})

    def test_each_key_left_out_while_others_are_there(self):
        """By the digits of its number, so that of any two keys each is there without the other once."""
        for digit in range(len(KEYS).bit_length()):
            for kept in 0, 1:
                some = {key: value for key, value in settings().items() if KEYS.index(key) >> digit & 1 == kept}
                self.look(f"some {digit} {kept}", some, sizes=(100,))

    def test_numbers_out_of_bounds(self):
        for called, number in (("below", -1000), ("above", 1000), ("by little", 150.0001)):
            self.look(f"numbers {called}", settings(**{key: number for key in NUMBERS}))
            self.look(f"colour {called}", settings(**{COLOUR: {"h": number, "s": number, "b": number}}), sizes=(100,))

    def test_colours_of_the_wrong_kind(self):
        for called, value in VALUE_CASES.items():
            self.look(f"colour of {called}", settings(**{COLOUR: {"h": value, "s": value, "b": value}}), sizes=(100,))

    def test_texts_of_all_kinds(self):
        for called, text in (TEXT_CASES | {"nul": NUL}).items():
            self.look(f"texts of {called}", settings(**{key: text for key in TEXTS}), sizes=(50, 100, 200, 300))

    def test_lists_of_all_kinds(self):
        for called, entries in LIST_CASES.items():
            self.look(f"lists of {called}", settings(**{key: entries for key in LISTS}))

    def test_names_of_all_kinds(self):
        for number, (called, name) in enumerate(TEXT_CASES.items()):
            with self.subTest(called):
                self.folder = os.path.join(self.folder, str(number))
                self.look(f"names of {called}", settings(), self.device([name]), sizes=(50, 100, 200, 300))

    def test_thousands_of_applications(self):
        root = self.device([])
        for number in range(5000):
            with open(f"{root}/usr/share/applications/org.example.Application{number}.desktop", "w",
                      encoding="utf-8") as file:
                file.write(f"[Desktop Entry]\nType=Application\nName=Application {number}\nExec=true\n")
        self.look("thousands", settings(kAppsEnabled=LIST_CASES["5,000 entries"]), root, sizes=(100,))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[1:-2]])

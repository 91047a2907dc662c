#!/usr/bin/python3
"""Every page on settings, names and titles of any kind: it opens, nothing overlaps and nothing is cut off.

    PYTHONPATH=tests tests/settings/window/strange_test.py [-v] Few|Values|Texts BUILD

A program looks at the pages, in several sizes of the window and of texts: layout_tour. Its pictures of those that it
complains of are left in $LUMORA_TEST_PICTURES, if that is set. Needs fc-list and the fonts that are named here.
"""
import os
import re
import shutil
import subprocess
import tempfile
import unicodedata
import unittest
from pathlib import Path

from harness.archives import Date
from harness.build import SOURCE
from harness.programs import ROOT, add_plugin, program
from harness.tweak import Tweak
from harness.waiting import LONG_ENOUGH

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

# Of the packages fonts-inter, fonts-dejavu-core, fonts-noto-color-emoji, fonts-ddc-uchen and fonts-tlwg-loma-ttf.
FONTS = ["opentype/inter/*.otf", "truetype/dejavu/DejaVuSans.ttf", "truetype/dejavu/DejaVuSans-Bold.ttf",
         "truetype/noto/NotoColorEmoji.ttf", "truetype/tibetan/DDC_Uchen.ttf", "truetype/tlwg/Loma.ttf",
         "truetype/tlwg/Loma-Bold.ttf"]
# The pages that the documentation has pictures of are all there are.
PAGES = {re.sub(r"(-end|-empty)?-\d+-(light|dark).*", "", picture.name)
         for picture in (SOURCE / "docs/pictures").glob("*.png")}


def settings(**changes):
    """Plain settings, but for some."""
    plain = {key: False for key in BOOLEANS} | {key: 20 for key in NUMBERS} | {key: "text" for key in TEXTS}
    plain |= {"kAppViewsEnabled": [], "kAppsEnabled": ["org.lumora.samples.Mail"], "kAUAppsDisabled": []}
    return plain | {COLOUR: {"h": 0.5, "s": 0.5, "b": 0.5}} | changes


def dealt(cases, keys, turn):
    """A case for each of some keys, another one in each turn."""
    values = list(cases.values())
    return {key: values[(turn + number) % len(values)] for number, key in enumerate(keys)}


class Strange(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        """The same fonts everywhere, and some for every script that the texts are in."""
        cls.fonts = tempfile.mkdtemp(prefix="strange-fonts-")
        cls.addClassCleanup(shutil.rmtree, cls.fonts, True)
        for pattern in FONTS:
            files = [*Path("/usr/share/fonts").glob(pattern)]
            assert files, f"there is no /usr/share/fonts/{pattern}"
            for file in files:
                Path(cls.fonts, file.name).symlink_to(file)
        cls.fonts_file = Path(cls.fonts, "fonts.conf")
        cls.fonts_file.write_text(
            f"<fontconfig><dir>{cls.fonts}</dir><cachedir>{cls.fonts}/cache</cachedir></fontconfig>", encoding="utf-8")

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="strange-")
        self.addCleanup(shutil.rmtree, self.folder, True)
        self.pictures = os.environ.get("LUMORA_TEST_PICTURES", os.path.join(self.folder, "pictures"))

    def device(self, names):
        """A device root with plug-ins and applications of these names beside the samples."""
        root = os.path.join(self.folder, "root")
        shutil.copytree(ROOT, root, symlinks=True, dirs_exist_ok=True)
        for number, name in enumerate(names):
            bundle = add_plugin(root, f"Strange{number}", program("strange/StrangePlugin"), "Strange")
            Path(bundle, "name.txt").write_bytes(name.encode())
            self.add_application(root, f"Strange{number}", re.sub(r"[\r\n\\]", " ", name))
        return root

    @staticmethod
    def add_application(root, identifier, name):
        Path(root, f"usr/share/applications/org.example.{identifier}.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName={name}\nExec=true\n", encoding="utf-8")

    def look(self, called, answered, root=ROOT, size=200, names=(), at=(), left_out=(), widths=("320", "390")):
        """Opens every page, and expects nothing to be said about them."""
        with self.subTest(called, text_size=size):
            name = re.sub(r"\W+", "-", f"{called} {size}")
            pictures = os.path.join(self.pictures, "strange", name)
            shutil.rmtree(pictures, True)
            home = tempfile.mkdtemp(dir=self.folder)
            environment = {key: value for key, value in os.environ.items()
                           if not key.startswith(("QT_", "QSG_", "LUMORA_", "XDG_", "WAYLAND", "DBUS_"))}
            environment |= {"HOME": home, "XDG_DATA_DIRS": home, "XDG_DATA_HOME": home, "XDG_RUNTIME_DIR": home,
                            "LUMORA_PORTS": home, "FONTCONFIG_FILE": self.fonts_file, "LC_ALL": "C.UTF-8",
                            "QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software",
                            "QSG_RENDER_LOOP": "basic", "QT_SCALE_FACTOR": "1"}
            with Tweak(home, answered) as tweak:
                tour = subprocess.run([program("layout_tour"), root, pictures, str(size), *at], env=environment,
                                      capture_output=True, text=True, errors="replace", timeout=30 * LONG_ENOUGH,
                                      check=False)
                self.assertEqual(tweak.changes, [], "looking changes nothing")
            self.assertEqual(tour.stdout, "", f"see the pictures in {pictures}")
            self.assertEqual(tour.returncode, 0, tour.stderr[-2000:])
            self.expect_all_pages(tour.stderr, names, left_out, widths)

    def expect_all_pages(self, told, names, left_out, widths):
        """Those of the application, and one for each of the names; at each width."""
        for width in widths:
            found = set(re.findall(rf"^looked at (.+?)(?:-end)?-{width}\b", told, re.MULTILINE))
            more = found - PAGES
            self.assertEqual(PAGES - found, set(left_out), "not opened")
            self.assertEqual(len([page for page in more if page.startswith("StrangePage")]), len(names), more)
            allowed = "StrangePage|PSListItemsController-|Composer-"
            self.assertTrue(all(re.match(allowed, page) for page in more), more)


class Few(Strange):
    """What fits into half a minute."""

    def test_has_a_glyph_for_every_character(self):
        """But for those that say how others are written, and for a space of another width."""
        listed = subprocess.run(["fc-list", "--format", "%{charset} "], capture_output=True, check=True, text=True,
                                env=os.environ | {"FONTCONFIG_FILE": self.fonts_file}).stdout
        ranges = [[int(end, 16) for end in part.split("-")] for part in set(listed.split())]
        missing = {character for text in TEXT_CASES.values() for character in text
                   if unicodedata.category(character) not in ("Cc", "Cf", "Zs", "Zl", "Zp")
                   and not any(part[0] <= ord(character) <= part[-1] for part in ranges)}
        self.assertEqual(missing, set())

    def test_plain_settings(self):
        for size in (100, 300):
            self.look("plain", settings(), size=size)

    def test_a_window_that_is_turned(self):
        # What stands over a page has tests of its own.
        over = [page for page in PAGES
                if page.startswith(("Composer", "Fault", "Notice", "Waiting")) or page.endswith("-menu")]
        self.look("turned", settings(), size=100, at=["turned"], left_out=over, widths=["390"])

    def test_no_settings(self):
        self.look("no settings", {}, size=100)

    def test_texts_where_numbers_belong(self):
        self.look("few wrong", {key: TEXT_CASES["many words"] for key in KEYS})

    def test_names_of_some_kinds(self):
        names = [TEXT_CASES[case][:300] for case in ("one long word", "right to left", "emoji", "tall scripts", "invisible")]
        self.look("few names", settings(kLSDateSubtitle=NUL), self.device(names), names=names)


class Values(Strange):
    """What else can be stored for the keys, or be missing."""

    def test_any_value_for_keys_of_every_kind(self):
        """In so many turns even the three keys of lists get each of them between them."""
        for turn in range(0, len(VALUE_CASES), len(LISTS)):
            self.look(f"values {turn}", dealt(VALUE_CASES, KEYS, turn), size=(100, 200)[turn % 2])

    def test_each_key_left_out_while_others_are_there(self):
        """By the digits of its number, so that of any two keys one is there without the other once."""
        for digit in range(len(KEYS).bit_length()):
            some = {key: value for key, value in settings().items() if KEYS.index(key) >> digit & 1}
            self.look(f"some {digit}", some, size=100)

    def test_numbers_out_of_bounds(self):
        for called, number in (("below", -1000), ("above", 1000), ("by little", 150.0001)):
            color = {COLOUR: {"h": number, "s": number, "b": number}}
            self.look(f"numbers {called}", settings(**{key: number for key in NUMBERS}, **color))

    def test_colours_of_the_wrong_kind(self):
        """Three values at a time."""
        for turn in range(0, len(VALUE_CASES), 3):
            self.look(f"colour {turn}", settings(**{COLOUR: dealt(VALUE_CASES, "hsb", turn)}), size=100)


class Texts(Strange):
    """Texts, names and lists of all kinds."""

    def test_texts_of_all_kinds(self):
        cases = TEXT_CASES | {"nul": NUL}
        for number, turn in enumerate(range(0, len(cases), 2)):  # any two keys side by side get each of them
            self.look(f"texts {turn}", settings(**dealt(cases, TEXTS, turn)), size=(50, 100, 200, 300)[number % 4])

    def test_lists_of_all_kinds(self):
        for turn in range(len(LIST_CASES)):
            self.look(f"lists {turn}", settings(**dealt(LIST_CASES, LISTS, turn)), size=(100, 200)[turn % 2])

    def test_names_of_all_kinds(self):
        names = TEXT_CASES.values()
        root = self.device(names)
        for size in (100, 300):
            self.look("names", settings(), root, size, names)

    def test_thousands_of_applications(self):
        root = self.device([])
        for number in range(5000):
            self.add_application(root, f"Application{number}", f"Application {number}")
        self.look("thousands", settings(kAppsEnabled=LIST_CASES["5,000 entries"]), root, size=100)


if __name__ == "__main__":
    unittest.main()

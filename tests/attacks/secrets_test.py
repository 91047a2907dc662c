#!/usr/bin/python3
"""Passcodes do not leak: they are in none of what the programs print, log, draw, say to assistive tools, hand to other
programs or leave in files, but where they must be: in the tweak's settings, and in the root page's log line. And what
the application leaves in files is for its user alone.

    PYTHONPATH=tests dbus-run-session -- tests/attacks/secrets_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import email
import email.policy
import os
import stat
import subprocess
import unittest
from pathlib import Path

import pyatspi
from gi.repository import Atspi, GLib

from harness.programs import ROOT
from harness.spoken import Spoken
from harness.waiting import eventually
from harness.window import Windows

KEYS = ("kAutoUnlockPasscode", "kAutoUnlockPasscodeConfirm", "kAutoUnlockWidgetPasscode")
PASSCODES = {key: f"zq{number}Wx{number}Vk" for number, key in enumerate(KEYS, 1)}
OTHERS = {key: f"ia{number}Lj{number}Tr" for number, key in enumerate(KEYS, 4)}  # as long
# Pages on which passcodes are, and the one that logs them.
PAGES = ("AutoUnlockController", "PluginsListController", "LumoraPreferences")


def contents(path):
    """The header fields and parts of a message as who reads it sees them: in the file they may be encoded."""
    message = email.message_from_bytes(path.read_bytes(), policy=email.policy.default)
    for part in message.walk():
        yield "header", "\n".join(f"{name}: {value}" for name, value in part.items())
        if not part.is_multipart():
            yield part.get_content_type(), part.get_payload(decode=True)


class Leaks(Windows):
    """A test that looks for passcodes."""

    def leaks(self, text):
        data = text if isinstance(text, bytes) else text.encode()
        return [key for key, passcode in PASSCODES.items()
                if passcode.encode() in data or passcode.encode("utf-16-le") in data]

    def assert_tells_nothing(self, text, where):
        self.assertEqual(self.leaks(text), [], f"{where}: {text!r}")

    def assert_only_the_root_page_tells(self, errors, times):
        """What must be told: all settings, in one log line each time that page appears."""
        blocks = errors.split(" lumora-settings[")[1:]
        telling = [block for block in blocks if self.leaks(block)]
        self.assertEqual(len(telling), times, errors)
        for block in telling:
            self.assertEqual(self.leaks(block), list(KEYS))
            self.assertIn("kTweakEnabled", block)
        self.assertEqual(self.leaks(errors.split(" lumora-settings[")[0]), [])

    def assert_not_handed_on(self, process):
        for name in ("cmdline", "environ"):
            self.assert_tells_nothing(Path(f"/proc/{process.pid}/{name}").read_bytes(), name)

    def files(self):
        """All that was made in the test's folder, but the settings themselves."""
        for path in Path(self.folder).rglob("*"):
            if path != Path(self.settings_file) and stat.S_ISREG(os.lstat(path).st_mode):
                yield path

    def assert_left_in_no_file(self):
        for path in self.files():
            self.assert_tells_nothing(path.read_bytes(), path)
            if path.suffix == ".eml":
                for what, content in contents(path):
                    self.assert_tells_nothing(content, f"{what} of {path}")


class PrintedTest(Leaks):
    def run_tweak(self):
        self.store(PASSCODES)
        self.start_tweak()

    def test_lumoractl_shows_a_passcode_only_when_asked_to(self):
        self.run_tweak()
        for arguments in (["list"], ["plugins", "--root", ROOT], *(["get", key] for key in KEYS)):
            done = self.lumoractl(*arguments)
            self.assert_tells_nothing(done.stdout + done.stderr, arguments)
        self.assertEqual(self.leaks(self.lumoractl("list", "--secrets").stdout), list(KEYS))
        for key in KEYS:
            self.assertEqual(self.leaks(self.lumoractl("get", key, "--secrets").stdout), [key])

    def test_the_tweak_notes_a_change_of_a_passcode_without_it(self):
        tweak = self.start_tweak("--verbose", stderr=subprocess.PIPE)
        for key, passcode in PASSCODES.items():
            taken = self.lumoractl("set", key, "-", input=f'"{passcode}"')
            self.assertEqual((taken.returncode, taken.stdout, taken.stderr), (0, "", ""))
            for wrong in (f'["{passcode}"]', f'{{"{passcode}": 1}}'):
                self.assert_tells_nothing(self.lumoractl("set", key, "-", input=wrong, status=1).stderr, wrong)
        for looking_back in (["history"], ["history", "--json"], ["at", "now"], ["restore", "--dry-run", "1h"], ["undo"]):
            done = self.lumoractl(*looking_back)
            self.assert_tells_nothing(done.stdout + done.stderr, looking_back)
        self.assert_not_handed_on(tweak)
        self.end(tweak)
        noted = tweak.lines.whole()
        for key, passcode in PASSCODES.items():
            self.assertIn(f'"{key}"', noted)
            self.assertEqual(self.stored(key), passcode)
        self.assert_tells_nothing(noted, "the tweak's log")
        self.assert_left_in_no_file()

    def test_lumoractl_says_nothing_of_a_passcode_that_it_does_not_understand(self):
        self.run_tweak()
        for passcode in PASSCODES.values():
            wrong = self.lumoractl("set", KEYS[0], "-", input=passcode, status=2)  # without quotes
            self.assert_tells_nothing(wrong.stdout + wrong.stderr, "what is wrong")

    def test_pages_are_printed_with_dots(self):
        self.run_tweak()
        for page in PAGES:
            printed = self.settings("--rows", page, status=0, DISPLAY="")
            self.assert_tells_nothing(printed.stdout, page)
            self.assertEqual(printed.stderr, "", "logs go to standard error only when that is asked for")

    def test_pages_are_drawn_alike_with_other_passcodes(self):
        drawn = []
        for passcodes in (PASSCODES, OTHERS):
            self.store(passcodes)
            tweak = self.start_tweak()
            for page in PAGES:
                picture = os.path.join(self.folder, f"{page}.png")
                saved = self.settings("--verbose", "--grab", picture, "--page", page, "--size", "390x2000", status=0)
                self.assert_only_the_root_page_tells(
                    saved.stderr, 1 if page == "LumoraPreferences" and passcodes == PASSCODES else 0)
                drawn.append(Path(picture).read_bytes())
            self.end(tweak)
        self.assertEqual(drawn[:len(PAGES)], drawn[len(PAGES):])


class WindowTest(Leaks, Spoken):
    """The window under a umask that hides nothing, at home in a folder in which nothing is yet."""

    def start_tweak(self, *options):
        self.store(PASSCODES)
        self.addCleanup(os.umask, os.umask(0))
        home = self.folder + "/home"
        self.environment |= {"HOME": home, "XDG_DATA_HOME": home + "/data", "XDG_CACHE_HOME": home + "/cache",
                             "XDG_CONFIG_HOME": home + "/config", "TMPDIR": self.folder + "/tmp"}
        for name in ("HOME", "TMPDIR"):
            os.mkdir(self.environment[name], 0o700)
        return super().start_tweak(*options)

    def spoken_texts(self, window):
        """All that assistive tools can read of a window, and how many fields are among it."""
        texts, fields = [], 0
        try:
            for application in self.applications(window):
                for item in self.find(application, lambda _: True):
                    texts += [item.name, item.description, *item.getAttributes()]
                    if text := item.get_text_iface():
                        texts.append(Atspi.Text.get_text(text, 0, Atspi.Text.get_character_count(text)))
                    fields += item.getRole() == pyatspi.ROLE_TEXT
        except GLib.Error:
            return [], 0  # something went away while it was looked at
        return texts, fields

    def test_says_nothing_of_a_passcode(self):
        for page, count in (("AutoUnlockController", 2), ("PluginsListController", 1)):
            window = self.open_window("--page", page)
            texts, _ = eventually(lambda: (said := self.spoken_texts(window))[1] >= count and said, "the fields")
            self.assert_tells_nothing("\n".join(texts), page)
            self.assertIn("•" * len(PASSCODES[KEYS[0]]), texts)
            self.assert_tells_nothing(self.xdotool("getwindowname", window.id), "the window's name")
            self.assert_not_handed_on(window)
            self.expect_to_close(window)
            self.assert_tells_nothing(window.lines.text, "standard error")
        self.assert_left_in_no_file()

    def test_keeps_a_report_for_its_user_alone_and_passcodes_out_of_it(self):
        """A mail program is told of nothing but the message, with the log that is there attached."""
        self.make_root()
        os.mkdir(self.root + "/tmp")
        log = b"what was installed, \0\xff"
        Path(self.root, "tmp/dpkgl.log").write_bytes(log)
        mailer = self.environment["LUMORA_SENDMAIL"] = self.add_script("mailer", (
            f"cat >{self.folder}/told.eml\n"
            f"{{ tr '\\0' '\\n' </proc/$$/cmdline; env; }} >{self.folder}/told\nexit 75"))
        window = self.open_root_page()
        self.press_button(window, "support@nevo.example")
        self.press_button(window, "Send")
        drafts = Path(self.folder, "home/data/lumora/drafts")
        said = eventually(lambda: [name for name in self.spoken(window, pyatspi.ROLE_ALERT) if str(drafts) in name],
                          "what went wrong")
        self.assert_tells_nothing("\n".join(said), "the sheet")
        self.close(window)
        window.wait()
        self.assert_only_the_root_page_tells(window.lines.text, 1)
        self.assertIn(mailer, Path(self.folder, "told").read_text(encoding="utf-8"))
        for message in (Path(self.folder, "told.eml"), *drafts.glob("*.eml")):
            parts = [content for what, content in contents(message) if what != "header"]
            self.assertTrue(any(b"Lumora" in part for part in parts), parts)
            self.assertIn(log, parts, "what is attached is looked into as well")
            self.assertNotIn(log, message.read_bytes(), "and would not be found as it stands there")
        self.assert_left_in_no_file()
        for path in [drafts.parent, *drafts.parent.rglob("*")]:
            self.assertEqual(stat.S_IMODE(os.lstat(path).st_mode) & 0o077, 0, path)
        for path in Path(self.folder, "home").rglob("*"):
            self.assertEqual(stat.S_IMODE(os.lstat(path).st_mode) & 0o022, 0, f"{path} can be changed by others")
        self.assertEqual(os.listdir(self.environment["TMPDIR"]), [])


if __name__ == "__main__":
    unittest.main()

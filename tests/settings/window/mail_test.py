#!/usr/bin/python3
"""The problem report in the real programs: composed in the window, sent by a real mail transport to a mail server of the
test's own, saved, cancelled.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/mail_test.py [-v] BUILD

Needs what spoken.py needs, msmtp and aiosmtpd.
"""
import asyncio
import email
import email.policy
import os
import shutil
import subprocess
import threading
import unittest
from pathlib import Path

import pyatspi
from aiosmtpd.smtp import SMTP

from harness.programs import ROOT
from harness.spoken import BUTTON, SWITCH, Spoken
from harness.waiting import LONG_ENOUGH, eventually, settled

DIALOG = pyatspi.ROLE_DIALOG
FIELD = pyatspi.ROLE_TEXT
ITEM = pyatspi.ROLE_LIST_ITEM
ALERT = pyatspi.ROLE_ALERT

SUPPORT = "support@nevo.example"


def message_in(content):
    return email.message_from_bytes(content, policy=email.policy.default)


def attached(message):
    """The names of the files, and what is in them."""
    return [(part.get_filename(), part.get_payload(decode=True)) for part in message.iter_attachments()]


class Sink:
    """A mail server on a free port, for one test; keeps what it is sent."""

    def __init__(self):
        self.envelopes = []
        self.loop = asyncio.new_event_loop()
        self.server = self.loop.run_until_complete(self.loop.create_server(
            lambda: SMTP(self, data_size_limit=None, hostname="sink.example", loop=self.loop), "127.0.0.1", 0))
        self.port = self.server.sockets[0].getsockname()[1]
        self.thread = threading.Thread(target=self.loop.run_forever)
        self.thread.start()

    async def handle_DATA(self, _server, _session, envelope):
        self.envelopes.append(envelope)
        return "250 OK"

    def stop(self):
        self.loop.call_soon_threadsafe(self.loop.stop)
        self.thread.join()
        self.server.close()
        self.loop.close()

    def only(self):
        eventually(lambda: self.envelopes, "the message")
        assert len(self.envelopes) == 1
        return self.envelopes[0], message_in(self.envelopes[0].content)


class MailTest(Spoken):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        # A keyboard with letters beyond ASCII.
        subprocess.run(["setxkbmap", "-display", cls.display.name, "de"], check=True)

    def setUp(self):
        super().setUp()
        self.make_device()
        self.sink = Sink()
        self.addCleanup(self.sink.stop)
        os.mkdir(self.folder + "/bin")
        os.symlink(shutil.which("msmtp"), self.folder + "/bin/sendmail")
        os.chmod(self.write(".msmtprc", f"account default\nhost 127.0.0.1\nport {self.sink.port}\n"
                            "from user@home.example\ntls off\nauth off\n"), 0o600)
        self.environment |= {
            "HOME": self.folder, "EMAIL": "user@home.example", "PATH": f"{self.folder}/bin:{os.environ['PATH']}",
            **{name: self.folder for name in ("XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_DIRS")}}

    def make_device(self):
        """A device root of the test's own, with everything of the real one but logs."""
        self.root = self.folder + "/device"
        for folder in ("var/mobile", "tmp"):
            os.makedirs(os.path.join(self.root, folder))
        for folder in os.listdir(ROOT):
            if folder not in ("var", "tmp"):
                os.symlink(os.path.join(ROOT, folder), os.path.join(self.root, folder))
        self.log = Path(self.root, "var/mobile/nevo_lumora_log")
        self.other = Path(self.root, "tmp/dpkgl.log")

    def compose(self):
        window = self.open_root_page()
        self.press_button(window, SUPPORT)
        eventually(lambda: self.has_focus(window, "Message"), "the composer")
        settled(lambda: self.extents(self.named(window, BUTTON, "Send")).y, "the composer in its place")
        return window

    def has_focus(self, window, name):
        field = self.spoken(window, FIELD).get(name)
        return field and self.has_state(field, pyatspi.STATE_FOCUSED)

    def text(self, window, name):
        return self.text_of(self.named(window, FIELD, name)).replace("\u2029", "\n")  # which ends the toolkit's lines

    def type_into(self, window, field, text):
        """Puts a text at the end of a field's."""
        before = self.text(window, field)
        self.type(window, text)
        eventually(lambda: self.text(window, field) == before + text, f"{text!r} in {field}")

    def write_more(self, window):
        self.keys(window, "ctrl+End")
        self.type_into(window, "Message", " Yes.")

    def expect_gone(self, window):
        eventually(lambda: "New Message" not in self.spoken(window, DIALOG), "the composer to go")
        eventually(lambda: "New Message" not in self.spoken(window, pyatspi.ROLE_HEADING), "the sheet to go")

    def reasons(self, window):
        """Why it could not be sent, with the place of its draft."""
        return [name for name in self.spoken(window, ALERT) if "kept as a draft" in name]

    def kept(self):
        return [*Path(self.folder, "lumora/drafts").glob("*")]

    def expect_nothing(self):
        """Neither kept nor sent."""
        self.assertEqual((self.kept(), self.sink.envelopes), ([], []))

    # -- sending --

    def test_sends_the_report_as_it_was_edited(self):
        log = (b".\n..\n.dot\nFrom here\n" + b"x" * 3_000_000 + b"\n\0\xff\xfe\r\n"
               b"Content-Type: multipart/mixed; boundary=\"end\"\n\n--end\nContent-Type: text/plain\n\n--end--\n" + b"no end")
        self.log.write_bytes(log)
        self.other.write_bytes(b"packages\n")
        window = self.compose()
        self.assertEqual(self.text(window, "To"), SUPPORT)
        self.assertRegex(self.text(window, "Subject"), r"^Lumora -- .+\(.+\)$")
        begun = self.text(window, "Message")
        self.assertTrue(begun.endswith("Reproduce:\nHow can I reproduce this issue?"), begun)
        subject = self.text(window, "Subject")
        self.assertLessEqual({"Attachment log, 3.0 MB", "Attachment dpkgl.log, 9 bytes"},
                             self.spoken(window, ITEM).keys())
        long_line = "y" * 1100
        self.keys(window, "ctrl+End", "Return")
        eventually(lambda: self.text(window, "Message") == begun + "\n", "the new line")
        self.type_into(window, "Message", ".a dot")
        self.keys(window, "Return")
        eventually(lambda: self.text(window, "Message").endswith("\n"), "the new line")
        self.type_into(window, "Message", long_line + "äöü")
        self.keys(window, "shift+Tab", "End")
        eventually(lambda: self.has_focus(window, "Subject"), "the focus on the subject")
        self.type_into(window, "Subject", " für")
        self.press_button(window, "Send")
        envelope, message = self.sink.only()
        self.expect_gone(window)

        self.assertEqual(envelope.rcpt_tos, [SUPPORT])
        self.assertEqual(message["To"], SUPPORT)
        self.assertEqual(message["From"], "user@home.example")
        self.assertEqual(message["Subject"], subject + " für")
        self.assertIsNotNone(message["Date"].datetime)
        self.assertRegex(message["Message-ID"], r"^<\S+@\S+>$")
        body = message.get_body(("plain",))
        self.assertEqual(body.get_content_charset(), "utf-8")
        self.assertEqual(body.get_content().replace("\r\n", "\n").rstrip("\n"),
                         begun + "\n.a dot\n" + long_line + "äöü")
        self.assertEqual(attached(message), [("log", log), ("dpkgl.log", b"packages\n")])
        self.assertEqual([part.get_content_type() for part in message.iter_attachments()], ["text/plain"] * 2)
        self.assertLessEqual(max(map(len, envelope.content.split(b"\r\n"))), 998)
        self.assertEqual(self.kept(), [])

    def test_sends_a_log_of_20_megabytes_by_keyboard(self):
        log = os.urandom(20_000_000)
        self.log.write_bytes(log)
        window = self.compose()
        self.assertIn("Attachment log, 20.0 MB", self.spoken(window, ITEM))
        self.keys(window, "ctrl+Return")
        _, message = self.sink.only()
        self.assertEqual(attached(message), [("log", log)])
        self.expect_gone(window)
        self.assertEqual(self.kept(), [])

    def test_leaves_out_a_log_that_cannot_be_read(self):
        self.log.mkdir()
        self.other.write_bytes(b"packages\n")
        window = self.compose()
        self.keys(window, "ctrl+Return")
        _, message = self.sink.only()
        self.assertEqual(attached(message), [("dpkgl.log", b"packages\n")])

    def hold_up_sending(self):
        """Sends only once something is written to the pipe that this gives."""
        gate = os.path.join(self.folder, "gate")
        os.mkfifo(gate)
        self.environment["LUMORA_SENDMAIL"] = self.add_script("slow", f'read go < {gate}\nexec msmtp "$@"')
        return gate

    def test_sends_to_the_end_when_the_window_is_closed_meanwhile(self):
        gate = self.hold_up_sending()
        window = self.compose()
        self.keys(window, "ctrl+Return")
        eventually(lambda: "Sending…" in self.spoken(window, ALERT), "what it is doing")
        self.close(window)
        eventually(lambda: not self.windows(window), "the window to go")
        self.write(gate, b"go\n")
        self.sink.only()
        self.assertEqual(window.wait(LONG_ENOUGH), 0)
        self.assertEqual(self.kept(), [])

    def test_says_that_it_is_sending_and_cannot_be_pressed_again(self):
        gate = self.hold_up_sending()
        window = self.compose()
        self.keys(window, "ctrl+Return")
        eventually(lambda: "Sending…" in self.spoken(window, ALERT), "what it is doing")
        self.press_button(window, "Send")
        self.keys(window, "ctrl+Return", "Escape")
        self.assertIn("New Message", self.spoken(window, DIALOG))
        self.write(gate, b"go\n")
        self.expect_gone(window)
        self.sink.only()

    def test_keeps_a_report_that_cannot_be_sent_says_where_and_tries_again(self):
        self.sink.server.close()
        window = self.compose()
        self.keys(window, "ctrl+Return")
        said = eventually(lambda: self.reasons(window), "the reason")
        [draft] = self.kept()
        self.assertIn(str(draft), said[0])
        self.press_button(window, "Try Again")
        eventually(lambda: any(str(draft) not in reason for reason in self.reasons(window)), "the draft of another try")
        self.press_button(window, "Save Draft")
        self.expect_gone(window)
        self.assertEqual(len(self.kept()), 1)

    def test_offers_nothing_where_no_mail_can_be_sent(self):
        self.environment["LUMORA_SENDMAIL"] = ""
        window = self.open_root_page()
        button = self.named(window, BUTTON, SUPPORT)
        before = window.lines.text
        self.act(button, "Press")
        # The page still takes what comes after it.
        self.act(self.spoken(window, SWITCH)["Enable Lumora"], "Toggle")
        eventually(lambda: self.stored("kTweakEnabled") is False, "the switch")
        self.assertNotIn("New Message", self.spoken(window, DIALOG))
        self.assertEqual(window.lines.text, before)

    # -- not sending --

    def test_saves_a_draft_that_a_mail_program_can_open(self):
        self.log.write_bytes(b"one\n")
        window = self.compose()
        self.write_more(window)
        self.press_button(window, "Save Draft")
        self.expect_gone(window)
        [draft] = self.kept()
        message = message_in(draft.read_bytes())
        self.assertEqual(message["To"], SUPPORT)
        self.assertIn("issue? Yes.", message.get_body(("plain",)).get_content())
        self.assertEqual(attached(message), [("log", b"one\n")])
        self.assertEqual(self.sink.envelopes, [])

    def test_cancels_without_a_trace_and_gives_the_page_back(self):
        window = self.compose()
        self.assertEqual(self.spoken(window, SWITCH), {}, "the page behind cannot be used")
        self.press_button(window, "Cancel")
        self.expect_gone(window)
        self.assertIsNone(self.stored("kTweakEnabled"))
        self.act(self.spoken(window, SWITCH)["Enable Lumora"], "Toggle")
        eventually(lambda: self.stored("kTweakEnabled") is False, "the switch")
        self.expect_nothing()

    def test_keeps_a_report_that_is_refused_after_the_window_was_closed(self):
        window = self.compose()
        self.keys(window, "shift+Tab", "shift+Tab")
        eventually(lambda: self.has_focus(window, "To"), "the focus on the recipients")
        self.keys(window, "End")
        self.type_into(window, "To", ", bob")
        self.keys(window, "ctrl+Return")
        self.expect_to_close(window)
        self.assertEqual(len(self.kept()), 1)
        self.assertEqual(self.sink.envelopes, [])

    def test_keeps_what_was_written_when_the_window_is_closed(self):
        window = self.compose()
        self.write_more(window)
        self.expect_to_close(window)
        self.assertEqual(len(self.kept()), 1)
        eventually(lambda: "kept as a draft" in window.lines.text, "where the draft is")

    def test_keeps_nothing_when_the_window_is_closed_before_anything_was_written(self):
        window = self.compose()
        self.expect_to_close(window)
        self.assertEqual(self.kept(), [])


if __name__ == "__main__":
    unittest.main()

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

import pyatspi
from aiosmtpd.smtp import SMTP

from harness.programs import ROOT
from harness.spoken import SWITCH, Spoken
from harness.waiting import LONG_ENOUGH, eventually, settled

BUTTON = pyatspi.ROLE_PUSH_BUTTON
DIALOG = pyatspi.ROLE_DIALOG
FIELD = pyatspi.ROLE_TEXT
ITEM = pyatspi.ROLE_LIST_ITEM
ALERT = pyatspi.ROLE_ALERT

SUPPORT = "support@nevo.example"


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
        return self.envelopes[0], email.message_from_bytes(self.envelopes[0].content, policy=email.policy.default)


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
        os.mkdir(os.path.join(self.folder, "bin"))
        os.symlink(shutil.which("msmtp"), os.path.join(self.folder, "bin", "sendmail"))
        config = os.path.join(self.folder, ".msmtprc")
        with open(config, "w", encoding="ascii") as file:
            file.write(f"account default\nhost 127.0.0.1\nport {self.sink.port}\nfrom user@home.example\n"
                       "tls off\nauth off\n")
        os.chmod(config, 0o600)
        self.environment |= {
            "HOME": self.folder, "EMAIL": "user@home.example",
            "PATH": os.path.join(self.folder, "bin") + ":" + os.environ["PATH"],
            **{name: self.folder for name in ("XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_DIRS")}}
        self.drafts = os.path.join(self.folder, "lumora", "drafts")

    def make_device(self):
        """A device root of the test's own, with everything of the real one but logs."""
        self.device = os.path.join(self.folder, "device")
        for folder in ("", "var", "var/mobile", "tmp"):
            os.mkdir(os.path.join(self.device, folder))
        for folder in os.listdir(ROOT):
            if folder not in ("var", "tmp"):
                os.symlink(os.path.join(ROOT, folder), os.path.join(self.device, folder))
        self.root = self.device
        self.log = os.path.join(self.device, "var/mobile/nevo_lumora_log")
        self.other = os.path.join(self.device, "tmp/dpkgl.log")

    @staticmethod
    def write(path, content):
        with open(path, "wb") as file:
            file.write(content)

    def compose(self, *options):
        window = self.open_root_page(*options)
        eventually(lambda: SUPPORT in self.spoken(window, BUTTON), "the button")
        self.act(self.spoken(window, BUTTON)[SUPPORT], "Press")
        eventually(lambda: self.has_focus(window, "Message"), "the composer")
        # It has slid in when it stands still.
        settled(lambda: self.place_of(window, BUTTON, "Send").y, "the composer in its place")
        return window

    def place_of(self, window, role, name):
        return self.named(window, role, name).queryComponent().getExtents(pyatspi.DESKTOP_COORDS)

    def has_focus(self, window, name):
        field = self.spoken(window, FIELD).get(name)
        return field and field.getState().contains(pyatspi.STATE_FOCUSED)

    def text(self, window, name):
        field = self.named(window, FIELD, name).queryText()
        return field.getText(0, field.characterCount).replace("\u2029", "\n")  # what the toolkit ends lines with

    def keys(self, window, *keys):
        self.xdotool("key", "--window", window.id, *keys)

    def type(self, window, field, text):
        """Puts a text at the end of a field's."""
        before = self.text(window, field)
        self.xdotool("type", "--window", window.id, "--delay", "4", text)
        eventually(lambda: self.text(window, field) == before + text, f"{text!r} in {field}")

    def expect_gone(self, window):
        eventually(lambda: "New Message" not in self.spoken(window, DIALOG), "the composer to go")
        eventually(lambda: "New Message" not in self.spoken(window, pyatspi.ROLE_HEADING), "the sheet to go")

    def kept(self):
        return sorted(os.listdir(self.drafts)) if os.path.isdir(self.drafts) else []

    # -- sending --

    def test_sends_the_report_as_it_was_edited(self):
        log = (b".\n..\n.dot\nFrom here\n" + b"x" * 3_000_000 + b"\n\0\xff\xfe\r\n"
               b"Content-Type: multipart/mixed; boundary=\"end\"\n\n--end\nContent-Type: text/plain\n\n--end--\n" + b"no end")
        self.write(self.log, log)
        self.write(self.other, b"packages\n")
        window = self.compose()
        self.assertEqual(self.text(window, "To"), SUPPORT)
        self.assertRegex(self.text(window, "Subject"), r"^Lumora -- .+\(.+\)$")
        begun = self.text(window, "Message")
        self.assertTrue(begun.endswith("Reproduce:\nHow can I reproduce this issue?"), begun)
        subject = self.text(window, "Subject")
        self.assertEqual(set(self.spoken(window, ITEM)) & {"Attachment log, 3.0 MB", "Attachment dpkgl.log, 9 bytes"},
                         {"Attachment log, 3.0 MB", "Attachment dpkgl.log, 9 bytes"})
        long_line = "y" * 1100
        self.keys(window, "ctrl+End", "Return")
        eventually(lambda: self.text(window, "Message") == begun + "\n", "the new line")
        self.type(window, "Message", ".a dot")
        self.keys(window, "Return")
        eventually(lambda: self.text(window, "Message").endswith("\n"), "the new line")
        self.type(window, "Message", long_line)
        self.type(window, "Message", "äöü")
        self.keys(window, "shift+Tab", "End")
        eventually(lambda: self.has_focus(window, "Subject"), "the focus on the subject")
        self.type(window, "Subject", " für")
        self.act(self.named(window, BUTTON, "Send"), "Press")
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
        attached = list(message.iter_attachments())
        self.assertEqual([part.get_filename() for part in attached], ["log", "dpkgl.log"])
        self.assertEqual([part.get_content_type() for part in attached], ["text/plain"] * 2)
        self.assertEqual([part.get_payload(decode=True) for part in attached], [log, b"packages\n"])
        self.assertLessEqual(max(map(len, envelope.content.split(b"\r\n"))), 998)
        self.assertEqual(self.kept(), [])

    def test_sends_a_log_of_20_megabytes_by_keyboard(self):
        log = os.urandom(20_000_000)
        self.write(self.log, log)
        window = self.compose()
        self.assertIn("Attachment log, 20.0 MB", self.spoken(window, ITEM))
        self.keys(window, "ctrl+Return")
        _, message = self.sink.only()
        self.assertEqual([part.get_payload(decode=True) for part in message.iter_attachments()], [log])
        self.expect_gone(window)
        self.assertEqual(self.kept(), [])

    def test_leaves_out_a_log_that_cannot_be_read(self):
        os.mkdir(self.log)
        self.write(self.other, b"packages\n")
        window = self.compose()
        self.keys(window, "ctrl+Return")
        _, message = self.sink.only()
        self.assertEqual([part.get_filename() for part in message.iter_attachments()], ["dpkgl.log"])

    def hold_up_sending(self):
        """Sends only once something is written to the pipe that this gives."""
        gate = os.path.join(self.folder, "gate")
        os.mkfifo(gate)
        slow = os.path.join(self.folder, "bin", "slow")
        self.write(slow, f"#!/bin/sh\nread go < {gate}\nexec msmtp \"$@\"\n".encode())
        os.chmod(slow, 0o700)
        self.environment["LUMORA_SENDMAIL"] = slow
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
        send = self.named(window, BUTTON, "Send")
        self.act(send, "Press")
        self.keys(window, "ctrl+Return", "Escape")
        self.assertIn("New Message", self.spoken(window, DIALOG))
        self.write(gate, b"go\n")
        self.expect_gone(window)
        self.sink.only()

    def test_keeps_a_report_that_cannot_be_sent_and_says_where(self):
        self.sink.server.close()
        window = self.compose()
        self.keys(window, "ctrl+Return")
        self.expect_gone(window)
        eventually(lambda: "kept as a draft" in window.lines.text, "where the draft is")
        self.assertIn("was not sent", window.lines.text)
        [draft] = self.kept()
        self.assertIn(os.path.join(self.drafts, draft), window.lines.text)

    def test_offers_nothing_where_no_mail_can_be_sent(self):
        self.environment["LUMORA_SENDMAIL"] = ""
        window = self.open_root_page()
        eventually(lambda: SUPPORT in self.spoken(window, BUTTON), "the button")
        before = window.lines.text
        self.act(self.spoken(window, BUTTON)[SUPPORT], "Press")
        # The page still takes what comes after it.
        self.act(self.spoken(window, SWITCH)["Enable Lumora"], "Toggle")
        eventually(lambda: self.stored("kTweakEnabled") is False, "the switch")
        self.assertNotIn("New Message", self.spoken(window, DIALOG))
        self.assertEqual(window.lines.text, before)

    # -- not sending --

    def test_saves_a_draft_that_a_mail_program_can_open(self):
        self.write(self.log, b"one\n")
        window = self.compose()
        self.keys(window, "ctrl+End")
        self.type(window, "Message", " Yes.")
        self.act(self.spoken(window, BUTTON)["Save Draft"], "Press")
        self.expect_gone(window)
        [draft] = self.kept()
        with open(os.path.join(self.drafts, draft), "rb") as file:
            message = email.message_from_binary_file(file, policy=email.policy.default)
        self.assertEqual(message["To"], SUPPORT)
        self.assertIn("issue? Yes.", message.get_body(("plain",)).get_content())
        self.assertEqual([part.get_filename() for part in message.iter_attachments()], ["log"])
        self.assertEqual(self.sink.envelopes, [])

    def test_cancels_without_a_trace_and_gives_the_page_back(self):
        window = self.compose()
        self.act(self.spoken(window, SWITCH)["Enable Lumora"], "Toggle")  # the page behind is deaf
        self.act(self.spoken(window, BUTTON)["Cancel"], "Press")
        self.expect_gone(window)
        self.assertIsNone(self.stored("kTweakEnabled"))
        self.act(self.spoken(window, SWITCH)["Enable Lumora"], "Toggle")
        eventually(lambda: self.stored("kTweakEnabled") is False, "the switch")
        self.assertEqual((self.kept(), self.sink.envelopes), ([], []))

    def test_cancels_with_escape_and_composes_another(self):
        window = self.compose()
        self.keys(window, "Escape")
        self.expect_gone(window)
        self.act(self.spoken(window, BUTTON)[SUPPORT], "Press")
        eventually(lambda: self.has_focus(window, "Message"), "the composer again")
        self.assertEqual((self.kept(), self.sink.envelopes), ([], []))

    def test_asks_before_what_was_written_is_thrown_away(self):
        window = self.compose()
        self.keys(window, "ctrl+End")
        self.type(window, "Message", " Yes.")
        self.keys(window, "Escape")
        eventually(lambda: "Keep what was written?" in self.spoken(window, ALERT), "the question")
        self.keys(window, "Escape")
        eventually(lambda: self.has_focus(window, "Message"), "the text again")
        self.type(window, "Message", " No.")
        self.keys(window, "Escape")
        eventually(lambda: "Delete Draft" in self.spoken(window, BUTTON), "the question again")
        self.act(self.spoken(window, BUTTON)["Delete Draft"], "Press")
        self.expect_gone(window)
        self.assertEqual((self.kept(), self.sink.envelopes), ([], []))

    def test_keeps_a_report_that_is_refused_after_the_window_was_closed(self):
        window = self.compose()
        self.keys(window, "shift+Tab", "shift+Tab")
        eventually(lambda: self.has_focus(window, "To"), "the focus on the recipients")
        self.keys(window, "End")
        self.type(window, "To", ", bob")
        self.keys(window, "ctrl+Return")
        self.close(window)
        self.assertEqual(window.wait(LONG_ENOUGH), 0)
        self.assertEqual(len(self.kept()), 1)
        self.assertEqual(self.sink.envelopes, [])

    def test_keeps_what_was_written_when_the_window_is_closed(self):
        window = self.compose()
        self.keys(window, "ctrl+End")
        self.type(window, "Message", " Yes.")
        self.close(window)
        self.assertEqual(window.wait(LONG_ENOUGH), 0)
        self.assertEqual(len(self.kept()), 1)
        eventually(lambda: "kept as a draft" in window.lines.text, "where the draft is")

    def test_keeps_nothing_when_the_window_is_closed_before_anything_was_written(self):
        window = self.compose()
        self.close(window)
        self.assertEqual(window.wait(LONG_ENOUGH), 0)
        self.assertEqual(self.kept(), [])


if __name__ == "__main__":
    unittest.main()

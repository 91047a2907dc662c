#!/usr/bin/env python3
"""Clients that fail in every way, and lumora-tweak, which must lose nothing, keep nothing of them and serve the others.

    PYTHONPATH=tests tests/faults/tweak_test.py [-v] BUILD
"""
import contextlib
import random
import re
import socket
import unittest
from pathlib import Path

from case import Case
from harness import wire
from harness.archives import archive, unarchive
from harness.programs import sockets, threads

CHANGE = wire.frame(archive({"object": {"key": "kLSDateSubtitle", "object": "changed"}}))
SIGN_OF_LIFE = wire.HEADER.pack(b"LMP1", 1, wire.NO_BODY)  # what it is asked for, and nothing else
MEBIBYTE = 1 << 20


def memory(process, what="VmRSS"):
    """In bytes; VmHWM is the most that it ever was."""
    status = Path(f"/proc/{process.pid}/status").read_text(encoding="ascii")
    return int(re.search(rf"^{what}:\s+(\d+) kB$", status, re.MULTILINE).group(1)) << 10


class TweakTest(Case):
    def setUp(self):
        super().setUp()
        self.tweak = self.start_tweak()
        self.own_sockets = sockets(self.tweak)
        self.assertIsNone(self.client.set("kSleepTime", 15))
        self.threads = threads(self.tweak)

    def expect_sound(self, said=""):
        """That nothing was lost or is left of the clients before, and that the next one is served."""
        # It is asked behind all of them, so that none waits to be accepted still.
        for name in (wire.REQUEST_SETTINGS, wire.UPDATE_SETTINGS):
            with contextlib.closing(self.connected(name)) as connection:
                connection.sendall(SIGN_OF_LIFE)
                wire.read_frame(connection.recv)
        self.expect_soon(lambda: sockets(self.tweak), self.own_sockets)
        self.assertLessEqual(threads(self.tweak), self.threads)
        self.assertEqual(self.all_stored(), {"kSleepTime": 15})
        self.assertEqual(self.client.settings()["kSleepTime"], 15)
        self.assertIsNone(self.client.set("kSleepTime", 60))
        self.assertEqual(self.all_stored(), {"kSleepTime": 60})
        self.assertEqual(self.tweak.lines.text, said)

    def test_takes_nothing_from_a_client_that_goes_away_at_any_byte(self):
        for end in range(len(CHANGE)):
            with contextlib.closing(self.connected()) as connection:
                connection.sendall(CHANGE[:end])
        self.expect_sound()

    def test_takes_nothing_from_a_client_that_resets_the_connection_or_sends_half_and_waits(self):
        waiting = [self.connected() for _ in range(50)]
        for number, connection in enumerate(waiting):
            connection.sendall(CHANGE[:number * len(CHANGE) // len(waiting)])
        self.assertEqual(self.client.settings()["kSleepTime"], 15, "others are served meanwhile")
        for connection in waiting:
            connection.shutdown(socket.SHUT_WR)
            self.assertEqual(connection.recv(1), b"", "closed without an answer")
            connection.close()
        self.expect_sound()

    def test_takes_a_change_that_drips_and_answers_it(self):
        connection = self.connected()
        for byte in CHANGE:
            self.assertIsNone(self.stored("kLSDateSubtitle"))
            connection.sendall(bytes([byte]))
        self.assertEqual(wire.read_frame(connection.recv), (0, None))
        self.assertEqual(self.stored("kLSDateSubtitle"), "changed")

    def test_takes_a_change_from_a_client_that_does_not_wait_for_the_answer(self):
        connection = self.connected()
        connection.sendall(CHANGE)
        connection.close()
        self.expect_soon(lambda: self.stored("kLSDateSubtitle"), "changed")

    def test_refuses_the_longest_message_and_serves_others_while_it_comes(self):
        connection = self.connected()
        connection.sendall(wire.HEADER.pack(b"LMP1", 0, wire.LONGEST))
        block = bytes(MEBIBYTE)
        for sent in range(wire.LONGEST // MEBIBYTE):
            if sent % 16 == 0:
                self.assertEqual(self.client.settings()["kSleepTime"], 15)
            connection.sendall(block)
        refused = unarchive(wire.read_frame(connection.recv)[1])
        self.assertIn("the message is no keyed archive", refused["error"])
        connection.close()
        self.expect_sound(f"lumora-tweak: updateSettings refused: {refused['error']}\n")

    def test_refuses_a_change_that_would_make_the_settings_too_large(self):
        connection = self.connected()
        change = archive({"object": {"key": "org.test.long", "object": bytes(wire.LONGEST - 1000)}})
        connection.sendall(wire.frame(change))
        refused = unarchive(wire.read_frame(connection.recv)[1])
        self.assertEqual(refused["error"], '"org.test.long" cannot be kept: the settings would take more than 4 MiB')
        told = self.lumoractl("set", "org.test.long", "-", input=f'"{"x" * 5 * MEBIBYTE}"')
        # Five megabytes may need more than the second that they have, where a sanitizer runs on a busy machine.
        self.expect_failure(told, f"lumoractl: {refused['error']}", "within 1 second")
        connection.close()
        times = 1 if "takes no messages" in told.stderr else 2
        self.expect_sound(times * f"lumora-tweak: updateSettings refused: {refused['error']}\n")

    def test_sets_nothing_aside_for_what_is_only_announced(self):
        announced = [self.connected() for _ in range(100)]
        for connection in announced:
            connection.sendall(wire.HEADER.pack(b"LMP1", 0, wire.LONGEST) + b"a few bytes")
        self.assertEqual(self.client.settings()["kSleepTime"], 15)
        self.assertLess(memory(self.tweak, "VmHWM"), wire.LONGEST)
        for connection in announced:
            connection.close()
        self.expect_sound()

    def test_stops_reading_from_a_client_that_never_reads(self):
        greedy = self.connected(wire.REQUEST_SETTINGS)
        greedy.settimeout(0.5)
        requests = wire.frame(None) * 10_000
        sent = refused = 0
        while refused < 2 and sent < 64 * MEBIBYTE:
            try:
                sent += greedy.send(requests)
                refused = 0
            except TimeoutError:
                refused += 1
                self.client.settings()  # so it is not just slow: it had the time to serve others
        self.assertGreater(sent, 0)
        self.assertLess(sent, 8 * MEBIBYTE)
        self.assertLess(memory(self.tweak, "VmHWM"), wire.LONGEST)
        self.assertEqual(self.client.settings()["kSleepTime"], 15)
        greedy.close()
        self.expect_sound()

    def test_hangs_up_on_garbage(self):
        chosen = random.Random(4)
        for _ in range(300):
            name = chosen.choice([wire.REQUEST_SETTINGS, wire.UPDATE_SETTINGS])
            with contextlib.closing(self.connected(name)) as peer:
                peer.sendall(chosen.randbytes(chosen.randrange(16, 200)))
                # Closing upon unread bytes looks like a reset.
                with contextlib.suppress(ConnectionResetError):
                    self.assertEqual(peer.recv(1), b"")
        self.expect_sound()

    def test_refuses_changes_of_any_broken_shape_and_keeps_what_it_has(self):
        chosen = random.Random(5)
        connection = self.connected()
        refused = 0
        for _ in range(1000):
            body = bytearray(CHANGE[16:])
            for _ in range(chosen.randrange(1, 4)):
                body[chosen.randrange(len(body))] = chosen.randrange(256)
            connection.sendall(wire.frame(bytes(body)))
            answer = wire.read_frame(connection.recv)[1]
            refused += answer is not None and isinstance(unarchive(answer)["error"], str)
        self.assertGreater(refused, 100)
        self.assertEqual(self.stored("kSleepTime"), 15)
        self.assertEqual(self.client.settings()["kSleepTime"], 15)

    def test_serves_others_beside_hundreds_that_only_connect(self):
        idle = [self.connected() for _ in range(300)]
        self.assertIsNone(self.client.set("kSleepTime", 15))
        self.assertEqual(self.client.settings()["kSleepTime"], 15)
        for connection in idle:
            connection.close()
        self.expect_sound()


if __name__ == "__main__":
    unittest.main()

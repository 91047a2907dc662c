#!/usr/bin/env python3
"""A tweak and a client in another language, written after docs/ports.md, with the real lumora-tweak and lumoractl.

    PYTHONPATH=tests tests/wire/ports_test.py [-v] BUILD
"""
import concurrent.futures
import fcntl
import os
import re
import socket
import stat
import subprocess
import sys
import threading
import time
import unittest
from pathlib import Path

from archives_test import ALL_KINDS, DOCUMENT, exactly
from harness import client, forms, wire
from harness.archives import archive, unarchive
from harness.client import Client, NoAnswer
from harness.faulty import FaultyTweak, answering, crowded, dripping, listen, silent
from harness.programs import Programs, program
from harness.tweak import Tweak
from harness.waiting import LONG_ENOUGH


class PortsTest(Programs):
    def setUp(self):
        super().setUp()
        self.kept = self.folder + "/settings.json"

    def start_own(self):
        return self.start_ready(sys.executable, "-m", "harness.tweak", "--settings", self.kept)


class PlaceTest(PortsTest):
    def open_port(self):
        return wire.Port(self.ports, wire.UPDATE_SETTINGS, lambda body: None)

    def test_finds_the_ports_folder(self):
        self.assertEqual(wire.ports_folder({"LUMORA_PORTS": "/a", "XDG_RUNTIME_DIR": "/b"}), "/a")
        self.assertEqual(wire.ports_folder({"LUMORA_PORTS": "", "XDG_RUNTIME_DIR": "/b"}), "/b")
        self.assertIn(wire.ports_folder({}), (f"/run/user/{os.geteuid()}", f"/tmp/lumora-{os.geteuid()}"))

    def test_takes_no_name_that_climbs_or_is_too_long(self):
        for name in ("", "a//b", "../a", "a/.", "a\0b", "a" * 108):
            with self.assertRaises(ValueError):
                wire.socket_path("/f", name)
        self.assertEqual(len(wire.socket_path("/f", "a" * 104)), 107)

    def test_makes_folders_and_sockets_for_the_user_alone(self):
        with Tweak(self.ports, {}):
            for path, mode in ((self.ports, 0o700), (self.ports + "/com.nevo.lumora", 0o700),
                               (self.ports + "/" + wire.UPDATE_SETTINGS, 0o600),
                               (self.ports + "/" + wire.UPDATE_SETTINGS + ".lock", 0o600)):
                self.assertEqual(oct(stat.S_IMODE(os.lstat(path).st_mode)), oct(mode), path)
        self.assertEqual(sorted(os.listdir(self.ports + "/com.nevo.lumora")),
                         ["requestTweakSettings.lock", "updateSettings.lock"])

    def test_opens_no_port_in_a_folder_that_others_could_meddle_with(self):
        os.mkdir(self.ports, 0o700)
        inner = self.ports + "/com.nevo.lumora"
        os.symlink(self.folder, inner)
        with self.assertRaises(PermissionError):
            self.open_port()
        os.unlink(inner)
        os.chmod(self.ports, 0o770)
        with self.assertRaises(PermissionError):
            self.open_port()
        os.chmod(self.ports, 0o755)
        self.open_port().close()

    @unittest.skipUnless(os.geteuid() == 0, "only root can be somebody else")
    def test_has_nothing_to_do_with_other_users(self):
        os.makedirs(self.ports + "/com.nevo.lumora")
        for folder in (self.folder, self.ports, self.ports + "/com.nevo.lumora"):
            os.chmod(folder, 0o755)
        ask = ("import socket, sys; s = socket.socket(socket.AF_UNIX); s.connect(sys.argv[1]); s.settimeout(60);"
               "print(s.recv(1))")
        path = wire.socket_path(self.ports, wire.REQUEST_SETTINGS)
        with Tweak(self.ports, {}):
            os.chmod(path, 0o666)
            asked = subprocess.run(["/usr/bin/python3", "-c", ask, path], user=65534, group=65534, extra_groups=[],
                                   cwd="/", capture_output=True, text=True, timeout=LONG_ENOUGH, check=False)
        self.assertEqual((asked.stdout, asked.stderr), ("b''\n", ""))

    def test_opens_no_port_while_the_lock_is_held_or_is_a_link(self):
        os.makedirs(self.ports + "/com.nevo.lumora", 0o700)
        path = wire.socket_path(self.ports, wire.UPDATE_SETTINGS)
        with open(path + ".lock", "w", encoding="ascii") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            with self.assertRaises(wire.NameTaken):
                self.open_port()
        os.unlink(path + ".lock")
        os.symlink(self.folder + "/elsewhere", path + ".lock")
        with self.assertRaises(OSError):
            self.open_port()
        self.assertEqual(os.listdir(self.ports + "/com.nevo.lumora"), ["updateSettings.lock"])
        self.assertFalse(os.path.exists(self.folder + "/elsewhere"))

    def test_leaves_alone_what_is_no_socket_or_still_lives(self):
        path = wire.socket_path(self.ports, wire.UPDATE_SETTINGS)
        with listen(self.ports, wire.UPDATE_SETTINGS), self.assertRaises(wire.NameTaken):
            self.open_port()
        os.unlink(path)
        Path(path).write_text("a file")
        with self.assertRaises(wire.NameTaken):
            self.open_port()
        self.assertEqual(Path(path).read_text(), "a file")
        os.unlink(path)
        with Tweak(self.ports, {}):
            os.unlink(path)
            Path(path).write_text("a file")
        self.assertEqual(Path(path).read_text(), "a file", "the end removes what it bound and nothing else")

    def test_real_and_own_tweak_respect_each_others_names(self):
        with Tweak(self.ports, {"a": 1}):
            self.run_program(program("lumora-tweak"), "--settings", self.settings_file, status=1)
            self.assertEqual(self.client.settings(), {"a": 1})
        self.start_tweak()
        with self.assertRaises(wire.NameTaken):
            Tweak(self.ports, {}).__enter__()
        self.assertIn("kSleepTime", self.client.settings())

    def test_real_and_own_tweak_take_over_what_a_killed_one_left(self):
        real = self.start_tweak()
        real.kill()
        real.wait()
        self.assertTrue(stat.S_ISSOCK(os.lstat(wire.socket_path(self.ports, wire.UPDATE_SETTINGS)).st_mode))
        own = self.start_own()
        self.assertEqual(self.client.settings(), {})
        own.kill()
        own.wait()
        self.start_tweak()
        self.assertIn("kSleepTime", self.client.settings())


class FramesTest(PortsTest):
    def replies(self, connection):
        while True:
            try:
                yield wire.read_frame(connection.recv)[1]
            except EOFError:
                return

    def both_tweaks(self):
        with Tweak(self.ports, {"a": 1}):
            yield
        real = self.start_tweak()
        yield
        real.kill()
        real.wait()

    def test_answers_requests_on_one_connection_in_their_order(self):
        for _ in self.both_tweaks():
            connection = self.connected(wire.UPDATE_SETTINGS)
            wrong = archive({"object": {"key": 5, "object": 1}})
            right = archive({"object": {"key": "org.test.key", "object": 1}})
            bodies = [right, wrong, right, None, b"", right]
            connection.sendall(b"".join(map(wire.frame, bodies)))
            connection.shutdown(socket.SHUT_WR)
            answers = list(self.replies(connection))
            self.assertEqual([answer is None for answer in answers], [body is right for body in bodies])
            self.assertEqual(list(unarchive(answers[1])), ["error"])

    def test_closes_without_an_answer_on_what_is_no_frame(self):
        for _ in self.both_tweaks():
            for header in ((b"LMP2", 0, -1), (b"LMP1", 0, -2), (b"LMP1", 0, wire.LONGEST + 1)):
                connection = self.connected(wire.REQUEST_SETTINGS)
                connection.sendall(wire.HEADER.pack(*header))
                self.assertEqual(connection.recv(1), b"", header)
            self.assertTrue(self.client.settings())

    def test_answers_a_request_with_another_id_without_a_body(self):
        for _ in self.both_tweaks():
            for name in (wire.REQUEST_SETTINGS, wire.UPDATE_SETTINGS):
                connection = self.connected(name)
                connection.sendall(wire.HEADER.pack(b"LMP1", 7, wire.NO_BODY))
                self.assertEqual(wire.read_frame(connection.recv), (0, None))

    def test_tells_no_body_from_an_empty_one(self):
        port = wire.Port(self.ports, "test/echo", lambda body: body)
        self.addCleanup(port.close)
        connection = self.connected("test/echo")
        for body in (None, b"", b"a" * (1 << 20)):
            sender = threading.Thread(target=connection.sendall, args=(wire.frame(body),))
            sender.start()
            self.assertEqual(wire.read_frame(connection.recv), (0, body))
            sender.join()

    def test_serves_two_hundred_at_once(self):
        def change(number):
            return self.client.set(f"org.test.{number}", number) or self.client.settings()[f"org.test.{number}"]
        for _ in self.both_tweaks():
            with concurrent.futures.ThreadPoolExecutor(200) as pool:
                self.assertEqual(list(pool.map(change, range(200))), list(range(200)))
            found = self.client.settings()
            self.assertEqual([found[f"org.test.{number}"] for number in range(200)], list(range(200)))

    def test_serves_others_while_one_is_silent(self):
        for _ in self.both_tweaks():
            for begin in (b"", wire.HEADER.pack(b"LMP1", 0, 1000) + b"bpl"):
                self.connected(wire.REQUEST_SETTINGS).sendall(begin)
            self.assertTrue(self.client.settings())


class SilenceTest(PortsTest):
    """A client, and receivers that are not as they should be."""

    def setUp(self):
        super().setUp()
        self.client = Client(self.ports)

    def assert_gives_up_in_time(self):
        begin = time.monotonic()
        with self.assertRaises(NoAnswer):
            self.client.settings()
        took = time.monotonic() - begin
        self.assertGreaterEqual(took, client.PATIENCE)
        self.assertLess(took, LONG_ENOUGH)

    def test_gives_up_without_waiting_when_there_is_no_receiver(self):
        with self.assertRaises(NoAnswer) as gone:
            self.client.settings()
        self.assertIsInstance(gone.exception.__cause__, FileNotFoundError)
        listen(self.ports, wire.REQUEST_SETTINGS).close()
        with self.assertRaises(NoAnswer) as dead:
            self.client.settings()
        self.assertIsInstance(dead.exception.__cause__, ConnectionRefusedError)

    def test_gives_up_after_a_second_of_silence_and_on_a_reply_that_drips(self):
        for fault in (silent, dripping(wire.frame(archive({})), 0.1)):
            with FaultyTweak(self.ports, fault):
                self.assert_gives_up_in_time()

    def test_gives_up_after_a_second_on_a_full_backlog(self):
        with crowded(self.ports):
            self.assert_gives_up_in_time()

    def test_gives_up_on_a_connection_that_closes_early_and_on_what_is_no_settings(self):
        whole = wire.frame(archive({"a": 1}))
        with FaultyTweak(self.ports, silent) as tweak:
            for reply in (b"", whole[:10], whole[:-1], b"HTTP" + whole[4:], wire.frame(None), wire.frame(b""),
                          wire.frame(archive([1]))):
                tweak.fault = answering(reply)
                with self.subTest(reply=reply), self.assertRaises(NoAnswer):
                    self.client.settings()


class ClientTest(PortsTest):
    """The client and the real tweak."""

    def setUp(self):
        super().setUp()
        self.start_tweak()

    def test_sets_every_preference_key_of_the_document_and_reads_its_kind_back(self):
        table = re.findall(r"^\| `(k[A-Z]\w+)` \| ([\w ]+) \| (.*) \|$", DOCUMENT, re.MULTILINE)
        values = {"boolean": True, "real": 1.0, "text": "words", "list of texts": ["a.b", "c.d"],
                  "dictionary": {"h": 0.25, "s": 1.0, "b": 0.0}}
        wanted = {}
        for key, kind, meaning in table:
            bounds = re.match(r"(−?[\d.]+) to (−?[\d.]+)|seconds until sleep: (\d+)", meaning)
            if kind in ("integer", "real"):
                self.assertTrue(bounds, meaning)
                number = bounds.group(2) or bounds.group(3)
                wanted[key] = (int if kind == "integer" else float)(number)
            else:
                wanted[key] = values[kind]
        self.assertEqual(len(wanted), 50)
        for key, value in wanted.items():
            self.assertIsNone(self.client.set(key, value), key)
        found = self.client.settings()
        self.assertEqual({key: exactly(found[key]) for key in wanted},
                         {key: exactly(value) for key, value in wanted.items()})

    def test_is_told_why_a_change_is_refused(self):
        before = self.client.settings()
        for key, value in (("kSleepTime", "soon"), ("kTweakEnabled", 1), ("kLSDateSubtitle", None),
                           ("kLSBlurColor", {"h": 0.5, "s": 0.5, "b": 1.5}), ("kAppsEnabled", ["a", 1])):
            why = self.client.set(key, value)
            self.assertIsInstance(why, str, key)
            self.assertIn(key, why)
        self.assertEqual(exactly(self.client.settings()), exactly(before))

    def test_has_keys_kept_that_the_tweak_does_not_know(self):
        self.assertIsNone(self.client.set("org.test.key", ALL_KINDS))
        self.assertEqual(exactly(self.client.settings()["org.test.key"]), exactly(ALL_KINDS))


class TweakTest(PortsTest):
    """The tweak and the real client."""

    def test_remembers_changes_in_the_order_in_which_they_came(self):
        with Tweak(self.ports, {"a": 1}) as tweak:
            for value in ("2.0", "true", '"three"'):
                self.lumoractl("set", "a", value, status=0)
            self.assertEqual(exactly(tweak.changes), exactly([("a", 2.0), ("a", True), ("a", "three")]))
            self.assertEqual(tweak.settings, {"a": "three"})

    def test_keeps_every_kind_on_disk_and_has_it_again_when_it_is_started_again(self):
        own = self.start_own()
        for key, value in ALL_KINDS.items():
            done = self.lumoractl("set", "org.test." + key, forms.dump(value))
            self.assertEqual((done.returncode, done.stderr), (0, ""), key)
        self.end(own)
        self.assertEqual(os.listdir(self.folder + "/ports/com.nevo.lumora").count("updateSettings"), 0)
        wanted = {"org.test." + key: value for key, value in ALL_KINDS.items()}
        self.assertEqual(exactly(forms.load(Path(self.kept).read_text(encoding="utf-8"))), exactly(wanted))
        self.start_own()
        listed = self.lumoractl("list", status=0)
        self.assertEqual({key: exactly(value) for key, value in forms.load(listed.stdout).items()},
                         {key: exactly(value) for key, value in wanted.items()})
        self.assertEqual(self.lumoractl("get", "org.test.one real").stdout, "1.0\n")
        self.lumoractl("get", "org.test.none", status=1)

    def test_says_why_it_cannot_keep_a_change(self):
        self.start_own()
        os.mkdir(self.kept + ".new")
        self.assertIn("the settings cannot be kept", self.lumoractl("set", "a", "1", status=1).stderr)
        self.assertEqual(self.client.settings(), {})


if __name__ == "__main__":
    unittest.main()

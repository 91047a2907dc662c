#!/usr/bin/env python3
"""A tweak and a client in another language, written after docs/ports.md, with the real lumora-tweak and lumoractl.

    PYTHONPATH=tests tests/wire/wire_test.py [-v] BUILD
"""
import concurrent.futures
import fcntl
import math
import os
import plistlib
import re
import shutil
import signal
import socket
import stat
import subprocess
import sys
import threading
import time
import unittest
from datetime import datetime
from pathlib import Path

from harness import client, forms, wire
from harness.build import SOURCE
from harness.client import Client, NoAnswer
from harness.programs import Programs, program
from harness.tweak import Tweak
from harness.waiting import LONG_ENOUGH, Limited
from harness.wire import Date

DOCUMENT = (SOURCE / "docs/ports.md").read_text(encoding="utf-8")

ALL_KINDS = {
    "yes": True, "no": False, "one": 1, "one real": 1.0, "nothing": 0, "nothing real": 0.0, "below nothing": -0.0,
    "least": -1 << 63, "most": (1 << 63) - 1, "infinite": math.inf, "words": "Grüße 𝄞", "no words": "",
    "$null": "$null", "data": bytes(range(256)), "no data": b"", "date": Date(760000000.25),
    "list": [1, True, 1.0, "1", [], {}],
    "dictionary": {"b": 1, "a": {"deep": [[["er"]]]}}, "many": {f"key {i}": i for i in range(400)},
}


def exactly(value):
    """Tells apart what Python holds for equal: kinds, the order of a dictionary, and the two zeros."""
    return repr(value)


class ArchiveTest(Limited):
    def test_builds_the_example_of_the_document_byte_by_byte(self):
        lines = re.findall(r"^    ([0-9a-f]{4})  ((?:[0-9a-f]{2} {1,2}){1,16})", DOCUMENT, re.MULTILINE)
        dumped = bytes.fromhex("".join(digits for _, digits in lines))
        self.assertEqual([int(at, 16) for at, _ in lines], list(range(0, len(dumped), 16)))
        self.assertEqual(len(dumped), 16 + 303)
        change = {"object": {"key": "kSleepTime", "object": 30}}
        self.assertEqual(wire.frame(wire.archive(change)).hex(" "), dumped.hex(" "))
        self.assertEqual(exactly(wire.unarchive(dumped[16:])), exactly(change))

    def test_keeps_every_kind_apart(self):
        self.assertEqual(exactly(wire.unarchive(wire.archive(ALL_KINDS))), exactly(ALL_KINDS))
        for value in (None, True, 0, 1.5, "root", b"root", Date(-1.0), [None, [None]], math.nan):
            self.assertEqual(exactly(wire.unarchive(wire.archive(value))), exactly(value))

    def test_understands_the_real_programs_archives_and_is_understood(self):
        self.maxDiff = None
        mine = subprocess.run([program("lumoractl"), "unarchive"], input=wire.archive(ALL_KINDS), capture_output=True,
                              timeout=LONG_ENOUGH, check=True)
        self.assertEqual(exactly(forms.load(mine.stdout)), exactly(ALL_KINDS))
        theirs = subprocess.run([program("lumoractl"), "archive"], input=forms.dump(ALL_KINDS).encode(),
                                capture_output=True, timeout=LONG_ENOUGH, check=True)
        self.assertEqual(exactly(wire.unarchive(theirs.stdout)), exactly(ALL_KINDS))

    def test_reads_the_classes_that_others_write(self):
        uid = plistlib.UID

        def classed(name):
            return {"$classname": name, "$classes": [name, "NSObject"]}
        objects = ["$null", {"NS.keys": [uid(2)], "NS.objects": [uid(4)], "$class": uid(10)},
                   {"NS.string": "key", "$class": uid(11)}, b"raw",
                   {"NS.objects": [*map(uid, (0, 5, 6, 7, 8, 3))], "$class": uid(12)}, {"$class": uid(13)},
                   {"NS.data": uid(3), "$class": uid(14)}, {"NS.time": 5, "$class": uid(15)},
                   datetime(2001, 1, 2), "",
                   {"$classname": "OwnDictionary", "$classes": ["OwnDictionary", "NSMutableDictionary", "NSObject"]},
                   *map(classed, ("NSMutableString", "NSMutableArray", "NSNull", "NSMutableData", "NSDate"))]
        data = plistlib.dumps({"$version": 100000, "$archiver": "NSKeyedArchiver", "$top": {"root": uid(1)},
                               "$objects": objects}, fmt=plistlib.FMT_BINARY)
        self.assertEqual(exactly(wire.unarchive(data)),
                         exactly({"key": [None, None, b"raw", Date(5.0), Date(86400.0), b"raw"]}))
        real = subprocess.run([program("lumoractl"), "unarchive"], input=data, capture_output=True,
                              timeout=LONG_ENOUGH, check=True)
        self.assertEqual(exactly(forms.load(real.stdout)), exactly(wire.unarchive(data)))

    def test_reads_as_deep_as_the_document_says_and_no_deeper(self):
        value = []
        for _ in range(127):
            value = [value]
        self.assertEqual(wire.unarchive(wire.archive(value)), value)
        for deep, works in ((value, True), ([value], False)):
            real = subprocess.run([program("lumoractl"), "unarchive"], input=wire.archive(deep), capture_output=True,
                                  timeout=LONG_ENOUGH, check=False)
            self.assertEqual(real.returncode == 0, works, real.stderr)
        with self.assertRaises(wire.NotAnArchive):
            wire.unarchive(wire.archive([value]))

    def test_refuses_what_is_no_archive_whatever_it_is(self):
        good = wire.archive(ALL_KINDS)
        for end in range(len(good)):
            with self.assertRaises(wire.NotAnArchive):
                wire.unarchive(good[:end])
        small = wire.archive({"a": [1, "b", {"c": Date(1.0)}]})
        refused = 0
        for at in range(len(small)):
            for flip in (1, 0x80, 0xff):
                try:
                    wire.unarchive(small[:at] + bytes([small[at] ^ flip]) + small[at + 1:])
                except wire.NotAnArchive:
                    refused += 1
        self.assertGreater(refused, len(small))

    def test_refuses_an_archive_that_swells_or_holds_itself(self):
        uid = plistlib.UID
        swelling = ["$null", *({"NS.objects": [uid(i + 2)] * 10, "$class": uid(31)} for i in range(29)), "end",
                    {"$classname": "NSArray"}]
        for objects in (swelling, ["$null", {"NS.objects": [uid(1)], "$class": uid(2)}, {"$classname": "NSArray"}]):
            data = plistlib.dumps({"$version": 100000, "$archiver": "NSKeyedArchiver", "$top": {"root": uid(1)},
                                   "$objects": objects}, fmt=plistlib.FMT_BINARY)
            with self.assertRaises(wire.NotAnArchive):
                wire.unarchive(data)

    def test_writes_long_equal_texts_so_that_others_read_them(self):
        value = [{"a" * size: "ä𝄞" * size for size in (5, 16, 17, 50, 1000)}] * 2000
        real = subprocess.run([program("lumoractl"), "unarchive"], input=wire.archive(value), capture_output=True,
                              timeout=LONG_ENOUGH, check=True)
        self.assertEqual(forms.load(real.stdout), value)
        theirs = subprocess.run([program("lumoractl"), "archive"], input=forms.dump(value).encode(),
                                capture_output=True, timeout=LONG_ENOUGH, check=True)
        self.assertEqual(wire.unarchive(theirs.stdout), value)

    def test_archives_nothing_that_has_no_form(self):
        for value in ({1: 2}, (1,), {"a": object()}):
            with self.assertRaises(TypeError):
                wire.archive(value)
        with self.assertRaises(OverflowError):
            wire.archive(1 << 63)


class PortsTest(Programs):
    def setUp(self):
        super().setUp()
        self.kept = self.folder + "/settings.json"

    def start_own(self):
        return self.start_ready(sys.executable, "-m", "harness.tweak", "--settings", self.kept)


class PlaceTest(PortsTest):
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
            wire.Port(self.ports, wire.UPDATE_SETTINGS, lambda body: None)
        os.unlink(inner)
        os.chmod(self.ports, 0o770)
        with self.assertRaises(PermissionError):
            wire.Port(self.ports, wire.UPDATE_SETTINGS, lambda body: None)
        os.chmod(self.ports, 0o755)
        wire.Port(self.ports, wire.UPDATE_SETTINGS, lambda body: None).close()

    @unittest.skipUnless(os.geteuid() == 0, "only root can be somebody else")
    def test_has_nothing_to_do_with_other_users(self):
        os.chmod(self.folder, 0o755)
        os.mkdir(self.ports)
        os.chmod(self.ports, 0o755)
        os.mkdir(self.ports + "/com.nevo.lumora")
        os.chmod(self.ports + "/com.nevo.lumora", 0o755)
        ask = ("import socket, sys; s = socket.socket(socket.AF_UNIX); s.connect(sys.argv[1]); s.settimeout(60);"
               "print(s.recv(1))")
        path = wire.socket_path(self.ports, wire.REQUEST_SETTINGS)
        with Tweak(self.ports, {}):
            os.chmod(path, 0o666)
            asked = subprocess.run(["/usr/bin/python3", "-c", ask, path], user=65534, group=65534, extra_groups=[],
                                   cwd="/", capture_output=True, text=True, timeout=LONG_ENOUGH, check=False)
        self.assertEqual((asked.stdout, asked.stderr), ("b''\n", ""))

    def test_leaves_a_name_alone_that_somebody_holds(self):
        with Tweak(self.ports, {"a": 1}):
            with self.assertRaises(wire.NameTaken):
                Tweak(self.ports, {}).__enter__()
            self.assertEqual(self.client.settings(), {"a": 1})

    def test_opens_no_port_while_the_lock_is_held_or_is_a_link(self):
        os.makedirs(self.ports + "/com.nevo.lumora", 0o700)
        path = wire.socket_path(self.ports, wire.UPDATE_SETTINGS)
        with open(path + ".lock", "w", encoding="ascii") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            with self.assertRaises(wire.NameTaken):
                wire.Port(self.ports, wire.UPDATE_SETTINGS, lambda body: None)
        os.unlink(path + ".lock")
        os.symlink(self.folder + "/elsewhere", path + ".lock")
        with self.assertRaises(OSError):
            wire.Port(self.ports, wire.UPDATE_SETTINGS, lambda body: None)
        self.assertEqual(os.listdir(self.ports + "/com.nevo.lumora"), ["updateSettings.lock"])
        self.assertFalse(os.path.exists(self.folder + "/elsewhere"))

    def test_leaves_alone_what_is_no_socket_or_still_lives(self):
        os.makedirs(self.ports + "/com.nevo.lumora", 0o700)
        path = wire.socket_path(self.ports, wire.UPDATE_SETTINGS)
        with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as living:
            living.bind(path)
            living.listen(1)
            with self.assertRaises(wire.NameTaken):
                Tweak(self.ports, {}).__enter__()
        os.unlink(path)
        Path(path).write_text("a file")
        with self.assertRaises(wire.NameTaken):
            Tweak(self.ports, {}).__enter__()
        self.assertEqual(Path(path).read_text(), "a file")
        os.unlink(path)
        with Tweak(self.ports, {}):
            os.unlink(path)
            Path(path).write_text("a file")
        self.assertEqual(Path(path).read_text(), "a file", "the end removes what it bound and nothing else")

    def test_real_and_own_tweak_respect_each_others_names(self):
        with Tweak(self.ports, {"a": 1}):
            refused = self.run_program(program("lumora-tweak"), "--settings", self.settings_file)
            self.assertEqual(refused.returncode, 1, refused.stderr)
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
            wrong = wire.archive({"object": {"key": 5, "object": 1}})
            right = wire.archive({"object": {"key": "org.test.key", "object": 1}})
            bodies = [right, wrong, right, None, b"", right]
            connection.sendall(b"".join(map(wire.frame, bodies)))
            connection.shutdown(socket.SHUT_WR)
            answers = list(self.replies(connection))
            self.assertEqual([answer is None for answer in answers], [body is right for body in bodies])
            self.assertEqual(list(wire.unarchive(answers[1])), ["error"])

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

    def listen(self, backlog=5):
        os.makedirs(self.ports + "/com.nevo.lumora", 0o700)
        listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self.addCleanup(listener.close)
        listener.bind(wire.socket_path(self.ports, wire.REQUEST_SETTINGS))
        listener.listen(backlog)
        return listener

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
        self.listen().close()
        with self.assertRaises(NoAnswer) as dead:
            self.client.settings()
        self.assertIsInstance(dead.exception.__cause__, ConnectionRefusedError)

    def test_gives_up_after_a_second_of_silence(self):
        self.listen()
        self.assert_gives_up_in_time()

    def test_gives_up_after_a_second_on_a_full_backlog(self):
        listener = self.listen(0)
        first = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self.addCleanup(first.close)
        first.connect(listener.getsockname())
        self.assert_gives_up_in_time()

    def answer_with(self, send):
        listener = self.listen()

        def serve():
            connection, _ = listener.accept()
            with connection:
                wire.read_frame(connection.recv)
                try:
                    send(connection)
                except OSError:
                    pass  # the client has given up
        thread = threading.Thread(target=serve)
        thread.start()
        self.addCleanup(thread.join)

    def test_gives_up_on_a_reply_that_drips(self):
        over = threading.Event()
        self.addCleanup(over.set)

        def drip(connection):
            for byte in wire.frame(wire.archive({})):
                connection.sendall(bytes([byte]))
                if over.wait(0.1):
                    return
        self.answer_with(drip)
        self.assert_gives_up_in_time()

    def test_gives_up_on_a_connection_that_closes_early_and_on_what_is_no_settings(self):
        whole = wire.frame(wire.archive({"a": 1}))
        for reply in (b"", whole[:10], whole[:-1], b"HTTP" + whole[4:], wire.frame(None), wire.frame(b""),
                      wire.frame(wire.archive([1]))):
            with self.subTest(reply=reply):
                self.answer_with(lambda connection, reply=reply: connection.sendall(reply))
                with self.assertRaises(NoAnswer):
                    self.client.settings()
                shutil.rmtree(self.ports)


class ClientTest(PortsTest):
    """The client and the real tweak."""

    def setUp(self):
        super().setUp()
        self.start_tweak()

    def test_sets_every_preference_key_of_the_document_and_reads_its_kind_back(self):
        table = re.findall(r"^\| `(k\w+)` \| ([\w ]+) \| (.*) \|$", DOCUMENT, re.MULTILINE)
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

    def test_is_served_among_two_hundred_at_once(self):
        def change(number):
            own = Client(self.ports, LONG_ENOUGH)
            refused = own.set(f"org.test.{number}", number)
            return refused or own.settings()[f"org.test.{number}"]
        with concurrent.futures.ThreadPoolExecutor(200) as pool:
            self.assertEqual(list(pool.map(change, range(200))), list(range(200)))
        found = self.client.settings()
        self.assertEqual([found[f"org.test.{number}"] for number in range(200)], list(range(200)))

    def test_works_from_a_shell(self):
        def run(*arguments):
            return self.run_program(sys.executable, "-m", "harness.client", *arguments)
        self.assertEqual(run("set", "kSleepTime", "60").returncode, 0)
        self.assertEqual(run("get", "kSleepTime").stdout, "60\n")
        self.assertIs(forms.load(run("get").stdout)["kTweakEnabled"], True)
        self.assertEqual(run("get", "org.test.none").returncode, 1)
        refused = run("set", "kSleepTime", "true")
        self.assertEqual(refused.returncode, 1)
        self.assertIn("kSleepTime", refused.stderr)


class TweakTest(PortsTest):
    """The tweak and the real client."""

    def test_remembers_changes_in_the_order_in_which_they_came(self):
        with Tweak(self.ports, {"a": 1}) as tweak:
            for value in ("2.0", "true", '"three"'):
                self.assertEqual(self.lumoractl("set", "a", value).returncode, 0)
            self.assertEqual(exactly(tweak.changes), exactly([("a", 2.0), ("a", True), ("a", "three")]))
            self.assertEqual(tweak.settings, {"a": "three"})

    def test_keeps_every_kind_on_disk_and_has_it_again_when_it_is_started_again(self):
        own = self.start_own()
        for key, value in ALL_KINDS.items():
            done = self.lumoractl("set", "org.test." + key, forms.dump(value))
            self.assertEqual((done.returncode, done.stderr), (0, ""), key)
        own.send_signal(signal.SIGTERM)
        self.assertEqual(own.wait(LONG_ENOUGH), 0)
        self.assertEqual(os.listdir(self.folder + "/ports/com.nevo.lumora").count("updateSettings"), 0)
        wanted = {"org.test." + key: value for key, value in ALL_KINDS.items()}
        with open(self.kept, encoding="utf-8") as file:
            self.assertEqual(exactly(forms.load(file.read())), exactly(wanted))
        self.start_own()
        listed = self.lumoractl("list")
        self.assertEqual(listed.returncode, 0, listed.stderr)
        self.assertEqual({key: exactly(value) for key, value in forms.load(listed.stdout).items()},
                         {key: exactly(value) for key, value in wanted.items()})
        self.assertEqual(self.lumoractl("get", "org.test.one real").stdout, "1.0\n")
        self.assertEqual(self.lumoractl("get", "org.test.none").returncode, 1)

    def test_says_why_it_cannot_keep_a_change(self):
        self.start_own()
        os.mkdir(self.kept + ".new")
        refused = self.lumoractl("set", "a", "1")
        self.assertEqual(refused.returncode, 1)
        self.assertIn("the settings cannot be kept", refused.stderr)
        self.assertEqual(self.client.settings(), {})

    def test_serves_two_hundred_at_once(self):
        with Tweak(self.ports, {}) as tweak, concurrent.futures.ThreadPoolExecutor(200) as pool:
            answers = list(pool.map(lambda number: self.client.set(f"key {number}", number), range(200)))
            self.assertEqual(answers, [None] * 200)
            self.assertEqual(sorted(value for _, value in tweak.changes), list(range(200)))


if __name__ == "__main__":
    unittest.main()

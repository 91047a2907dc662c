#!/usr/bin/env python3
"""What another user of the machine can do to the programs: nothing, by way of the ports, of symbolic links, or of files
that are open to all.

    PYTHONPATH=tests tests/attacks/strangers_test.py [-v] BUILD

Needs nothing of Python beyond its standard library. Tests of another user are skipped where nobody can become one.
"""
import multiprocessing
import os
import shutil
import socket
import stat
import subprocess
import unittest
from pathlib import Path

from harness import stranger, wire
from harness.archives import archive
from harness.programs import ROOT, Programs, program
from harness.waiting import LONG_ENOUGH

STRANGER = stranger.USER
PORTS = (wire.UPDATE_SETTINGS, wire.REQUEST_SETTINGS)
CHANGE = archive({"object": {"key": "kSleepTime", "object": 10}})


class Attacked(Programs):
    """A test of programs at home in their folder."""

    def setUp(self):
        super().setUp()
        self.environment["HOME"] = self.folder
        self.folder, self.ports = Path(self.folder), Path(self.ports)

    def assert_refuses_to_start(self):
        """The tweak, and says so."""
        failed = self.run_program(program("lumora-tweak"), "--settings", self.settings_file, status=1)
        self.assertEqual(failed.stdout, "")
        self.assertRegex(failed.stderr, r"^lumora-tweak: \S")


# -- what is done in a process of another user, or in one of the same user to see that it would work --

def ask(path, request):
    """What comes back from a port."""
    with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as connection:
        connection.settimeout(LONG_ENOUGH)
        try:
            connection.connect(path)
            connection.sendall(request)
            return connection.recv(1 << 16)
        except PermissionError:
            return "no way in"
        except (BrokenPipeError, ConnectionResetError):
            return b""


def serve(path, ready, clients):
    """What clients of a false port tell it, one after the other; each is answered as a tweak would."""
    told = []
    with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as listener:
        listener.bind(path)
        os.chmod(path, 0o666)
        listener.listen()
        ready.set()
        for _ in range(clients):
            with listener.accept()[0] as connection:
                connection.settimeout(LONG_ENOUGH)
                try:
                    told.append(connection.recv(1 << 16))
                    connection.sendall(wire.frame(archive({"kSleepTime": 10})))
                except (BrokenPipeError, ConnectionResetError):
                    pass
    return told


def put_what_comes_of(function, arguments, user, result):
    try:
        if user == STRANGER:
            stranger.become()
        result.put(function(*arguments))
    except OSError as error:
        result.put(error)


class As:
    """A function under way in a process of a user."""

    def __init__(self, test, user, function, *arguments):
        system = multiprocessing.get_context("fork")
        self.result = system.Queue()
        work = (function, arguments, user, self.result)
        self.process = system.Process(target=put_what_comes_of, args=work, daemon=True)
        self.process.start()
        test.addCleanup(self.process.join)
        test.addCleanup(self.process.kill)

    def get(self):
        result = self.result.get(timeout=LONG_ENOUGH)
        if isinstance(result, OSError):
            raise result
        return result


@unittest.skipUnless(stranger.can_be(), stranger.WHY_NOT)
class StrangerTest(Attacked):
    def setUp(self):
        super().setUp()
        os.chmod(self.folder, 0o755)
        if not stranger.reaches(self.folder):
            self.skipTest(f"the folders above {self.folder} keep everybody else out")

    def serving(self, user, path, clients=1):
        """A false port of a user, ready to be connected to."""
        ready = multiprocessing.get_context("fork").Event()
        port = As(self, user, serve, str(path), ready, clients)
        self.assertTrue(ready.wait(LONG_ENOUGH))
        return port

    def asked(self, user, name, body=None):
        """What a user is told at a port of the tweak."""
        return As(self, user, ask, wire.socket_path(self.ports, name), wire.frame(body)).get()

    def open_to_all(self):
        """As if modes had been changed by mistake: what is left is that both ends look who the other one is."""
        for path in (self.folder, *self.folder.rglob("*")):
            os.chmod(path, 0o755 if path.is_dir() else 0o666)

    def test_modes_keep_a_stranger_out_of_the_ports(self):
        self.serving(0, self.folder / "open")
        answer = As(self, STRANGER, ask, str(self.folder / "open"), wire.frame(None)).get()
        self.assertTrue(answer.startswith(b"LMP1"), "nothing but modes is in his way")
        self.start_tweak()
        for name in PORTS:
            self.assertEqual(self.asked(STRANGER, name), "no way in")

    def test_the_tweak_neither_answers_a_stranger_nor_does_what_he_says(self):
        self.start_tweak()
        self.set("kSleepTime", 30)
        self.open_to_all()
        for name, body in zip(PORTS, (CHANGE, None)):
            self.assertEqual(self.asked(STRANGER, name, body), b"")
        self.assertEqual(self.get("kSleepTime"), 30)
        for name, body in zip(PORTS, (CHANGE, None)):
            self.assertTrue(self.asked(0, name, body).startswith(b"LMP1"), "our own are answered")
        self.assertEqual(self.get("kSleepTime"), 10)

    def exchange_at_false_ports(self, user):
        """What comes of each program, and what the false tweak of a user was told by it."""
        shutil.rmtree(self.ports, True)
        (self.ports / "com.nevo.lumora").mkdir(parents=True)
        self.open_to_all()
        os.chmod(self.ports / "com.nevo.lumora", 0o777)
        calls = [("lumoractl", ["list"]), ("lumoractl", ["set", "kAutoUnlockPasscode", "-"])]
        if os.path.exists(program("lumora-settings")):
            calls.append(("lumora-settings", ["--root", ROOT, "--rows", "AutoUnlockController", "--timeout", "8"]))
        serving = {name: self.serving(user, wire.socket_path(self.ports, name), clients)
                   for name, clients in zip(PORTS, (1, len(calls) - 1))}
        done = [self.run_program(program(name), *arguments, input='"secret"') for name, arguments in calls]
        return done, {name: port.get() for name, port in serving.items()}

    def test_no_program_tells_a_strangers_tweak_anything_or_believes_it(self):
        done, told = self.exchange_at_false_ports(STRANGER)
        self.assertEqual(set(told[wire.UPDATE_SETTINGS] + told[wire.REQUEST_SETTINGS]), {b""})
        for finished in done:
            self.assertEqual((finished.returncode, finished.stdout), (1, ""))
            self.assertRegex(finished.stderr, r"^lumora\S+: \S")

    def test_every_program_believes_a_tweak_of_its_own_user(self):
        """Or the test above would show nothing."""
        done, told = self.exchange_at_false_ports(0)
        self.assertEqual([finished.returncode for finished in done], [0] * len(done))
        self.assertIn(b"secret", told[wire.UPDATE_SETTINGS][0])
        self.assertEqual(told[wire.REQUEST_SETTINGS], [wire.frame(None)] * (len(done) - 1))

    def test_the_tweak_opens_no_port_in_a_strangers_folder(self):
        for below in ("", "com.nevo.lumora"):
            shutil.rmtree(self.ports, True)
            (self.ports / below).mkdir(0o700, parents=True)
            os.chown(self.ports / below, STRANGER, STRANGER)
            self.assert_refuses_to_start()
            self.assertEqual(os.listdir(self.ports / below), [])

    def test_root_itself_does_not_follow_a_link_to_a_strangers_port(self):
        (self.ports / "com.nevo.lumora").mkdir(0o700, parents=True)
        foreign = self.folder / "foreign"
        foreign.mkdir()
        os.chmod(foreign, 0o777)
        false = self.serving(STRANGER, foreign / "port")
        os.symlink(foreign / "port", self.ports / wire.UPDATE_SETTINGS)
        self.lumoractl("set", "kAutoUnlockPasscode", '"secret"', status=1)
        self.assertEqual(false.get(), [b""])


class LinkTest(Attacked):
    """Links that were laid before the tweak was started."""

    def setUp(self):
        super().setUp()
        self.foreign = self.folder / "foreign"
        self.foreign.mkdir(0o755)
        (self.foreign / "file").write_text("somebody's")
        os.chmod(self.foreign / "file", 0o640)

    def assert_untouched(self):
        self.assertEqual(os.listdir(self.foreign), ["file"])
        self.assertEqual((self.foreign / "file").read_text(), "somebody's")
        modes = [stat.S_IMODE(path.stat().st_mode) for path in (self.foreign, self.foreign / "file")]
        self.assertEqual(modes, [0o755, 0o640])

    def test_nothing_is_made_or_taken_where_a_link_leads(self):
        port = self.ports / wire.UPDATE_SETTINGS
        port_lock, settings_lock = Path(f"{port}.lock"), Path(f"{self.settings_file}.lock")
        for link, target in ((self.ports, ""), (self.ports / "com.nevo.lumora", ""), (port, "port"), (port, "file"),
                             (port_lock, "lock"), (port_lock, "file"), (settings_lock, "file")):
            with self.subTest(link=link, target=target):
                shutil.rmtree(self.ports, True)
                link.unlink(missing_ok=True)
                link.parent.mkdir(0o700, parents=True, exist_ok=True)
                link.symlink_to(self.foreign / target)
                self.assert_refuses_to_start()
                self.assert_untouched()
                self.assertEqual(os.readlink(link), str(self.foreign / target), "the link itself stays as well")
            link.unlink()

    def test_settings_are_not_written_through_a_link_in_the_place_of_the_new_file(self):
        os.symlink(self.foreign / "file", f"{self.settings_file}.new")
        self.start_tweak()
        self.set("kSleepTime", 20)
        self.assert_untouched()
        self.assertTrue(stat.S_ISREG(os.lstat(self.settings_file).st_mode))

    def test_no_history_is_written_through_a_link(self):
        history = self.settings_file.removesuffix(".plist") + ".history"
        for name in (history, history + ".new"):
            with self.subTest(name):
                os.symlink(self.foreign / "file", name)
                tweak = self.start_tweak(stderr=subprocess.PIPE)
                self.set("kSleepTime", 20)
                self.lumoractl("history", "--clear")
                self.end(tweak)
                self.assert_untouched()
                os.unlink(history)


class ModeTest(Attacked):
    """Everything that the tweak makes by itself is for its user alone, whatever the umask."""

    def make_everything(self, mask):
        """Ports, settings and what stands beside them, in folders that are not there yet."""
        self.addCleanup(os.umask, os.umask(mask))
        self.environment.pop("LUMORA_PORTS", None)
        self.environment |= {"XDG_RUNTIME_DIR": str(self.folder / "run/user"),
                             "XDG_CONFIG_HOME": str(self.folder / "home/config")}
        self.device = self.folder / "device"
        self.device.mkdir()
        settings = self.device / "var/mobile/Library/Preferences/com.nevo.lumora.plist"
        for options in ([], ["--root", self.device], ["--root", self.device]):
            tweak = self.start_ready(program("lumora-tweak"), "--verbose", *options, stderr=subprocess.PIPE)
            self.lumoractl("set", "kAutoUnlockPasscode", "-", input='"secret"', status=0)
            tweak.kill()  # its dead sockets stay
            tweak.wait()
            if options:
                settings.write_bytes(b"nonsense")  # the next one sets it aside

    def assert_all_is_private(self):
        made = [path for path in self.folder.rglob("*") if path != self.device]
        names = {path.name for path in made}
        self.assertLessEqual({"com.nevo.lumora.plist", "com.nevo.lumora.plist.unreadable", "com.nevo.lumora.plist.lock",
                              "updateSettings", "updateSettings.lock", "requestTweakSettings"}, names)
        for path in made:
            self.assertEqual(stat.S_IMODE(os.lstat(path).st_mode) & 0o077, 0, path)

    def test_under_the_usual_umask_and_one_that_hides_nothing(self):
        for mask in (0o022, 0o000):
            with self.subTest(mask=oct(mask)):
                self.make_everything(mask)
                self.assert_all_is_private()
            shutil.rmtree(self.folder)
            self.folder.mkdir(0o700)


if __name__ == "__main__":
    unittest.main()

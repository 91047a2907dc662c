"""What tests of the real programs are made of: a folder of their own, a tweak, programs that end with the test.

Needs nothing of Python beyond its standard library.
"""
import contextlib
import json
import os
import plistlib
import shutil
import socket
import subprocess
import tempfile
import threading
from pathlib import Path

from harness import wire
from harness.build import BUILD
from harness.client import Client
from harness.waiting import LONG_ENOUGH, Limited, eventually

ROOT = str(BUILD / "root")


def program(name):
    return str(BUILD / "bin" / name)


def add_plugin(root, name, library, principal):
    """A bundle among the plug-ins of a device root, and its folder."""
    bundle = os.path.join(root, f"Library/Nevo/Lumora/Plugins/{name}.bundle")
    os.mkdir(bundle)
    shutil.copy(library, bundle + "/Code")
    Path(bundle, "Info.plist").write_bytes(
        plistlib.dumps({"CFBundleExecutable": "Code", "NSPrincipalClass": principal}))
    return bundle


def descriptors(process):
    return len(os.listdir(f"/proc/{process.pid}/fd"))


def sockets(process):
    """How many it has, connected or not."""
    found = 0
    for number in os.listdir(f"/proc/{process.pid}/fd"):
        with contextlib.suppress(FileNotFoundError):
            found += os.readlink(f"/proc/{process.pid}/fd/{number}").startswith("socket:")
    return found


def threads(process):
    return len(os.listdir(f"/proc/{process.pid}/task"))


class Lines:
    """What a program writes, readable while it runs."""

    def __init__(self, stream):
        self.text = ""
        self._thread = threading.Thread(target=self._read, args=(stream,), daemon=True)
        self._thread.start()

    def _read(self, stream):
        for line in stream:
            self.text += line
        stream.close()

    def whole(self):
        """The text, once the program has ended."""
        self._thread.join()
        return self.text


class Programs(Limited):
    """A test of the programs, without a display."""

    root = ROOT

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="programs-")
        self.addCleanup(shutil.rmtree, self.folder, True)
        self.ports = os.path.join(self.folder, "ports")
        self.settings_file = os.path.join(self.folder, "settings.plist")
        self.client = Client(self.ports, LONG_ENOUGH)  # this machine may be busy
        self.environment = {
            **{name: value for name, value in os.environ.items()
               if not name.startswith(("QT_", "QSG_", "LUMORA_", "WAYLAND", "DBUS_"))},
            "DISPLAY": "", "LUMORA_PORTS": self.ports, "XDG_RUNTIME_DIR": self.folder,
            "XDG_CACHE_HOME": self.folder + "/cache", "XDG_STATE_HOME": self.folder + "/state"}

    def make_root(self):
        """A device root of the test's own, like the build's."""
        self.root = self.folder + "/root"
        shutil.copytree(ROOT, self.root, symlinks=True)

    def write(self, name, content):
        """A file in the test's folder, and its path."""
        path = Path(self.folder, name)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return str(path)

    def add_script(self, name, script):
        """A program in the test's folder, and its path."""
        path = self.write(name, f"#!/bin/sh\n{script}\n")
        os.chmod(path, 0o700)
        return path

    def start(self, *command, **options):
        """A program that runs until the test ends; what it says on a piped standard error is in .lines.text."""
        process = subprocess.Popen(command, text=True, **{"env": self.environment, **options})
        process.lines = process.stderr and Lines(process.stderr)

        def end():
            process.terminate()  # one that is killed takes along what it has counted, where that is done
            with contextlib.suppress(subprocess.TimeoutExpired):
                process.wait(10)
            process.kill()
            process.wait()
            for pipe in filter(None, (process.stdin, process.stdout)):
                pipe.close()
        self.addCleanup(end)
        return process

    def start_ready(self, *command, **options):
        """One that says when it is."""
        process = self.start(*command, stdout=subprocess.PIPE, **options)
        self.assertIn("ready", process.stdout.readline(), process.lines and process.lines.text)
        return process

    def start_tweak(self, *words, **options):
        return self.start_ready(program("lumora-tweak"), "--settings", self.settings_file, *words, **options)

    def end(self, process):
        """Asks a program to end, and has it do so."""
        process.terminate()
        self.assertEqual(process.wait(LONG_ENOUGH), 0)

    def run_program(self, *command, status=None, **options):
        """Until it ends by itself; with that status, if one is given."""
        done = subprocess.run(command, check=False, **{
            "env": self.environment, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "text": True,
            "timeout": LONG_ENOUGH, **options})
        if status is not None:
            self.assertEqual(done.returncode, status, (command, done.stderr))
        return done

    def settings(self, *words, status=None, **environment):
        """The Settings application, without a window."""
        return self.run_program(program("lumora-settings"), "--root", self.root, *words, status=status,
                                env={**self.environment, **environment})

    def printed(self, page):
        """What a page prints, for which no display is needed."""
        return json.loads(self.settings("--rows", page, status=0, DISPLAY="").stdout)

    def lumoractl(self, *words, **options):
        return self.run_program(program("lumoractl"), *words, **options)

    def get(self, key):
        """What the tweak has for a key."""
        return json.loads(self.lumoractl("get", key, status=0).stdout)

    def set(self, key, value):
        self.lumoractl("set", key, json.dumps(value), status=0)

    def connected(self, name=wire.UPDATE_SETTINGS):
        """A connection of the test's own to a port."""
        connection = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self.addCleanup(connection.close)
        connection.settimeout(LONG_ENOUGH)
        connection.connect(wire.socket_path(self.ports, name))
        return connection

    def expect_soon(self, look, wanted):
        """That look() comes to give that."""
        try:
            eventually(lambda: look() == wanted, wanted)
        except AssertionError:
            self.assertEqual(look(), wanted)

    # -- the tweak's disk, read and written with Python's own property lists --

    def stored(self, key):
        return self.all_stored().get(key)

    def all_stored(self):
        try:
            return plistlib.loads(Path(self.settings_file).read_bytes())
        except FileNotFoundError:
            return {}

    def store(self, settings):
        Path(self.settings_file).write_bytes(plistlib.dumps(settings))

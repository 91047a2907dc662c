"""What tests of faults are made of: a ports folder of their own and programs that end with the test.

A program that imports this is called with the folder of programs and the device root as its last arguments.
"""
import contextlib
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path += [str(HERE.parent / name) for name in ("settings", "support", "wire")]

from client import Client
from window import LONG_ENOUGH, ROOT, Limited, Lines, eventually, program

with_few_descriptors = unittest.skipIf("undefined" in os.environ.get("LUMORA_SANITIZE", ""),
                                       "the check of virtual tables needs a pipe of its own to look at memory")


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


class Case(Limited):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="faults-")
        self.addCleanup(shutil.rmtree, self.folder, True)
        self.ports = os.path.join(self.folder, "ports")
        self.settings_file = os.path.join(self.folder, "settings.plist")
        self.client = Client(self.ports, LONG_ENOUGH)  # this machine may be busy
        self.environment = {**{name: value for name, value in os.environ.items() if not name.startswith("LUMORA_")},
                            "LUMORA_PORTS": self.ports, "XDG_CACHE_HOME": self.folder + "/cache"}

    def start(self, *command, **options):
        """A program that runs until the test ends; what it says on standard error is in .errors.text, unless
        that leads elsewhere."""
        pipes = {"stdin": subprocess.PIPE, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE}
        process = subprocess.Popen(command, text=True, **{"env": self.environment, **pipes, **options})
        process.errors = process.stderr and Lines(process.stderr)

        def end():
            process.kill()
            process.wait()
            process.stdin.close()
            if process.stdout:
                process.stdout.close()
        self.addCleanup(end)
        return process

    def start_tweak(self, *options, **started):
        tweak = self.start(program("lumora-tweak"), "--settings", self.settings_file, *options, **started)
        self.assertIn("ready", tweak.stdout.readline(), tweak.errors and tweak.errors.text)
        return tweak

    def run_program(self, *command, **options):
        return subprocess.run(command, text=True, capture_output=True, check=False,
                              **{"env": self.environment, "timeout": LONG_ENOUGH, **options})

    def lumoractl(self, *words, **options):
        return self.run_program(program("lumoractl"), *words, **options)

    def rows(self, page, *words, **options):
        """A page of the Settings application, without a window."""
        return self.run_program(program("lumora-settings"), "--root", ROOT, "--rows", page, *words, **options)

    def expect_failure(self, result, *reasons):
        """That a program says in one line of its own why it failed, and nothing else. Any of the reasons will do."""
        self.assertEqual((result.returncode, result.stdout), (1, ""), result.stderr)
        name = os.path.basename(result.args[0])
        self.assertRegex(result.stderr, rf"\A{name}: [^\n]+\n\Z")
        self.assertTrue(any(reason in result.stderr for reason in reasons), f"{reasons} in {result.stderr}")

    def expect_soon(self, number, wanted):
        """That number() comes to be what it was before."""
        try:
            eventually(lambda: number() == wanted, wanted)
        except AssertionError:
            self.assertEqual(number(), wanted)

#!/usr/bin/python3
"""A plug-in in the window that `lumoractl plugin run` opens for its author.

    PYTHONPATH=tests dbus-run-session -- tests/kit/run_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import contextlib
import os
import shutil
import signal
import subprocess
import types
import unittest
from pathlib import Path

from harness.build import BUILD
from harness.programs import Lines, add_plugin, program
from harness.spoken import LINK, SWITCH, Spoken
from harness.waiting import LONG_ENOUGH, eventually

MODULES = BUILD / "tests/lists/modules"


class RunTest(Spoken):
    limit = 2 * LONG_ENOUGH

    def setUp(self):
        super().setUp()
        self.temporary = Path(self.folder, "tmp")
        self.temporary.mkdir()
        author = Path(self.folder, "author/Library/Nevo/Lumora/Plugins")
        author.mkdir(parents=True)
        self.bundle = self.add_plugin("good")
        self.environment["TMPDIR"] = str(self.temporary)

    def add_plugin(self, name):
        return Path(add_plugin(self.folder + "/author", name, MODULES / "FaultyPage", "TestPlugin"))

    def run_plugin(self, **environment):
        running = self.start(program("lumoractl"), "plugin", "run", "--root", self.root, str(self.bundle),
                             env={**self.environment, **environment}, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        running.said = Lines(running.stdout)
        return running

    def children(self, running):
        """Its programs, by name."""
        found = {}
        for pid in Path(f"/proc/{running.pid}/task/{running.pid}/children").read_text(encoding="ascii").split():
            with contextlib.suppress(FileNotFoundError):  # of one that has just ended
                found[os.path.basename(os.readlink(f"/proc/{pid}/exe"))] = int(pid)
        return found

    def window(self, running, but=None):
        """The one that is open, other than a former one."""
        def opened():
            self.assertIsNone(running.poll(), running.lines.text)
            pid = self.children(running).get("lumora-settings")
            return pid and pid != but and self.windows(types.SimpleNamespace(pid=pid)) and pid
        return types.SimpleNamespace(pid=eventually(opened, "the window"))

    def replace_code(self, module):
        """As a linker does."""
        shutil.copy(MODULES / module, self.bundle / "New")
        os.rename(self.bundle / "New", self.bundle / "Code")

    def expect_to_end(self, running, programs):
        self.assertEqual(running.wait(LONG_ENOUGH), 0, running.lines.text)
        self.assertEqual(list(self.temporary.iterdir()), [])
        for pid in programs.values():
            self.assertFalse(Path(f"/proc/{pid}").exists())

    def test_shows_the_page_beside_the_lock_screen_with_settings_of_its_own(self):
        running = self.run_plugin()
        window = self.window(running)
        switch = self.named(window, SWITCH, "Switch")
        self.assertEqual(set(self.spoken(window, LINK)) & {"Faulty", "Weather", "Notes"}, {"Faulty"})
        self.act(switch, "Toggle")
        [ports] = self.temporary.glob("*/ports")
        self.expect_soon(lambda: self.lumoractl("get", "org.example.good.switch",
                                                env={**self.environment, "LUMORA_PORTS": str(ports)}).stdout, "true\n")
        self.assertEqual(self.lumoractl("get", "org.example.good.switch").returncode, 1)
        # A build in a home folder is in its RUNPATH, of which one is warned.
        self.assertRegex(running.said.text, r"good\.bundle: (nothing to mend|1 warning)\n\Z")
        programs = self.children(running)
        self.assertEqual(set(programs), {"lumora-settings", "lumora-tweak"})
        running.send_signal(signal.SIGINT)
        self.expect_to_end(running, programs)

    def test_runs_where_the_folder_for_temporary_files_has_too_long_a_path_for_sockets(self):
        self.temporary /= "deep" * 20
        self.temporary.mkdir()
        self.environment["TMPDIR"] = str(self.temporary)
        running = self.run_plugin()
        self.named(self.window(running), SWITCH, "Switch")
        programs = self.children(running)
        running.terminate()
        self.expect_to_end(running, programs)

    def test_shows_each_build_anew_and_keeps_what_is_open_for_one_that_is_of_no_use(self):
        running = self.run_plugin()
        first = self.window(running)
        self.named(first, SWITCH, "Switch")
        self.replace_code("PagePlugin")
        second = self.window(running, but=first.pid)
        self.named(second, SWITCH, "On")
        os.remove(self.bundle / "Code")
        eventually(lambda: "it is missing" in running.said.text, "the finding")
        self.assertEqual(self.window(running).pid, second.pid)
        shutil.rmtree(self.bundle)
        shutil.copytree(self.add_plugin("other"), self.bundle)
        third = self.window(running, but=second.pid)
        self.named(third, SWITCH, "Switch")
        programs = self.children(running)
        os.kill(third.pid, signal.SIGTERM)  # closes the window
        self.expect_to_end(running, programs)

    def test_shows_each_change_in_folders_of_the_bundle(self):
        pictures = self.bundle / "Resources/pictures"
        pictures.mkdir(parents=True)
        running = self.run_plugin()
        first = self.window(running)
        (pictures / "sun.png").write_bytes(b"")
        second = self.window(running, but=first.pid)
        (pictures / "of").mkdir()
        third = self.window(running, but=second.pid)
        (pictures / "of/moon.png").write_bytes(b"")
        self.window(running, but=third.pid)
        programs = self.children(running)
        running.terminate()
        self.expect_to_end(running, programs)

    def test_ends_in_the_middle_of_a_judgement(self):
        self.bundle = self.add_plugin("sleep")
        running = self.run_plugin()

        def judge():  # which has the page made in a copy of its own
            pid = self.children(running).get("lumora-probe")
            with contextlib.suppress(FileNotFoundError):  # of the one before, which does not judge
                return pid and "lumora-probe" in self.children(types.SimpleNamespace(pid=pid)) and pid
            return None
        programs = {"probe": eventually(judge, "the judgement"), **self.children(running)}
        running.send_signal(signal.SIGINT)
        self.expect_to_end(running, programs)
        self.assertEqual(running.said.text, "", "it has not waited for the end of the judgement")

    def test_outlives_a_page_that_takes_the_window_along(self):
        running = self.run_plugin()
        first = self.window(running)
        os.kill(first.pid, signal.SIGABRT)  # which no sanitizer takes for itself
        eventually(lambda: "waiting for another build" in running.lines.text, "word of it")
        self.replace_code("PagePlugin")
        self.named(self.window(running, but=first.pid), SWITCH, "On")
        programs = self.children(running)
        running.terminate()
        self.expect_to_end(running, programs)

    def test_says_what_it_lacks(self):
        running = self.run_plugin(DISPLAY="")
        self.assertEqual(running.wait(LONG_ENOUGH), 1)
        self.assertEqual(running.lines.whole(), "lumoractl: there is no display to open a window on\n")


if __name__ == "__main__":
    unittest.main()

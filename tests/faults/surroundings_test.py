#!/usr/bin/env python3
"""Machines that have no room, no descriptors, odd folders, other locales or a plug-in that crashes: every program says
what is wrong, where it may, and loses nothing.

    PYTHONPATH=tests tests/faults/surroundings_test.py [-v] BUILD
"""
import contextlib
import json
import os
import resource
import shutil
import stat
import subprocess
import unittest
from pathlib import Path

from case import Case, with_few_descriptors
from harness import stranger, wire
from harness.archives import archive, unarchive
from harness.build import BUILD
from harness.programs import ROOT, add_plugin, program
from harness.waiting import LONG_ENOUGH, eventually

AS_ROOT = os.geteuid() == 0
WORDS = "Grüße – 𝄞"


def limited(kind, most):
    """What makes a program start with at most that."""
    return lambda: resource.setrlimit(kind, (most, resource.getrlimit(kind)[1]))


class DiskTest(Case):
    """A small disk of the test's own."""

    def setUp(self):
        super().setUp()
        self.disk = os.path.join(self.folder, "disk")
        os.mkdir(self.disk)
        if not AS_ROOT or self.mount("size=256k").returncode:
            self.skipTest("only root can have a disk of its own, and not in every container")
        self.addCleanup(subprocess.run, ["umount", "-l", self.disk], check=True)
        self.settings_file = os.path.join(self.disk, "settings.plist")

    def mount(self, options):
        command = ["mount", "-t", "tmpfs", "-o", options, "none", self.disk]
        return subprocess.run(command, capture_output=True, check=False)

    def remount(self, options):
        subprocess.run(["mount", "-o", "remount," + options, self.disk], check=True)

    def fill(self):
        with open(os.path.join(self.disk, "filling"), "wb", buffering=0) as file, contextlib.suppress(OSError):
            while file.write(bytes(4096)):
                pass

    def expect_refusal(self, why):
        before = self.all_stored()
        self.assertIn(why, self.client.set("kSleepTime", 60))
        self.expect_failure(self.lumoractl("set", "kSleepTime", "60"), why)
        self.assertEqual(self.all_stored(), before)
        self.assertEqual(self.client.settings()["kSleepTime"], before["kSleepTime"])

    def expect_taken(self):
        self.assertIsNone(self.client.set("kSleepTime", 20))
        self.assertEqual(self.all_stored(), {"kSleepTime": 20})

    def test_a_full_disk_costs_the_tweak_nothing_but_the_change(self):
        tweak = self.start_tweak()
        self.assertIsNone(self.client.set("kSleepTime", 15))
        self.fill()
        self.expect_refusal("No space left on device")
        self.assertEqual(sorted(os.listdir(self.disk)),
                         ["filling", "settings.history", "settings.plist", "settings.plist.lock"])
        self.end(tweak)
        self.start_tweak()
        self.assertEqual(self.client.settings()["kSleepTime"], 15)
        self.expect_refusal("No space left on device")
        os.unlink(os.path.join(self.disk, "filling"))
        self.expect_taken()

    def test_a_read_only_disk_keeps_the_tweak_from_starting_and_its_settings_as_they_are(self):
        tweak = self.start_tweak()
        self.assertIsNone(self.client.set("kSleepTime", 15))
        self.end(tweak)
        self.remount("ro")
        refused = self.run_program(program("lumora-tweak"), "--settings", self.settings_file)
        self.expect_failure(refused, f"cannot write in {self.disk}: Read-only file system")
        self.remount("rw")
        self.start_tweak()
        self.assertEqual(self.client.settings()["kSleepTime"], 15)
        self.expect_taken()

    def mount_disk_that_may_fail(self):
        """In place of the other one; gives the file that tells its file system of an error when it is written to."""
        image = os.path.join(self.folder, "image")
        with open(image, "wb") as file:
            file.truncate(4 << 20)
        for command in (["mkfs.ext4", "-q", "-F", image],
                        ["mount", "-o", "loop,errors=remount-ro", image, self.disk]):
            if not shutil.which(command[0]) or subprocess.run(command, capture_output=True, check=False).returncode:
                self.skipTest(f"{command[0]} makes no disk of a file here")
        self.addCleanup(subprocess.run, ["umount", "-l", self.disk], check=True)
        device = os.stat(self.disk).st_dev
        name = os.path.basename(os.path.realpath(f"/sys/dev/block/{os.major(device)}:{os.minor(device)}"))
        trigger = f"/sys/fs/ext4/{name}/trigger_fs_error"
        if not os.access(trigger, os.W_OK):
            self.skipTest(f"{trigger} cannot be written to, and so the disk not made to fail")
        return trigger

    def test_a_disk_that_turns_read_only_costs_a_running_tweak_nothing_but_the_change(self):
        trigger = self.mount_disk_that_may_fail()
        tweak = self.start_tweak()
        self.assertIsNone(self.client.set("kSleepTime", 15))
        os.sync()
        Path(trigger).write_text("an error of the test's own", encoding="ascii")
        for _ in range(2):
            self.expect_refusal("Read-only file system")
        self.rows("LumoraPreferences", status=0)
        self.end(tweak)
        refused = self.run_program(program("lumora-tweak"), "--settings", self.settings_file)
        self.expect_failure(refused, f"cannot write in {self.disk}: Read-only file system")
        subprocess.run(["umount", self.disk], check=True)
        subprocess.run(["mount", "-o", "loop", os.path.join(self.folder, "image"), self.disk], check=True)
        self.start_tweak()
        self.assertEqual(self.client.settings()["kSleepTime"], 15)
        self.expect_taken()

    def test_a_full_disk_is_reported_by_each_program_that_writes_to_it(self):
        self.start_tweak()
        self.fill()
        picture = os.path.join(self.disk, "picture.png")
        self.assertIn(f"lumora-settings: cannot write the picture {picture}",
                      self.settings("--grab", picture, status=1).stderr)
        archived = self.lumoractl("archive", "-o", os.path.join(self.disk, "archive"), input="[1, 2, 3]")
        self.expect_failure(archived, "No space left on device")


class ReadOnlyFolderTest(Case):
    def test_costs_a_running_tweak_nothing_but_the_change(self):
        """As an ordinary user: nothing is read-only to root."""
        user = {}
        if AS_ROOT:
            if not stranger.can_be():
                self.skipTest(stranger.WHY_NOT)
            os.chmod(self.folder, 0o755)
            if not stranger.reaches(self.folder):
                self.skipTest(f"the folders above {self.folder} keep everybody else out")
            user = {"user": stranger.USER, "group": stranger.USER, "extra_groups": [], "cwd": "/"}
        try:
            self.lumoractl("--version", status=0, **user)
        except PermissionError:
            self.skipTest("the programs are where only root can run them")
        folder = os.path.join(self.folder, "settings")
        os.mkdir(folder, 0o700)
        os.mkdir(self.ports, 0o700)
        if AS_ROOT:
            for path in (folder, self.ports):
                os.chown(path, stranger.USER, stranger.USER)
        self.settings_file = os.path.join(folder, "settings.plist")
        self.start_tweak(**user)
        self.lumoractl("set", "kSleepTime", "15", status=0, **user)
        os.chmod(folder, 0o500)
        self.expect_failure(self.lumoractl("set", "kSleepTime", "60", **user), "Permission denied")
        self.assertEqual(self.lumoractl("get", "kSleepTime", **user).stdout, "15\n")
        os.chmod(folder, 0o700)
        self.assertEqual(self.all_stored(), {"kSleepTime": 15})
        self.lumoractl("set", "kSleepTime", "60", status=0, **user)


class OutputTest(Case):
    def test_output_that_cannot_be_written_is_told(self):
        with open("/dev/full", "w", encoding="ascii") as full:
            tweak = self.start(program("lumora-tweak"), "--settings", self.settings_file, stdout=full)
            eventually(lambda: self.lumoractl("list").returncode == 0, "the tweak, which serves nevertheless")
            for command in (["lumoractl", "list"], ["lumoractl", "plugins", "--root", ROOT], ["lumoractl", "archive"],
                            ["lumora-settings", "--root", ROOT, "--rows", "AppsController"]):
                with self.subTest(command):
                    told = self.run_program(program(command[0]), *command[1:], stdout=full, input="1", status=1)
                    self.assertRegex(told.stderr, rf"^{command[0]}: cannot write (to )?standard output")
            self.end(tweak)

    def test_errors_that_cannot_be_written_change_nothing(self):
        with open("/dev/full", "w", encoding="ascii") as full:
            self.lumoractl("list", stderr=full, status=1)
            tweak = self.start_tweak(stderr=full)
            self.assertIn("kSleepTime", self.client.set("kSleepTime", "soon"))
            self.assertIsNone(self.client.set("kSleepTime", 15))
            rows = self.rows("LumoraPreferences", stderr=full, status=0)
            self.assertEqual(json.loads(rows.stdout)["page"], "LumoraPreferences")
            self.end(tweak)


@with_few_descriptors
class DescriptorsTest(Case):
    def test_a_tweak_without_descriptors_refuses_the_change_and_goes_on_when_there_are_some(self):
        tweak = self.start_tweak()
        self.assertIsNone(self.client.set("kSleepTime", 15))
        connection = self.connected()
        change = wire.frame(archive({"object": {"key": "kSleepTime", "object": 60}}))
        connection.sendall(change)
        self.assertEqual(wire.read_frame(connection.recv), (0, None))
        self.assertIsNone(self.client.set("kSleepTime", 15))
        _, most = resource.prlimit(tweak.pid, resource.RLIMIT_NOFILE)
        resource.prlimit(tweak.pid, resource.RLIMIT_NOFILE, (3, most))
        connection.sendall(change)
        self.assertIn("Too many open files", unarchive(wire.read_frame(connection.recv)[1])["error"])
        self.expect_failure(self.lumoractl("list"), "did not answer within 1 second")
        resource.prlimit(tweak.pid, resource.RLIMIT_NOFILE, (most, most))
        self.assertEqual(self.client.settings()["kSleepTime"], 15)
        self.assertIsNone(self.client.set("kSleepTime", 60))

    def test_a_tweak_with_too_few_descriptors_starts_or_says_why_not_and_loses_no_settings(self):
        self.store({"kSleepTime": 15})
        for most in (4, 5, 6, 30):
            with self.subTest(most):
                tweak = self.start(program("lumora-tweak"), "--settings", self.settings_file,
                                   preexec_fn=limited(resource.RLIMIT_NOFILE, most))
                if "ready" in tweak.stdout.readline():
                    self.assertEqual(self.client.settings()["kSleepTime"], 15)
                    self.end(tweak)
                else:
                    self.assertEqual(tweak.wait(LONG_ENOUGH), 1)
                    eventually(lambda tweak=tweak: tweak.lines.text.startswith("lumora-tweak: cannot "), "the reason")
                    self.assertNotEqual(most, 30)
        self.assertEqual(self.all_stored(), {"kSleepTime": 15})
        self.assertEqual([name for name in os.listdir(self.folder) if "unreadable" in name], [])

    def test_other_programs_need_few_descriptors_and_say_when_they_have_none(self):
        self.start_tweak()
        few = {"preexec_fn": limited(resource.RLIMIT_NOFILE, 4)}
        self.assertEqual(self.lumoractl("get", "kSleepTime", **few).stdout, "10\n")
        listed = self.lumoractl("plugins", "--root", ROOT, status=1, **few)
        self.assertIn("it could not be tried: Too many open files", listed.stdout)
        self.rows("AppsController", status=0)
        for most in range(4, 12):
            with self.subTest(most):
                rows = self.rows("AppsController", "--timeout", "5", preexec_fn=limited(resource.RLIMIT_NOFILE, most))
                if rows.returncode == 0:
                    self.assertEqual(json.loads(rows.stdout)["page"], "AppsController")
                else:
                    self.expect_failure(rows, "cannot be loaded", "timed out waiting for the tweak")


class PortsFolderTest(Case):
    UNUSABLE = "its folder cannot be made, or is not a folder of yours alone"

    def expect_no_ports(self, folder, why=UNUSABLE, told="is not a folder of this user alone"):
        """That no port opens there, that everybody who may say so does, and that nothing is made."""
        self.environment["LUMORA_PORTS"] = folder
        refused = self.run_program(program("lumora-tweak"), "--settings", self.settings_file)
        self.expect_failure(refused, f"cannot open the port {folder}/com.nevo.lumora/updateSettings: {why}")
        self.expect_failure(self.lumoractl("list"), told)
        self.expect_failure(self.lumoractl("set", "kSleepTime", "30"), told)
        rows = self.rows("LumoraPreferences", "--timeout", "3", status=1)
        self.assertRegex(rows.stderr, rf"(\A|{told}\n)lumora-settings: timed out waiting for the tweak[^\n]+\n\Z")

    def test_is_made_for_the_user_alone_when_it_is_missing(self):
        self.ports = self.environment["LUMORA_PORTS"] = self.folder + "/a/b/ports"
        self.assertIn("is lumora-tweak running?", self.lumoractl("list").stderr)
        self.assertFalse(os.path.exists(self.folder + "/a"), "who only asks makes nothing")
        self.start_tweak()
        for path in (self.folder + "/a", self.folder + "/a/b", self.ports):
            self.assertEqual(stat.S_IMODE(os.stat(path).st_mode), 0o700)
        self.lumoractl("list", status=0)

    def test_is_refused_when_others_could_write_to_it(self):
        os.mkdir(self.ports)
        for mode in (0o777, 0o1777, 0o770, 0o702):
            os.chmod(self.ports, mode)
            self.expect_no_ports(self.ports)
            self.assertEqual(os.listdir(self.ports), [])

    def test_is_refused_when_it_is_a_link_to_nowhere_or_no_folder(self):
        os.symlink(self.folder + "/nowhere", self.ports)
        self.expect_no_ports(self.ports)
        self.assertFalse(os.path.exists(self.folder + "/nowhere"))
        os.unlink(self.ports)
        self.write("ports", "a file")
        self.expect_no_ports(self.ports)
        self.assertEqual(Path(self.ports).read_text(encoding="ascii"), "a file")

    def test_is_refused_when_its_path_is_too_long_for_a_socket(self):
        # Of the 107 bytes a name takes 36, and the longer one 43; with a slash between them.
        longest = os.path.join(self.folder, "x" * (107 - 44 - 1 - len(self.folder)))
        self.ports = self.environment["LUMORA_PORTS"] = longest
        tweak = self.start_tweak()
        self.lumoractl("list", status=0)
        self.end(tweak)
        self.expect_no_ports(longest + "x" * 40, "its path is too long for a socket", "is too long for the path of a socket")
        self.assertFalse(os.path.exists(longest + "x" * 40))

    def test_says_what_stands_where_the_socket_should_be(self):
        os.makedirs(self.ports + "/com.nevo.lumora", 0o700)
        file = self.write("ports/" + wire.UPDATE_SETTINGS, "a file")
        self.expect_no_ports(self.ports, "its socket or lock file cannot be used", "is lumora-tweak running?")
        self.assertEqual(Path(file).read_text(encoding="ascii"), "a file")


class PluginTest(Case):
    def setUp(self):
        super().setUp()
        self.make_root()
        self.start_tweak()

    def add(self, name):
        add_plugin(self.root, name, BUILD / "tests/lists/modules/TestPlugin", "TestPlugin")

    def test_a_plug_in_that_ends_its_process_is_left_out_and_the_others_are_there(self):
        without = self.rows("PluginsListController")
        self.assertEqual(without.returncode, 0, without.stderr)
        for name in ("throwing-at-load-1", "leaving-at-page-1", "killing-at-name-1", "scribbling-at-appID-1",
                     "looping-at-load-1"):
            self.add(name)
        for _ in range(2):
            rows = self.rows("PluginsListController")
            self.assertEqual((rows.returncode, rows.stdout), (0, without.stdout), rows.stderr)
        # On a busy machine two seconds of the processor take longer than the ten that each has by default.
        listed = self.lumoractl("plugins", "--root", self.root, "--timeout", str(LONG_ENOUGH), timeout=3 * LONG_ENOUGH)
        self.assertEqual(listed.returncode, 1)
        self.assertRegex(listed.stdout, r"throwing-at-load-1.bundle +skipped: it crashes: Aborted")
        self.assertRegex(listed.stdout, r"looping-at-load-1.bundle +skipped: it hangs: no answer within 2000 ms of")
        self.assertIn("ClockView.bundle", listed.stdout)

    def test_a_time_out_names_the_plug_in_that_is_waited_for(self):
        self.add("hanging-at-load-1")
        rows = self.rows("PluginsListController", "--timeout", "10")  # no longer than one may take
        self.expect_failure(rows, "timed out waiting for lumora-probe to try " + self.root)
        self.assertRegex(rows.stderr, r"/hanging-at-load-1\.bundle\n")

    def test_a_plug_in_that_calls_exit_is_no_success(self):
        self.add("exiting-in-settings-at-name-1")
        rows = self.rows("PluginsListController")
        self.assertEqual((rows.returncode, rows.stdout), (1, ""))
        self.assertIn("such as a plug-in, has called exit()", rows.stderr)


class LocaleTest(Case):
    """Texts are UTF-8 whatever the locale says."""

    def test_programs_do_the_same_without_utf_8(self):
        self.expect_the_same({"LC_ALL": "C"}, {"LC_ALL": "POSIX"}, {"LC_ALL": "no_SUCH.locale"})

    def test_programs_do_the_same_in_latin_1(self):
        latin = os.path.join(self.folder, "locales")
        os.makedirs(latin)
        command = ["localedef", "-i", "de_DE", "-f", "ISO-8859-1", "--no-archive", latin + "/de_DE.ISO-8859-1"]
        if not shutil.which("localedef") or subprocess.run(command, capture_output=True, check=False).returncode:
            self.skipTest("de_DE.ISO-8859-1 cannot be made without the package locales")
        self.expect_the_same({"LC_ALL": "de_DE.ISO-8859-1", "LOCPATH": latin})

    def expect_the_same(self, *locales):
        base = self.environment
        self.environment = base | {"LC_ALL": "C.UTF-8"}
        self.settings_file = os.path.join(self.folder, WORDS + ".plist")
        tweak = self.start_tweak()
        self.set("kLSDateSubtitle", WORDS)
        wanted = self.rows("LSDateViewSettings").stdout
        self.assertIn(WORDS, wanted)
        for number, locale in enumerate(locales):
            with self.subTest(**locale):
                self.end(tweak)
                self.environment = base | locale
                tweak = self.start_tweak()
                self.assertEqual(self.lumoractl("get", "kLSDateSubtitle").stdout, f'"{WORDS}"\n')
                key = f"org.test.{WORDS}{number}"
                changed = self.lumoractl("set", key, json.dumps(WORDS, ensure_ascii=False))
                self.assertEqual((changed.returncode, changed.stderr), (0, ""))
                self.assertEqual(self.client.settings()[key], WORDS)
                self.assertEqual(json.loads(self.lumoractl("list").stdout)[key], WORDS)
                self.assertEqual(self.rows("LSDateViewSettings", status=0).stdout, wanted)
                self.lumoractl("plugins", "--root", ROOT, status=0)
                picture = os.path.join(self.folder, f"{WORDS}{number}.png")
                grabbed = self.settings("--grab", picture, status=0)
                # The toolkit's complaint. Since Qt 6.8 it tells of having switched as well, which is all right.
                self.assertNotIn("failed to switch", grabbed.stderr)
                self.assertTrue(os.path.exists(picture))
                self.assertTrue(os.path.exists(self.settings_file))


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/env python3
"""The Debian packages: made from this source, then installed, used and purged in a Debian that has nothing else.

    PYTHONPATH=tests:scripts tests/install/packages_test.py [-v] BUILD

To install them it needs root, for a root of its own, and the package mirror that this machine uses. Without them it
says so and, if all else passed, ends with 77. The bare Debian and what was downloaded for it are kept under
BUILD/tests/install.
"""
import contextlib
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from harness.build import BUILD, SOURCE, output
import bare_debian

KEPT = BUILD / "tests/install/debian"
PACKAGES = {"liblumora-dev", "liblumora6", "lumora-common", "lumora-lockscreen", "lumora-samples", "lumora-settings",
            "lumora-tweak", "lumoractl"}
PERSON = 1000
PERSONAL = {"HOME": "/home/person", "XDG_RUNTIME_DIR": "/home/person"}


def make_packages():
    """The packages by name, made under a umask that keeps others out. Compiled as ./test --all has the release, most of
    which a cache of the compiler then gives."""
    made = SOURCE / "build/package/packages"
    shutil.rmtree(made, ignore_errors=True)
    output("cmake", "--preset", "package", "-DCMAKE_UNITY_BUILD=ON", "-DCMAKE_UNITY_BUILD_BATCH_SIZE=12",
           folder=SOURCE)
    output("cmake", "--build", "--preset", "package", "--parallel", "2", folder=SOURCE, umask=0o077)
    return {file.name.split("_")[0]: file for file in made.glob("*.deb")}


class Debian:
    """A Debian as this machine has it, bare, in a folder of its own."""

    def __init__(self, folder):
        self.root = folder
        output("cp", "-a", "--reflink=auto", f"{self.base()}/.", self.root)
        bare_debian.connect(self.root)
        self.archives = KEPT / "archives"
        self.archives.mkdir(exist_ok=True)
        for file in self.archives.glob("*.deb"):
            shutil.copy(file, self.root / "var/cache/apt/archives")
        self.run("apt-get", "update")

    @staticmethod
    def base():
        """What it is a copy of; kept until this machine has its packages from elsewhere."""
        base, made_of = KEPT / "base", "\n".join(bare_debian.package_sources())
        marked = KEPT / "base.sources"
        if not (base.exists() and marked.exists() and marked.read_text() == made_of):
            bare_debian.make(base)
            marked.write_text(made_of)
        return base

    def run(self, *words, user=0, **environment):
        done = subprocess.run(bare_debian.command(self.root, *words, user=user),
                              env=bare_debian.environment(**environment), text=True, capture_output=True, check=False)
        if done.returncode != 0:
            raise AssertionError(f"{' '.join(words)}\n{done.stdout[-4000:]}\n{done.stderr[-4000:]}")
        return done.stdout

    def run_as_person(self, *words):
        return self.run(*words, user=PERSON, **PERSONAL)

    def install(self, *packages):
        self.run("apt-get", "install", "-y", "--no-install-recommends", *packages)
        for file in (self.root / "var/cache/apt/archives").glob("*.deb"):
            if not (self.archives / file.name).exists():
                shutil.copy(file, self.archives)


class Packages(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.packages = make_packages()
        bare_debian.make_private(KEPT)
        cls.folder = Path(tempfile.mkdtemp(prefix="lumora-packages-", dir=KEPT))
        cls.addClassCleanup(bare_debian.remove, cls.folder)
        for name, file in cls.packages.items():
            output("dpkg-deb", "-x", file, cls.folder / name)

    def field(self, package, field):
        return output("dpkg-deb", "-f", self.packages[package], field).strip()

    def files(self):
        return [file for package in self.packages for file in (self.folder / package).rglob("*")
                if file.is_file() and not file.is_symlink()]

    # -- what is in them --

    def test_there_is_one_for_each_purpose(self):
        self.assertEqual(set(self.packages), PACKAGES)
        changelog = (SOURCE / "packaging/debian/changelog").read_text()
        version = re.search(r"^lumora \((.*)\)", changelog).group(1)
        for package in PACKAGES:
            self.assertEqual(self.field(package, "Version"), version)
            self.assertIn(self.field(package, "Maintainer"), changelog)
            if package != "liblumora6":
                self.assertIn(f"liblumora6 (= {version})", self.field(package, "Depends"))

    def test_no_file_is_in_two_of_them(self):
        names = [str(file.relative_to(self.folder)).split("/", 1)[1] for file in self.files()]
        self.assertEqual(len(names), len(set(names)))

    def test_each_says_whose_it_is_and_what_changed(self):
        for package in PACKAGES:
            documents = self.folder / package / "usr/share/doc" / package
            self.assertEqual((documents / "copyright").read_text(), (SOURCE / "packaging/debian/copyright").read_text())
            self.assertEqual(output("gunzip", "-c", documents / "changelog.gz"),
                             (SOURCE / "packaging/debian/changelog").read_text())

    def test_programs_and_libraries_are_stripped_and_found_by_the_system(self):
        elf = [file for file in self.files() if file.read_bytes()[:4] == b"\x7fELF"]
        self.assertGreater(len(elf), 10)
        for file in elf:
            self.assertNotRegex(output("readelf", "-dS", file), r"RUNPATH|RPATH|\.debug_info|\.symtab", file)

    def test_nothing_names_the_place_where_it_was_built(self):
        for file in self.files():
            self.assertFalse(str(SOURCE).encode() in file.read_bytes(), file)

    def test_their_folders_and_files_are_readable_by_all_and_written_by_root(self):
        for package, file in self.packages.items():
            for line in output("dpkg-deb", "-c", file).splitlines():
                mode, owner = line.split()[:2]
                self.assertIn(mode, ("drwxr-xr-x", "-rwxr-xr-x", "-rw-r--r--", "lrwxrwxrwx"), f"{package}: {line}")
                self.assertEqual(owner, "root/root", f"{package}: {line}")

    def test_debians_own_checker_has_nothing_to_say(self):
        self.assertEqual(output("lintian", "--allow-root", *self.packages.values()), "")

    # -- what becomes of them --

    @unittest.skipIf(why_not := bare_debian.why_not(), why_not)
    def test_they_are_installed_used_and_purged(self):
        debian = Debian(Path(tempfile.mkdtemp(prefix="debian-", dir=self.folder)))
        debian.root.chmod(0o755)
        debian.run("useradd", "--create-home", f"--uid={PERSON}", "person")
        brought = debian.root / "srv/packages"
        brought.mkdir()
        for file in self.packages.values():
            shutil.copy(file, brought)
        # Only a tool at first: it finds what is installed without the applications.
        few = ("lumoractl", "lumora-samples", "liblumora6")
        debian.install(*(f"/srv/packages/{self.packages[name].name}" for name in few))
        self.assert_samples_are_found(debian)
        debian.install(*(f"/srv/packages/{file.name}" for file in self.packages.values()))
        bare_debian.remove(brought)
        self.assertTrue(self.started_at_login(debian))

        self.assert_programs_work(debian)
        self.assert_a_plugin_is_built_and_found(debian)

        debian.run("apt-get", "remove", "-y", *PACKAGES)
        self.assertTrue(self.switched_off(debian), "a unit that is gone is not looked for")
        debian.run("dpkg", "--purge", *PACKAGES)  # apt has forgotten what it has removed
        self.assertFalse(self.started_at_login(debian))
        self.assertEqual(self.left_behind(debian), [])
        kept = debian.root / "home/person/.config/lumora/com.nevo.lumora.plist"
        self.assertTrue(kept.exists(), "a person's settings are the person's")

    @staticmethod
    def started_at_login(debian):
        return os.path.lexists(debian.root / "etc/systemd/user/default.target.wants/lumora-tweak.service")

    @staticmethod
    def switched_off(debian):
        unit = debian.root / "etc/systemd/user/lumora-tweak.service"
        return os.path.islink(unit) and os.readlink(unit) == "/dev/null"

    @staticmethod
    def left_behind(debian):
        """Everything that has to do with the packages."""
        places = ("bin", "etc", "lib", "opt", "root", "run", "tmp", "usr", "var")
        found = [Path(folder, name).relative_to(debian.root) for place in places
                 for folder, folders, files in os.walk(debian.root / place) for name in folders + files
                 if re.search("lumora|nevo", name, re.IGNORECASE)]
        known = re.findall(r"^Package: \S*lumora\S*", (debian.root / "var/lib/dpkg/status").read_text(), re.MULTILINE)
        # What is in a folder that is told of need not be told itself.
        return known + sorted(str(path) for path in found if "lumora" not in path.parent.parts)

    def assert_programs_work(self, debian):
        tweak = subprocess.Popen(bare_debian.command(debian.root, "lumora-tweak", user=PERSON),
                                 env=bare_debian.environment(**PERSONAL), stdout=subprocess.PIPE, text=True,
                                 start_new_session=True)
        try:
            self.assertEqual(tweak.stdout.readline(),
                             "lumora-tweak ready, settings at /home/person/.config/lumora/com.nevo.lumora.plist\n")
            debian.run_as_person("lumoractl", "set", "kSleepTime", "30")
            self.assertEqual(debian.run_as_person("lumoractl", "get", "kSleepTime"), "30\n")
            rows = json.loads(debian.run_as_person("lumora-settings", "--rows", "AppsListController"))
            titles = [row["title"] for section in rows["sections"] for row in section["rows"]]
            self.assertIn("Podcasts", titles)
            debian.run_as_person("lumora-settings", "--grab", "/home/person/page.png")
            self.assertEqual((debian.root / "home/person/page.png").read_bytes()[:4], b"\x89PNG")
            debian.run_as_person("lumora-lockscreen", "--grab", "/home/person/screen.png", "--surface", "N")
            self.assertEqual((debian.root / "home/person/screen.png").read_bytes()[:4], b"\x89PNG")
            os.killpg(tweak.pid, signal.SIGTERM)
            self.assertEqual(tweak.wait(60), 0)
        finally:
            # The whole group: a program of another user no longer dies with the one that started it.
            with contextlib.suppress(ProcessLookupError):
                os.killpg(tweak.pid, signal.SIGKILL)
            tweak.wait()
            tweak.stdout.close()

    def assert_a_plugin_is_built_and_found(self, debian):
        debian.install("g++", "make", "pkg-config")
        folder = "/home/person/plugin"
        debian.run_as_person("cp", "-r", "/usr/share/lumora-kit/template", folder)
        debian.run_as_person("make", "-C", folder)
        plugins = json.loads(debian.run_as_person("lumoractl", "plugins", "--json", f"{folder}/MyView.bundle"))
        self.assertEqual([(plugin["name"], plugin["settings"]) for plugin in plugins], [("My View", True)])
        self.assertNotIn("RUNPATH", debian.run("readelf", "-d", f"{folder}/MyView.bundle/MyView"))
        self.assert_samples_are_found(debian)

        debian.install("cmake")
        debian.run_as_person("cmake", "-S", folder, "-B", f"{folder}/build")
        debian.run_as_person("cmake", "--build", f"{folder}/build")
        plugins = json.loads(debian.run_as_person("lumoractl", "plugins", "--json", f"{folder}/build/MyView.bundle"))
        self.assertEqual([(plugin["name"], plugin["settings"]) for plugin in plugins], [("My View", True)])

    def assert_samples_are_found(self, debian):
        plugins = json.loads(debian.run_as_person("lumoractl", "plugins", "--json"))
        self.assertEqual(sorted(plugin["name"] for plugin in plugins), ["Clock", "Music", "Notes", "Weather"])


if __name__ == "__main__":
    result = unittest.main(exit=False).result
    sys.exit(1 if not result.wasSuccessful() else 77 if result.skipped else 0)

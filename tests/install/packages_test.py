#!/usr/bin/env python3
"""The Debian packages: made from this source, then installed, used and purged in a Debian that has nothing else.

    tests/install/packages_test.py BUILD [-v]

Needs root, for a root of its own, and the package mirror that this machine uses. Without them it says so and ends with
77. The bare Debian and what was downloaded for it are kept under BUILD/tests/install.
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
import urllib.error
import urllib.request
from pathlib import Path

BUILD = Path(sys.argv.pop(1)).resolve()
SOURCE = Path(__file__).resolve().parents[2]
KEPT = BUILD / "tests/install"
PACKAGES = {"liblumora-dev", "liblumora2", "lumora-samples", "lumora-settings", "lumora-tweak", "lumoractl"}
PERSON = 1000
PERSONAL = {"HOME": "/home/person", "XDG_RUNTIME_DIR": "/home/person"}


def output(*command, **options):
    """What a program that must succeed writes, errors included."""
    done = subprocess.run([str(word) for word in command], text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          check=False, **options)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))}\n{done.stdout[-4000:]}")
    return done.stdout


def make_packages():
    """The packages, by name; as anybody makes them, but for the compiler, which takes several files at a time."""
    made = SOURCE / "build/package/packages"
    shutil.rmtree(made, ignore_errors=True)
    output("cmake", "--preset", "package", "-DCMAKE_UNITY_BUILD=ON", cwd=SOURCE)
    output("cmake", "--build", "--preset", "package", "--parallel", "2", cwd=SOURCE)
    return {file.name.split("_")[0]: file for file in made.glob("*.deb")}


def package_sources():
    """Where this machine has Debian from, as lines for a sources.list."""
    return sorted(set(output("apt-get", "indextargets", "--format", "deb $(SITE) $(RELEASE) $(COMPONENT)",
                             "Created-By: Packages", "Origin: Debian").split("\n")[:-1]))


def missing():
    """Why there can be no Debian here; nothing if there can."""
    if os.geteuid() != 0:
        return "only root can make a root folder"
    for tool in ("debootstrap", "unshare", "chroot", "apt-get"):
        if not shutil.which(tool):
            return f"there is no {tool}"
    if subprocess.run(["unshare", "--mount", "--pid", "--fork", "true"], capture_output=True, check=False).returncode:
        return "mounts of its own are not permitted"
    sources = package_sources()
    if not sources:
        return "apt knows no mirror of Debian"
    mirror, release = sources[0].split()[1:3]
    try:
        urllib.request.urlopen(f"{mirror}/dists/{release}/Release", timeout=30).close()
    except (urllib.error.URLError, OSError) as error:
        return f"{mirror} cannot be reached: {error}"
    return None


class Debian:
    """A Debian in a folder of its own. Whatever is mounted in it is gone with the program that runs there."""

    def __init__(self, folder):
        self.root = folder
        base = KEPT / "base"
        if not base.exists():
            fresh = KEPT / "base.new"
            shutil.rmtree(fresh, ignore_errors=True)
            mirror, release = package_sources()[0].split()[1:3]
            output("debootstrap", "--variant=minbase", "--include=ca-certificates", release, fresh, mirror)
            fresh.rename(base)
        output("cp", "-a", "--reflink=auto", f"{base}/.", self.root)
        (self.root / "etc/apt/sources.list").write_text("\n".join(package_sources()) + "\n")
        shutil.copy("/etc/resolv.conf", self.root / "etc/resolv.conf")
        self.archives = KEPT / "archives"
        self.archives.mkdir(exist_ok=True)
        for file in self.archives.glob("*.deb"):
            shutil.copy(file, self.root / "var/cache/apt/archives")
        self.run("apt-get", "update")

    def command(self, *words, user=0):
        return ["unshare", "--mount", "--pid", "--fork", "--kill-child", f"--mount-proc={self.root}/proc", "chroot",
                f"--userspec={user}:{user}", self.root, *words]

    @staticmethod
    def environment(**more):
        return {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C.UTF-8", "DEBIAN_FRONTEND": "noninteractive",
                **more}

    def run(self, *words):
        return output(*self.command(*words), env=self.environment())

    def run_as_person(self, *words):
        done = subprocess.run(self.command(*words, user=PERSON), env=self.environment(**PERSONAL), text=True,
                              capture_output=True, check=False)
        if done.returncode != 0:
            raise AssertionError(f"{' '.join(words)}\n{done.stderr}")
        return done.stdout

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
        cls.folder = Path(tempfile.mkdtemp(prefix="lumora-packages-", dir=KEPT))
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
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
            if package != "liblumora2":
                self.assertIn(f"liblumora2 (= {version})", self.field(package, "Depends"))

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

    # -- what becomes of them --

    def test_they_are_installed_used_and_purged(self):
        debian = Debian(Path(tempfile.mkdtemp(prefix="debian-", dir=self.folder)))
        debian.root.chmod(0o755)
        debian.run("useradd", "--create-home", f"--uid={PERSON}", "person")
        brought = debian.root / "root/packages"
        brought.mkdir()
        for file in self.packages.values():
            shutil.copy(file, brought)
        debian.install(*(f"/root/packages/{file.name}" for file in self.packages.values()))
        shutil.rmtree(brought)
        self.assertTrue(self.started_at_login(debian))

        self.assert_programs_work(debian)
        self.assert_a_plugin_is_built_and_found(debian)

        debian.run("apt-get", "remove", "-y", *PACKAGES)
        self.assertTrue(self.switched_off(debian), "a unit that is gone is not looked for")
        debian.run("dpkg", "--purge", *PACKAGES)  # apt knows no more of what it has removed
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
        tweak = subprocess.Popen(debian.command("lumora-tweak", user=PERSON), env=debian.environment(**PERSONAL),
                                 stdout=subprocess.PIPE, text=True, start_new_session=True)
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
            os.killpg(tweak.pid, signal.SIGTERM)
            self.assertEqual(tweak.wait(60), 0)
        finally:
            # The whole group: a program that has become somebody else's no longer dies with the one that started it.
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
        plugins = json.loads(debian.run_as_person("lumoractl", "plugins", "--json"))
        self.assertEqual(sorted(plugin["name"] for plugin in plugins), ["Clock", "Music", "Notes", "Weather"])


if __name__ == "__main__":
    if why := missing():
        print(f"skipped: {why}")
        sys.exit(77)
    unittest.main()

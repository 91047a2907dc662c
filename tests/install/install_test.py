#!/usr/bin/env python3
"""The installation: staged under one prefix, moved to another place, and used there as a person has it.

    PYTHONPATH=tests tests/install/install_test.py [-v] BUILD
"""
import json
import os
import re
import shutil
import stat
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree
from pathlib import Path

from harness.build import BUILD, SOURCE, cached, output

PREFIX = "opt/lumora"
PROGRAMS = ("lumora-lockscreen", "lumora-settings", "lumora-tweak", "lumoractl")
COMMANDS = ("list", "get", "set", "watch", "archive", "unarchive", "plugins", "plugin", "search", "export", "import", "diff",
            "history", "undo", "at", "restore", "reset")
OF_PLUGIN = ("new", "check", "run")
OPTION = re.compile(r"(?<![\w/-])(--?[a-z][a-z-]*)")


def install(prefix, *options, **environment):
    output(cached("CMAKE_COMMAND"), "--install", BUILD, "--prefix", prefix, *options, umask=0o022, **environment)


class Install(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.folder = Path(tempfile.mkdtemp(prefix="lumora-install-"))
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        install("/" + PREFIX, DESTDIR=str(cls.folder / "staged"))
        cls.prefix = cls.folder / "moved"
        (cls.folder / "staged" / PREFIX).rename(cls.prefix)

    @classmethod
    def files(cls):
        return sorted(str(file.relative_to(cls.prefix)) for file in cls.prefix.rglob("*") if not file.is_dir())

    def elf_files(self):
        for name in self.files():
            file = self.prefix / name
            if not file.is_symlink() and file.read_bytes()[:4] == b"\x7fELF":
                yield file

    # -- what is there --

    def test_is_what_it_is_expected_to_be(self):
        expected = (SOURCE / "tests/install/files.txt").read_text().format(
            libraries=cached("CMAKE_INSTALL_LIBDIR") or "lib", type=cached("CMAKE_BUILD_TYPE").lower())
        self.assertEqual(self.files(), sorted(expected.split("\n")[:-1]))
        self.assertEqual([str(path) for path in (self.folder / "staged").rglob("*")], [str(self.folder / "staged/opt")])

    def test_belongs_to_no_place(self):
        for file in self.elf_files():
            for paths in re.findall(r"R(?:UN)?PATH.*\[(.*)\]", output("readelf", "-d", file)):
                self.assertRegex(paths, r"^\$ORIGIN(/[^:]*)?$", file)
        elf = set(self.elf_files())  # with its notes for debuggers, which name sources
        for file in map(self.prefix.joinpath, self.files()):
            contents = b"" if file.resolve() in elf else file.read_bytes()
            for place in (BUILD, SOURCE, self.folder):
                self.assertFalse(str(place).encode() in contents, f"{place} is named by {file}")

    def test_can_be_read_by_all_and_written_by_its_owner(self):
        for path in [self.prefix, *self.prefix.rglob("*")]:
            if path.is_symlink():
                continue
            runs = path.is_dir() or path.parent == self.prefix / "bin"
            mode = stat.S_IMODE(path.stat().st_mode)
            self.assertEqual(mode | (0 if runs else 0o111), 0o755, path)

    def test_the_documents_link_to_what_is_installed_with_them(self):
        [folder] = (self.prefix / "share/doc").iterdir()
        links = [(file, link) for file in folder.glob("*.md")
                 for link in re.findall(r"\]\(([^)#]+)[^)]*\)", file.read_text()) if "://" not in link]
        self.assertGreater(len(links), 2)
        for file, link in links:
            self.assertTrue((folder / link).exists(), f"{file.name}: {link}")

    # -- what others make of it --

    def test_the_entries_in_the_menu_are_valid_and_have_what_they_name(self):
        entries = sorted((self.prefix / "share/applications").iterdir())
        self.assertEqual([entry.name for entry in entries], ["lumora-lockscreen.desktop", "lumora-settings.desktop"])
        for entry in entries:
            self.assertEqual(output("desktop-file-validate", entry), "")
            values = dict(line.split("=", 1) for line in entry.read_text().splitlines() if "=" in line)
            self.assertTrue(os.access(self.prefix / "bin" / values["Exec"], os.X_OK))
            icon = self.prefix / f"share/icons/hicolor/scalable/apps/{values['Icon']}.svg"
            root = xml.etree.ElementTree.parse(icon).getroot()
            self.assertEqual((root.tag, root.get("viewBox")), ("{http://www.w3.org/2000/svg}svg", "0 0 128 128"))

    def test_the_metadata_is_valid_and_of_this_version(self):
        [file] = (self.prefix / "share/metainfo").iterdir()
        # Newer checkers, which fail then, want a page on the web as well; there is none.
        said = subprocess.run(["appstreamcli", "validate", "--no-net", file], text=True, stdout=subprocess.PIPE,
                              check=False).stdout
        self.assertRegex(said, "Validation was successful|Validation failed: warnings: 1,")
        self.assertLessEqual(set(re.findall(r"^[EW]: \S+ (.*)", said, re.MULTILINE)), {"url-homepage-missing"}, said)
        component = xml.etree.ElementTree.parse(file).getroot()
        self.assertTrue((self.prefix / "share/applications" / component.findtext("launchable")).exists())
        self.assertEqual(component.find("releases/release").get("version"), cached("CMAKE_PROJECT_VERSION"))

    def test_the_unit_is_valid_and_starts_the_program_of_its_prefix(self):
        unit = "lib/systemd/user/lumora-tweak.service"
        self.assertIn(f'\nExecStart="/{PREFIX}/bin/lumora-tweak"\n', (self.prefix / unit).read_text())
        install(self.folder / "of its own", "--component", "tweak")
        said = output("systemd-analyze", "--user", "--man=no", "verify", self.folder / "of its own" / unit,
                      XDG_RUNTIME_DIR=str(self.folder))
        self.assertEqual(said, "")

    def test_the_unit_starts_a_program_that_is_not_under_the_prefix(self):
        folder = self.folder / "apart"
        folder.mkdir()
        script = (SOURCE / "packaging/InstallUnit.cmake.in").read_text()
        for name, value in (("CMAKE_INSTALL_BINDIR", "/opt/programs"), ("UNIT", folder / "lumora-tweak.service"),
                            ("UNIT_TEMPLATE", SOURCE / "packaging/lumora-tweak.service.in")):
            script = script.replace(f"@{name}@", str(value))
        (folder / "install.cmake").write_text(script)
        output(cached("CMAKE_COMMAND"), f"-DCMAKE_INSTALL_PREFIX={folder}", "-P", folder / "install.cmake")
        unit = (folder / "lib/systemd/user/lumora-tweak.service").read_text()
        self.assertIn('\nExecStart="/opt/programs/lumora-tweak"\n', unit)

    # -- the manual pages and completions --

    def helps(self, program):
        """The help of a program, with those of its commands."""
        program = self.prefix / "bin" / program
        commands = [[], *([name] for name in COMMANDS), *(["plugin", name] for name in OF_PLUGIN)]
        return "".join(output(program, *words, "--help")
                       for words in (commands if program.name == "lumoractl" else [[]]))

    def options(self, program):
        """What the help lists at the start of a line."""
        listed = re.findall(r"^  (-\S+)", self.helps(program), re.MULTILINE)
        return {option for names in listed for option in names.split(",")}

    def manual(self, program):
        return output("man", "--warnings", "-E", "UTF-8", "-l", self.prefix / f"share/man/man1/{program}.1",
                      LC_ALL="C.UTF-8", MANWIDTH="100", MANPAGER="cat", GROFF_NO_SGR="1", MAN_KEEP_FORMATTING="")

    def section(self, program, title):
        return re.search(rf"^{title}\n(.*?)(?=^\S)", self.manual(program), re.MULTILINE | re.DOTALL).group(1)

    def test_the_manual_pages_are_without_warnings(self):
        for program in PROGRAMS:
            said = output("man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z",
                          self.prefix / f"share/man/man1/{program}.1", LC_ALL="C.UTF-8")
            self.assertNotIn("warning:", said, program)
            self.assertNotIn("error:", said, program)
            self.assertIn(f"Lumora {cached('CMAKE_PROJECT_VERSION')}", self.manual(program))

    def test_the_manual_pages_have_the_options_of_the_help_and_no_others(self):
        for program in PROGRAMS:
            entries = re.findall(r"^ {7}(-.*?)(?:  |$)", self.section(program, "OPTIONS"), re.MULTILINE)
            self.assertEqual({option for entry in entries for option in OPTION.findall(entry)}, self.options(program))

    def test_the_manual_page_has_the_commands_of_the_help(self):
        told = re.findall(r"^ {7}([a-z]+)\b", self.section("lumoractl", "COMMANDS"), re.MULTILINE)
        helped = re.findall(r"^  ([a-z]+)  ", output(self.prefix / "bin/lumoractl", "--help"), re.MULTILINE)
        self.assertEqual(told, helped)
        self.assertEqual(tuple(helped), COMMANDS)

    def test_the_completions_of_every_shell_have_the_options_of_the_help(self):
        for program in PROGRAMS:
            bash = (self.prefix / f"share/bash-completion/completions/{program}").read_text()
            zsh = (self.prefix / f"share/zsh/site-functions/_{program}").read_text()
            fish = (self.prefix / f"share/fish/vendor_completions.d/{program}.fish").read_text()
            options = {option for option in self.options(program) if option.startswith("--")}
            self.assertEqual({o for o in OPTION.findall(bash) if o.startswith("--")}, options)
            self.assertEqual({o for o in OPTION.findall(zsh.replace("]", " ")) if o.startswith("--")}, options)
            self.assertEqual({f"--{o}" for o in re.findall(r"^complete .* -l ([a-z-]+)", fish, re.MULTILINE)}, options)

    def test_the_completions_of_every_shell_have_every_page_that_a_row_opens(self):
        self.start_tweak()
        pages, seen = ["LumoraPreferences"], {"PSListItemsController"}
        while pages:
            page = pages.pop()
            seen.add(page)
            rows = self.shell(self.prefix / "bin/lumora-settings", "--rows", page)
            pages += set(re.findall(r'"detail": "(\w+(?:Controller|Settings))"', rows)) - seen
        for file in ("bash-completion/completions/lumora-settings", "zsh/site-functions/_lumora-settings",
                     "fish/vendor_completions.d/lumora-settings.fish"):
            offered = re.findall(r"\b[A-Z]\w+(?:Controller|Settings|Preferences)\b", (self.prefix / "share" / file).read_text())
            self.assertEqual({*offered, "PSListItemsController"}, seen, file)

    def test_bash_completes_options_and_what_they_take(self):
        (self.folder / "here.plist").touch()
        completion = self.prefix / "share/bash-completion/completions/lumora-tweak"

        def offers(*words):
            return output("bash", "-c", '. "$0"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _lumora_tweak;'
                          'printf "%s\\n" "${COMPREPLY[@]}"',
                          completion, "lumora-tweak", *words).split()
        self.assertEqual(offers("--ver"), ["--verbose", "--version"])
        self.assertEqual(offers("--settings", f"{self.folder}/h"), [f"{self.folder}/here.plist"])
        self.assertEqual(offers("--omit", ""), [])

    def test_bash_completes_a_key_and_its_value(self):
        self.start_tweak()
        completion = self.prefix / "share/bash-completion/completions/lumoractl"

        def offers(*words):
            return self.shell("bash", "-c", '. "$0"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _lumoractl;'
                              'printf "%s\n" "${COMPREPLY[@]}"', completion, "lumoractl", *words).split()
        self.assert_keys_are_completed(offers)
        self.assertEqual(offers("list", "--"), ["--help", "--secrets"])

    def test_fish_completes_a_key_and_its_value(self):
        self.start_tweak()
        completion = self.prefix / "share/fish/vendor_completions.d/lumoractl.fish"

        def offers(*words):
            said = self.shell("fish", "--no-config", "-c", f"source '{completion}'; complete -C '{' '.join(words)}'")
            return [line.split("\t")[0] for line in said.splitlines()]
        self.assert_keys_are_completed(lambda *words: offers("lumoractl", *words))

    def assert_keys_are_completed(self, offers):
        self.assertEqual(set(offers("")) - {"--help", "--version"}, set(COMMANDS))
        for command in (["get"], ["get", "--secrets"], ["set"]):
            self.assertEqual(set(offers(*command, "kSleep")), {"kSleepDisabledForAppViews", "kSleepTime"}, command)
        self.assertEqual(set(offers("set", "kTweakEnabled", "")), {"true", "false"})
        self.assertEqual(offers("set", "kSleepTime", ""), ["10"])
        self.assertEqual(offers("get", "kSleepTime", ""), [])

    def test_zsh_reads_its_completions(self):
        for program in PROGRAMS:
            self.assertEqual(output("zsh", "-n", self.prefix / f"share/zsh/site-functions/_{program}"), "")

    # -- the programs, from where they are now --

    def start_tweak(self):
        """A home with nothing in it, and the installed tweak at work for it."""
        home = Path(tempfile.mkdtemp(dir=self.folder))
        self.environment = {"HOME": str(home), "XDG_RUNTIME_DIR": str(home), "PATH": "/usr/bin:/bin",
                            "XDG_DATA_DIRS": str(home), "LC_ALL": "C.UTF-8"}
        tweak = subprocess.Popen([self.prefix / "bin/lumora-tweak"], env=self.environment, stdout=subprocess.PIPE,
                                 text=True)
        self.addCleanup(tweak.stdout.close)
        self.addCleanup(tweak.wait, 60)
        self.addCleanup(tweak.terminate)
        kept = home / ".config/lumora/com.nevo.lumora.plist"
        self.assertEqual(tweak.stdout.readline(), f"lumora-tweak ready, settings at {kept}\n")
        return tweak

    def shell(self, *command):
        """What a shell says that finds the installed programs."""
        return output("env", "-i", *(f"{name}={value}" for name, value in self.environment.items()),
                      f"PATH={self.prefix}/bin:/usr/bin:/bin", *command)

    def run_program(self, name, *options, **environment):
        done = subprocess.run([self.prefix / "bin" / name, *map(str, options)], env={**self.environment, **environment},
                              cwd=self.folder, text=True, capture_output=True, timeout=120, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done

    def rows(self, page):
        return json.loads(self.run_program("lumora-settings", "--rows", page).stdout)

    def test_the_programs_keep_a_setting_for_the_user(self):
        before = self.files()
        self.start_tweak()
        self.run_program("lumoractl", "set", "kSleepTime", "30")
        self.assertEqual(self.run_program("lumoractl", "get", "kSleepTime").stdout, "30\n")
        [value] = [row["value"] for row in self.rows("LumoraPreferences")["rows"] if row["identifier"] == "kSleepTime"]
        self.assertEqual(value, 30)
        self.assertEqual(self.files(), before, "nothing is written where everybody's files are")

    def test_the_plug_ins_and_applications_of_the_installed_root_are_found(self):
        self.start_tweak()
        plugins = json.loads(self.run_program("lumoractl", "plugins", "--json").stdout)
        self.assertEqual(sorted((plugin["name"], plugin["settings"]) for plugin in plugins),
                         [("Clock", False), ("Music", False), ("Notes", True), ("Weather", True)])
        pages = [row["name"] for row in self.rows("PluginsListController")["rows"]]
        self.assertIn("Weather", pages)
        titles = [row["title"] for section in self.rows("AppsListController")["sections"] for row in section["rows"]]
        self.assertIn("Podcasts", titles)
        self.assertEqual(len(titles), 25)

    def test_a_page_can_be_drawn_without_a_display(self):
        self.start_tweak()
        self.run_program("lumora-settings", "--grab", "page.png")
        self.assertEqual((self.folder / "page.png").read_bytes()[:8], b"\x89PNG\r\n\x1a\n")

    def test_the_lock_screen_is_drawn_and_told_without_a_display(self):
        self.start_tweak()
        self.run_program("lumoractl", "set", "kTweakEnabled", "true")
        self.run_program("lumoractl", "set", "kLSDateSubtitle", '"Installed"')
        told = json.loads(self.run_program("lumora-lockscreen", "--state").stdout)
        self.assertEqual(told["look"]["subtitle"]["text"], "Installed")
        pictures = []
        for wallpaper in ("dusk", "day", "night"):
            self.run_program("lumora-lockscreen", "--grab", f"{wallpaper}.png", "--wallpaper", wallpaper)
            pictures.append((self.folder / f"{wallpaper}.png").read_bytes())
            self.assertEqual(pictures[-1][:8], b"\x89PNG\r\n\x1a\n")
        self.assertEqual(len(set(pictures)), 3)

    def test_nothing_is_loaded_from_the_build(self):
        tweak = self.start_tweak()
        loaded = Path(f"/proc/{tweak.pid}/maps").read_text()
        for command in (["lumoractl", "plugins"], ["lumora-settings", "--rows", "AppsListController"],
                        ["lumora-settings", "--grab", "loaded.png", "--page", "PluginsListController"],
                        ["lumora-lockscreen", "--state"]):
            loaded += self.run_program(*command, LD_DEBUG="files").stderr
        for name in ("liblumora-platform", "liblumora-kit", "Lumora.bundle/Lumora", "AppList.dylib", "WeatherView"):
            self.assertRegex(loaded, rf"{re.escape(str(self.prefix))}\S*{name}")
        self.assertNotIn(str(BUILD), loaded)


if __name__ == "__main__":
    unittest.main()

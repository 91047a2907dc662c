#!/usr/bin/env python3
"""The plug-in kit as an outside author has it: installed into a folder of its own, used from another.

    PYTHONPATH=tests tests/kit/kit_test.py [-v] BUILD
"""
import concurrent.futures
import json
import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from harness.build import BUILD, SOURCE, cached, output

WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wshadow", "-Wconversion", "-Wsign-conversion", "-Werror"]
# The kit is used with the compilers that it was built with.
CC, CXX = cached("CMAKE_C_COMPILER"), cached("CMAKE_CXX_COMPILER")


def plugins(path):
    """What discovery makes of a bundle, or of a folder of them."""
    done = subprocess.run([BUILD / "bin/lumoractl", "plugins", "--json", path], text=True, capture_output=True,
                          check=False)
    return json.loads(done.stdout)


class Kit(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.folder = Path(tempfile.mkdtemp(prefix="lumora-kit-"))
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        cls.prefix = cls.folder / "lumora-kit"
        output(cached("CMAKE_COMMAND"), "--install", BUILD, "--component", "kit", "--prefix", cls.prefix)
        cls.include = cls.prefix / "include/lumora-kit"
        cls.pkgconfig = str(next(cls.prefix.rglob("lumora-kit.pc")).parent)
        cls.template = cls.prefix / "share/lumora-kit/template"

    def scratch(self):
        """An empty folder outside of the tree."""
        return Path(tempfile.mkdtemp(dir=self.folder))

    def flags(self, *options):
        return output("pkg-config", *options, "lumora-kit", PKG_CONFIG_PATH=self.pkgconfig).split()

    def test_every_header_compiles_alone(self):
        headers = sorted(self.include.rglob("*.h"))
        self.assertGreater(len(headers), 15)
        commands = [[CXX, "-std=c++20", "-fsyntax-only", *WARNINGS, f"-I{self.include}", "-xc++", header]
                    for header in headers]
        commands += [[CXX, "-std=c++20", "-fsyntax-only", *WARNINGS, "-xc++", self.include / "lumora/AppView.h"],
                     [CC, "-std=c11", "-fsyntax-only", *WARNINGS, "-xc", self.include / "lumora/AppView.h"]]
        # A header compiled as the main file is told that "#pragma once" has no effect there.
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            for done in [pool.submit(self.compile_alone, command) for command in commands]:
                done.result()

    @staticmethod
    def compile_alone(command):
        done = subprocess.run(command[:-1] + ["-"], input=f'#include "{command[-1]}"\n#include "{command[-1]}"\n',
                              text=True, capture_output=True, check=False)
        if done.returncode != 0:
            raise AssertionError(f"{command[-1]}\n{done.stderr}")

    def test_headers_include_each_other_only(self):
        for header in self.include.rglob("*.h"):
            for included in re.findall(r'#include (?:"([^"]+)"|<(lumora/[^>]+)>)', header.read_text()):
                self.assertTrue((self.include / (included[0] or included[1])).exists(), f"{header.name}: {included}")

    def test_nothing_installed_names_the_build_or_the_source(self):
        for file in self.prefix.rglob("*"):
            if file.is_file() and not file.is_symlink():
                text = file.read_bytes()
                if text.startswith(b"\x7fELF"):
                    continue  # with its notes for debuggers, which name sources
                self.assertNotIn(str(BUILD).encode(), text, file)
                self.assertNotIn(str(SOURCE).encode(), text, file)

    def build_with_cmake(self, source, folder, *options):
        output(cached("CMAKE_COMMAND"), "-G", "Ninja", "-S", source, "-B", folder,
               f"-DCMAKE_PREFIX_PATH={self.prefix}", f"-DCMAKE_C_COMPILER={CC}", *options)
        output(cached("CMAKE_COMMAND"), "--build", folder)

    def test_the_template_builds_with_cmake(self):
        folder = self.scratch()
        self.build_with_cmake(self.template, folder, f"-DCMAKE_CXX_COMPILER={CXX}")
        self.assertEqual(plugins(folder / "MyView.bundle"), [self.my_view()])
        self.assertTrue((folder / "MyView.bundle/icon@2x.png").exists())

    def copied_template(self):
        return Path(shutil.copytree(self.template, self.scratch() / "copy"))

    def make(self, folder):
        """What discovery makes of the plug-in."""
        output("make", f"CXX={CXX}", folder=folder, PKG_CONFIG_PATH=self.pkgconfig)
        return plugins(folder / "MyView.bundle")

    def test_the_template_builds_with_pkg_config(self):
        self.assertEqual(self.make(self.copied_template()), [self.my_view()])

    def check(self, bundle, **environment):
        """What there is to mend in a plug-in, and the exit status."""
        done = subprocess.run([BUILD / "bin/lumoractl", "plugin", "check", "--root", BUILD / "root", bundle], text=True,
                              env={**os.environ, **environment}, stdout=subprocess.PIPE, check=False)
        return done.stdout, done.returncode

    def test_a_new_plug_in_has_nothing_to_mend(self):
        folder = self.scratch()
        output(BUILD / "bin/lumoractl", "plugin", "new", "NextBus", folder=folder)
        output("make", f"CXX={CXX}", folder=folder / "NextBus", PKG_CONFIG_PATH=self.pkgconfig)
        self.assertEqual(self.check(folder / "NextBus/NextBus.bundle", HOME="/nowhere"),
                         ("NextBus.bundle: nothing to mend\n", 0))

    def test_the_document_leads_to_a_plug_in_with_few_commands_and_tells_their_output(self):
        text = (SOURCE / "docs/plugins.md").read_text()
        lines = text[:text.index("    $CHECKOUT/build/release/bin/lumoractl plugin run")].splitlines()
        begins = ("$CHECKOUT/", "CHECKOUT=", "cd ", "cmake ")
        steps = []  # commands, each with what it prints
        for line in (line[4:] for line in lines if line.startswith("    ")):
            if line.startswith(begins):
                steps.append((line, []))
            else:
                steps[-1][1].append(line)
        self.assertLessEqual(len(steps) + 1, 12)
        self.assertLessEqual(len(lines), 60)
        checkout = self.scratch()
        (checkout / "build").mkdir()
        (checkout / "build/release").symlink_to(BUILD)
        made = [step for step in steps if "lumora_kit" not in step[0] and "--install" not in step[0]
                and "--preset" not in step[0] and not step[0].startswith("CHECKOUT=")]
        self.assertEqual(len(steps) - len(made), 4, "the first four install the kit, which is done already")
        script = "set -e\n" + "".join(f"{command}\necho '<end>'\n" for command, _ in made)
        said = output("bash", "-c", script, folder=self.scratch(), HOME=str(self.folder), CHECKOUT=str(checkout), CC=CC,
                      CXX=CXX, CMAKE_GENERATOR="Ninja").replace(str(self.folder), "~").split("<end>\n")
        for (command, expected), printed in zip(made, said):
            if "lumoractl" in command:
                self.assertEqual(printed.splitlines(), expected, command)

    @staticmethod
    def my_view():
        return {"entry": "MyView.bundle", "name": "My View", "identifier": "com.example.myview",
                "appID": "org.example.Application", "settings": True, "secure": False, "draws": False}

    def test_a_plug_in_in_c_needs_the_c_compiler_only(self):
        bundle = self.scratch() / "ClockView.bundle"
        bundle.mkdir()
        output(CC, "-std=c11", *WARNINGS, "-shared", *self.flags("--cflags"), SOURCE / "plugins/Clock/ClockView.c",
               "-o", bundle / "MyView")
        text = (self.template / "Info.plist").read_text()
        (bundle / "Info.plist").write_text(
            text.replace("<string>MyView</string>\n</dict>", "<string>ClockView</string>\n</dict>"))
        self.assertEqual([entry.get("name") for entry in plugins(bundle)], ["Clock"])

    def test_a_plug_in_in_c_builds_with_cmake_without_a_cpp_compiler(self):
        folder = self.scratch()
        (folder / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.20)\nproject(Clock LANGUAGES C)\nfind_package(LumoraKit REQUIRED)\n"
            f"lumora_add_plugin(ClockView SOURCES {SOURCE}/plugins/Clock/ClockView.c IDENTIFIER com.example.clock)\n")
        self.build_with_cmake(folder, folder / "build")
        self.assertEqual([entry.get("name") for entry in plugins(folder / "build/ClockView.bundle")], ["Clock"])

    def test_the_libraries_have_names_to_stand_on(self):
        for library in ("kit", "platform"):
            file = next(self.prefix.rglob(f"liblumora-{library}.so"))
            self.assertRegex(output("readelf", "-d", file), rf"SONAME.*liblumora-{library}\.so\.6\]")
        self.assertNotIn(str(BUILD), output("readelf", "-d", next(self.prefix.rglob("liblumora-kit.so"))))

    def test_a_page_of_another_compiler_is_not_used_and_lumoractl_says_why(self):
        source = self.copied_template() / "MyView.cpp"
        # As a compiler of another version would have it.
        source.write_text(source.read_text().replace(
            "namespace {\n", '#undef LUMORA_KIT_COMPILER\n#define LUMORA_KIT_COMPILER "gcc 7"\nnamespace {\n', 1))
        [told] = self.make(source.parent)
        self.assertFalse(told["settings"])
        self.assertRegex(told["why"], r"^it was made with kit 6, gcc 7, .* on a kit of another make and does not fit kit 6, ")

    def test_icons_from_the_kits_own_folder_are_not_offered(self):
        source = self.scratch() / "icon.cpp"
        source.write_text("#include <lumora/SettingsController.h>\n"
                          "auto use = lumora::PreferenceHelperAdditions::addIcon;\n")
        with self.assertRaises(AssertionError):
            output(CXX, "-std=c++20", "-fsyntax-only", f"-I{self.include}", source)


if __name__ == "__main__":
    unittest.main()

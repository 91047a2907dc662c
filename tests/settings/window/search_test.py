#!/usr/bin/python3
"""Search in the real programs, by keyboard and assistive tools alone: a row is found, changed, and found again; every row
that search knows is found by its title and opened; and what the tweak hears of all that.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/search_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import json
import shutil
import unittest
from pathlib import Path

import pyatspi

from harness import wire
from harness.faulty import FaultyTweak, sound
from harness.programs import program
from harness.spoken import BUTTON, Spoken
from harness.waiting import eventually

RESULT = pyatspi.ROLE_LIST_ITEM
PANE = pyatspi.ROLE_PANEL
ALERT = pyatspi.ROLE_ALERT


class Search(Spoken):
    def start_tweak(self, *options, **more):
        self.tweak = super().start_tweak(*options, **more)

    def results(self, window):
        return list(self.spoken(window, RESULT))

    def search(self, window, words, *opening):
        """Looks for words, from wherever the window is, and waits for results."""
        self.keys(window, *(opening or ["ctrl+f"]))
        eventually(lambda: self.is_open(window), "the search")
        self.type(window, words)

    def is_open(self, window):
        return "Search" in self.focused_names(window)

    def focused_names(self, window):
        return [item.name for application in self.applications(window)
                for item in self.find(application, lambda it: self.has_state(it, pyatspi.STATE_FOCUSED))]

    def title_of(self, window):
        return self.xdotool("getwindowname", window.id).strip().removesuffix(" — Settings")

    def index_file(self):
        found = [path for path in Path(self.folder, "cache").rglob("lumora/index") if path.is_file()]
        return found[0] if found else None

    def expect_results(self, window, *names):
        self.expect_soon(lambda: self.results(window), list(names))


class UseTest(Search):
    def open_root_page(self):
        window = super().open_root_page()
        eventually(lambda: "Search" in self.spoken(window, BUTTON), "the sign")
        return window

    def test_finds_a_row_changes_it_and_comes_back_to_the_results(self):
        window = self.open_root_page()
        self.search(window, "blur cut")
        found = "Blur Cutoff, Off, Lumora › Lock Screen Settings › Passcode View"
        self.expect_results(window, found)
        eventually(lambda: "1 results" in self.spoken(window, ALERT), "how many there are")
        self.keys(window, "Return")
        self.expect_soon(lambda: self.title_of(window), "Passcode View")
        eventually(lambda: "Blur Cutoff" in self.focused_names(window), "the focus on the row")
        self.keys(window, "space")
        self.expect("kLSBlurCutoffEnabled", True)
        self.keys(window, "ctrl+f")
        self.expect_results(window, found.replace("Off", "On"))
        self.keys(window, "Escape", "Escape")
        eventually(lambda: "Blur Cutoff" in self.focused_names(window), "the page as it was left")
        self.keys(window, "Escape", "Escape")
        self.expect_soon(lambda: self.title_of(window), "Lumora")

    def test_opens_by_a_slash_and_by_letters_on_a_page_without_fields(self):
        window = self.open_root_page()
        self.search(window, "badges", "slash")
        eventually(lambda: any("Badges" in name for name in self.results(window)), "its results")
        self.keys(window, "Escape", "Escape")
        eventually(lambda: not self.is_open(window), "the end of the search")
        self.keys(window, "s")
        eventually(lambda: self.is_open(window), "the search")
        self.type(window, "leep")
        eventually(lambda: any("Sleep After" in name for name in self.results(window)), "its results")

    def test_opens_by_its_sign(self):
        window = self.open_root_page()
        self.press_button(window, "Search")
        eventually(lambda: self.is_open(window), "the search")
        self.press_button(window, "Cancel")
        eventually(lambda: not self.is_open(window), "the end of the search")

    def test_never_tells_a_passcode(self):
        self.set("kAutoUnlockPasscode", "80-23")
        window = self.open_root_page()
        self.search(window, "passcode")
        eventually(lambda: any(name.startswith("Passcode, •••") for name in self.results(window)), "dots")
        self.assertNotIn("80-23", str(self.results(window)))


class QuietTest(Search):
    def test_asks_the_tweak_once_and_its_index_asks_never(self):
        self.end(self.tweak)
        with FaultyTweak(self.ports, sound) as tweak:
            window = self.open_root_page()
            self.assertEqual(tweak.visits(wire.REQUEST_SETTINGS), 1)
            index = eventually(lambda: self.index_file(), "an index, made while nobody does anything")
            self.assertGreater(index.stat().st_size, 1000)
            self.assertEqual(tweak.visits(wire.REQUEST_SETTINGS), 1)
            self.search(window, "blur opacity")
            eventually(lambda: self.results(window), "results")
            eventually(lambda: tweak.visits(wire.REQUEST_SETTINGS) == 2, "a request for values")
            self.type(window, " zzzz")
            eventually(lambda: "No results" in self.spoken(window, ALERT), "none")
            self.assertEqual(tweak.visits(wire.REQUEST_SETTINGS), 2)
            self.assertEqual(tweak.visits(wire.UPDATE_SETTINGS), 0)
            self.expect_to_close(window)


class GoneTest(Search):
    def test_tells_of_a_row_that_has_gone(self):
        self.make_root()
        window = self.open_root_page()
        eventually(lambda: self.index_file(), "an index")
        shutil.rmtree(self.root + "/Library/Nevo/Lumora/Plugins/WeatherView.bundle")
        self.search(window, "weather plugins")
        eventually(lambda: self.results(window)[0] == "Weather, Lumora › App Views › Plugins", "its result")
        self.keys(window, "Return")
        eventually(lambda: "This row has gone" in self.spoken(window, ALERT), "that it has gone")
        self.assertEqual(self.title_of(window), "Plugins")


class WalkTest(Search):
    def test_finds_every_row_by_its_title_and_lands_on_it(self):
        window = self.open_root_page()
        eventually(lambda: self.index_file(), "an index")
        for title, path in self.entries():
            with self.subTest(title=title, path=path):
                self.walk_to(window, title, path)

    def walk_to(self, window, title, path):
        self.search(window, " ".join(title.split()))
        name = ", ".join([title, path])

        def step():
            """Goes on to the next result until it is the one."""
            current = self.announced(window)
            if current and current.startswith(title + ", " + path + ", "):
                return True
            if current:
                self.keys(window, "Down")
            return False
        eventually(step, name)
        self.keys(window, "Return")
        eventually(lambda: not self.is_open(window), "the page")
        self.expect_soon(lambda: self.title_of(window), path.split(" › ")[-1])
        eventually(lambda: not self.spoken(window, ALERT).get("This row has gone"), "no complaint")

    def announced(self, window):
        fields = [item for application in self.applications(window)
                  for item in self.find(application, lambda it: it.name == "Search" and
                                        self.has_state(it, pyatspi.STATE_FOCUSED))]
        return fields and fields[0].description

    def entries(self):
        """Titles and paths of all that can be found, from the program's own index."""
        told = self.run_program(program("lumora-settings"), "--root", self.root, "--index").stdout
        titles, all_entries = {}, []
        for line in told.splitlines():
            kind, _, rest = line.partition(" ")
            if kind == "page":
                page = json.loads(rest)
                way = page["way"]
                before = titles.get(way.rpartition(".")[0]) if way else None
                titles[way] = (before + " › " if before else "") + page["title"]
                all_entries += [(entry["title"], titles[way]) for entry in page["entries"] if entry["kind"] == "row"]
        return all_entries


if __name__ == "__main__":
    unittest.main()

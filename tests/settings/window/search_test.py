#!/usr/bin/python3
"""Search in the real programs, by keyboard and assistive tools alone: a row is found, changed, and found again; every row
that search knows is found by its title and opened; and what the tweak hears of all that.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/search_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import json
import shutil
import sys
import unittest
from pathlib import Path

import pyatspi

from harness import wire
from harness.faulty import FaultyTweak, sound
from harness.programs import program
from harness.spoken import BUTTON, Spoken
from harness.waiting import LONG_ENOUGH, eventually

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

    def field(self, window):
        """None while the search is not open."""
        return next((item for application in self.applications(window) for item in self.find(
            application, lambda it: it.name == "Search" and self.has_state(it, pyatspi.STATE_FOCUSED))), None)

    def announced(self, window):
        """What the field says of the current result."""
        field = self.field(window)
        return field.description if field else ""

    def index_file(self):
        found = [path for path in Path(self.folder, "cache").rglob("lumora/index-*") if not path.suffix]
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

    def test_comes_back_to_the_results_from_a_row_that_was_changed(self):
        window = self.open_root_page()
        self.search(window, "blur")
        eventually(lambda: len(self.results(window)) > 3, "results")
        announced = ""
        while not announced.startswith("Blur Cutoff, "):
            self.keys(window, "Down")
            announced = eventually(lambda: self.announced(window) not in ("", announced) and self.announced(window), "the next")
        backs = [lambda: self.keys(window, "Escape"), lambda: self.keys(window, "alt+Left"),
                 lambda: self.press_button(window, "Back to Results")]
        for number, back in enumerate(backs):
            self.keys(window, "Return")
            self.expect_soon(lambda: self.title_of(window), "Passcode View")
            eventually(lambda: "Blur Cutoff" in self.focused_names(window), "the focus on the row")
            self.keys(window, "space")
            self.expect("kLSBlurCutoffEnabled", number % 2 == 0)
            back()
            eventually(lambda: self.is_open(window), "the search")
            self.expect_soon(lambda: self.announced(window), announced)
            value = "On" if number % 2 == 0 else "Off"
            eventually(lambda: any(name.startswith(f"Blur Cutoff, {value}, ") for name in self.results(window)), value)

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
    """Everything that search knows is found by its title, and leads to the very row."""

    limit = 6 * LONG_ENOUGH
    FOUND = "Found by the search"
    FIELDS, STATIC_TEXT = (5, 8, 12), 7  # platform::PSCellType; a slider has its name from elsewhere as well

    def test_leads_to_every_row(self):
        self.walk("row", "note")

    def test_leads_to_every_option_and_app_view(self):
        self.walk("option", "appView")

    def test_leads_to_applications_and_fonts(self):
        """To some of each, evenly: there may be hundreds."""
        known = [entry["identifier"] for entry in self.entries("application") if "chosenBy" not in entry]
        self.set("kAppsEnabled", known)  # so that both lists have all, in the order of the index
        for kind in "application", "font":
            self.walk(kind, most=16)

    def walk(self, *kinds, most=None):
        entries = self.entries(*kinds)
        sample = entries[::-(-len(entries) // most)] if most else entries
        self.assertTrue(sample)
        print(f"{', '.join(kinds)}: {len(sample)} of {len(entries)}", file=sys.stderr)
        window = self.open_root_page()
        eventually(self.index_file, "an index")
        for entry in sample:
            with self.subTest(title=entry["title"], path=entry["path"]):
                before = [each for each in entries[:entries.index(entry)] if self.spoken_name(each) == self.spoken_name(entry)]
                self.choose(window, entry, len(before))
                self.keys(window, "Return")
                eventually(lambda: not self.is_open(window), "the page")
                self.expect_soon(lambda: self.title_of(window), entry["path"].split(" › ")[-1])
                self.expect_landing(window, entry)
        self.expect_to_close(window)

    @staticmethod
    def spoken_name(entry):
        return f"{entry['title']}, {entry['path']}, "

    def choose(self, window, entry, others):
        """Looks for the title, and goes on until it is the current result, behind so many of the same name."""
        self.search(window, " ".join(entry["title"].split()))
        eventually(lambda: self.text_of(self.field(window)) == " ".join(entry["title"].split()), "the whole title")
        seen = []

        def is_it():
            current = self.announced(window)
            if not current or current in seen:
                return False
            seen.append(current)
            if sum(each.startswith(self.spoken_name(entry)) for each in seen) > others:
                return True
            self.keys(window, "Down")
            return False
        eventually(is_it, self.spoken_name(entry))

    def expect_landing(self, window, entry):
        """One row says that it is found: this one. Notes are of a page, and no rows."""
        def rows():
            return [(item.name, item.description, self.has_state(item, pyatspi.STATE_FOCUSED))
                    for application in self.applications(window)
                    for item in self.find(application, lambda it: self.FOUND in it.description)]
        if entry["kind"] == "note":
            return self.expect_soon(rows, [])
        [(name, description, focused)] = eventually(rows, "the row")
        names = {entry["title"]}
        if entry.get("cell") in self.FIELDS:
            names |= {entry.get(text) for text in ("placeholder", "header", "identifier")}
        self.assertIn(name, names)
        self.assertEqual(focused, entry.get("cell") != self.STATIC_TEXT)
        around = entry.get("footer") or entry.get("header")
        if "section" in entry:
            self.assertIn(f"{self.FOUND}. Position {entry['row'] + 1} of ", description)
        elif around and around != name:
            self.assertTrue(description.endswith(f"{self.FOUND}. {around}"), description)
        self.assertNotIn("This row has gone", self.spoken(window, ALERT))

    def entries(self, *kinds):
        """All that can be found of these kinds, from the program's own index, each with its path."""
        told = self.run_program(program("lumora-settings"), "--root", self.root, "--index").stdout
        titles, entries = {}, []
        for line in told.splitlines():
            kind, _, rest = line.partition(" ")
            if kind == "page":
                page = json.loads(rest)
                way = page["way"]
                before = titles.get(way.rpartition(".")[0]) if way else None
                titles[way] = (before + " › " if before else "") + page["title"]
                entries += [entry | {"path": titles[way]} for entry in page["entries"] if entry["kind"] in kinds]
        return entries


if __name__ == "__main__":
    unittest.main()
